#include "framework/FilePaths.h"

#include "base/Text.h"

namespace {

const WCHAR kBackslash = TEXT('\\');
LPCWSTR const kInvalidNameCharacters = TEXT("\\/:*?\"<>|");

const LPCWSTR kSpecialFolderTokens[kSpecialFolderCount] = {
    TEXT("%StartUp%"), TEXT("%ProgramFiles%"), TEXT("%Windows%"), TEXT("%Temp%"), TEXT("%Programs%"),
};

bool EndsWithBackslash(const CString& path)
{
    return !path.IsEmpty() && path.GetAt(path.GetLength() - 1) == kBackslash;
}

bool IsDriveRoot(const CString& folder)
{
    const size_t length = folder.GetLength();
    return (length == 2 || (length == 3 && folder.GetAt(2) == kBackslash)) && folder.GetAt(1) == TEXT(':');
}

}  // namespace

void EnsureTrailingBackslash(CString& path)
{
    if (!EndsWithBackslash(path))
        path += kBackslash;
}

void RemoveTrailingBackslash(CString& path)
{
    if (path.GetLength() >= 2 && EndsWithBackslash(path))
        path.Truncate(path.GetLength() - 1);
}

void SplitPath(LPCWSTR path, CString& folder, CString& name)
{
    const CString whole(path);
    const int slash = whole.ReverseFind(kBackslash);
    if (slash < 0) {
        folder.Empty();
        name = whole;
        return;
    }
    folder = whole.Left(slash == 0 ? 1 : static_cast<size_t>(slash));
    name = whole.Mid(static_cast<size_t>(slash) + 1);
}

void SplitExtension(LPCWSTR name, CString& base, CString& extension)
{
    const CString whole(name);
    const int dot = whole.ReverseFind(TEXT('.'));
    if (dot < 0 || dot < whole.ReverseFind(kBackslash)) {
        base = whole;
        extension.Empty();
        return;
    }
    base = whole.Left(static_cast<size_t>(dot));
    extension = whole.Mid(static_cast<size_t>(dot));
}

bool IsValidFileName(LPCWSTR name)
{
    for (LPCWSTR c = name; *c != 0; ++c) {
        for (LPCWSTR bad = kInvalidNameCharacters; *bad != 0; ++bad) {
            if (*c == *bad)
                return false;
        }
    }
    return true;
}

bool IsTopFolder(LPCWSTR folder)
{
    const CString text(folder);
    return text.IsEmpty() || text == TEXT("\\") || IsDriveRoot(text);
}

CString ParentFolder(LPCWSTR folder)
{
    CString path(folder);
    if (IsTopFolder(path))
        return IsDriveRoot(path) ? path.Left(2) : CString(TEXT("\\"));
    RemoveTrailingBackslash(path);
    CString parent;
    CString name;
    SplitPath(path, parent, name);
    return parent.IsEmpty() ? CString(TEXT("\\")) : parent;
}

EFileNameCheck CheckTypedFileName(LPCWSTR name)
{
    const CString text(name);
    if (text.IsEmpty())
        return EFileNameCheck::kEmpty;
    if (text == TEXT(".") || text == TEXT(".."))
        return EFileNameCheck::kDotName;
    return IsValidFileName(text) ? EFileNameCheck::kValid : EFileNameCheck::kBadCharacters;
}

LPCWSTR FileNameCheckMessage(EFileNameCheck check)
{
    switch (check) {
    case EFileNameCheck::kEmpty:
        return TEXT("File name can not be empty.");
    case EFileNameCheck::kDotName:
        return TEXT("Invalid file name.");
    case EFileNameCheck::kBadCharacters:
        return TEXT("File name can not contain the following characters:\r\n\\/:*?\"<>|");
    case EFileNameCheck::kValid:
        break;
    }
    return nullptr;
}

CString WithDefaultExtension(LPCWSTR name)
{
    CString result(name);
    if (result.Find(TEXT('.')) < 0)
        result += TEXT(".reg");
    return result;
}

int FileRowImage(EFileRowKind kind, DWORD attributes, LPCWSTR name)
{
    const DWORD storageCard = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_TEMPORARY;
    switch (kind) {
    case kRowParent:
        return 2;
    case kRowFolder:
        return (attributes & storageCard) == storageCard ? 4 : 1;
    case kRowFile:
        break;
    }
    CString base;
    CString extension;
    SplitExtension(name, base, extension);
    return extension.CompareNoCase(TEXT(".reg")) == 0 ? 3 : 0;
}

CString ShortenedLocation(LPCWSTR folder, const std::function<bool(const CString&)>& fits)
{
    // The first and middle parts lose characters from their end in that
    // order, so together they are one head that shrinks from its end; the
    // last component then shrinks from its start.
    const CString path(folder);
    const int lastSlash = path.ReverseFind(kBackslash);
    const size_t lastStart = lastSlash < 0 ? 0 : static_cast<size_t>(lastSlash);
    CString head = path.Left(lastStart);
    CString last = path.Mid(lastStart);
    bool removed = false;
    for (;;) {
        CString text = TEXT("Location: ") + head;
        if (removed)
            text += TEXT("...");
        text += last;
        if (fits(text) || (head.IsEmpty() && last.IsEmpty()))
            return text;
        if (!head.IsEmpty())
            head.Truncate(head.GetLength() - 1);
        else
            last.Delete(0);
        removed = true;
    }
}

LPCWSTR SpecialFolderToken(int index)
{
    return index >= 0 && index < kSpecialFolderCount ? kSpecialFolderTokens[index] : TEXT("");
}

CString ExpandSpecialFolder(LPCWSTR path, const std::function<CString(int index)>& resolve)
{
    const CString text(path);
    for (int index = 0; index < kSpecialFolderCount; ++index) {
        const size_t length = StrLen(kSpecialFolderTokens[index]);
        if (text.GetLength() < length || CompareNoCase(text, kSpecialFolderTokens[index], length) != 0)
            continue;
        CString rest = text.Mid(length);
        if (!rest.IsEmpty() && rest.GetAt(0) != kBackslash)
            continue;
        CString folder = resolve(index);
        if (folder.IsEmpty())
            return text;
        if (!rest.IsEmpty() && EndsWithBackslash(folder))
            rest.Delete(0);
        return folder + rest;
    }
    return text;
}
