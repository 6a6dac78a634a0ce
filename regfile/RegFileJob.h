#pragma once

#include "base/CString.h"
#include "base/WinTypes.h"
#include "platform/WorkerJob.h"

// A job on a .reg file that runs on a worker thread of its own, so that the
// UI can show progress and offer a cancel: the exporter and the importer.
// The UI thread starts the job, waits on the done event, and then either
// takes the result or cancels.
//
// A derived class stores its own arguments after checking IsRunning(), then
// calls StartJob(); it implements Run(), polling IsCancelled() as it goes.
// Its destructor must call Cancel(false), since the worker uses the derived
// object until it ends.
class CRegFileJob {
public:
    CRegFileJob();
    virtual ~CRegFileJob();
    CRegFileJob(const CRegFileJob&) = delete;
    CRegFileJob& operator=(const CRegFileJob&) = delete;

    bool IsRunning() const { return m_worker.IsRunning(); }
    // Signalled when the job ends without having been cancelled.
    HANDLE DoneEvent() const { return m_worker.DoneEvent(); }
    // Waits for the worker to end. False if no job was started or the job
    // was cancelled; otherwise true, with the job's outcome in `result`.
    bool GetResult(bool& result);
    // Tells a running job to stop, waits for it, and deletes its file if
    // asked (a partly written export, say).
    void Cancel(bool deleteFile);

protected:
    static constexpr DWORD kStackSize = 32768;

    // Stores the file path and starts the worker. False if a job is running
    // or no thread could be made.
    bool StartJob(LPCWSTR path);
    const CString& FilePath() const { return m_path; }
    bool IsCancelled() const { return m_worker.IsCancelled(); }
    // The job itself, on the worker thread: true on complete success.
    virtual bool Run() = 0;

private:
    CString m_path;
    bool m_result = false;
    // Last, so that it ends before the members the job uses.
    CWorkerJob m_worker{kStackSize};
};
