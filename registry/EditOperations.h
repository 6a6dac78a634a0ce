#pragma once

#include "base/CString.h"
#include "base/WinTypes.h"
#include "registry/RegClipboard.h"

// The user-level edits of keys and values: delete, rename, paste. Each one
// does all of its registry work and decides what the user is told; the
// caller shows the message and brings its views up to date. Every rule that
// empties the program's clipboard is applied here.

// What an edit has to say; kNone when it has nothing to say.
enum class EEditMessage {
    kNone,
    kConfirmDeleteValue,
    kConfirmDeleteKey,
    kConfirmOverwriteValue,
    kDeleteOpenKeyFailed,
    kDeleteValueFailed,
    kDeleteKeyFailed,
    kOpenKeyFailed,
    kValueExists,
    kReadValueFailed,
    kWriteValueFailed,
    kValueRenameNotFinished,
    kInvalidKeyName,
    kKeyExists,
    kKeyRenameFailed,
    kKeyRenameNotFinished,
    kOpenSourceFailed,
    kMoveValueSameKey,
    kNoUniqueValueName,
    kOpenDestinationFailed,
    kDeleteSourceValueFailed,
    kCopyKeyToItself,
    kMoveKeySameLocation,
    kNoUniqueKeyName,
    kCopyKeyFailed,
    kCopyKeyNotFinished,
    kKeyDeletionNotFinished,
};

// The words for the user; null for kNone.
LPCWSTR EditMessageText(EEditMessage message);

// The outcome of a value edit: the message, and whether the registry changed
// so that the list is filled again, selecting `name`.
struct SValueEdit {
    EEditMessage message = EEditMessage::kNone;
    bool changed = false;
    CString name;
};

EEditMessage DeleteRegValue(CRegClipboard& clipboard, HKEY root, LPCWSTR path, LPCWSTR name);

// Writes the value under the new name, then deletes the old one. A change of
// letter case alone is no change: the registry would see the same name.
SValueEdit RenameRegValue(CRegClipboard& clipboard, HKEY root, LPCWSTR path, LPCWSTR oldName, LPCWSTR newName);

// The question a paste asks before it replaces a value, in the words given,
// answered by whoever drives the edit: true for yes.
class IOverwriteQuestion {
public:
    virtual bool ConfirmOverwrite(LPCWSTR question) = 0;

protected:
    ~IOverwriteQuestion() = default;
};

// Pastes the clipboard's value into the target key; a copy into its own key
// takes a unique name. `question` is asked before a value of the same name
// is replaced.
SValueEdit PasteRegValue(CRegClipboard& clipboard, HKEY targetRoot, LPCWSTR targetPath,
                         IOverwriteQuestion& question);

// Deletes a key (never a root key) with its subtree: kNone or
// kDeleteKeyFailed.
EEditMessage DeleteRegKey(CRegClipboard& clipboard, HKEY root, LPCWSTR path);

// A key copied to a new place, with its source removed afterwards for a move
// (a rename, or the paste of a cut key), and what each failure is called.
struct SKeyCopy {
    HKEY sourceRoot = nullptr;
    CString sourcePath;
    HKEY targetRoot = nullptr;
    CString targetPath;
    bool move = false;
    // The copy failed and what it made was removed again; or could not be.
    EEditMessage copyFailed = EEditMessage::kNone;
    EEditMessage copyNotFinished = EEditMessage::kNone;
    // The copy is whole but the source of a move could not be deleted.
    EEditMessage moveNotFinished = EEditMessage::kNone;
};

struct SKeyCopyResult {
    EEditMessage message = EEditMessage::kNone;
    bool copied = false;
    bool sourceDeleted = false;
};

// Key edits come in two steps, so that the caller can show the wait cursor
// for the long one only. The plans check names and places; false stops the
// edit, with a message or, when there is nothing to do, without one.
bool PlanKeyRename(CRegClipboard& clipboard, HKEY root, LPCWSTR parentPath, LPCWSTR oldName, LPCWSTR newName,
                   SKeyCopy& plan, EEditMessage& message);
// The clipboard's key into the target key; a copy into the key's own parent
// takes a unique name. A source gone since it was cut or copied is not
// looked for here: its copy fails like any other.
bool PlanKeyPaste(const CRegClipboard& clipboard, HKEY targetRoot, LPCWSTR targetPath, SKeyCopy& plan,
                  EEditMessage& message);
// Copies; a failed copy is removed again, since keys are never merged. A move
// then deletes its source.
SKeyCopyResult RunKeyCopy(const SKeyCopy& plan, CRegClipboard& clipboard);
