#pragma once

#include "base/CString.h"
#include "base/WinTypes.h"

// The association of a file extension with a program, under
// HKEY_CLASSES_ROOT: the extension's key names a class, whose key holds the
// description, "DefaultIcon" and "Shell\Open\Command".

inline const LPCWSTR kRegFileExtension = TEXT(".reg");
inline const LPCWSTR kRegFileClass = TEXT("regfile");
inline const LPCWSTR kRegFileDescription = TEXT("Registry File");
const int kRegFileIconId = 122;

// The program's file: the installation's "InstallDir", one "\" and
// "Quenda.exe"; empty when the installation left no directory.
CString ProgramPath();
// "\"<program path>\" \"%1\"", or empty without a program path.
CString OpenCommandLine();
// "<program path>,-<icon id>", or empty without a program path.
CString DefaultIconString(int iconId);

// The open command of the class that the extension names; false (with an
// empty command) when there is no class or no open command.
bool GetOpenCommand(LPCWSTR extension, CString& command);
// Replaces whatever the extension and the class held with the class (its
// description, icon and open command) and the extension naming it. False
// only for an empty extension or class; later registry failures are not
// reported.
bool Associate(LPCWSTR extension, LPCWSTR className, LPCWSTR description, LPCWSTR icon, LPCWSTR command);
// Removes the extension's key and the class key it named. False only for an
// empty extension.
bool Unassociate(LPCWSTR extension);
// True when .reg files open with this program.
bool IsAssociated();

// What the "Install" and "Remove" buttons find before they act.
enum class ERegFileAssociation {
    NoProgramPath,  // neither can act: the installation's record is missing
    OtherProgram,   // .reg files open with another program's command
    Free,           // .reg files open with this program's command, or with none
};
ERegFileAssociation CheckRegFileAssociation();
// Associates .reg files with this program; false without a program path.
bool InstallRegFileAssociation();
// Removes the .reg association with the class it named.
bool RemoveRegFileAssociation();
