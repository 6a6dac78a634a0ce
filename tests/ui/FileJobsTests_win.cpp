#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <set>

#include "base/Text.h"
#include "framework/MessageBox_win.h"
#include "platform/FaultInjectingPlatform.h"
#include "regfile/FileJobs_win.h"
#include "regfile/ImportPreviewDlg_win.h"
#include "regfile/RegImportRun.h"
#include "registry/RegKey.h"
#include "resources/resource.h"
#include "tests/support/ImportPreviewCases.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestText.h"
#include "tests/ui/FileDialogTestSupport_win.h"
#include "tests/ui/UiTestSupport_win.h"

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

// How often the progress box was made and shown, seen through a hook on the
// thread's window procedure calls.
int g_progressMade = 0;
int g_progressShown = 0;

LRESULT CALLBACK WatchProgress(int code, WPARAM wParam, LPARAM lParam)
{
    const CWPSTRUCT& call = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && GetDlgItem(call.hwnd, IDC_PROGRESS_TEXT) != nullptr) {
        g_progressMade += call.message == WM_INITDIALOG;
        g_progressShown += call.message == WM_SHOWWINDOW && call.wParam;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// The progress box, when it is on the screen.
HWND VisibleProgress()
{
    const HWND box = FindDialog(L"Quenda");
    return box != nullptr && IsWindowVisible(box) && GetDlgItem(box, IDC_PROGRESS_TEXT) != nullptr ? box : nullptr;
}

class FileJobsTest : public ::testing::Test {
protected:
    FileJobsTest()
        : m_scoped(m_platform), m_scratch(L"Jobs"), m_folder("h6-jobs", {}, {}),
          m_answerer([this](HWND, LPCWSTR text, UINT flags) {
              m_messages.push_back(ToUtf8(CString::Formatted(L"%s|%x", text, flags)));
              for (auto answer = m_answers.rbegin(); answer != m_answers.rend(); ++answer) {
                  if (answer->first == text)
                      return answer->second;
              }
              return IDOK;
          })
    {
        CShdRegKey key;
        EXPECT_TRUE(key.Create(m_scratch.Handle(), L"a", nullptr) && key.WriteString(L"name", L"value"));
        key.Close(false);
        EXPECT_TRUE(key.Create(m_scratch.Handle(), L"b", nullptr));
        key.Close(false);
        SetFileDialogStart(m_folder.Path());
        g_progressMade = g_progressShown = 0;
    }
    ~FileJobsTest() override { UnhookWindowsHookEx(m_hook); }

    CString Out() const { return m_folder.PathOf("out.reg"); }
    std::string OutBytes() const { return ReadFileBytes(ToUtf8(Out())); }
    void WriteOut(const char* text) const { std::ofstream(ToUtf8(Out()), std::ios::binary) << Utf16FileBytes(text, true); }
    // The export of the scratch key as far as `b`'s line (with its blank
    // line unless cut short), then `tail`.
    static std::string Exported(bool throughB, const char* tail)
    {
        const std::string key = "[HKEY_CURRENT_USER\\Software\\QuendaTests\\Jobs";
        return Utf16FileBytes("Windows Registry Editor Version 5.00\n\n" + key + "]\n\n" + key +
                                  "\\a]\n\"name\"=\"value\"\n\n" + (throughB ? key + "\\b]\n\n" : "") + tail,
                              true);
    }
    // Clicks Cancel in the progress box once it shows, noting whether the
    // owner was disabled meanwhile.
    std::unique_ptr<CModalScript> CancelWhenShown()
    {
        return std::make_unique<CModalScript>([] { return VisibleProgress() != nullptr; },
                                              [this] {
                                                  const HWND box = VisibleProgress();
                                                  m_progressText = CShdWnd::GetWindowTextOr(
                                                      GetDlgItem(box, IDC_PROGRESS_TEXT), L"");
                                                  m_ownerWasEnabled = IsWindowEnabled(m_owner.GetHwnd()) != FALSE;
                                                  SendMessageW(box, WM_COMMAND, IDCANCEL, 0);
                                              });
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
    // Export... to `name`: the export options then keep their presets or,
    // with `entireRegistry`, switch to the whole registry. False when the
    // options never showed.
    bool Export(const wchar_t* name, bool entireRegistry)
    {
        CModalScript script({Choose(name), [=] {
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
                             }});
        ExportCommand(m_owner.GetHwnd(), HKEY_CURRENT_USER, m_scratch.Path());
        return script.Finished();
    }

    HHOOK m_hook = SetWindowsHookExW(WH_CALLWNDPROC, WatchProgress, nullptr, GetCurrentThreadId());
    CPausingPlatform m_platform;
    CScopedPlatform m_scoped;
    CScratchKey m_scratch;
    CTestFolder m_folder;
    CTestFrame m_owner;
    // "text|flags" of each message shown.
    std::vector<std::string> m_messages;
    // The button chosen for a question (the latest given); OK for any other
    // message.
    std::vector<std::pair<CString, int>> m_answers;
    CScopedMessageAnswerer m_answerer;
    CString m_progressText;
    bool m_ownerWasEnabled = true;
};

using Messages = std::vector<std::string>;
const char kOverwrite[] = "File with that name already exists. Do you want to overwrite it?";
const char kExported[] = "Registry export finished successfully.|10040";

// An existing file is overwritten only after a Yes. That export is a job of
// a quarter of a second: long enough for a box shown at once to appear,
// short of the delay after which it is shown; only its result shows.
TEST_F(FileJobsTest, AQuickExportOverAnExistingFileShowsOnlyItsResult)
{
    m_platform.m_pauseAt = L"a";
    m_platform.m_pauseLimit = 250;
    std::ofstream(ToUtf8(Out()), std::ios::binary) << "keep";
    for (const int answer : {IDNO, IDYES}) {
        m_answers.push_back({W(kOverwrite), answer});
        EXPECT_EQ(Export(answer == IDNO ? L"OUT.reg" : L"out", false), answer == IDYES);
        EXPECT_EQ(OutBytes() == "keep", answer == IDNO);
    }
    EXPECT_EQ(g_progressMade, 1);
    EXPECT_EQ(g_progressShown, 0);
    EXPECT_EQ(OutBytes(), Exported(true, ""));
    const std::string question = kOverwrite + std::string("|10024");
    EXPECT_EQ(m_messages, (Messages{question, question, kExported}));
    EXPECT_TRUE(IsWindowEnabled(m_owner.GetHwnd()));
}

TEST_F(FileJobsTest, ACancelledExportKeepsItsPartialFileOnNo)
{
    m_platform.m_pauseAt = L"b";
    m_answers.push_back({L"Do you want to delete file?", IDNO});
    const std::unique_ptr<CModalScript> canceller = CancelWhenShown();
    EXPECT_FALSE(RunExportJob(m_owner.GetHwnd(), Out(), true, HKEY_CURRENT_USER, m_scratch.Path(), false));
    EXPECT_TRUE(canceller->Finished());
    EXPECT_EQ(g_progressShown, 1);
    EXPECT_EQ(m_progressText, W("Export in progress..."));
    EXPECT_FALSE(m_ownerWasEnabled);
    EXPECT_TRUE(IsWindowEnabled(m_owner.GetHwnd()));
    EXPECT_EQ(m_messages, Messages{"Do you want to delete file?|10024"});
    EXPECT_EQ(OutBytes(), Exported(false, "*** cancelled ***\n"));
}

TEST_F(FileJobsTest, ACancelledExportOfTheWholeRegistryDeletesItsFileOnYes)
{
    m_platform.m_pauseAt = L"*";
    m_platform.m_firstParent = nullptr;
    m_answers.push_back({L"Do you want to delete file?", IDYES});
    const std::unique_ptr<CModalScript> canceller = CancelWhenShown();
    EXPECT_TRUE(Export(L"out", true));
    EXPECT_TRUE(canceller->Finished());
    EXPECT_EQ(m_platform.m_firstParent, HKEY_CLASSES_ROOT) << "the whole registry starts at its first root";
    EXPECT_EQ(m_messages, Messages{"Do you want to delete file?|10024"});
    EXPECT_EQ(GetFileAttributesW(Out()), INVALID_FILE_ATTRIBUTES);
}

// Closing the progress box waits for the job's result; an export that
// cannot write its file says so.
TEST_F(FileJobsTest, ExportsEndWithTheirOutcome)
{
    m_platform.m_pauseAt = L"b";
    m_platform.m_pauseLimit = 1500;
    CModalScript closer([] { return VisibleProgress() != nullptr; },
                        [] { SendMessageW(VisibleProgress(), WM_CLOSE, 0, 0); });
    EXPECT_TRUE(RunExportJob(m_owner.GetHwnd(), Out(), true, HKEY_CURRENT_USER, m_scratch.Path(), true));
    EXPECT_TRUE(closer.Finished());
    EXPECT_FALSE(RunExportJob(m_owner.GetHwnd(), m_folder.PathOf("missing\\out.reg"), true, HKEY_CURRENT_USER,
                              m_scratch.Path(), false));
    EXPECT_EQ(m_messages, (Messages{kExported, "There were errors during exporting registry file.|10030"}));
}

TEST_F(FileJobsTest, ImportsReportTheirOutcomeAndRefreshTheViews)
{
    const std::string text =
        "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\QuendaTests\\Jobs\\new]\n"
        "\"n\"=dword:00000007\n";
    const struct SCase {
        std::string text;
        const char* message;
    } cases[] = {
        {text, "Registry import finished successfully.|10040"},
        {text + "\"bad\"=nonsense\n", "There were errors during importing registry file. Syntax error at line 5.|10030"},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.message);
        m_messages.clear();
        m_owner.m_commands.clear();
        WriteOut(c.text.c_str());
        EXPECT_EQ(RunImportJob(m_owner.GetHwnd(), Out()), &c == cases);
        EXPECT_EQ(m_messages, Messages{c.message});
        EXPECT_EQ(m_owner.m_commands, std::vector<WPARAM>({IDM_REGISTRY_REFRESH}));
        CShdRegKey key;
        ASSERT_TRUE(key.Open(m_scratch.Handle(), L"new"));
        EXPECT_EQ(key.ReadDwordOr(L"n", 0), 7u);
    }
}

TEST_F(FileJobsTest, TheImportCommandChecksTheFileAndAsksFirst)
{
    WriteOut("Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\QuendaTests\\Jobs\\c]\n");
    const std::pair<const wchar_t*, int> runs[] = {{L"none", IDYES}, {L"out", IDNO}, {L"out.reg", IDYES}};
    for (const auto& [name, answer] : runs) {
        m_answers.push_back({L"Do you want to import registry file?", answer});
        CModalScript script({Choose(name)});
        ImportCommand(m_owner.GetHwnd());
        CShdRegKey key;
        EXPECT_EQ(key.Open(m_scratch.Handle(), L"c"), name[3] == L'.');
    }
    const std::string question = "Do you want to import registry file?|10024";
    EXPECT_EQ(m_messages, (Messages{"File does not exist.|10030", question, question,
                                    "Registry import finished successfully.|10040"}));
}

// The preview window lists what the import it then runs changes: its rows
// are the difference between dumps taken before and after, with the error
// the import reports first.
TEST_F(FileJobsTest, ThePreviewListsWhatItsImportThenChanges)
{
    struct CHost : IImportPreviewHost {
        bool ShowRegistryItem(HKEY, LPCWSTR, LPCWSTR) override { return false; }
    } host;
    CScratchKey scratch(L"Preview");
    std::ofstream(ToUtf8(Out()), std::ios::binary) << PreviewCaseFile(2, "");
    CString error;
    CRegImportRun(Out(), true).Run([] { return false; }, error);
    const std::string before = DumpTree(HKEY_CURRENT_USER, scratch.Path());
    std::ofstream(ToUtf8(Out()), std::ios::binary) << PreviewCaseFile(3, "");
    std::set<std::string> rows;
    CString base;
    CModalScript script({Choose(L"out.reg"), [&] {
                             const HWND dialog = FindDialog(L"Preview Import");
                             ASSERT_NE(dialog, nullptr);
                             base = ItemText(dialog, IDC_PREVIEW_BASE);
                             const HWND list = GetDlgItem(dialog, IDC_PREVIEW_LIST);
                             std::vector<CString> columns[3] = {ListRows(list, 0), ListRows(list, 1),
                                                                ListRows(list, 2)};
                             for (size_t i = 0; i < columns[0].size(); ++i)
                                 rows.insert(ToUtf8(columns[0][i] + L"|" + columns[1][i] + L"|" + columns[2][i]));
                             SendMessageW(dialog, WM_COMMAND, IDM_PREVIEW_IMPORT, 0);
                         }});
    ImportPreviewCommand(m_owner.GetHwnd(), host);
    // The rows name their keys below the base key, as the dump does.
    EXPECT_EQ(base, CString(L"HKEY_CURRENT_USER\\") + scratch.Path());
    std::set<std::string> changed = {"Error||"};
    for (const std::string& line : DumpDifference(before, DumpTree(HKEY_CURRENT_USER, scratch.Path())))
        changed.insert(line.substr(0, line.rfind('|')));
    EXPECT_EQ(rows, changed);
    EXPECT_EQ(m_messages, (Messages{"There were errors during importing registry file. Not all keys and values were "
                                    "imported.|10030"}));
}

}  // namespace
