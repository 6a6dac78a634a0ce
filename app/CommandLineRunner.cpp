#include "app/CommandLineRunner.h"

#include "framework/CommandLine.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"

namespace {

bool IsOption(const CString& argument, LPCWSTR dashForm, LPCWSTR slashForm)
{
    return argument.CompareNoCase(dashForm) == 0 || argument.CompareNoCase(slashForm) == 0;
}

}  // namespace

void CCommandLineRunner::Process(const CString& arguments)
{
    const size_t length = arguments.GetLength();
    size_t position = 0;
    bool silent = false;
    bool exportVerb = false;
    bool optionsPhase = true;
    bool done = false;
    bool invalid = false;
    CString argument;
    while (true) {
        if (!ReadCommandLineToken(arguments, position, length, argument)) {
            done = true;
            break;
        }
        if (optionsPhase) {
            if (IsOption(argument, TEXT("-s"), TEXT("/s"))) {
                silent = true;
                continue;
            }
            if (IsOption(argument, TEXT("-e"), TEXT("/e"))) {
                exportVerb = true;
                continue;
            }
            if (IsOption(argument, TEXT("-?"), TEXT("/?")))
                break;
            optionsPhase = false;
        }
        if (exportVerb) {
            const CString file = argument;
            CString keyPath;
            ReadCommandLineToken(arguments, position, length, keyPath);
            CString extra;
            if (ReadCommandLineToken(arguments, position, length, extra))
                invalid = true;
            else
                invalid = !ExportFromCommandLine(file, keyPath);
            done = true;
            break;
        }
        ImportWithConfirmation(silent, argument);
    }
    if (!done)
        ShowMessage(TEXT("Usage:\r\n\"Quenda.exe <file>\"\r\nor\r\n\"Quenda.exe /e <file> <key>\""), kInformationFlags);
    if (invalid)
        ShowMessage(TEXT("Invalid command line arguments."), kErrorFlags);
}

void CCommandLineRunner::ImportWithConfirmation(bool /*silent*/, const CString& path)
{
    const CString question = CString::Formatted(TEXT("Do you want to import registry file \"%s\"?"), path);
    if (ShowMessage(question, kQuestionFlags) == kAnswerYes)
        RunImportJob(path);
}

bool CCommandLineRunner::ExportFromCommandLine(const CString& file, const CString& keyPath)
{
    if (keyPath.IsEmpty()) {
        RunExportJob(file, nullptr, CString());
        return true;
    }
    HKEY root = nullptr;
    CString subkeyPath;
    if (!ParseFullKeyPath(keyPath, root, subkeyPath))
        return false;
    CShdRegKey key;
    if (!key.Open(root, subkeyPath))
        return false;
    key.Close();
    RunExportJob(file, root, subkeyPath);
    return true;
}
