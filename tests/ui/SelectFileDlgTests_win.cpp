#include <gtest/gtest.h>

#include "framework/DpiScale.h"
#include "framework/MessageBox_win.h"
#include "framework/SelectFileDlg_win.h"
#include "resources/resource.h"
#include "tests/support/TestText.h"
#include "tests/ui/FileDialogTestSupport_win.h"
#include "tests/ui/UiTestSupport_win.h"

namespace {

class SelectFileDlgTest : public ::testing::Test {
protected:
    SelectFileDlgTest() : m_folder("h6-select", {"temp", "Beta", "alpha"}, {"b.REG", "a.txt", "C.reg"}) {}

    HWND Dialog() const { return FindDialog(L"Select File"); }
    HWND List() const { return GetDlgItem(Dialog(), IDC_FILE_LIST); }
    CString Name() const { return CShdWnd::GetWindowTextOr(GetDlgItem(Dialog(), IDC_FILE_NAME), L"?"); }
    CString Location() const { return CShdWnd::GetWindowTextOr(GetDlgItem(Dialog(), IDC_FILE_LOCATION), L"?"); }
    void Type(LPCWSTR text) const { SetDlgItemTextW(Dialog(), IDC_FILE_NAME, text); }
    void Command(WORD id) const { SendMessageW(Dialog(), WM_COMMAND, id, 0); }
    void Key(WPARAM key) const
    {
        SetFocus(List());
        SendMessageW(List(), WM_KEYDOWN, key, 0);
        SendMessageW(List(), WM_KEYUP, key, 0);
    }

    // Runs the dialog from `start` through the steps; false when it was
    // cancelled, with `path` the outcome.
    bool Run(CString start, std::vector<std::function<void()>> steps)
    {
        steps.push_back([this] {
            if (Dialog() != nullptr)
                Command(IDCANCEL);
        });
        CModalScript script(std::move(steps));
        CSelectFileDlg dialog;
        m_path = start;
        return dialog.DoModal(m_owner.GetHwnd(), m_path);
    }

    CTestFrame m_owner;
    CTestFolder m_folder;
    CString m_path;
};

TEST_F(SelectFileDlgTest, AFileOpensItsFolderWithFoldersThenFilesSortedByName)
{
    EXPECT_FALSE(Run(m_folder.PathOf("a.txt"), {[&] {
                         ASSERT_NE(Dialog(), nullptr);
                         EXPECT_EQ(Name(), W("a.txt"));
                         const std::vector<CString> rows = {L"..",   L"alpha", L"Beta", L"temp",
                                                            L"a.txt", L"b.REG", L"C.reg"};
                         EXPECT_EQ(ListRows(List()), rows);
                         EXPECT_EQ(ListImages(List()), std::vector<int>({2, 1, 1, 1, 0, 3, 3}));
                         EXPECT_EQ(SelectedRow(List()), -1);
                         EXPECT_EQ(Location().Left(10), W("Location: "));
                         // Narrow, the location shortens; low, it goes (its style says: no dialog shows yet).
                         const HWND location = GetDlgItem(Dialog(), IDC_FILE_LOCATION);
                         const auto shown = [&] { return (GetWindowLongW(location, GWL_STYLE) & WS_VISIBLE) != 0; };
                         RECT window = {};
                         GetWindowRect(Dialog(), &window);
                         SetWindowPos(Dialog(), nullptr, 0, 0, 200, window.bottom - window.top, SWP_NOMOVE | SWP_NOZORDER);
                         EXPECT_NE(Location().Find(L"..."), -1);
                         EXPECT_EQ(Location().Right(10), W("\\h6-select"));
                         EXPECT_TRUE(shown());
                         SetWindowPos(Dialog(), nullptr, 0, 0, 200, ScaleY(150), SWP_NOMOVE | SWP_NOZORDER);
                         EXPECT_FALSE(shown());
                     }}));
}

TEST_F(SelectFileDlgTest, AMissingPathOpensTheTopWithoutAParentRow)
{
    EXPECT_FALSE(Run(m_folder.PathOf("missing\\x.reg"), {[&] {
                         ASSERT_NE(Dialog(), nullptr);
                         EXPECT_EQ(Name(), W(""));
                         EXPECT_EQ(Location(), W("Location: \\"));
                         const std::vector<CString> rows = ListRows(List());
                         ASSERT_FALSE(rows.empty());
                         EXPECT_NE(rows[0], W(".."));
                     }}));
}

TEST_F(SelectFileDlgTest, TypedNamesOfFoldersNavigateAndOthersComplete)
{
    const struct SCase {
        const char* typed;
        const char* chosen;
    } cases[] = {
        {"backup", "temp\\backup.reg"},
        {"backup.txt", "temp\\backup.txt"},
        {"..", "x.reg"},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.typed);
        EXPECT_TRUE(Run(m_folder.Path(), {[&] {
                                              Type(L"TEMP");
                                              Command(IDM_SELECT);
                                          },
                                          [&] {
                                              ASSERT_NE(Dialog(), nullptr) << "a folder's name enters it";
                                              EXPECT_EQ(ListRows(List()), std::vector<CString>({L".."}));
                                              EXPECT_EQ(SelectedRow(List()), 0);
                                              EXPECT_EQ(Name(), W(".."));
                                              Type(W(c.typed));
                                              Command(IDOK);
                                          },
                                          [&] {
                                              // ".." went up: on to a new name there.
                                              if (Dialog() == nullptr)
                                                  return;

                                              EXPECT_EQ(Name(), W("temp"));
                                              Type(L"x");
                                              Command(IDOK);
                                          }}));
        EXPECT_EQ(m_path, m_folder.PathOf(c.chosen));
    }
}

TEST_F(SelectFileDlgTest, BadNamesAreRefusedAndKeepTheDialogOpen)
{
    std::vector<CString> messages;
    std::vector<UINT> flags;
    CScopedMessageAnswerer answerer([&](HWND, LPCWSTR text, UINT f) {
        messages.push_back(text);
        flags.push_back(f);
        return IDOK;
    });
    std::vector<std::function<void()>> steps;
    for (LPCWSTR typed : {L"", L".", L"a:b", L"what?"}) {
        steps.push_back([&, typed] {
            ASSERT_NE(Dialog(), nullptr);
            Type(typed);
            Command(IDOK);
            EXPECT_EQ(Name(), CString(typed));
            EXPECT_EQ(GetFocus(), GetDlgItem(Dialog(), IDC_FILE_NAME));
        });
    }
    EXPECT_FALSE(Run(m_folder.Path(), steps));
    const CString bad = W("File name can not contain the following characters:\r\n\\/:*?\"<>|");
    EXPECT_EQ(messages, std::vector<CString>({L"File name can not be empty.", L"Invalid file name.", bad, bad}));
    EXPECT_EQ(flags, std::vector<UINT>(4, 0x10030u));
}

TEST_F(SelectFileDlgTest, KeysWalkTheListAndEnterOnAFileChoosesIt)
{
    EXPECT_TRUE(Run(m_folder.PathOf("alpha"), {[&] {
                                                   ASSERT_NE(Dialog(), nullptr);
                                                   EXPECT_EQ(ListRows(List()), std::vector<CString>({L".."}));
                                                   Key(VK_DOWN);
                                                   EXPECT_EQ(SelectedRow(List()), 0) << "focus selects the first row";
                                                   Key(VK_RETURN);
                                               },
                                               [&] {
                                                   ASSERT_NE(Dialog(), nullptr);
                                                   EXPECT_EQ(Name(), W("alpha")) << "the folder left is selected";
                                                   EXPECT_EQ(SelectedRow(List()), 1);
                                                   Key(VK_END);
                                                   EXPECT_EQ(Name(), W("C.reg"));
                                                   Key(VK_DOWN);
                                               },
                                               [&] {
                                                   // Down on the last row moved on to the next control.
                                                   EXPECT_NE(GetFocus(), List());
                                                   Key(VK_RETURN);
                                               }}));
    EXPECT_EQ(m_path, m_folder.PathOf("C.reg"));
}

TEST(SpecialFolders, ResolveToExistingFolders)
{
    for (int index = 0; index < 5; ++index) {
        const CString folder = ResolveSpecialFolder(index, CString());
        SCOPED_TRACE(folder);
        const DWORD attributes = GetFileAttributesW(folder);
        ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
        EXPECT_TRUE(attributes & FILE_ATTRIBUTE_DIRECTORY);
    }
    EXPECT_EQ(ResolveSpecialFolder(5, CString()), W(""));
}

}  // namespace
