#include "regfile/RegFileJob.h"

#include "platform/Platform.h"

CRegFileJob::CRegFileJob()
    : m_cancel(Platform().CreateEventW(TRUE, FALSE)), m_done(Platform().CreateEventW(TRUE, FALSE))
{
}

CRegFileJob::~CRegFileJob() = default;

bool CRegFileJob::StartJob(LPCWSTR path)
{
    if (IsRunning() || !m_cancel.IsValid() || !m_done.IsValid())
        return false;
    m_path = path != nullptr ? path : TEXT("");
    m_result = false;
    m_cancelRequested = false;
    Platform().ResetEvent(m_cancel.Get());
    Platform().ResetEvent(m_done.Get());
    m_thread.Reset(Platform().CreateThread(kStackSize, ThreadMain, this));
    return IsRunning();
}

bool CRegFileJob::GetResult(bool& result)
{
    result = false;
    if (!IsRunning())
        return false;
    EndThread();
    if (IsCancelEventSet())
        return false;
    result = m_result;
    return true;
}

void CRegFileJob::Cancel(bool deleteFile)
{
    if (!IsRunning())
        return;
    m_cancelRequested = true;
    Platform().SetEvent(m_cancel.Get());
    EndThread();
    if (deleteFile)
        Platform().DeleteFileW(m_path);
}

bool CRegFileJob::IsCancelled() const
{
    return m_cancelRequested;
}

bool CRegFileJob::IsCancelEventSet() const
{
    return Platform().WaitForSingleObject(m_cancel.Get(), 0) == WAIT_OBJECT_0;
}

void CRegFileJob::EndThread()
{
    Platform().WaitForSingleObject(m_thread.Get(), INFINITE);
    m_thread.Close();
}

DWORD WINAPI CRegFileJob::ThreadMain(void* argument)
{
    CRegFileJob* job = static_cast<CRegFileJob*>(argument);
    Platform().SetThreadPriority(Platform().GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
    job->m_result = job->Run();
    // A cancelled job is not done: the UI has stopped waiting for it.
    if (!job->IsCancelEventSet())
        Platform().SetEvent(job->m_done.Get());
    return 0;
}
