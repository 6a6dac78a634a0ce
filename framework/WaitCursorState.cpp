#include "framework/WaitCursorState.h"

void CWaitCursorState::Change(int delta, ICursorDevice& device)
{
    m_count += delta;
    if (m_count < 1) {
        // An unmatched end leaves the count at 0, so the next wait starts
        // afresh.
        m_count = 0;
        device.ShowCursor(m_saved);
        m_saved = nullptr;
        return;
    }
    const HANDLE previous = device.ShowWaitCursor();
    if (delta > 0 && m_count == 1)
        m_saved = previous;
}
