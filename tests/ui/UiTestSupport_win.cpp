#include "tests/ui/UiTestSupport_win.h"

#include <gtest/gtest.h>

#include <map>

#include "framework/DpiScale.h"
#include "framework/HandheldShell_win.h"

namespace {

// The running scripts by their timers.
std::map<UINT_PTR, CModalScript*> g_scripts;
const UINT kStepMilliseconds = 30;
// How long a script waits for its step to become ready, or for its modal
// loop to end after its last step.
const DWORD kPatienceMilliseconds = 15000;
// The soft-key bar's height in design units.
const int kSoftKeyBarDesign = 26;

// An enumeration callback: a lambda would not have the callback's calling
// convention on 32-bit Windows.
BOOL CALLBACK CancelDialog(HWND window, LPARAM)
{
    WCHAR className[16] = {};
    GetClassNameW(window, className, 16);
    if (IsWindowVisible(window) && lstrcmpW(className, L"#32770") == 0) {
        // A dialog box ends at once; a property sheet, or a modeless box with
        // a loop of its own, ends on its Cancel command.
        PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
        EndDialog(window, IDCANCEL);
    }
    return TRUE;
}

}  // namespace

HINSTANCE TestInstance()
{
    return GetModuleHandleW(nullptr);
}

void PumpMessages()
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

bool PumpUntil(const std::function<bool()>& done, DWORD patienceMs)
{
    for (const DWORD start = GetTickCount(); !done(); Sleep(10)) {
        if (GetTickCount() - start > patienceMs)
            return false;
        PumpMessages();
    }
    return true;
}

CString ItemText(HWND dialog, int id)
{
    return CShdWnd::GetWindowTextOr(GetDlgItem(dialog, id), L"");
}

RECT ChildRect(HWND child)
{
    RECT rect;
    GetWindowRect(child, &rect);
    MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

CModalScript::CModalScript(std::vector<std::function<void()>> steps)
    : m_steps(std::move(steps)), m_lastStepTime(GetTickCount())
{
    m_timer = SetTimer(nullptr, 0, kStepMilliseconds, OnTimer);
    g_scripts[m_timer] = this;
}

CModalScript::CModalScript(std::function<bool()> ready, std::function<void()> action)
    : CModalScript(std::vector<std::function<void()>>{std::move(action)})
{
    m_ready = std::move(ready);
}

CModalScript::~CModalScript()
{
    KillTimer(nullptr, m_timer);
    g_scripts.erase(m_timer);
}

void CALLBACK CModalScript::OnTimer(HWND, UINT, UINT_PTR timer, DWORD)
{
    const auto found = g_scripts.find(timer);
    if (found == g_scripts.end())
        return;
    CModalScript* script = found->second;
    if (GetTickCount() - script->m_lastStepTime > kPatienceMilliseconds) {
        script->GiveUp();
        return;
    }
    if (script->Finished() || (script->m_ready && !script->m_ready()))
        return;
    // A step may run a nested loop; the next one waits for this one.
    const size_t step = script->m_next++;
    script->m_steps[step]();
    script->m_lastStepTime = GetTickCount();
}

// Ends whatever modal loop holds the thread: the test goes on, and fails.
// Tried again at every tick until the loop has ended.
void CModalScript::GiveUp()
{
    if (!m_gaveUp)
        ADD_FAILURE() << "a scripted modal window was still waiting after " << kPatienceMilliseconds / 1000
                      << " s (step " << m_next << " of " << m_steps.size() << "); closing it";
    m_gaveUp = true;
    m_next = m_steps.size();
    EndMenu();
    EnumThreadWindows(GetCurrentThreadId(), CancelDialog, 0);
}

CTestFrame::CTestFrame()
{
    Create(0, nullptr, L"Frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 40, 30, 300, 400, nullptr, nullptr,
           TestInstance());
}

LRESULT CTestFrame::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        m_commands.push_back(wParam);
        m_commandSenders.push_back(lParam);
        return 0;
    case WM_NOTIFY:
        m_notifications.push_back(reinterpret_cast<const NMHDR*>(lParam)->code);
        if (m_notifications.back() == GN_CONTEXTMENU)
            m_notifiedPoint = reinterpret_cast<const NMRGINFO*>(lParam)->ptAction;
        return 0;
    case WM_CONTEXTMENU:
        ++m_contextMenus;
        return 0;
    case WM_SIZE:
        ++m_sizes;
        break;
    default:
        break;
    }
    return CShdWnd::WindowProc(message, wParam, lParam);
}

namespace {

void Pen(DWORD button, POINT screen)
{
    SetCursorPos(screen.x, screen.y);
    if (button != 0) {
        INPUT input = {};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = button;
        SendInput(1, &input, sizeof(input));
    }
    PumpMessages();
}

}  // namespace

void PenStroke(POINT from, POINT to)
{
    Pen(MOUSEEVENTF_LEFTDOWN, from);
    Pen(0, {(from.x + to.x) / 2, (from.y + to.y) / 2});
    Pen(0, to);
    Pen(MOUSEEVENTF_LEFTUP, to);
}

POINT SoftKeyCenter(HWND window, int key, int keyCount)
{
    RECT client = {};
    GetClientRect(window, &client);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
    const int width = client.right - client.left;
    return {client.left + (2 * key + 1) * width / (2 * keyCount), client.bottom + ScaleY(kSoftKeyBarDesign) / 2};
}

void TapSoftKey(HWND window, int key, int keyCount)
{
    const POINT screen = SoftKeyCenter(window, key, keyCount);
    const LPARAM screenPoint = MAKELPARAM(screen.x, screen.y);
    const WPARAM hit = static_cast<WPARAM>(SendMessageW(window, WM_NCHITTEST, 0, screenPoint));
    SendMessageW(window, WM_NCLBUTTONDOWN, hit, screenPoint);
    POINT client = screen;
    ScreenToClient(window, &client);
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(client.x, client.y));
}
