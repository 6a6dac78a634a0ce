#include "settings/Bookmarks.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/Text.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"
#include "settings/ProgramKeys.h"

namespace {

const LPCWSTR kCount = TEXT("count");
const LPCWSTR kItemPrefix = TEXT("item_");

CString ItemName(size_t number)
{
    return CString::Formatted(TEXT("%s%u"), kItemPrefix, static_cast<unsigned>(number));
}

// The number of a value named as ItemName names them ("item_" and a decimal
// number without leading zeros); false for any other name. Value names are
// matched without regard to case, as the registry looks them up.
bool ParseItemNumber(const CString& name, DWORD& number)
{
    const size_t prefixLength = StrLen(kItemPrefix);
    const size_t length = name.GetLength();
    if (length <= prefixLength || CompareNoCase(name, kItemPrefix, prefixLength) != 0 ||
        (name.GetAt(prefixLength) == '0' && length > prefixLength + 1))
        return false;
    unsigned long long value = 0;
    for (size_t i = prefixLength; i < length; ++i) {
        const WCHAR c = name.GetAt(i);
        if (c < '0' || c > '9')
            return false;
        value = value * 10 + static_cast<unsigned>(c - '0');
        if (value > 0xFFFFFFFFull)
            return false;
    }
    number = static_cast<DWORD>(value);
    return true;
}

// The items are found by walking the key's values rather than by asking for
// "item_0" up to "item_<count - 1>": a damaged count (say 0xFFFFFFFF) would
// otherwise cost billions of registry calls. The result is the same.
std::vector<std::pair<DWORD, CString>> ItemValueNames(CShdRegKey& key)
{
    std::vector<std::pair<DWORD, CString>> items;
    CString name;
    DWORD type = 0;
    for (DWORD index = 0; key.EnumValueName(index, name, type); ++index) {
        DWORD number = 0;
        if (ParseItemNumber(name, number))
            items.emplace_back(number, name);
    }
    std::sort(items.begin(), items.end(),
              [](const std::pair<DWORD, CString>& a, const std::pair<DWORD, CString>& b) { return a.first < b.first; });
    return items;
}

}  // namespace

bool IsValidBookmarkLocation(LPCWSTR location)
{
    const CString text(location);
    if (text.IsEmpty() || text.GetAt(text.GetLength() - 1) == '\\' || text.Find(TEXT("\\\\")) >= 0)
        return false;
    HKEY root = nullptr;
    CString path;
    return ParseFullKeyPath(text, root, path);
}

void CBookmarkList::Load()
{
    m_items.RemoveAll();
    CShdRegKey key;
    if (!key.Open(HKEY_LOCAL_MACHINE, kBookmarksKeyPath))
        return;
    const DWORD count = key.ReadDwordOr(kCount, 0);
    for (const auto& item : ItemValueNames(key)) {
        CString location;
        if (item.first < count && key.ReadString(item.second, location) && !location.IsEmpty())
            m_items.Add(new CString(location));
    }
}

// The count is written as 0 before the items and as their number after
// them, so a save cut short by a crash leaves a count of 0, and the list
// loads as empty rather than as a mixture of old and new items. A refused
// write stops nothing: the others still go in, and a list missing one item
// loads better than none. Items left over from a longer list are deleted
// last: beyond the count they are never loaded anyway.
bool CBookmarkList::Save() const
{
    CShdRegKey key(true);
    if (!key.Create(HKEY_LOCAL_MACHINE, kBookmarksKeyPath, nullptr))
        return false;
    bool ok = key.WriteDword(kCount, 0);
    const size_t count = m_items.GetCount();
    for (size_t i = 0; i < count; ++i)
        ok = key.WriteString(ItemName(i), *m_items[i]) && ok;
    ok = key.WriteDword(kCount, static_cast<DWORD>(count)) && ok;
    for (const auto& item : ItemValueNames(key)) {
        if (item.first >= count)
            ok = key.DeleteValue(item.second) && ok;
    }
    return ok;
}

int CBookmarkList::Find(LPCWSTR location, int except) const
{
    for (size_t i = 0; i < m_items.GetCount(); ++i) {
        if (static_cast<int>(i) != except && m_items[i]->CompareNoCase(location) == 0)
            return static_cast<int>(i);
    }
    return -1;
}

CBookmarkList::EChange CBookmarkList::Add(LPCWSTR location)
{
    if (Find(location) >= 0)
        return EChange::AlreadyExists;
    if (m_items.Add(new CString(location)) < 0)
        return EChange::Failed;
    return SaveChange();
}

CBookmarkList::EChange CBookmarkList::Replace(size_t index, LPCWSTR location)
{
    if (m_items[index]->Compare(location) == 0)
        return EChange::Unchanged;
    if (Find(location, static_cast<int>(index)) >= 0)
        return EChange::AlreadyExists;
    *m_items[index] = location;
    return SaveChange();
}

int CBookmarkList::Remove(size_t index)
{
    m_items.RemoveAt(index);
    Save();
    const size_t count = m_items.GetCount();
    if (count == 0)
        return -1;
    return static_cast<int>(std::min(index, count - 1));
}

EAddBookmarkResult AddBookmark(HKEY root, LPCWSTR path)
{
    const CString location = FullKeyName(root, path);
    if (location.IsEmpty())
        return EAddBookmarkResult::Failed;
    CBookmarkList list;
    list.Load();
    if (list.Add(location) == CBookmarkList::EChange::AlreadyExists)
        return EAddBookmarkResult::AlreadyExists;
    // Storing is best effort, as every save of the list is: a refused write
    // still leaves the bookmark added to the list.
    return list.Find(location) >= 0 ? EAddBookmarkResult::Added : EAddBookmarkResult::Failed;
}
