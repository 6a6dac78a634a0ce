#pragma once

#include "base/CString.h"
#include "base/WinTypes.h"

// The verbs of a command-line run: file names to import, each after a
// question, or "/e <file> [<key>]" to export a key (or the whole registry),
// with "/s" accepted before them and "/?" for the usage text. The runner
// decides; the derived class shows messages and runs the jobs.
class CCommandLineRunner {
public:
    static constexpr UINT kQuestionFlags = 0x10024;
    static constexpr UINT kInformationFlags = 0x10040;
    static constexpr UINT kErrorFlags = 0x10030;
    static constexpr int kAnswerYes = 6;

    virtual ~CCommandLineRunner() = default;

    // Runs every verb of the argument string (without the program's name).
    void Process(const CString& arguments);

protected:
    // A message box captioned "Quenda"; the button chosen.
    virtual int ShowMessage(LPCWSTR text, UINT flags) = 0;
    // The jobs report their own outcome.
    virtual void RunImportJob(const CString& path) = 0;
    virtual void RunExportJob(const CString& file, HKEY root, const CString& subkeyPath) = 0;

private:
    // "/s" is accepted for compatibility, but the question is still asked:
    // an import changes the registry and the user must agree to each file.
    void ImportWithConfirmation(bool silent, const CString& path);
    // False when the key text names no root or the key does not exist.
    bool ExportFromCommandLine(const CString& file, const CString& keyPath);
};
