#pragma once

#include <atomic>
#include <cstddef>
#include <mutex>

#include "base/CString.h"
#include "base/ObjArray.h"
#include "base/WinTypes.h"
#include "platform/PlatformHandle.h"
#include "search/RegFinder.h"
#include "search/SearchParams.h"

// A find-all search: a collecting thread of its own walks the registry with
// the finder and keeps every match, in one walk however many it finds. The
// user interface thread starts it, pauses, resumes and stops it, and reads
// the matches; pause and resume are handshakes that return once the
// collecting thread has seen them (between two keys, or after it ended), so
// that after Pause nothing more is added until Resume. A paused walk goes on
// to its next match and waits there, its keys closed; after the resume it
// adds that match and walks on from it.
//
// The collecting thread reports through the sink and never waits for the
// user interface thread: the user interface may therefore wait for it (in
// Pause, Resume and Stop) without pumping messages.
class CFindAllSearch {
public:
    enum EState : DWORD {
        kReady = 0,
        kInProgress = 1,
        kPaused = 2,
        kFinished = 3,
        kCancelled = 4,
    };

    // Called on the collecting thread. `run` numbers the searches of this
    // object, so that a report that arrives late can be told from one about
    // the search now running.
    class ISink {
    public:
        // The match at `index` has been added to the results.
        virtual void OnMatchAdded(unsigned run, size_t index) = 0;
        // The search ran out by itself (it was not stopped); the thread ends.
        virtual void OnSearchRanOut(unsigned run) = 0;

    protected:
        ~ISink() = default;
    };

    explicit CFindAllSearch(ISink& sink);
    // Stops a running search.
    ~CFindAllSearch();
    CFindAllSearch(const CFindAllSearch&) = delete;
    CFindAllSearch& operator=(const CFindAllSearch&) = delete;

    // Stops a running search, forgets the matches and searches anew; the
    // state becomes kInProgress. False when the collecting thread cannot be
    // made: the sink then hears at once that the search ran out.
    bool Start(const SSearchParams& params, const SStartPosition& start);
    // Only while in progress; false otherwise.
    bool Pause();
    // Only while paused; false otherwise.
    bool Resume();
    // Stops the collecting thread and waits for it; nothing without one.
    void Stop();
    // Stop, then kCancelled if the search was running or paused.
    void Cancel();
    // After the sink heard that the search ran out: Stop, then kFinished if
    // the search was running or paused.
    void Finish();

    DWORD GetState() const { return m_state; }
    unsigned GetRun() const { return m_run; }
    bool IsRunning() const { return m_state == kInProgress || m_state == kPaused; }

    // The matches, read under the lock.
    size_t GetResultCount() const;
    // False for an index out of range.
    bool GetResult(size_t index, CRegFinder::SSearchPosition& match) const;

private:
    class CCollector;

    static DWORD WINAPI CollectThread(void* argument);
    void Collect();
    // Sets `request`, then waits until the thread acknowledges or ends.
    void Handshake(HANDLE request);
    // Sets the event, then tells the walk to look at the events.
    void Request(HANDLE event);
    // Adds the match and tells the sink; false when memory runs out.
    bool Add(const CRegFinder::SSearchPosition& match);

    ISink& m_sink;
    CRegFinder m_finder;
    DWORD m_state = kReady;
    unsigned m_run = 0;

    mutable std::mutex m_lock;
    CShdObjArray<CRegFinder::SSearchPosition> m_results;

    CShdHandle m_thread;
    CShdHandle m_stopEvent;
    CShdHandle m_pauseEvent;
    CShdHandle m_resumeEvent;
    CShdHandle m_ackEvent;
    // Raised just before any of the three request events is set, so that
    // the walk looks at them only when a request came: a look costs a call
    // into the system (a round trip to the server under Wine).
    std::atomic<bool> m_requested{false};
};

// What the user is told of a search in each state: "Ready", "Search in
// progress...", "Search paused", "Search finished", "Search cancelled".
LPCWSTR SearchStatusText(DWORD state);
