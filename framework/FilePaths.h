#pragma once

#include <functional>

#include "base/CString.h"
#include "base/WinTypes.h"

// Paths of the handheld's single-rooted file system ("\" is the top) and the
// rules of the program's file dialog. On the desktop a path may also begin
// with a drive ("C:"), whose root is then a top of its own.

// Appends "\" when the path is empty or does not end with one.
void EnsureTrailingBackslash(CString& path);
// Removes one final "\" when the path is at least 2 characters long.
void RemoveTrailingBackslash(CString& path);
// Splits at the last "\": the folder loses its trailing "\" (except the top
// "\"); without a "\" the folder is empty and the whole path is the name.
void SplitPath(LPCWSTR path, CString& folder, CString& name);
// Splits at the last "." when it stands after the last "\"; the extension
// keeps its dot and is empty when there is none.
void SplitExtension(LPCWSTR name, CString& base, CString& extension);
// False if the name holds any of \ / : * ? " < > |; an empty name passes.
bool IsValidFileName(LPCWSTR name);

// A folder without a parent: "\" or a drive's root ("C:", "C:\").
bool IsTopFolder(LPCWSTR folder);
// The folder above `folder`; "\" above a folder right under the top.
CString ParentFolder(LPCWSTR folder);

// The outcome of checking a name typed in the file dialog.
enum class EFileNameCheck { kValid, kEmpty, kDotName, kBadCharacters };
EFileNameCheck CheckTypedFileName(LPCWSTR name);
// The text the dialog shows for a failed check; null for kValid.
LPCWSTR FileNameCheckMessage(EFileNameCheck check);
// A name with no "." anywhere gets ".reg"; any other is kept as typed.
CString WithDefaultExtension(LPCWSTR name);

// Kinds of the rows of the file dialog's list, and their images (the
// bitmap's order: file, folder, parent, registry file, storage card).
enum EFileRowKind : DWORD { kRowParent = 1, kRowFolder = 2, kRowFile = 3 };
int FileRowImage(EFileRowKind kind, DWORD attributes, LPCWSTR name);

// "Location: " and the folder, shortened until `fits` accepts it: characters
// go from the end of the middle part of the folder (between its first and
// its last component), then from the end of the first part, then from the
// start of the last part, and "..." stands where text was removed.
CString ShortenedLocation(LPCWSTR folder, const std::function<bool(const CString&)>& fits);

// The special folder names, in table order, and the expansion of a path that
// begins with one (without regard to case) through `resolve`, which is given
// the token's index and returns its folder (empty when it has none). A path
// without a token, or whose token resolves to nothing, comes back unchanged.
constexpr int kSpecialFolderCount = 5;
LPCWSTR SpecialFolderToken(int index);
CString ExpandSpecialFolder(LPCWSTR path, const std::function<CString(int index)>& resolve);
