#include "platform/WorkerJob.h"

#include <utility>

CWorkerJob::CWorkerJob(DWORD stackSize)
    : m_stackSize(stackSize), m_cancel(Platform().CreateEventW(TRUE, FALSE)),
      m_done(Platform().CreateEventW(TRUE, FALSE))
{
}

CWorkerJob::~CWorkerJob()
{
    Cancel();
}

bool CWorkerJob::Start(std::function<void()> work)
{
    if (IsRunning() || !m_cancel.IsValid() || !m_done.IsValid())
        return false;
    m_work = std::move(work);
    m_cancelled = false;
    Platform().ResetEvent(m_cancel.Get());
    Platform().ResetEvent(m_done.Get());
    m_thread.Reset(Platform().CreateThread(m_stackSize, ThreadMain, this));
    return IsRunning();
}

bool CWorkerJob::Wait()
{
    if (!IsRunning())
        return false;
    EndThread();
    return !m_cancelled;
}

bool CWorkerJob::Cancel()
{
    if (!IsRunning())
        return false;
    m_cancelled = true;
    Platform().SetEvent(m_cancel.Get());
    EndThread();
    return true;
}

void CWorkerJob::EndThread()
{
    Platform().WaitForSingleObject(m_thread.Get(), INFINITE);
    m_thread.Reset();
}

DWORD WINAPI CWorkerJob::ThreadMain(void* argument)
{
    CWorkerJob* job = static_cast<CWorkerJob*>(argument);
    Platform().SetThreadPriority(Platform().GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
    job->m_work();
    // Cancelled work is not done: its starter has stopped waiting for it.
    if (!job->m_cancelled)
        Platform().SetEvent(job->m_done.Get());
    return 0;
}
