#pragma once

#include "base/WinTypes.h"

// What the wait cursor does to the screen, apart from the counting.
class ICursorDevice {
public:
    virtual ~ICursorDevice() = default;
    // Shows the wait cursor and returns the cursor shown before.
    virtual HANDLE ShowWaitCursor() = 0;
    virtual void ShowCursor(HANDLE cursor) = 0;
};

// The nesting of the process-wide wait cursor: the first of nested waits
// saves the cursor it replaces, and the last one to end puts it back. Not
// serialised: its owner holds a lock around Change.
class CWaitCursorState {
public:
    void Change(int delta, ICursorDevice& device);
    int GetCount() const { return m_count; }

private:
    int m_count = 0;
    HANDLE m_saved = nullptr;
};
