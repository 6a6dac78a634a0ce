#include "app/MenuStates.h"

#include <initializer_list>

#include "framework/SystemInfo.h"
#include "resources/resource.h"

namespace {

bool IsOneOf(UINT command, std::initializer_list<UINT> commands)
{
    for (const UINT candidate : commands) {
        if (candidate == command)
            return true;
    }
    return false;
}

bool ClipboardHoldsValues(int kind)
{
    return kind == 1 || kind == 2;
}

}  // namespace

bool GetMenuItemState(UINT command, const SMenuContext& context, SMenuItemState& state)
{
    state = SMenuItemState();
    const bool onKey = context.keySelected && !context.resultsVisible;
    if (command == IDM_SEARCH_FIND_NEXT) {
        state.enabled = context.searchUnfinished && !context.resultsVisible && !context.searching;
    } else if (command == IDM_SEARCH_START) {
        state.enabled = !context.searching;
    } else if (command == IDM_SEARCH_STOP) {
        state.enabled = context.searching;
    } else if (command == IDM_SEARCH_PAUSE) {
        state.enabled = context.searching;
        state.label = context.searchPaused ? TEXT("Resume Search") : TEXT("Pause Search");
    } else if (IsOneOf(command, {IDM_KEY_PROPERTIES, IDM_KEY_NEW, IDM_KEY_COPY_NAME, IDM_KEY_ADD_BOOKMARK,
                                 IDM_VALUE_REFRESH, IDM_NEW_STRING, IDM_NEW_EXPAND_STRING, IDM_NEW_DWORD,
                                 IDM_NEW_BINARY, IDM_NEW_MULTI_STRING, IDM_NEW_CUSTOM})) {
        state.enabled = onKey;
    } else if (IsOneOf(command, {IDM_KEY_RENAME, IDM_KEY_DELETE, IDM_KEY_CUT, IDM_KEY_COPY})) {
        state.enabled = onKey && !context.rootKey;
    } else if (IsOneOf(command, {IDM_VALUE_EDIT, IDM_VALUE_EDIT_BINARY, IDM_VALUE_DELETE, IDM_VALUE_RENAME,
                                 IDM_VALUE_CUT, IDM_VALUE_COPY})) {
        state.enabled = context.valueSelected && !context.resultsVisible;
    } else if (IsOneOf(command, {IDM_KEY_PASTE, IDM_KEY_PASTE_CONTEXT})) {
        state.enabled = onKey && context.clipboardKind != 0;
    } else if (command == IDM_VALUE_PASTE) {
        state.enabled = onKey && ClipboardHoldsValues(context.clipboardKind);
    } else if (IsOneOf(command, {IDM_REGISTRY_REFRESH, IDM_IMPORT, IDM_IMPORT_PREVIEW, IDM_EXPORT, IDM_KEY_REFRESH, IDM_GO_TO})) {
        state.enabled = !context.resultsVisible;
    } else if (command == IDM_SEARCH_SHOW_RESULTS) {
        state.enabled = context.resultsVisible || context.resultsExist;
        state.label = context.resultsVisible ? TEXT("Show Main Window") : TEXT("Show Search Results");
    } else if (command == IDM_SEARCH_TOOLBAR) {
        state.label = context.toolbarVisible ? TEXT("Hide Search Toolbar") : TEXT("Show Search Toolbar");
        if (!context.toolbarVisible && !context.resultsVisible && !context.resultsExist)
            state.enabled = false;
        else
            state.enabled = context.toolbarAllowed;
    } else {
        return false;
    }
    return true;
}

SSoftKeyBarChoice ChooseMainSoftKeyBar(bool isSmartphone, DWORD packedOsVersion)
{
    SSoftKeyBarChoice choice;
    if (UsesMenuBarResource(isSmartphone, packedOsVersion)) {
        choice.resourceId = IDR_MAIN_MENUBAR;
        choice.isMenuBarResource = true;
    } else {
        choice.resourceId = packedOsVersion < kMenuBarsFromMenusVersion ? IDR_MAIN_MENU_OLD : IDR_MAIN_MENU;
    }
    return choice;
}
