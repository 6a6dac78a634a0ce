#pragma once

#include <windows.h>

#include "framework/WaitCursorState.h"

// Shows the wait cursor for its lifetime. Waits nest, on any thread: the
// cursor shown before the first returns when the last ends.
class CWaitCursor {
public:
    // The process-wide nesting, serialised by a critical section.
    class CFuncs : private ICursorDevice {
    public:
        static CFuncs& Instance();
        virtual ~CFuncs();
        void Change(int delta);
        int GetCount();

    private:
        CFuncs();
        HANDLE ShowWaitCursor() override;
        void ShowCursor(HANDLE cursor) override;

        CRITICAL_SECTION m_lock;
        CWaitCursorState m_state;
    };

    CWaitCursor() { CFuncs::Instance().Change(+1); }
    ~CWaitCursor() { CFuncs::Instance().Change(-1); }
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
};
