#include "framework/WaitCursor_win.h"

CWaitCursor::CFuncs& CWaitCursor::CFuncs::Instance()
{
    static CFuncs instance;
    return instance;
}

CWaitCursor::CFuncs::CFuncs()
{
    InitializeCriticalSection(&m_lock);
}

CWaitCursor::CFuncs::~CFuncs()
{
    DeleteCriticalSection(&m_lock);
}

void CWaitCursor::CFuncs::Change(int delta)
{
    EnterCriticalSection(&m_lock);
    m_state.Change(delta, *this);
    LeaveCriticalSection(&m_lock);
}

int CWaitCursor::CFuncs::GetCount()
{
    EnterCriticalSection(&m_lock);
    const int count = m_state.GetCount();
    LeaveCriticalSection(&m_lock);
    return count;
}

HANDLE CWaitCursor::CFuncs::ShowWaitCursor()
{
    return SetCursor(LoadCursorW(nullptr, IDC_WAIT));
}

void CWaitCursor::CFuncs::ShowCursor(HANDLE cursor)
{
    SetCursor(static_cast<HCURSOR>(cursor));
}
