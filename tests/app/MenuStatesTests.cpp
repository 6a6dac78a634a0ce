#include <gtest/gtest.h>

#include <vector>

#include "app/MenuStates.h"
#include "resources/resource.h"
#include "tests/support/TestText.h"

namespace {

bool Enabled(UINT command, const SMenuContext& context)
{
    SMenuItemState state;
    EXPECT_TRUE(GetMenuItemState(command, context, state)) << command;
    return state.enabled;
}

const std::vector<UINT> kKeyCommands = {IDM_KEY_PROPERTIES, IDM_KEY_NEW,       IDM_KEY_COPY_NAME,
                                        IDM_KEY_ADD_BOOKMARK, IDM_VALUE_REFRESH, IDM_NEW_STRING,
                                        IDM_NEW_EXPAND_STRING, IDM_NEW_DWORD,    IDM_NEW_BINARY,
                                        IDM_NEW_MULTI_STRING, IDM_NEW_CUSTOM};
const std::vector<UINT> kNonRootKeyCommands = {IDM_KEY_RENAME, IDM_KEY_DELETE, IDM_KEY_CUT, IDM_KEY_COPY};
const std::vector<UINT> kValueCommands = {IDM_VALUE_EDIT,   IDM_VALUE_EDIT_BINARY, IDM_VALUE_DELETE,
                                          IDM_VALUE_RENAME, IDM_VALUE_CUT,         IDM_VALUE_COPY};

TEST(MenuStates, KeyAndValueCommandsFollowTheSelection)
{
    const struct {
        const char* name;
        bool key, root, value, results;
        bool keyItems, nonRootItems, valueItems;
    } cases[] = {
        {"nothing", false, false, false, false, false, false, false},
        {"root key", true, true, false, false, true, false, false},
        {"key and value", true, false, true, false, true, true, true},
        {"results shown", true, false, true, true, false, false, false},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        SMenuContext context;
        context.keySelected = item.key;
        context.rootKey = item.root;
        context.valueSelected = item.value;
        context.resultsVisible = item.results;
        for (const UINT command : kKeyCommands)
            EXPECT_EQ(Enabled(command, context), item.keyItems) << command;
        for (const UINT command : kNonRootKeyCommands)
            EXPECT_EQ(Enabled(command, context), item.nonRootItems) << command;
        for (const UINT command : kValueCommands)
            EXPECT_EQ(Enabled(command, context), item.valueItems) << command;
        for (const UINT command : {IDM_IMPORT, IDM_EXPORT, IDM_REGISTRY_REFRESH, IDM_KEY_REFRESH})
            EXPECT_EQ(Enabled(command, context), !item.results) << command;
    }
}

TEST(MenuStates, PasteDependsOnWhatTheClipboardHolds)
{
    SMenuContext context;
    context.keySelected = true;
    for (int kind = 0; kind <= 4; ++kind) {
        SCOPED_TRACE(kind);
        context.clipboardKind = kind;
        EXPECT_EQ(Enabled(IDM_KEY_PASTE, context), kind != 0);
        EXPECT_EQ(Enabled(IDM_KEY_PASTE_CONTEXT, context), kind != 0);
        EXPECT_EQ(Enabled(IDM_VALUE_PASTE, context), kind == 1 || kind == 2);
    }
    context.keySelected = false;
    EXPECT_FALSE(Enabled(IDM_KEY_PASTE, context));
}

// The window's search menu tests cover the labels and the usual states;
// these are the states it cannot reach at will.
TEST(MenuStates, SearchItemsFollowTheSearchAndTheResultsWindow)
{
    SMenuContext context;
    EXPECT_FALSE(Enabled(IDM_SEARCH_FIND_NEXT, context));
    EXPECT_FALSE(Enabled(IDM_SEARCH_TOOLBAR, context)) << "no results yet";
    context.searchUnfinished = true;
    EXPECT_TRUE(Enabled(IDM_SEARCH_FIND_NEXT, context));
    context.searching = true;
    EXPECT_FALSE(Enabled(IDM_SEARCH_FIND_NEXT, context));
    context.resultsExist = true;
    SMenuItemState state;
    ASSERT_TRUE(GetMenuItemState(IDM_SEARCH_SHOW_RESULTS, context, state));
    EXPECT_TRUE(state.enabled) << "the results can be shown again";
    EXPECT_EQ(CString(state.label), W("Show Search Results"));
    EXPECT_TRUE(Enabled(IDM_SEARCH_TOOLBAR, context));
    EXPECT_FALSE(GetMenuItemState(IDM_ABOUT, context, state));
}

TEST(MenuStates, TheSoftKeyBarFollowsTheFlavourAndVersion)
{
    const struct {
        bool smartphone;
        DWORD version;
        UINT id;
        bool isResource;
    } cases[] = {
        {true, 0x0420, IDR_MAIN_MENUBAR, true},
        {false, 0x0420, IDR_MAIN_MENU_OLD, false},
        {true, 0x0500, IDR_MAIN_MENU, false},
        {false, 0x0501, IDR_MAIN_MENU, false},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(testing::Message() << item.smartphone << " " << item.version);
        const SSoftKeyBarChoice choice = ChooseMainSoftKeyBar(item.smartphone, item.version);
        EXPECT_EQ(choice.resourceId, item.id);
        EXPECT_EQ(choice.isMenuBarResource, item.isResource);
    }
}

}  // namespace
