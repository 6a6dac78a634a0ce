#pragma once

#include <functional>
#include <vector>

#include <windows.h>

#include "framework/ShdWnd_win.h"

// The test program's own module, which holds the program's resources.
HINSTANCE TestInstance();

// Dispatches what is waiting in the thread's queue.
void PumpMessages();
// Pumps until `done` holds, for at most `patienceMs`; whether it held.
bool PumpUntil(const std::function<bool()>& done, DWORD patienceMs = 30000);

// A control's text, and a child's rectangle in its parent's client area.
CString ItemText(HWND dialog, int id);
RECT ChildRect(HWND child);

// Runs the steps one by one, one per timer tick, from inside whatever modal
// loop the thread runs meanwhile (a dialog's or a property sheet's), so that
// a test can drive a modal window with real messages. Each step sees what the
// previous one's messages did. With `ready`, the single step waits until it
// holds. Several scripts may run at once. A script that waits too long for
// its step, or whose modal loop still runs too long after its last step,
// fails the test and closes the thread's dialogs and menus, so that a broken
// build fails in seconds instead of hanging.
class CModalScript {
public:
    explicit CModalScript(std::vector<std::function<void()>> steps);
    CModalScript(std::function<bool()> ready, std::function<void()> action);
    ~CModalScript();
    CModalScript(const CModalScript&) = delete;
    CModalScript& operator=(const CModalScript&) = delete;
    bool Finished() const { return m_next == m_steps.size(); }

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD);

    void GiveUp();

    std::vector<std::function<void()>> m_steps;
    std::function<bool()> m_ready;
    size_t m_next = 0;
    UINT_PTR m_timer = 0;
    // When the last step ran (or the script began).
    DWORD m_lastStepTime = 0;
    bool m_gaveUp = false;
};

// A visible top-level window of the default class that records what it is
// told, as an owner for dialogs and a parent for bars and controls.
class CTestFrame : public CShdWnd {
public:
    CTestFrame();
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    std::vector<WPARAM> m_commands;
    std::vector<LPARAM> m_commandSenders;
    std::vector<UINT> m_notifications;
    POINT m_notifiedPoint = {};
    int m_contextMenus = 0;
    int m_sizes = 0;
};

// A stroke of the pen through the system's own input, so that hit testing
// and capture are the real ones: down at `from`, over the middle, up at `to`
// (screen points); the messages are dispatched.
void PenStroke(POINT from, POINT to);

// Where a soft key of a window's bar lies, in screen coordinates.
POINT SoftKeyCenter(HWND window, int key, int keyCount);
// A tap on a soft key, as the pointer makes it: down and up on the key.
void TapSoftKey(HWND window, int key, int keyCount);
