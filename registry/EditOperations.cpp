#include "registry/EditOperations.h"

#include "base/BinaryBuffer.h"
#include "base/Text.h"
#include "registry/KeyOperations.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"

namespace {

struct SMessageText {
    EEditMessage message;
    LPCWSTR text;
};

const SMessageText kMessageTexts[] = {
    {EEditMessage::kConfirmDeleteValue, TEXT("Are you sure you want to delete this value?")},
    {EEditMessage::kConfirmDeleteKey, TEXT("Are you sure you want to delete this key?")},
    {EEditMessage::kConfirmOverwriteValue,
     TEXT("Value with this name already exists. Do you want to overwrite existing value?")},
    {EEditMessage::kDeleteOpenKeyFailed, TEXT("Unable to open registry key")},
    {EEditMessage::kDeleteValueFailed, TEXT("Unable to delete value")},
    {EEditMessage::kDeleteKeyFailed, TEXT("Unable to delete key")},
    {EEditMessage::kOpenKeyFailed, TEXT("Unable to open registry key.")},
    {EEditMessage::kValueExists, TEXT("Value with this name already exists.")},
    {EEditMessage::kReadValueFailed, TEXT("Unable to read registry value.")},
    {EEditMessage::kWriteValueFailed, TEXT("Unable to write registry value.")},
    {EEditMessage::kValueRenameNotFinished, TEXT("Value renaming not finished.")},
    {EEditMessage::kInvalidKeyName, TEXT("Invalid key name.")},
    {EEditMessage::kKeyExists, TEXT("Key with this name already exists.")},
    {EEditMessage::kKeyRenameFailed, TEXT("Unable to rename registry key.")},
    {EEditMessage::kKeyRenameNotFinished, TEXT("Key renaming not finished.")},
    {EEditMessage::kOpenSourceFailed, TEXT("Unable to open source registry key.")},
    {EEditMessage::kMoveValueSameKey, TEXT("You can not move value to the same registry key.")},
    {EEditMessage::kNoUniqueValueName, TEXT("Unable to assign new unique name for this value.")},
    {EEditMessage::kOpenDestinationFailed, TEXT("Unable to open destination registry key.")},
    {EEditMessage::kDeleteSourceValueFailed, TEXT("Unable to delete source registry value.")},
    {EEditMessage::kCopyKeyToItself, TEXT("Registry key can not be copied to itself.")},
    {EEditMessage::kMoveKeySameLocation, TEXT("Key can not be moved to the same location.")},
    {EEditMessage::kNoUniqueKeyName, TEXT("Unable to assign new unique name for this key.")},
    {EEditMessage::kCopyKeyFailed, TEXT("Unable to copy registry key.")},
    {EEditMessage::kCopyKeyNotFinished, TEXT("Key copying not finished.")},
    {EEditMessage::kKeyDeletionNotFinished, TEXT("Key deletion not finished.")},
};

SValueEdit Failed(EEditMessage message)
{
    SValueEdit edit;
    edit.message = message;
    return edit;
}

SValueEdit Changed(LPCWSTR name)
{
    SValueEdit edit;
    edit.changed = true;
    edit.name = name;
    return edit;
}

bool KeyExists(HKEY parent, LPCWSTR path)
{
    CShdRegKey key;
    return key.Open(parent, path);
}

bool SameKey(HKEY rootA, LPCWSTR pathA, HKEY rootB, LPCWSTR pathB)
{
    return rootA == rootB && CompareNoCase(pathA, pathB) == 0;
}

}  // namespace

LPCWSTR EditMessageText(EEditMessage message)
{
    for (const SMessageText& entry : kMessageTexts) {
        if (entry.message == message)
            return entry.text;
    }
    return nullptr;
}

EEditMessage DeleteRegValue(CRegClipboard& clipboard, HKEY root, LPCWSTR path, LPCWSTR name)
{
    if (clipboard.HoldsValueOf(root, path, name))
        clipboard.Clear();
    CShdRegKey key(true);
    if (!key.Open(root, path))
        return EEditMessage::kDeleteOpenKeyFailed;
    return key.DeleteValue(name) ? EEditMessage::kNone : EEditMessage::kDeleteValueFailed;
}

SValueEdit RenameRegValue(CRegClipboard& clipboard, HKEY root, LPCWSTR path, LPCWSTR oldName, LPCWSTR newName)
{
    if (CompareNoCase(oldName, newName) == 0)
        return SValueEdit();
    if (clipboard.HoldsValueOf(root, path, oldName))
        clipboard.Clear();
    CShdRegKey key(true);
    if (!key.Open(root, path))
        return Failed(EEditMessage::kOpenKeyFailed);
    DWORD type = 0;
    CShdBinaryBuffer data;
    const EEditMessage refusal = key.ValueExists(newName)              ? EEditMessage::kValueExists
                                 : !key.ReadValue(oldName, type, data) ? EEditMessage::kReadValueFailed
                                                                       : EEditMessage::kNone;
    if (refusal != EEditMessage::kNone) {
        key.Close(false);
        return Failed(refusal);
    }
    if (!key.WriteValue(newName, type, data.GetData(), static_cast<DWORD>(data.GetSize()))) {
        // Whatever part of the new value was written goes again.
        key.DeleteValue(newName);
        return Failed(EEditMessage::kWriteValueFailed);
    }
    SValueEdit edit = Changed(newName);
    if (!key.DeleteValue(oldName))
        edit.message = EEditMessage::kValueRenameNotFinished;
    return edit;
}

SValueEdit PasteRegValue(CRegClipboard& clipboard, HKEY targetRoot, LPCWSTR targetPath,
                         IOverwriteQuestion& question)
{
    if (!clipboard.HoldsValue())
        return SValueEdit();
    const CString name = clipboard.GetValueName();
    CShdRegKey source;
    if (!source.Open(clipboard.GetRoot(), clipboard.GetPath()))
        return Failed(EEditMessage::kOpenSourceFailed);
    DWORD type = 0;
    CShdBinaryBuffer data;
    if (!source.ReadValue(name, type, data))
        return Failed(EEditMessage::kReadValueFailed);
    const DWORD size = static_cast<DWORD>(data.GetSize());

    if (SameKey(clipboard.GetRoot(), clipboard.GetPath(), targetRoot, targetPath)) {
        if (clipboard.IsCut())
            return Failed(EEditMessage::kMoveValueSameKey);
        CString unique;
        if (!MakeUniqueName(name, [&](const CString& candidate) { return source.ValueExists(candidate); }, unique))
            return Failed(EEditMessage::kNoUniqueValueName);
        if (!source.WriteValue(unique, type, data.GetData(), size))
            return Failed(EEditMessage::kWriteValueFailed);
        source.Close(true);
        return Changed(unique);
    }

    CShdRegKey target(true);
    if (!target.Open(targetRoot, targetPath))
        return Failed(EEditMessage::kOpenDestinationFailed);
    if (target.ValueExists(name) && !question.ConfirmOverwrite(EditMessageText(EEditMessage::kConfirmOverwriteValue))) {
        target.Close(false);
        return SValueEdit();
    }
    if (!target.WriteValue(name, type, data.GetData(), size))
        return Failed(EEditMessage::kWriteValueFailed);
    target.Close();
    SValueEdit edit = Changed(name);
    if (clipboard.IsCut()) {
        if (!source.DeleteValue(name))
            edit.message = EEditMessage::kDeleteSourceValueFailed;
        source.Close(true);
        clipboard.Clear();
    }
    return edit;
}

EEditMessage DeleteRegKey(CRegClipboard& clipboard, HKEY root, LPCWSTR path)
{
    if (path == nullptr || *path == 0)
        return EEditMessage::kNone;
    if (clipboard.HoldsSomethingIn(root, path))
        clipboard.Clear();
    return DeleteKeyTree(root, path) ? EEditMessage::kNone : EEditMessage::kDeleteKeyFailed;
}

bool PlanKeyRename(CRegClipboard& clipboard, HKEY root, LPCWSTR parentPath, LPCWSTR oldName, LPCWSTR newName,
                   SKeyCopy& plan, EEditMessage& message)
{
    plan = SKeyCopy();
    message = EEditMessage::kNone;
    if (*newName == 0 || CString(newName).Find(TEXT('\\')) >= 0) {
        message = EEditMessage::kInvalidKeyName;
        return false;
    }
    if (CompareNoCase(oldName, newName) == 0)
        return false;
    plan.sourceRoot = root;
    plan.sourcePath = ChildKeyPath(parentPath, oldName);
    plan.targetRoot = root;
    plan.targetPath = ChildKeyPath(parentPath, newName);
    if (KeyExists(root, plan.targetPath)) {
        message = EEditMessage::kKeyExists;
        return false;
    }
    if (clipboard.HoldsSomethingIn(root, plan.sourcePath))
        clipboard.Clear();
    plan.move = true;
    plan.copyFailed = EEditMessage::kKeyRenameFailed;
    plan.copyNotFinished = EEditMessage::kKeyRenameNotFinished;
    plan.moveNotFinished = EEditMessage::kKeyRenameNotFinished;
    return true;
}

bool PlanKeyPaste(const CRegClipboard& clipboard, HKEY targetRoot, LPCWSTR targetPath, SKeyCopy& plan,
                  EEditMessage& message)
{
    plan = SKeyCopy();
    message = EEditMessage::kNone;
    if (!clipboard.HoldsKey())
        return false;
    const CString& source = clipboard.GetPath();
    if (IsSameOrDescendant(targetRoot, targetPath, clipboard.GetRoot(), source, true)) {
        message = EEditMessage::kCopyKeyToItself;
        return false;
    }
    const int slash = source.ReverseFind(TEXT('\\'));
    const CString leaf = slash < 0 ? source : source.Mid(static_cast<size_t>(slash) + 1);
    if (leaf.IsEmpty())
        return false;
    plan.sourceRoot = clipboard.GetRoot();
    plan.sourcePath = source;
    plan.targetRoot = targetRoot;
    plan.targetPath = ChildKeyPath(targetPath, leaf);
    if (SameKey(plan.sourceRoot, source, targetRoot, plan.targetPath)) {
        if (clipboard.IsCut()) {
            message = EEditMessage::kMoveKeySameLocation;
            return false;
        }
        CShdRegKey target;
        target.Open(targetRoot, targetPath);
        CString unique;
        if (!MakeUniqueName(
                leaf, [&](const CString& candidate) { return KeyExists(target.GetHandle(), candidate); }, unique)) {
            message = EEditMessage::kNoUniqueKeyName;
            return false;
        }
        plan.targetPath = ChildKeyPath(targetPath, unique);
    } else if (KeyExists(targetRoot, plan.targetPath)) {
        // Keys are never merged or overwritten.
        message = EEditMessage::kKeyExists;
        return false;
    }
    plan.move = clipboard.IsCut();
    plan.copyFailed = EEditMessage::kCopyKeyFailed;
    plan.copyNotFinished = EEditMessage::kCopyKeyNotFinished;
    plan.moveNotFinished = EEditMessage::kKeyDeletionNotFinished;
    return true;
}

SKeyCopyResult RunKeyCopy(const SKeyCopy& plan, CRegClipboard& clipboard)
{
    SKeyCopyResult result;
    if (!CopyKeyTree(plan.sourceRoot, plan.sourcePath, plan.targetRoot, plan.targetPath)) {
        // The target did not exist before, so all of it is the partial copy.
        result.message = DeleteKeyTree(plan.targetRoot, plan.targetPath) ? plan.copyFailed : plan.copyNotFinished;
        return result;
    }
    result.copied = true;
    if (!plan.move)
        return result;
    if (clipboard.HoldsSomethingIn(plan.sourceRoot, plan.sourcePath))
        clipboard.Clear();
    result.sourceDeleted = DeleteKeyTree(plan.sourceRoot, plan.sourcePath);
    if (!result.sourceDeleted)
        result.message = plan.moveNotFinished;
    return result;
}
