#include <gtest/gtest.h>

#include <memory>

#include "platform/FaultInjectingPlatform.h"
#include "framework/MessageBox.h"
#include "framework/Text.h"
#include "regfile/FileJobs_win.h"
#include "registry/RegKey.h"
#include "resources/resource.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"
#include "tests/ui/FileDialogTestSupport.h"
#include "tests/ui/UiTestSupport.h"

namespace {

// Holds the worker when it opens the key `m_pauseAt`, until any event is
// set (the cancel, say) or `m_pauseLimit` milliseconds pass (never forever:
// a job that is not cancelled then goes on, and the test fails); notes the root
// of the first key the worker opens.
class CPausingPlatform : public CFaultInjectingPlatform {
public:
    CPausingPlatform() : m_go(SystemPlatform().CreateEventW(TRUE, FALSE)) {}
    ~CPausingPlatform() override { SystemPlatform().CloseHandle(m_go); }

    LONG RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result) override
    {
        if (m_firstParent == nullptr)
            m_firstParent = parent;
        if (!m_pauseAt.IsEmpty() && (m_pauseAt == L"*" || CompareNoCase(subKey, m_pauseAt) == 0))
            SystemPlatform().WaitForSingleObject(m_go, m_pauseLimit);
        return CFaultInjectingPlatform::RegOpenKeyExW(parent, subKey, options, sam, result);
    }
    BOOL SetEvent(HANDLE event) override
    {
        SystemPlatform().SetEvent(m_go);
        return CFaultInjectingPlatform::SetEvent(event);
    }

    CString m_pauseAt;
    DWORD m_pauseLimit = 10000;
    HKEY m_firstParent = nullptr;

private:
    HANDLE m_go;
};

// Sees the progress box come and go through a hook on the thread's window
// procedure calls.
class CProgressWatch {
public:
    CProgressWatch()
    {
        s_watch = this;
        m_hook = SetWindowsHookExW(WH_CALLWNDPROC, OnCall, nullptr, GetCurrentThreadId());
    }
    ~CProgressWatch()
    {
        UnhookWindowsHookEx(m_hook);
        s_watch = nullptr;
    }
    CProgressWatch(const CProgressWatch&) = delete;
    CProgressWatch& operator=(const CProgressWatch&) = delete;

    // The box, when it is on the screen.
    static HWND Visible()
    {
        const HWND box = FindDialog(L"Quenda");
        return box != nullptr && IsWindowVisible(box) && GetDlgItem(box, IDC_PROGRESS_TEXT) != nullptr ? box : nullptr;
    }

    int m_created = 0;
    int m_shown = 0;

private:
    static LRESULT CALLBACK OnCall(int code, WPARAM wParam, LPARAM lParam)
    {
        const CWPSTRUCT& call = *reinterpret_cast<const CWPSTRUCT*>(lParam);
        if (code == HC_ACTION && s_watch != nullptr && GetDlgItem(call.hwnd, IDC_PROGRESS_TEXT) != nullptr) {
            if (call.message == WM_INITDIALOG)
                ++s_watch->m_created;
            if (call.message == WM_SHOWWINDOW && call.wParam)
                ++s_watch->m_shown;
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static CProgressWatch* s_watch;
    HHOOK m_hook = nullptr;
};

CProgressWatch* CProgressWatch::s_watch = nullptr;

struct SMessage {
    CString text;
    UINT flags;
};

class FileJobsTest : public ::testing::Test {
protected:
    FileJobsTest()
        : m_scoped(m_platform),
          m_scratch(L"Jobs"),
          m_folder("h6-jobs", {}, {}),
          m_answerer([this](HWND, LPCWSTR text, UINT flags) {
              m_messages.push_back({text, flags});
              for (auto answer = m_answers.rbegin(); answer != m_answers.rend(); ++answer) {
                  if (answer->first == text)
                      return answer->second;
              }
              return IDOK;
          })
    {
        CShdRegKey key;
        EXPECT_TRUE(key.Create(m_scratch.Handle(), L"a", nullptr));
        EXPECT_TRUE(key.WriteString(L"name", L"value"));
        key.Close(false);
        EXPECT_TRUE(key.Create(m_scratch.Handle(), L"b", nullptr));
        key.Close(false);
        SetFileDialogStart(m_folder.Path());
    }

    CString Out() const { return m_folder.PathOf("out.reg"); }
    std::vector<CString> Texts() const
    {
        std::vector<CString> texts;
        for (const SMessage& message : m_messages)
            texts.push_back(message.text);
        return texts;
    }
    // Exactly one message was shown, this one.
    void ExpectOnlyMessage(const char* text, UINT flags) const
    {
        ASSERT_EQ(m_messages.size(), 1u) << text;
        EXPECT_EQ(m_messages[0].text, W(text));
        EXPECT_EQ(m_messages[0].flags, flags);
    }
    std::string Header() const { return "\xFF\xFE" + Utf16Text("Windows Registry Editor Version 5.00\n\n"); }
    std::string KeyLine(const char* below) const
    {
        const std::string path = "[HKEY_CURRENT_USER\\Software\\QuendaTests\\Jobs" + std::string(below) + "]\n";
        return Utf16Text(path.c_str());
    }
    // Clicks Cancel in the progress box once it shows, noting whether the
    // owner was disabled meanwhile.
    void CancelWhenShown(std::unique_ptr<CModalScript>& waiter)
    {
        waiter.reset(new CModalScript([] { return CProgressWatch::Visible() != nullptr; },
                                    [this] {
                                        const HWND box = CProgressWatch::Visible();
                                        m_progressText = CShdWnd::GetWindowTextOr(
                                            GetDlgItem(box, IDC_PROGRESS_TEXT), L"");
                                        m_ownerWasEnabled = IsWindowEnabled(m_owner.GetHwnd()) != FALSE;
                                        SendMessageW(box, WM_COMMAND, IDCANCEL, 0);
                                    }));
    }
    // The file dialog takes `name`.
    static std::function<void()> Choose(const wchar_t* name)
    {
        return [=] {
            const HWND dialog = FindDialog(L"Select File");
            ASSERT_NE(dialog, nullptr);
            SetDlgItemTextW(dialog, IDC_FILE_NAME, name);
            SendMessageW(dialog, WM_COMMAND, IDM_SELECT, 0);
        };
    }
    // The export options then keep their presets or, with `entireRegistry`,
    // switch to the whole registry.
    std::vector<std::function<void()>> ChooseAndConfirm(const wchar_t* name, bool entireRegistry)
    {
        return {Choose(name),
                [=] {
                    const HWND dialog = FindDialog(L"Export Options");
                    if (dialog == nullptr)
                        return;  // the overwrite question stopped it
                    EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_EXPORT_BRANCH), BST_CHECKED);
                    EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_EXPORT_ENTIRE), BST_UNCHECKED);
                    EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_EXPORT_UNICODE), BST_CHECKED);
                    EXPECT_EQ(CShdWnd::GetWindowTextOr(GetDlgItem(dialog, IDC_EXPORT_FILE), L""), Out());
                    if (entireRegistry)
                        SendMessageW(GetDlgItem(dialog, IDC_EXPORT_ENTIRE), BM_CLICK, 0, 0);
                    SendMessageW(dialog, WM_COMMAND, IDOK, 0);
                }};
    }

    CPausingPlatform m_platform;
    CScopedPlatform m_scoped;
    CScratchKey m_scratch;
    CTestFolder m_folder;
    CTestFrame m_owner;
    std::vector<SMessage> m_messages;
    // The button chosen for a question (the latest given); OK for any other
    // message.
    std::vector<std::pair<CString, int>> m_answers;
    CScopedMessageAnswerer m_answerer;
    CString m_progressText;
    bool m_ownerWasEnabled = true;
};

TEST_F(FileJobsTest, AQuickExportShowsOnlyItsResult)
{
    // A job of a quarter of a second: long enough for a box shown at once to
    // appear, short of the delay after which it is shown.
    m_platform.m_pauseAt = L"a";
    m_platform.m_pauseLimit = 250;
    CProgressWatch watch;
    CModalScript script(ChooseAndConfirm(L"out", false));
    ExportCommand(m_owner.GetHwnd(), HKEY_CURRENT_USER, m_scratch.Path());
    EXPECT_TRUE(script.Finished());
    EXPECT_EQ(watch.m_created, 1);
    EXPECT_EQ(watch.m_shown, 0);
    ExpectOnlyMessage("Registry export finished successfully.", 0x10040);
    EXPECT_EQ(FileBytes(Out()), Header() + KeyLine("") + Utf16Text("\n") + KeyLine("\\a") +
                                    Utf16Text("\"name\"=\"value\"\n\n") + KeyLine("\\b") + Utf16Text("\n"));
    EXPECT_TRUE(IsWindowEnabled(m_owner.GetHwnd()));
}

TEST_F(FileJobsTest, AnExistingFileIsOverwrittenOnlyAfterAYes)
{
    ASSERT_TRUE(WriteFileBytes(Out(), "keep"));
    m_answers.push_back({L"File with that name already exists. Do you want to overwrite it?", IDNO});
    {
        CModalScript script(ChooseAndConfirm(L"OUT.reg", false));
        ExportCommand(m_owner.GetHwnd(), HKEY_CURRENT_USER, m_scratch.Path());
    }
    EXPECT_EQ(FileBytes(Out()), "keep");
    m_answers.push_back({L"File with that name already exists. Do you want to overwrite it?", IDYES});
    {
        CModalScript script(ChooseAndConfirm(L"out", false));
        ExportCommand(m_owner.GetHwnd(), HKEY_CURRENT_USER, m_scratch.Path());
        EXPECT_TRUE(script.Finished());
    }
    EXPECT_EQ(FileBytes(Out()).substr(0, Header().size()), Header());
    EXPECT_EQ(Texts(), std::vector<CString>({L"File with that name already exists. Do you want to overwrite it?",
                                             L"File with that name already exists. Do you want to overwrite it?",
                                             L"Registry export finished successfully."}));
    EXPECT_EQ(m_messages[0].flags, 0x10024u);
}

TEST_F(FileJobsTest, ACancelledExportKeepsItsPartialFileOnNo)
{
    m_platform.m_pauseAt = L"b";
    m_answers.push_back({L"Do you want to delete file?", IDNO});
    CProgressWatch watch;
    std::unique_ptr<CModalScript> canceller;
    CancelWhenShown(canceller);
    EXPECT_FALSE(RunExportJob(m_owner.GetHwnd(), Out(), true, HKEY_CURRENT_USER, m_scratch.Path(), false));
    EXPECT_TRUE(canceller->Finished());
    EXPECT_EQ(watch.m_shown, 1);
    EXPECT_EQ(m_progressText, W("Export in progress..."));
    EXPECT_FALSE(m_ownerWasEnabled);
    EXPECT_TRUE(IsWindowEnabled(m_owner.GetHwnd()));
    EXPECT_EQ(Texts(), std::vector<CString>({L"Do you want to delete file?"}));
    EXPECT_EQ(FileBytes(Out()), Header() + KeyLine("") + Utf16Text("\n") + KeyLine("\\a") +
                                    Utf16Text("\"name\"=\"value\"\n\n*** cancelled ***\n"));
}

TEST_F(FileJobsTest, ACancelledExportOfTheWholeRegistryDeletesItsFileOnYes)
{
    m_platform.m_pauseAt = L"*";
    m_platform.m_firstParent = nullptr;
    m_answers.push_back({L"Do you want to delete file?", IDYES});
    std::unique_ptr<CModalScript> canceller;
    CancelWhenShown(canceller);
    CModalScript script(ChooseAndConfirm(L"out", true));
    ExportCommand(m_owner.GetHwnd(), HKEY_CURRENT_USER, m_scratch.Path());
    EXPECT_TRUE(canceller->Finished());
    EXPECT_EQ(m_platform.m_firstParent, HKEY_CLASSES_ROOT) << "the whole registry starts at its first root";
    EXPECT_EQ(Texts(), std::vector<CString>({L"Do you want to delete file?"}));
    EXPECT_EQ(GetFileAttributesW(Out()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(FileJobsTest, ClosingTheProgressBoxWaitsForTheJobsResult)
{
    m_platform.m_pauseAt = L"b";
    m_platform.m_pauseLimit = 1500;
    CModalScript closer([] { return CProgressWatch::Visible() != nullptr; },
                      [] { SendMessageW(CProgressWatch::Visible(), WM_CLOSE, 0, 0); });
    EXPECT_TRUE(RunExportJob(m_owner.GetHwnd(), Out(), true, HKEY_CURRENT_USER, m_scratch.Path(), true));
    EXPECT_TRUE(closer.Finished());
    EXPECT_EQ(Texts(), std::vector<CString>({L"Registry export finished successfully."}));
}

TEST_F(FileJobsTest, AnExportThatFailsSaysSo)
{
    EXPECT_FALSE(RunExportJob(m_owner.GetHwnd(), m_folder.PathOf("missing\\out.reg"), true, HKEY_CURRENT_USER,
                              m_scratch.Path(), false));
    ExpectOnlyMessage("There were errors during exporting registry file.", 0x10030);
}

TEST_F(FileJobsTest, ImportsReportTheirOutcomeAndRefreshTheViews)
{
    const struct SCase {
        const char* text;
        const char* message;
        UINT flags;
    } cases[] = {
        {"Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\QuendaTests\\Jobs\\new]\n"
         "\"n\"=dword:00000007\n",
         "Registry import finished successfully.", 0x10040},
        {"Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\QuendaTests\\Jobs\\new]\n"
         "\"n\"=dword:00000007\n\"bad\"=nonsense\n",
         "There were errors during importing registry file. Syntax error at line 5.", 0x10030},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.message);
        m_messages.clear();
        m_owner.m_commands.clear();
        ASSERT_TRUE(WriteFileBytes(Out(), "\xFF\xFE" + Utf16Text(c.text)));
        EXPECT_EQ(RunImportJob(m_owner.GetHwnd(), Out()), c.flags == 0x10040);
        ExpectOnlyMessage(c.message, c.flags);
        EXPECT_EQ(m_owner.m_commands, std::vector<WPARAM>({IDM_REGISTRY_REFRESH}));
        CShdRegKey key;
        ASSERT_TRUE(key.Open(m_scratch.Handle(), L"new"));
        EXPECT_EQ(key.ReadDwordOr(L"n", 0), 7u);
    }
}

TEST_F(FileJobsTest, TheImportCommandChecksTheFileAndAsksFirst)
{
    {
        CModalScript script({Choose(L"none")});
        ImportCommand(m_owner.GetHwnd());
    }
    ASSERT_TRUE(WriteFileBytes(Out(), "\xFF\xFE" + Utf16Text("Windows Registry Editor Version 5.00\n\n"
                                                             "[HKEY_CURRENT_USER\\Software\\QuendaTests\\Jobs\\c]\n")));
    m_answers.push_back({L"Do you want to import registry file?", IDNO});
    {
        CModalScript script({Choose(L"out")});
        ImportCommand(m_owner.GetHwnd());
    }
    CShdRegKey key;
    EXPECT_FALSE(key.Open(m_scratch.Handle(), L"c"));
    m_answers.push_back({L"Do you want to import registry file?", IDYES});
    {
        CModalScript script({Choose(L"out.reg")});
        ImportCommand(m_owner.GetHwnd());
    }
    EXPECT_TRUE(key.Open(m_scratch.Handle(), L"c"));
    EXPECT_EQ(Texts(), std::vector<CString>({L"File does not exist.", L"Do you want to import registry file?",
                                             L"Do you want to import registry file?",
                                             L"Registry import finished successfully."}));
    EXPECT_EQ(m_messages[0].flags, 0x10030u);
}

}  // namespace
