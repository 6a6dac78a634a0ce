#include "app/MainWnd_win.h"

#include "app/CommandLineRunner.h"
#include "framework/DpiScale.h"
#include "framework/MessageBox_win.h"
#include "framework/WindowHelpers_win.h"
#include "regfile/FileJobs_win.h"

namespace {

HINSTANCE g_instance = nullptr;

// The command line's verbs, with the main window as the owner of their
// message boxes and jobs.
class CWindowCommandLineRunner : public CCommandLineRunner {
public:
    explicit CWindowCommandLineRunner(HWND owner) : m_owner(owner) {}

protected:
    int ShowMessage(LPCWSTR text, UINT flags) override { return ::ShowMessage(m_owner, text, flags); }
    void RunImportJob(const CString& path) override { ::RunImportJob(m_owner, path); }
    void RunExportJob(const CString& file, HKEY root, const CString& subkeyPath) override
    {
        ::RunExportJob(m_owner, file, true, root, subkeyPath, true);
    }

private:
    HWND m_owner;
};

}  // namespace

HINSTANCE AppInstance()
{
    return g_instance;
}

void SetAppInstance(HINSTANCE instance)
{
    g_instance = instance;
}

const wchar_t CMainWnd::kInteractiveClassName[] = L"Quenda_{A55A0214-0F7E-46FE-B53B-52C2AE3EC850}";
const wchar_t CMainWnd::kCommandLineClassName[] = L"CmdLine_Quenda_{A55A0214-0F7E-46FE-B53B-52C2AE3EC850}";

CMainWnd::CMainWnd()
{
    const HBRUSH face = GetSysColorBrush(COLOR_BTNFACE);
    m_interactiveClass.Register(kInteractiveClassName, 0, face);
    m_commandLineClass.Register(kCommandLineClassName, 0, face);
    m_activateInfo.cbSize = sizeof(m_activateInfo);
}

CMainWnd::~CMainWnd()
{
    if (GetHwnd() != nullptr)
        DestroyWindow(GetHwnd());
}

bool CMainWnd::Create(HINSTANCE instance)
{
    m_instance = instance;
    const CClass& windowClass = m_commandLine ? m_commandLineClass : m_interactiveClass;
    return CShdWnd::Create(0, &windowClass, L"Quenda", WS_VISIBLE | WS_CAPTION, CW_USEDEFAULT, CW_USEDEFAULT,
                           CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, instance);
}

bool CMainWnd::CreateSoftKeyBar()
{
    const SSoftKeyBarChoice choice = ChooseMainSoftKeyBar(IsSmartphone(), GetOsVersion());
    m_softKeyBar = CreateMenuBar(GetHwnd(), m_instance, choice.resourceId, choice.isMenuBarResource);
    return m_softKeyBar != nullptr;
}

int CMainWnd::OnCreate()
{
    PostMessageW(GetHwnd(), kStartupMessage, 0, 0);
    SHINITDLGINFO fullScreen = {SHIDIM_FLAGS, GetHwnd(), SHIDIF_SIZEDLGFULLSCREEN};
    SHInitDialog(&fullScreen);
    // The desktop keeps the caption (its border is part of it) so that the
    // window can be moved; only the dialog frame goes, as on the handheld.
    SetWindowLongW(GetHwnd(), GWL_EXSTYLE, GetWindowLongW(GetHwnd(), GWL_EXSTYLE) & ~WS_EX_DLGMODALFRAME);
    if (!CreateSoftKeyBar() || !m_panes.Create(GetHwnd(), m_instance, kSplitterMessage))
        return -1;
    RECT client;
    GetClientRect(GetHwnd(), &client);
    const int keyNameHeight = SPaneMetrics::ForDpi(ScreenDpiY()).keyNameHeight;
    if (!m_search.Create(m_instance, RECT{0, 0, client.right, client.bottom - keyNameHeight}))
        return -1;

    m_split.Reset();
    Layout(true);
    SetFocus(m_panes.GetTree());
    m_panes.FillValueList(false, nullptr);
    if (!m_commandLine)
        RestorePosition();
    return 0;
}

void CMainWnd::OnStartup()
{
    if (!m_commandLine)
        return;
    CWindowCommandLineRunner runner(GetHwnd());
    runner.Process(Handheld::GetCommandLineW());
    DestroyWindow(GetHwnd());
}

void CMainWnd::OnDestroy()
{
    if (!m_commandLine)
        SavePosition();
    m_panes.Release();
    PostQuitMessage(0);
}

void CMainWnd::Layout(bool afterDrag)
{
    CSplitterWnd& splitterWnd = m_panes.Splitter();
    if (m_panes.GetTree() == nullptr || m_panes.GetList() == nullptr || splitterWnd.GetHwnd() == nullptr ||
        m_panes.KeyName().GetHwnd() == nullptr)
        return;
    RECT client;
    GetClientRect(GetHwnd(), &client);
    RECT splitter = {};
    GetWindowRect(splitterWnd.GetHwnd(), &splitter);
    MapWindowPoints(nullptr, GetHwnd(), reinterpret_cast<POINT*>(&splitter), 2);
    const SPaneLayout layout = m_split.Compute(SPaneMetrics::ForDpi(ScreenDpiY()), client.right, client.bottom,
                                               afterDrag, splitter.left, splitter.top);
    splitterWnd.SetOrientation(layout.stacked);
    const auto move = [](HWND window, const SPaneRect& rect) {
        MoveWindow(window, rect.x, rect.y, rect.width, rect.height, TRUE);
    };
    move(m_panes.GetTree(), layout.tree);
    move(splitterWnd.GetHwnd(), layout.splitter);
    move(m_panes.GetList(), layout.list);
    move(m_panes.KeyName().GetHwnd(), layout.keyName);
    m_search.Layout(client.right, layout.keyName.y);
}

void CMainWnd::OnSplitterNotify(WPARAM code, LPARAM delta)
{
    if (code != CSplitterWnd::kMoveEnd)
        return;
    m_panes.Splitter().MoveBy(static_cast<SHORT>(LOWORD(delta)), static_cast<SHORT>(HIWORD(delta)));
    Layout(true);
}

LRESULT CMainWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        return OnCreate();
    case WM_DESTROY:
        OnDestroy();
        return 0;
    case WM_SIZE:
        Layout(false);
        return 0;
    case WM_ACTIVATE:
        SHHandleWMActivate(GetHwnd(), wParam, lParam, &m_activateInfo, 0);
        break;
    case WM_SETTINGCHANGE:
        SHHandleWMSettingChange(GetHwnd(), wParam, lParam, &m_activateInfo);
        break;
    case WM_COPYDATA:
        return 0;
    case WM_NOTIFY: {
        CMainPanes::ERequest request = CMainPanes::kNoRequest;
        const LRESULT result = m_panes.OnNotify(reinterpret_cast<const NMHDR*>(lParam), request);
        if (request == CMainPanes::kEditValue)
            m_edit.EditSelectedValue(false);
        return result;
    }
    case WM_COMMAND:
        OnCommand(LOWORD(wParam));
        return 0;
    case WM_INITMENUPOPUP:
        OnInitMenuPopup(reinterpret_cast<HMENU>(wParam));
        return 1;
    case WM_HOTKEY:
        if (HIWORD(lParam) == VK_ESCAPE) {
            SHSendBackToFocusWindow(message, wParam, lParam);
            return 1;
        }
        break;
    case kSplitterMessage:
        OnSplitterNotify(wParam, lParam);
        return 0;
    case kStartupMessage:
        OnStartup();
        return 0;
    case CMainPanes::kRenameMessage:
        m_edit.Rename(static_cast<CMainPanes::ERename>(wParam));
        return 0;
    default:
        break;
    }
    return CShdWnd::WindowProc(message, wParam, lParam);
}
