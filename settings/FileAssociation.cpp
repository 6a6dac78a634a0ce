#include "settings/FileAssociation.h"

#include "registry/KeyOperations.h"
#include "registry/RegKey.h"
#include "settings/ProgramKeys.h"

namespace {

const LPCWSTR kInstallDir = TEXT("InstallDir");
const LPCWSTR kProgramFileName = TEXT("Quenda.exe");
const LPCWSTR kOpenCommandPath = TEXT("Shell\\Open\\Command");
const LPCWSTR kDefaultValue = TEXT("");

bool IsEmpty(LPCWSTR text)
{
    return text == nullptr || *text == 0;
}

// The default value of a key below HKEY_CLASSES_ROOT; false (and empty) when
// the key or the value cannot be read. An empty value read is not a failure.
bool ReadClassesDefault(LPCWSTR path, CString& text)
{
    CShdRegKey key;
    text.Empty();
    return key.Open(HKEY_CLASSES_ROOT, path) && key.ReadString(kDefaultValue, text);
}

// Creates a key below `parent` and sets its default value. The key is
// flushed as it is closed, so each part of an association reaches storage
// before the next is written.
void WriteDefault(HKEY parent, LPCWSTR path, LPCWSTR text, CShdRegKey& key)
{
    if (key.Create(parent, path, nullptr))
        key.WriteString(kDefaultValue, text);
}

}  // namespace

CString ProgramPath()
{
    CShdRegKey key;
    CString path;
    if (!key.Open(HKEY_LOCAL_MACHINE, kProgramKeyPath) || !key.ReadString(kInstallDir, path) || path.IsEmpty())
        return CString();
    if (path.GetAt(path.GetLength() - 1) != '\\')
        path += '\\';
    path += kProgramFileName;
    return path;
}

CString OpenCommandLine()
{
    const CString path = ProgramPath();
    return path.IsEmpty() ? CString() : CString::Formatted(TEXT("\"%s\" \"%%1\""), path);
}

CString DefaultIconString(int iconId)
{
    const CString path = ProgramPath();
    return path.IsEmpty() ? CString() : CString::Formatted(TEXT("%s,-%i"), path, iconId);
}

bool GetOpenCommand(LPCWSTR extension, CString& command)
{
    command.Empty();
    if (IsEmpty(extension))
        return false;
    CString className;
    if (!ReadClassesDefault(extension, className) || className.IsEmpty())
        return false;
    // An empty command that is there is still a command: only a missing one
    // leaves the extension free.
    return ReadClassesDefault(className + TEXT("\\") + kOpenCommandPath, command);
}

bool Associate(LPCWSTR extension, LPCWSTR className, LPCWSTR description, LPCWSTR icon, LPCWSTR command)
{
    if (IsEmpty(extension) || IsEmpty(className))
        return false;
    // Whole trees go: verbs and icons that another program left in the class
    // must not outlive its association.
    DeleteKeyTree(HKEY_CLASSES_ROOT, extension);
    DeleteKeyTree(HKEY_CLASSES_ROOT, className);
    CShdRegKey classKey(true);
    WriteDefault(HKEY_CLASSES_ROOT, className, description, classKey);
    if (classKey.IsOpen()) {
        CShdRegKey iconKey(true);
        WriteDefault(classKey.GetHandle(), TEXT("DefaultIcon"), icon, iconKey);
        CShdRegKey commandKey(true);
        WriteDefault(classKey.GetHandle(), kOpenCommandPath, command, commandKey);
    }
    classKey.Close();
    // The extension comes last: until it names the class, files of this type
    // do not reach a half-written class.
    CShdRegKey extensionKey(true);
    WriteDefault(HKEY_CLASSES_ROOT, extension, className, extensionKey);
    return true;
}

bool Unassociate(LPCWSTR extension)
{
    if (IsEmpty(extension))
        return false;
    CString className;
    ReadClassesDefault(extension, className);
    DeleteKeyTree(HKEY_CLASSES_ROOT, extension);
    if (!className.IsEmpty())
        DeleteKeyTree(HKEY_CLASSES_ROOT, className);
    return true;
}

bool IsAssociated()
{
    const CString ours = OpenCommandLine();
    CString current;
    return !ours.IsEmpty() && GetOpenCommand(kRegFileExtension, current) && ours.CompareNoCase(current) == 0;
}

ERegFileAssociation CheckRegFileAssociation()
{
    const CString ours = OpenCommandLine();
    if (ours.IsEmpty())
        return ERegFileAssociation::NoProgramPath;
    CString current;
    if (GetOpenCommand(kRegFileExtension, current) && ours.CompareNoCase(current) != 0)
        return ERegFileAssociation::OtherProgram;
    return ERegFileAssociation::Free;
}

bool InstallRegFileAssociation()
{
    const CString command = OpenCommandLine();
    const CString icon = DefaultIconString(kRegFileIconId);
    if (command.IsEmpty() || icon.IsEmpty())
        return false;
    return Associate(kRegFileExtension, kRegFileClass, kRegFileDescription, icon, command);
}

bool RemoveRegFileAssociation()
{
    return Unassociate(kRegFileExtension);
}
