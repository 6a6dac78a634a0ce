// Resource identifiers of Quenda: dialogs, menus, soft-key bars, bitmaps,
// the accelerator table, the icon, strings, commands and controls.
#pragma once

// --- Dialog templates ---------------------------------------------------------
#define IDD_ABOUT 102
#define IDD_EDIT_VALUE 103
#define IDD_EDIT_KEY 113
#define IDD_SEARCH 114
#define IDD_PROGRESS 116
#define IDD_SELECT_FILE 117
#define IDD_EXPORT_OPTIONS 120
#define IDD_KEY_PROPERTIES 126
#define IDD_OPTIONS_GENERAL 127
#define IDD_OPTIONS_IMPORT 128
#define IDD_BOOKMARKS 139
#define IDD_EDIT_BOOKMARK 143
// "Go To".
#define IDD_GO_TO 150

// --- Menus ------------------------------------------------------------------
// The main window's soft keys "Tab" and "Menu" (from system version 5.00).
#define IDR_MAIN_MENU 101
// The main window's top-level "Search", "Registry", "Tools" (before 5.00).
#define IDR_MAIN_MENU_OLD 130
// "Done" and "Cancel".
#define IDR_DONE_CANCEL 104
// Tap-and-hold menus: on a value, on the list's empty area, on a key.
#define IDR_VALUE_CONTEXT 105
#define IDR_VALUES_CONTEXT 106
#define IDR_KEY_CONTEXT 111
// The search dialog: "Start" and a "Menu" pop-up; or three top-level items.
#define IDR_SEARCH_MENU 115
#define IDR_SEARCH_MENU_OLD 133
// "Select" and "Cancel".
#define IDR_SELECT_CANCEL 118
// "Close".
#define IDR_CLOSE 123
// The bookmarks dialog: "Open" and a "Menu" pop-up; or all top-level (a
// Pocket PC before 5.00); and its tap-and-hold menu.
#define IDR_BOOKMARKS_MENU 140
#define IDR_BOOKMARKS_MENU_OLD 141
#define IDR_BOOKMARKS_CONTEXT 142

// --- Menu-bar resources (a Smartphone before 5.00) ----------------------------
#define IDR_MAIN_MENUBAR 3001
#define IDR_CLOSE_MENUBAR 3002
#define IDR_DONE_CANCEL_MENUBAR 3003
#define IDR_SEARCH_MENUBAR 3004
#define IDR_SELECT_CANCEL_MENUBAR 3005
#define IDR_BOOKMARKS_MENUBAR 3006

// The words of a menu-bar key: image, command, state, style, label, submenu.
#define MENUBAR_NO_IMAGE 0xFFFE
#define MENUBAR_ENABLED 0x0004
#define MENUBAR_BUTTON 0x0010
#define MENUBAR_DROPDOWN 0x0018
#define MENUBAR_NO_SUBMENU 0xFFFF

// --- Bitmaps (16-pixel and 32-pixel images, magenta transparent) ----------------
// Value types; cut forms at 0-6, normal forms at 7-13.
#define IDB_VALUES_16 107
#define IDB_VALUES_32 108
// Tree: 0, 1 root hive closed and open; 2, 3 key closed and open; 4 the registry.
#define IDB_TREE_16 109
#define IDB_TREE_32 110
// Search results: 0 nothing found, 1 cancel, 2 key, 3 value.
#define IDB_RESULTS_16 135
#define IDB_RESULTS_32 136
// Search toolbar, normal and disabled pairs: 0, 1 resume; 2, 3 stop; 4, 5
// pause; 6, 7 hide toolbar; 8, 9 switch between results and main view.
#define IDB_TOOLBAR_16 137
#define IDB_TOOLBAR_32 138
// File list: 0 file, 1 folder, 2 parent folder, 3 registry file, 4 storage card.
#define IDB_FILES_16 144
#define IDB_FILES_32 145

#define IDI_QUENDA 122
#define IDA_MAIN 124

// --- Strings: soft-key labels of the menu-bar resources ---------------------------
#define IDS_KEY_TAB 200
#define IDS_KEY_MENU 201
#define IDS_KEY_CLOSE 202
#define IDS_KEY_DONE 203
#define IDS_KEY_CANCEL 204
#define IDS_KEY_SELECT 205
#define IDS_KEY_START 206
#define IDS_KEY_OPEN 207

// --- Commands -----------------------------------------------------------------
#define IDM_ABOUT 40002
#define IDM_EXIT 40003
#define IDM_VALUE_EDIT 40010
#define IDM_VALUE_DELETE 40011
#define IDM_NEW_STRING 40014
#define IDM_NEW_DWORD 40016
#define IDM_NEW_BINARY 40018
#define IDM_NEW_MULTI_STRING 40024
#define IDM_NEW_EXPAND_STRING 40027
#define IDM_KEY_NEW 40029
#define IDM_KEY_DELETE 40036
#define IDM_KEY_PROPERTIES 40038
#define IDM_SEARCH_DIALOG_START 40040
#define IDM_SEARCH_START 40044
#define IDM_SEARCH_FIND_NEXT 40047
#define IDM_TAB 40049
#define IDM_KEY_RENAME 40051
#define IDM_EXPORT 40064
#define IDM_IMPORT 40066
#define IDM_SELECT 40069
#define IDM_VALUE_RENAME 40071
#define IDM_OPTIONS 40074
#define IDM_CLOSE 40076
#define IDM_EXIT_KEY 40077
#define IDM_KEY_CUT 40081
#define IDM_KEY_COPY 40083
#define IDM_VALUE_CUT 40085
#define IDM_VALUE_COPY 40087
#define IDM_KEY_REFRESH 40089
#define IDM_TAB_KEY 40090
#define IDM_DELETE_KEY 40092
#define IDM_BACK_TAB_KEY 40095
#define IDM_VALUE_REFRESH 40099
#define IDM_VALUE_PASTE 40111
#define IDM_KEY_PASTE 40114
#define IDM_KEY_PASTE_CONTEXT 40116
#define IDM_KEY_COPY_NAME 40118
#define IDM_REGISTRY_REFRESH 40121
#define IDM_VALUE_EDIT_BINARY 40125
#define IDM_REFRESH_KEY 40129
#define IDM_NEW_CUSTOM 40132
#define IDM_SEARCH_DIALOG_FIND_ALL 40139
#define IDM_SEARCH_SHOW_RESULTS 40143
#define IDM_SEARCH_SHOW_RESULTS_KEY 40144
#define IDM_SEARCH_PAUSE 40147
#define IDM_SEARCH_TOOLBAR 40149
#define IDM_SEARCH_STOP 40152
#define IDM_BOOKMARK_OPEN 40154
#define IDM_BOOKMARK_ADD 40158
#define IDM_BOOKMARK_EDIT 40159
#define IDM_BOOKMARK_DELETE 40160
#define IDM_BOOKMARKS 40162
#define IDM_KEY_ADD_BOOKMARK 40169
// "Go To..." in the Key menu.
#define IDM_GO_TO 40180

// --- Controls -----------------------------------------------------------------
#define IDC_STATIC (-1)

// Value editor (103).
#define IDC_VALUE_NAME 1001
#define IDC_VALUE_STRING 1002
#define IDC_VALUE_DWORD 1003
#define IDC_BASE_LABEL 1004
#define IDC_BASE_DECIMAL 1005
#define IDC_BASE_HEX 1006
#define IDC_VALUE_MULTI_STRING 1011
#define IDC_HEX_EDIT 1032
#define IDC_TYPE_LINE 1038
#define IDC_VALUE_NAME_LABEL 1045
#define IDC_VALUE_LABEL 1046
#define IDC_CUSTOM_TYPE 1053
#define IDC_CUSTOM_TYPE_LABEL 1054

// Key dialogs (113, 126).
#define IDC_PARENT_KEY 1012
#define IDC_KEY_NAME 1013
#define IDC_KEY_CLASS 1014
#define IDC_PARENT_KEY_LABEL 1042
#define IDC_KEY_NAME_LABEL 1043
#define IDC_KEY_CLASS_LABEL 1044

// Search dialog (114).
#define IDC_SEARCH_TEXT 1016
#define IDC_SEARCH_KEY_NAMES 1017
#define IDC_SEARCH_VALUE_NAMES 1018
#define IDC_SEARCH_VALUE_DATA 1019
#define IDC_SEARCH_WHOLE_STRING 1020
#define IDC_SEARCH_STRINGS 1021
#define IDC_SEARCH_DWORDS 1022
#define IDC_SEARCH_BINARY 1023
#define IDC_SEARCH_CASE_SENSITIVE 1024
#define IDC_SEARCH_MULTI_STRINGS 1025

// Progress dialog (116).
#define IDC_PROGRESS_TEXT 1025

// File selection (117).
#define IDC_FILE_LIST 1026
#define IDC_FILE_NAME 1027
#define IDC_FILE_LOCATION 1039

// Export options (120).
#define IDC_EXPORT_ENTIRE 1029
#define IDC_EXPORT_BRANCH 1030
#define IDC_EXPORT_UNICODE 1031
#define IDC_EXPORT_FILE 1033

// Options pages (127, 128).
#define IDC_IMPORT_NO_HEADER_CHECK 1048
#define IDC_SAVE_POSITION 1049
#define IDC_SHOW_SEARCH_TOOLBAR 1050
#define IDC_ASSOCIATION_INSTALL 1057
#define IDC_ASSOCIATION_REMOVE 1058

// Bookmarks (139, 143).
#define IDC_BOOKMARK_LIST 1055
#define IDC_BOOKMARK_LOCATION 1056

// Go To (150): the path, and the list of recent paths or of the offered
// completions with its label.
#define IDC_GO_TO_PATH 1070
#define IDC_GO_TO_LIST 1071
#define IDC_GO_TO_LIST_LABEL 1072

// About (102).
#define IDC_ABOUT_VERSION 1060

// Import preview.
#define IDD_IMPORT_PREVIEW 160
#define IDR_IMPORT_PREVIEW_MENU 161
#define IDR_IMPORT_PREVIEW_MENUBAR 3020
#define IDS_KEY_IMPORT 220
#define IDM_IMPORT_PREVIEW 40300
#define IDM_PREVIEW_IMPORT 40301
#define IDC_PREVIEW_LIST 1080
#define IDC_PREVIEW_BASE 1081
