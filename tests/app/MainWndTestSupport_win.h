#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>

#include "app/MainWnd_win.h"
#include "framework/MessageBox_win.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/RegistryRoots.h"
#include "resources/resource.h"
#include "tests/settings/SettingsTestSupport.h"
#include "tests/support/TestText.h"
#include "tests/ui/FileDialogTestSupport_win.h"
#include "tests/ui/UiTestSupport_win.h"

// An interactive main window made in the test's own thread, with the
// program's resources from the test's module, on a platform with faults to
// inject; messages are answered with OK and recorded. The program's own key
// is put aside for the test and back afterwards, so that the settings and
// bookmarks the window writes leave the prefix as the test found it.
class MainWndTest : public testing::Test {
protected:
    void Open()
    {
        m_window.reset();  // one main window at a time
        m_window = std::make_unique<CMainWnd>();
        ASSERT_TRUE(m_window->Create(TestInstance()));
        PumpMessages();
        m_hwnd = m_window->GetHwnd();
        m_tree = GetDlgItem(m_hwnd, CMainPanes::kTreeId);
        m_list = GetDlgItem(m_hwnd, CMainPanes::kListId);
    }
    // The tree's own object, as the window's pane.
    CRegTree& Tree() const { return *static_cast<CRegTree*>(CShdWnd::FromHandle(m_tree)); }

    void Command(UINT command)
    {
        SendMessageW(m_hwnd, WM_COMMAND, command, 0);
        PumpMessages();
    }

    void SelectKey(HKEY root, const CString& path)
    {
        Command(IDM_REGISTRY_REFRESH);
        ASSERT_TRUE(Tree().NavigateTo(root, path)) << ToUtf8(path);
        PumpMessages();
    }

    // Runs a command (or `open`) that opens the dialog `caption`, with the
    // steps run inside its loop; whatever the steps leave open is
    // cancelled. False when the dialog never opened.
    bool RunDialog(UINT command, LPCWSTR caption, std::vector<std::function<void(HWND)>> steps,
                   const std::function<void()>& open = nullptr)
    {
        bool opened = false;
        std::vector<std::function<void()>> wrapped;
        steps.push_back([](HWND dialog) { SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0); });
        for (auto& step : steps) {
            wrapped.push_back([caption, step, &opened] {
                if (const HWND dialog = FindDialog(caption)) {
                    opened = true;
                    step(dialog);
                }
            });
        }
        CModalScript script(std::move(wrapped));
        if (open)
            open();
        else
            Command(command);
        return opened;
    }

    // Pop-up 0 of a menu resource as the window prepares it: each item's
    // text, in parentheses when it is greyed.
    std::vector<std::string> Menu(UINT menuId, const std::vector<UINT>& commands) const
    {
        const HMENU menu = LoadMenuW(TestInstance(), MAKEINTRESOURCEW(menuId));
        const HMENU popup = GetSubMenu(menu, 0);
        SendMessageW(m_hwnd, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup), 0);
        std::vector<std::string> items;
        for (const UINT command : commands) {
            WCHAR text[64] = {};
            GetMenuStringW(popup, command, text, 64, MF_BYCOMMAND);
            const bool grayed = (GetMenuState(popup, command, MF_BYCOMMAND) & MF_GRAYED) != 0;
            items.push_back(grayed ? "(" + ToUtf8(CString(text)) + ")" : ToUtf8(CString(text)));
        }
        DestroyMenu(menu);
        return items;
    }

    // Where the window stands: "HKCU\path" or "HKCU\path|value", the path
    // after `below` when it holds it.
    std::string Selection(LPCWSTR below = L"") const
    {
        HKEY root = nullptr;
        CString path;
        CString value;
        m_window->GetSelectedKey(root, path);
        const int at = *below != 0 ? path.Find(below) : -1;
        std::string text = ToUtf8(CString(RootShortName(root))) + "\\";
        text += ToUtf8(at < 0 ? path : path.Mid(static_cast<size_t>(at) + lstrlenW(below)));
        return m_window->GetSelectedValue(value) ? text + "|" + ToUtf8(value) : text;
    }

    // First, so that it is restored last and on the real platform.
    CSavedKey m_programKey{HKEY_LOCAL_MACHINE, TEXT("SOFTWARE\\Marrowick"), TEXT("SavedProgramKey")};
    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped{m_faults};
    std::vector<std::string> m_messages;
    UINT m_lastFlags = 0;
    CScopedMessageAnswerer m_answerer{[this](HWND, LPCWSTR text, UINT flags) {
        m_messages.push_back(ToUtf8(text));
        m_lastFlags = flags;
        return IDOK;
    }};
    std::unique_ptr<CMainWnd> m_window;
    HWND m_hwnd = nullptr;
    HWND m_tree = nullptr;
    HWND m_list = nullptr;
};
