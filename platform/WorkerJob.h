#pragma once

#include <atomic>
#include <functional>

#include "base/WinTypes.h"
#include "platform/PlatformHandle.h"

// Work that runs on a worker thread of its own, below normal priority, while
// the starting thread shows progress and may cancel: the file jobs and the
// search steps. The starting thread starts the work, waits on the done
// event (or in Wait), and then takes the outcome or cancels. The two threads
// share only what the work reads (written before the start), what it
// produces (read after it has ended), the cancel request and the done event.
//
// The work must not outlive what it uses: an owner whose work uses its own
// members declares the job after them (so that the job, which cancels and
// waits as it is destroyed, goes first); a base class whose work calls into
// a derived one has the derived destructor cancel.
class CWorkerJob {
public:
    explicit CWorkerJob(DWORD stackSize);
    ~CWorkerJob();
    CWorkerJob(const CWorkerJob&) = delete;
    CWorkerJob& operator=(const CWorkerJob&) = delete;

    // Clears the cancel request, resets the done event and starts the work.
    // False when work is running, or no event or thread could be made.
    bool Start(std::function<void()> work);
    bool IsRunning() const { return m_thread.IsValid(); }
    // Signalled when the work ends without having been cancelled.
    HANDLE DoneEvent() const { return m_done.Get(); }
    // Waits for the work to end. False when none was started or it was
    // cancelled.
    bool Wait();
    // Tells running work to stop at its next poll and waits for it. False
    // when none was running.
    bool Cancel();
    // Polled by the work; stays set after a cancel until the next start.
    bool IsCancelled() const { return m_cancelled; }

private:
    static DWORD WINAPI ThreadMain(void* argument);
    void EndThread();

    const DWORD m_stackSize;
    std::function<void()> m_work;
    // The cancel request is an event, seen by whatever watches the platform,
    // and this flag, which the work polls: a wait on the event would cost a
    // call into the system (a round trip to the server under Wine) for every
    // key and value.
    std::atomic<bool> m_cancelled{false};
    CShdHandle m_cancel;
    CShdHandle m_done;
    CShdHandle m_thread;
};
