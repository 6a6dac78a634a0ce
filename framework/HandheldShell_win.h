#pragma once

#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

// The handheld shell, as the program uses it. Desktop Windows and Wine have
// no handheld shell library, so this layer provides what the program needs of
// one: soft-key bars along the bottom of windows, full-screen dialogs over the
// main window, the context gesture, and harmless stand-ins for the input
// panel. The rest of the program calls these and otherwise only what Windows
// CE also has; whatever means something else on the desktop is answered here.

// --- Soft-key bar ---------------------------------------------------------

#define SHCMBF_EMPTYBAR 0x0001
#define SHCMBF_HMENU 0x0010

typedef struct tagSHMENUBARINFO {
    DWORD cbSize;
    HWND hwndParent;
    DWORD dwFlags;
    // A menu (with SHCMBF_HMENU) or a menu-bar resource.
    UINT nToolBarId;
    HINSTANCE hInstRes;
    int nBmpId;
    int cBmpImages;
    // Out: the bar.
    HWND hwndMB;
    COLORREF clrBk;
} SHMENUBARINFO, *PSHMENUBARINFO;

// Messages to the bar. Besides these it answers the toolbar messages
// TB_BUTTONCOUNT, TB_GETBUTTONINFOW, TB_ENABLEBUTTON and TB_ISBUTTONENABLED.
#define SHCMBM_GETMENU (WM_USER + 402)
// wParam: a virtual key; lParam: MAKELPARAM(mask, options) of SHMBOF_ flags.
#define SHCMBM_OVERRIDEKEY (WM_USER + 403)
#define SHMBOF_NODEFAULT 0x00000001
#define SHMBOF_NOTIFY 0x00000002

// Makes the soft-key bar of a window. A menu gives one key per top-level
// item; a menu-bar resource (RCDATA) holds the menu that its drop-down keys
// open (0 for none), the key count, and per key six words: image, command,
// state, style, the string id of its label and the submenu index (0xFFFF for
// none). On the desktop the bar lies along the bottom of the window, outside
// its client area, as the bar lies below the window on the handheld; a key
// sends WM_COMMAND with its command to the window or opens its pop-up. F1 and
// F2 press the first and last key of the active window's bar. A window has
// one bar: a second one replaces the first.
BOOL SHCreateMenuBar(SHMENUBARINFO* info);

// The handheld's soft keys and Back key.
#define VK_TSOFT1 VK_F1
#define VK_TSOFT2 VK_F2
#define VK_TBACK VK_ESCAPE

// --- Dialogs ----------------------------------------------------------------

typedef struct tagSHINITDLGINFO {
    DWORD dwMask;
    HWND hDlg;
    DWORD dwFlags;
} SHINITDLGINFO, *PSHINITDLGINFO;

#define SHIDIM_FLAGS 0x0001
#define SHIDIF_DONEBUTTON 0x0001
#define SHIDIF_SIZEDLG 0x0002
#define SHIDIF_SIZEDLGFULLSCREEN 0x0004

// With SHIDIF_SIZEDLG or SHIDIF_SIZEDLGFULLSCREEN, makes an owned window
// cover the main window's area: below the caption of the top-level window
// that owns it (directly or through other owned windows), soft-key bar
// included, without a caption or frame of its own. A window that no one owns
// keeps its frame and takes the handheld's portrait size (480 x 640 at 96 dpi,
// within the desktop's work area), keeping its top-left corner where it fits.
BOOL SHInitDialog(SHINITDLGINFO* info);

// The title bar's OK button. The desktop window keeps its own caption
// buttons, so there is nothing to show.
#define SHDB_SHOW 0x0001
#define SHDB_HIDE 0x0002
BOOL SHDoneButton(HWND window, DWORD state);

// --- Input panel ------------------------------------------------------------

typedef struct tagSHACTIVATEINFO {
    DWORD cbSize;
    HWND hwndLastFocus;
    UINT fSipUp : 1;
    UINT fSipOnDeactivation : 1;
    UINT fActive : 1;
    UINT fReserved : 29;
} SHACTIVATEINFO, *PSHACTIVATEINFO;

typedef enum tagSIPSTATE {
    SIP_UP = 0,
    SIP_DOWN,
    SIP_FORCEDOWN,
    SIP_UNCHANGED,
    SIP_INPUTDIALOG,
} SIPSTATE;

// The desktop has a keyboard and no input panel: these do nothing and
// succeed.
BOOL SHHandleWMActivate(HWND window, WPARAM wParam, LPARAM lParam, SHACTIVATEINFO* info, DWORD flags);
BOOL SHHandleWMSettingChange(HWND window, WPARAM wParam, LPARAM lParam, SHACTIVATEINFO* info);
BOOL SHSipPreference(HWND window, SIPSTATE state);

// The class of the input-panel preference control, registered by
// SHInitExtraControls (once; later calls only succeed).
#define WC_SIPPREF L"SIPPREF"
BOOL SHInitExtraControls();

// --- Gestures and keys ------------------------------------------------------

typedef struct tagSHRGI {
    DWORD cbSize;
    HWND hwndClient;
    // In client coordinates of hwndClient.
    POINT ptDown;
    DWORD dwFlags;
} SHRGINFO, *PSHRGINFO;

#define SHRG_RETURNCMD 0x00000001
#define SHRG_NOTIFYPARENT 0x00000002
#define SHRG_LONGDELAY 0x00000008

// The tap-and-hold gesture, as a return value and as a WM_NOTIFY code.
#define GN_CONTEXTMENU 1000

typedef struct tagNMRGINFO {
    NMHDR hdr;
    // In screen coordinates.
    POINT ptAction;
    DWORD dwItemSpec;
} NMRGINFO, *PNMRGINFO;

// While the left button is held, waits for a hold (half a second without
// moving); called without the button down, it is a key asking for the
// gesture, which is then recognised at once unless SHRG_RETURNCMD only asks
// whether a tap was a hold. A recognised gesture returns GN_CONTEXTMENU; with
// SHRG_RETURNCMD nothing else happens. Otherwise the window (or with
// SHRG_NOTIFYPARENT its parent) gets WM_NOTIFY with GN_CONTEXTMENU, and if
// that is left unanswered (0), the window gets WM_CONTEXTMENU at the point.
// A right click on a child window raises the same notification to its parent
// while any soft-key bar exists in the thread.
DWORD SHRecognizeGesture(SHRGINFO* info);

// The Back key erases in the focused edit: a Backspace to the focus.
void SHSendBackToFocusWindow(UINT message, WPARAM wParam, LPARAM lParam);

// --- Clipboard --------------------------------------------------------------

// The clipboard's data of a format copied into a LocalAlloc block that the
// caller frees, or null; between OpenClipboard and CloseClipboard.
HANDLE GetClipboardDataAlloc(UINT format);

// --- Calls that the desktop has with another meaning -------------------------

// The background colour of static controls on the handheld. The desktop has
// no such system colour; its dialogs' face colour plays the part.
#ifndef COLOR_STATIC
#define COLOR_STATIC COLOR_BTNFACE
#endif

// Property sheet flags and callback messages of the handheld. The desktop
// reads 0x2000 as an old wizard flag, so Handheld::PropertySheetW drops it.
#define PSH_MAXIMIZE 0x00002000
#define PSCB_GETVERSION 4
#define PSCB_GETTITLE 5

namespace Handheld {

// SystemParametersInfoW(SPI_GETPLATFORMTYPE): the desktop plays a Pocket PC.
BOOL GetPlatformType(LPWSTR buffer, UINT capacity);
// SetForegroundWindow(window | 1): brings the window forward with its last
// active pop-up.
BOOL SetForegroundWindow(HWND window);
// GetCommandLineW: the handheld's holds the arguments alone; the desktop's
// begins with the program's name, which this skips with the blanks after it.
LPCWSTR GetCommandLineW();
// PropertySheetW with the handheld's flags; a maximised sheet is an ordinary
// dialog over its owner on the desktop, whose pages do not follow a resize.
INT_PTR PropertySheetW(const PROPSHEETHEADERW* header);
// The stock SYSTEM_FONT of the handheld, a proportional user-interface font
// (the desktop's is a raster font of another age).
HFONT SystemFont();
// The folder of the system: the handheld's is always "\Windows", which the
// desktop asks GetWindowsDirectoryW for. Its length; 0 when it cannot be
// read.
UINT GetWindowsFolder(LPWSTR buffer, UINT capacity);

}  // namespace Handheld
