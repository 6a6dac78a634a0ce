#include "views/GoToPath.h"

#include <algorithm>

#include "base/Text.h"
#include "registry/KeyPath.h"
#include "registry/RegistryRoots.h"
#include "registry/RegKey.h"
#include "registry/SortedNames.h"

namespace {

const WCHAR kComputerLead[] = TEXT("Computer\\");
const size_t kComputerLeadLength = 9;

// The length of the "Computer\" or "\" that desktop tools put before the
// root name.
size_t LeadLength(const CString& text)
{
    if (!text.IsEmpty() && text.GetAt(0) == '\\')
        return 1;
    return CompareNoCase(text, kComputerLead, kComputerLeadLength) == 0 ? kComputerLeadLength : 0;
}

CString NormalizedPath(LPCWSTR text)
{
    CString trimmed(text != nullptr ? text : TEXT(""));
    trimmed.Trim();
    // No key has an empty name, so a doubled backslash can only be a slip.
    CString path;
    for (size_t index = 0; index < trimmed.GetLength(); ++index) {
        const WCHAR c = trimmed.GetAt(index);
        if (c != '\\' || path.IsEmpty() || path.GetAt(path.GetLength() - 1) != '\\')
            path += c;
    }
    path = path.Mid(LeadLength(path));
    while (!path.IsEmpty() && path.GetAt(path.GetLength() - 1) == '\\')
        path.Truncate(path.GetLength() - 1);
    return path;
}

bool BeginsWith(LPCWSTR text, const CString& prefix)
{
    return CompareNoCase(text, prefix, prefix.GetLength()) == 0;
}

// The long root names that begin with the prefix; when none does, the short
// ones (so "HK" offers the long names and "hklm" its short one).
std::vector<CString> RootOffers(const CString& prefix)
{
    std::vector<CString> offers;
    for (LPCWSTR (*nameOf)(HKEY) : {&RootLongName, &RootShortName}) {
        for (DWORD index = 0; index < kRootCount; ++index) {
            const LPCWSTR name = nameOf(RootKeyFromValue(kRootClassesRoot + index));
            if (BeginsWith(name, prefix))
                offers.push_back(name);
        }
        if (!offers.empty())
            break;
    }
    return offers;
}

}  // namespace

bool ParseGoToPath(LPCWSTR text, HKEY& root, CString& subkeyPath)
{
    return ParseFullKeyPath(NormalizedPath(text), root, subkeyPath);
}

SGoToTarget ResolveGoToPath(LPCWSTR text)
{
    SGoToTarget target;
    if (!ParseGoToPath(text, target.root, target.path)) {
        target.error = TEXT("The path must begin with a root key, such as HKEY_LOCAL_MACHINE or HKLM.");
        return target;
    }
    CShdRegKey key;
    if (key.Open(target.root, target.path))
        return target;
    // Only on failure: walk down from the root to the first component that
    // does not open.
    const CString& path = target.path;
    CString existing;
    for (size_t start = 0;;) {
        const int separator = path.Find('\\', start);
        const size_t end = separator < 0 ? path.GetLength() : static_cast<size_t>(separator);
        if (!key.Open(target.root, path.Left(end))) {
            target.error = CString::Formatted(TEXT("\"%s\" has no subkey \"%s\"."), FullKeyName(target.root, existing),
                                              path.Mid(start, end - start));
            return target;
        }
        existing = path.Left(end);
        if (separator < 0)
            break;
        start = end + 1;
    }
    // Every part opens one by one, yet the whole did not a moment ago.
    target.error = TEXT("Unable to show registry key.");
    return target;
}

std::vector<CString> CGoToCompleter::Offer(LPCWSTR text)
{
    const CString typed(text != nullptr ? text : TEXT(""));
    const int last = typed.ReverseFind('\\');
    const CString head = typed.Left(static_cast<size_t>(last + 1));
    const CString prefix = typed.Mid(static_cast<size_t>(last + 1));
    if (last < static_cast<int>(LeadLength(typed)))
        return RootOffers(prefix);
    HKEY root = nullptr;
    CString path;
    if (!ParseGoToPath(head, root, path))
        return {};
    if (!m_loaded || root != m_root || path.CompareNoCase(m_path) != 0)
        LoadNames(root, path);
    std::vector<CString> offers;
    for (const CString& name : m_names) {
        if (BeginsWith(name, prefix))
            offers.push_back(name);
    }
    return offers;
}

void CGoToCompleter::LoadNames(HKEY root, const CString& path)
{
    m_loaded = true;
    m_root = root;
    m_path = path;
    CShdRegKey key;
    if (!key.Open(root, path) || !ReadSortedSubkeyNames(key, m_names))
        m_names.clear();
}

void AddRecentPath(std::vector<CString>& recent, LPCWSTR path)
{
    const CString newest(path);
    recent.erase(std::remove_if(recent.begin(), recent.end(),
                                [&newest](const CString& old) { return old.CompareNoCase(newest) == 0; }),
                 recent.end());
    recent.insert(recent.begin(), newest);
    if (recent.size() > kMaxRecentPaths)
        recent.resize(kMaxRecentPaths);
}
