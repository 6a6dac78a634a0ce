#include "regfile/FileJobs_win.h"

#include "base/CString.h"
#include "framework/FilePaths.h"
#include "framework/MessageBox_win.h"
#include "framework/SelectFileDlg_win.h"
#include "platform/Platform.h"
#include "regfile/ExportOptionsDlg_win.h"
#include "regfile/ProgressDlg_win.h"
#include "regfile/RegExporter.h"
#include "regfile/RegImporter.h"
#include "registry/RegKey.h"
#include "resources/resource.h"
#include "settings/Settings.h"

namespace {

const UINT kProgressDelay = 500;
const UINT kQuestion = MB_YESNO | MB_ICONQUESTION;
const UINT kSuccess = MB_ICONINFORMATION;
const UINT kError = MB_ICONEXCLAMATION;

// The file dialog opens where the last one in this run ended.
CString& LastFilePath()
{
    static CString path;
    return path;
}

bool FileExists(LPCWSTR path)
{
    return Platform().GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

bool ChooseFile(HWND owner, CString& path)
{
    // A name chosen before but never written (an import of a missing file,
    // say) still starts the dialog in its folder.
    path = LastFilePath();
    if (!path.IsEmpty() && !FileExists(path)) {
        CString name;
        SplitPath(LastFilePath(), path, name);
    }
    SFileChoice choice;
    choice.path = path;
    // The device may keep its programs elsewhere than "\Program Files".
    choice.programFiles = [] {
        CShdRegKey key;
        CString topDir;
        if (key.Open(HKEY_LOCAL_MACHINE, TEXT("PMail\\Attachments")))
            key.ReadString(TEXT("TopDir"), topDir);
        return topDir;
    };
    const std::optional<SFileChoice> chosen = RunSelectFileDlg(owner, choice);
    if (!chosen)
        return false;
    path = chosen->path;
    LastFilePath() = path;
    return true;
}

void RefreshViews(HWND owner)
{
    if (owner != nullptr)
        SendMessageW(owner, WM_COMMAND, MAKEWPARAM(IDM_REGISTRY_REFRESH, 0), 0);
}

}  // namespace

void SetFileDialogStart(LPCWSTR path)
{
    LastFilePath() = path;
}

void ExportCommand(HWND owner, HKEY selectedRoot, LPCWSTR selectedPath)
{
    CString file;
    if (!ChooseFile(owner, file))
        return;
    if (FileExists(file) &&
        ShowMessage(owner, TEXT("File with that name already exists. Do you want to overwrite it?"), kQuestion) !=
            IDYES)
        return;
    SExportOptions preset;
    preset.file = file;
    const std::optional<SExportOptions> options = RunExportOptionsDlg(owner, preset);
    if (!options)
        return;
    const bool wholeRegistry = !options->selectedBranchOnly || selectedRoot == nullptr;
    RunExportJob(owner, file, options->unicode, wholeRegistry ? nullptr : selectedRoot,
                 wholeRegistry || selectedPath == nullptr ? TEXT("") : selectedPath, false);
}

bool ChooseImportFile(HWND owner, CString& file)
{
    if (!ChooseFile(owner, file))
        return false;
    if (!FileExists(file)) {
        ShowMessage(owner, TEXT("File does not exist."), kError);
        return false;
    }
    return true;
}

void ImportCommand(HWND owner)
{
    CString file;
    if (!ChooseImportFile(owner, file))
        return;
    if (ShowMessage(owner, TEXT("Do you want to import registry file?"), kQuestion) == IDYES)
        RunImportJob(owner, file);
}

bool RunExportJob(HWND owner, LPCWSTR file, bool unicode, HKEY root, LPCWSTR subkeyPath, bool)
{
    CRegExporter exporter;
    if (!exporter.Start(file, false, unicode, root, subkeyPath != nullptr ? subkeyPath : TEXT("")))
        return false;
    if (owner != nullptr)
        UpdateWindow(owner);
    if (!RunProgress(owner, TEXT("Export in progress..."), kProgressDelay, exporter.DoneEvent())) {
        // The worker goes on while the question is open; only the answer
        // stops it.
        const bool deleteFile = ShowMessage(owner, TEXT("Do you want to delete file?"), kQuestion) == IDYES;
        exporter.Cancel(deleteFile);
        return false;
    }
    bool result = false;
    if (exporter.GetResult(result) && result) {
        ShowMessage(owner, TEXT("Registry export finished successfully."), kSuccess);
        return true;
    }
    ShowMessage(owner, TEXT("There were errors during exporting registry file."), kError);
    return false;
}

bool RunImportJob(HWND owner, LPCWSTR file)
{
    CRegImporter importer;
    // The header check follows the user's setting at the time the job starts.
    if (!importer.Start(file, !Settings().GetDoNotCheckImportHeader()))
        return false;
    if (owner != nullptr)
        UpdateWindow(owner);
    if (!RunProgress(owner, TEXT("Import in progress..."), kProgressDelay, importer.DoneEvent())) {
        importer.Cancel(false);
        RefreshViews(owner);
        return false;
    }
    bool result = false;
    CString errorText;
    const bool available = importer.GetResult(result, errorText);
    RefreshViews(owner);
    if (available && result) {
        ShowMessage(owner, TEXT("Registry import finished successfully."), kSuccess);
        return true;
    }
    if (errorText.IsEmpty())
        errorText = TEXT("Unknown error.");
    ShowMessage(owner,
                CString::Formatted(TEXT("%s %s"), TEXT("There were errors during importing registry file."), errorText),
                kError);
    return false;
}
