#pragma once

#include <windows.h>

#include "base/CString.h"

// The import and export jobs as the user meets them: the file dialog, the
// export options, the progress dialog while the worker runs and the final
// message. Every message box is captioned "Quenda" and goes through
// ShowMessage.
//
// Focus: the command handlers leave the focus wherever the dialogs left it;
// the caller notes whether the tree had the focus before the call and gives
// it back to the tree or the value list afterwards.

// The file or folder the next file dialog of the jobs starts from (special
// folder names such as "%Temp%" are expanded); each dialog then remembers
// the file chosen in it. Empty at first, which opens the top "\".
void SetFileDialogStart(LPCWSTR path);

// "Export..." (40064). `selectedRoot` is null when no key is selected, and
// `selectedPath` is then empty or null. Asks for the file, the overwrite
// question and the export options, then runs RunExportJob.
void ExportCommand(HWND owner, HKEY selectedRoot, LPCWSTR selectedPath);

// Asks for an existing file to import; false when the user cancels or
// chooses a file that does not exist (after saying so).
bool ChooseImportFile(HWND owner, CString& file);

// "Import..." (40066). Asks for an existing file and a confirmation, then
// runs RunImportJob.
void ImportCommand(HWND owner);

// Exports `root` \ `subkeyPath` (root null: the whole registry) to `file`
// in version 5 (`unicode`) or 4 of the format, showing the progress dialog
// after half a second and the outcome in a message box. A job that cannot
// start shows nothing. `commandLine` is true when the program runs a
// command-line export; the behaviour is the same. True when the job
// finished and wrote the whole file; false when it failed, was cancelled or
// could not start.
bool RunExportJob(HWND owner, LPCWSTR file, bool unicode, HKEY root, LPCWSTR subkeyPath, bool commandLine);

// Imports `file`, showing the progress dialog after half a second and the
// outcome in a message box. Once the job has run (finished or cancelled),
// the views are refreshed by sending the owner WM_COMMAND with
// IDM_REGISTRY_REFRESH (40121). True when the whole file was applied;
// false when it failed, was cancelled or could not start.
bool RunImportJob(HWND owner, LPCWSTR file);
