#pragma once

#include "base/WinTypes.h"

// What the main window's menu items depend on, gathered when a menu opens.
struct SMenuContext {
    bool keySelected = false;
    // The selected key is a root key (empty path).
    bool rootKey = false;
    bool valueSelected = false;
    bool resultsVisible = false;
    bool searching = false;
    bool searchPaused = false;
    bool resultsExist = false;
    // The search engine holds a search that "Find Next" can continue.
    bool searchUnfinished = false;
    // The internal clipboard: 0 empty, 1 or 2 values, 3 or 4 a key.
    int clipboardKind = 0;
    bool toolbarVisible = false;
    // The option that allows the search toolbar.
    bool toolbarAllowed = true;
};

struct SMenuItemState {
    bool enabled = true;
    // The item's new text, or null to keep it.
    LPCWSTR label = nullptr;
};

// The state of one of the main window's commands; false for an id whose
// item the main window leaves as it is.
bool GetMenuItemState(UINT command, const SMenuContext& context, SMenuItemState& state);

// The main window's soft-key bar: a menu or a menu-bar resource.
struct SSoftKeyBarChoice {
    UINT resourceId = 0;
    bool isMenuBarResource = false;
};

// A Smartphone before 5.00 takes the menu-bar resource ("Tab" and "Menu");
// other systems before 5.00 the menu with the top-level "Search", "Registry"
// and "Tools"; from 5.00 on, the menu with "Tab" and a "Menu" pop-up.
SSoftKeyBarChoice ChooseMainSoftKeyBar(bool isSmartphone, DWORD packedOsVersion);
