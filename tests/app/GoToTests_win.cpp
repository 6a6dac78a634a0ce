#include <gtest/gtest.h>

#include <string>

#include "registry/RegKey.h"
#include "settings/Settings.h"
#include "tests/app/MainWndTestSupport_win.h"
#include "tests/support/ScratchKey.h"

namespace {

// The scratch key below, as CScratchKey places it.
#define SCRATCH "Software\\QuendaTests\\GoTo"

// "Go To" from the Key menu, with no recent paths in the settings at first.
class GoToTest : public MainWndTest {
protected:
    void SetUp() override
    {
        for (LPCWSTR path : {TEXT("Alpha\\Inner"), TEXT("alps")}) {
            CShdRegKey key;
            ASSERT_TRUE(key.Create(m_scratch.Handle(), path, nullptr) && key.WriteString(TEXT("v"), path));
        }
        Settings().SetRecentGoToPaths({});
        Settings().SetLastPosition(0, TEXT(""), TEXT(""), false);
        Open();
    }

    // "text [offer|offer|]"
    static std::string Shown(HWND dialog)
    {
        const HWND list = GetDlgItem(dialog, IDC_GO_TO_LIST);
        std::string shown = ToUtf8(ItemText(dialog, IDC_GO_TO_PATH)) + " [";
        for (int index = 0; index < SendMessageW(list, LB_GETCOUNT, 0, 0); ++index) {
            WCHAR text[300] = {};
            SendMessageW(list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text));
            shown += ToUtf8(text) + "|";
        }
        return shown + "]";
    }
    CScratchKey m_scratch{TEXT("GoTo")};
};

TEST_F(GoToTest, PathsLeadToTheirKeyOrStayWithAMessageAndTheRecentOnesOutliveARestart)
{
    // Each case types a path, takes the offer that many Down keys highlight
    // (with OK), and presses OK.
    const struct {
        const char *typed, *shown, *message, *where;  // where: the key selected, and its number of values
        int downs;
    } cases[] = {
        {"HKEY_CURRENT_USER\\" SCRATCH "\\Alpha\\Inner", "HKEY_CURRENT_USER\\" SCRATCH "\\Alpha\\Inner [Inner|]", "",
         "HKCU\\" SCRATCH "\\Alpha\\Inner 1", 0},
        {"Computer\\hkcu\\" SCRATCH "\\ALPHA\\", "Computer\\hkcu\\" SCRATCH "\\ALPHA\\ [Inner|]", "",
         "HKCU\\" SCRATCH "\\Alpha 0", 0},
        {"HKCU\\" SCRATCH "\\Alpha\\Missing", "HKCU\\" SCRATCH "\\Alpha\\Missing []",
         "\"HKEY_CURRENT_USER\\" SCRATCH "\\Alpha\" has no subkey \"Missing\".", "", 0},
        {"hkcu\\" SCRATCH "\\al", "hkcu\\" SCRATCH "\\al [Alpha|alps|]", "", "HKCU\\" SCRATCH "\\alps 1", 2},
    };
    for (const auto& c : cases) {
        m_messages.clear();
        std::string shown;
        std::string stayed;
        ASSERT_TRUE(RunDialog(IDM_GO_TO, L"Go To",
                              {[&](HWND dialog) {
                                   SetDlgItemTextW(dialog, IDC_GO_TO_PATH, W(c.typed));
                                   shown = Shown(dialog);
                                   for (int down = 0; down < c.downs; ++down)
                                       SendDlgItemMessageW(dialog, IDC_GO_TO_PATH, WM_KEYDOWN, VK_DOWN, 0);
                                   if (c.downs > 0)
                                       SendMessageW(dialog, WM_COMMAND, IDOK, 0);
                                   SendMessageW(dialog, WM_COMMAND, IDOK, 0);
                               },
                               [&](HWND dialog) { stayed = Shown(dialog); }}));
        EXPECT_EQ(shown, c.shown);
        EXPECT_EQ(m_messages.empty() ? "" : m_messages.back(), c.message);
        const std::string where = Selection() + " " + std::to_string(ListView_GetItemCount(m_list));
        EXPECT_EQ(stayed.empty() ? where : stayed, *c.where != 0 ? c.where : c.shown) << "open, with the text";
    }

    // A restart reads the recent paths back, and the dialog offers them.
    Settings().Load();
    Open();
    std::string recent;
    RunDialog(IDM_GO_TO, L"Go To", {[&](HWND dialog) { recent = Shown(dialog); }});
    EXPECT_EQ(recent, " [HKEY_CURRENT_USER\\" SCRATCH "\\alps|HKEY_CURRENT_USER\\" SCRATCH
                      "\\ALPHA|HKEY_CURRENT_USER\\" SCRATCH "\\Alpha\\Inner|]");
}

}  // namespace

