#include "registry/KeyOperations.h"

#include "base/BinaryBuffer.h"
#include "base/Text.h"
#include "platform/Platform.h"
#include "registry/RegKey.h"

namespace {

const int kFirstUniqueNumber = 2;
const int kLastUniqueNumber = 32767;

// A decimal number as the device's C library reads it into its 32-bit long
// (_wtol): leading white space, an optional sign, then digits up to the first
// other character; 0 when there are none, and the nearest limit when the
// number does not fit. The same on every build, whatever its long.
LONG ParseLong(const CString& text)
{
    const long long limit = 0x7FFFFFFFLL;
    size_t i = 0;
    while (i < text.GetLength() && IsSpace(text.GetAt(i)))
        ++i;
    bool negative = false;
    if (i < text.GetLength() && (text.GetAt(i) == '+' || text.GetAt(i) == '-'))
        negative = text.GetAt(i++) == '-';
    long long value = 0;
    for (; i < text.GetLength() && text.GetAt(i) >= '0' && text.GetAt(i) <= '9'; ++i) {
        value = value * 10 + (text.GetAt(i) - '0');
        if (value > limit)
            return negative ? static_cast<LONG>(-limit - 1) : static_cast<LONG>(limit);
    }
    return static_cast<LONG>(negative ? -value : value);
}

// Only the top of the copy is flushed: a flush writes the whole hive, so
// once at the end covers every key below it. Below a target that the copy
// created new, every target is known to be absent, which some platforms
// create in fewer calls.
bool CopyTree(HKEY sourceRoot, LPCWSTR sourcePath, HKEY targetRoot, LPCWSTR targetPath, bool flush,
              bool targetAbsent)
{
    CShdRegKey source(false);
    if (!source.Open(sourceRoot, sourcePath))
        return false;
    // One query gives the class and both counts.
    CString text;
    DWORD subkeys = 0;
    DWORD values = 0;
    bool ok = source.GetInfo(text, subkeys, values);
    CShdRegKey target(flush);
    bool createdNew = false;
    if (!(targetAbsent ? target.CreateAbsent(targetRoot, targetPath, text, &createdNew)
                       : target.Create(targetRoot, targetPath, text, &createdNew)))
        return false;

    DWORD type = 0;
    CShdBinaryBuffer data;
    // Name, type and data arrive in one call.
    for (DWORD index = 0; index < values; ++index) {
        if (!source.EnumValue(index, text, type, data) ||
            !target.WriteValue(text, type, data.GetData(), static_cast<DWORD>(data.GetSize())))
            ok = false;
    }
    for (DWORD index = 0; index < subkeys; ++index) {
        if (!source.EnumSubkey(index, text) ||
            !CopyTree(source.GetHandle(), text, target.GetHandle(), text, false, createdNew))
            ok = false;
    }
    return ok;
}

// Deletes the key `name` below `parent` with what lies below it. The key's
// values go with it; they are deleted one by one only when the key itself
// cannot go, so that a key that stays keeps nothing that could be removed.
void DeleteTree(HKEY parent, LPCWSTR name)
{
    {
        CShdRegKey key;
        if (key.Open(parent, name)) {
            CString subkey;
            // From the last subkey down, so that each deletion leaves the
            // indexes still to visit where they were.
            for (DWORD index = key.SubkeyCount(); index-- > 0;) {
                if (key.EnumSubkey(index, subkey))
                    DeleteTree(key.GetHandle(), subkey);
            }
        }
    }
    if (Platform().RegDeleteKeyW(parent, name) == ERROR_SUCCESS)
        return;
    CShdRegKey key;
    if (!key.Open(parent, name))
        return;
    CString value;
    DWORD type = 0;
    DWORD count = key.ValueCount();
    for (DWORD index = 0; index < count;) {
        if (key.EnumValueName(index, value, type) && key.DeleteValue(value))
            --count;
        else
            ++index;
    }
}

}  // namespace

bool CopyKeyTree(HKEY sourceRoot, LPCWSTR sourcePath, HKEY targetRoot, LPCWSTR targetPath)
{
    const LPCWSTR source = sourcePath != nullptr ? sourcePath : TEXT("");
    const LPCWSTR target = targetPath != nullptr ? targetPath : TEXT("");
    // A copy into its own subtree would find its own output among the
    // subkeys still to copy, for ever.
    if (sourceRoot == targetRoot && (*source == 0 || IsSameOrDescendant(targetRoot, target, sourceRoot, source, true)))
        return false;
    return CopyTree(sourceRoot, source, targetRoot, target, true, false);
}

bool DeleteKeyTree(HKEY root, LPCWSTR path)
{
    // A root key cannot be deleted; its subkeys are not this call's to take.
    if (path == nullptr || *path == 0)
        return false;
    DeleteTree(root, path);
    Platform().RegFlushKey(root);
    CShdRegKey check;
    return !check.Open(root, path);
}

bool IsSameOrDescendant(HKEY rootA, LPCWSTR pathA, HKEY rootB, LPCWSTR pathB, bool allowEqual)
{
    const LPCWSTR a = pathA != nullptr ? pathA : TEXT("");
    const LPCWSTR b = pathB != nullptr ? pathB : TEXT("");
    const size_t lengthA = StrLen(a);
    const size_t lengthB = StrLen(b);
    if (rootA != rootB || lengthA < lengthB || (lengthA == lengthB && !allowEqual) ||
        CompareNoCase(a, b, lengthB) != 0)
        return false;
    return lengthA == lengthB || a[lengthB] == '\\';
}

bool MakeUniqueName(LPCWSTR sourceName, const std::function<bool(const CString&)>& exists, CString& uniqueName)
{
    uniqueName.Empty();
    CString base(sourceName != nullptr ? sourceName : TEXT(""));
    // "Name (3)" is a copy already: number its copies from the plain name.
    const size_t length = base.GetLength();
    const int open = base.ReverseFind('(');
    if (length >= 4 && open >= 1 && base.GetAt(static_cast<size_t>(open) - 1) == ' ' &&
        base.GetAt(length - 1) == ')' && ParseLong(base.Mid(static_cast<size_t>(open) + 1)) > 0)
        base.Truncate(static_cast<size_t>(open) - 1);
    for (int number = kFirstUniqueNumber; number <= kLastUniqueNumber; ++number) {
        const CString candidate = CString::Formatted(TEXT("%s (%i)"), base, number);
        if (!exists(candidate)) {
            uniqueName = candidate;
            return true;
        }
    }
    return false;
}
