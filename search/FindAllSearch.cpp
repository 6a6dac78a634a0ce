#include "search/FindAllSearch.h"

#include <new>

#include "platform/Platform.h"

namespace {

const DWORD kCollectStackSize = 32768;

bool IsSet(HANDLE event)
{
    return Platform().WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
}

}  // namespace

CFindAllSearch::CFindAllSearch(ISink& sink)
    : m_sink(sink), m_stopEvent(Platform().CreateEventW(TRUE, FALSE)),
      m_pauseEvent(Platform().CreateEventW(TRUE, FALSE)), m_resumeEvent(Platform().CreateEventW(TRUE, FALSE)),
      m_ackEvent(Platform().CreateEventW(TRUE, FALSE))
{
}

CFindAllSearch::~CFindAllSearch()
{
    Stop();
}

bool CFindAllSearch::Start(const SSearchParams& params, const SStartPosition& start)
{
    Stop();
    {
        std::lock_guard<std::mutex> lock(m_lock);
        m_results.RemoveAll();
    }
    m_state = kInProgress;
    ++m_run;
    m_finder.SetUp(params, start);
    for (const CShdHandle* event : {&m_stopEvent, &m_pauseEvent, &m_resumeEvent, &m_ackEvent})
        Platform().ResetEvent(event->Get());
    m_requested = false;
    m_thread.Reset(Platform().CreateThread(kCollectStackSize, CollectThread, this));
    if (!m_thread.IsValid()) {
        m_sink.OnSearchRanOut(m_run);
        return false;
    }
    return true;
}

bool CFindAllSearch::Pause()
{
    if (m_state != kInProgress)
        return false;
    Handshake(m_pauseEvent.Get());
    m_state = kPaused;
    return true;
}

bool CFindAllSearch::Resume()
{
    if (m_state != kPaused)
        return false;
    Handshake(m_resumeEvent.Get());
    m_state = kInProgress;
    return true;
}

// The flag goes up before the event is set: a walker that saw the event
// without the flag could walk on past the next key, adding matches after the
// request.
void CFindAllSearch::Request(HANDLE event)
{
    m_requested = true;
    Platform().SetEvent(event);
}

void CFindAllSearch::Handshake(HANDLE request)
{
    Platform().ResetEvent(m_ackEvent.Get());
    Request(request);
    if (m_thread.IsValid()) {
        // A thread that ran out meanwhile never acknowledges.
        const HANDLE handles[] = {m_thread.Get(), m_ackEvent.Get()};
        Platform().WaitForMultipleObjects(2, handles, FALSE, INFINITE);
    }
}

void CFindAllSearch::Stop()
{
    if (!m_thread.IsValid())
        return;
    Request(m_stopEvent.Get());
    Platform().WaitForSingleObject(m_thread.Get(), INFINITE);
    m_thread.Reset();
}

void CFindAllSearch::Cancel()
{
    Stop();
    if (IsRunning())
        m_state = kCancelled;
}

void CFindAllSearch::Finish()
{
    Stop();
    if (IsRunning())
        m_state = kFinished;
}

size_t CFindAllSearch::GetResultCount() const
{
    std::lock_guard<std::mutex> lock(m_lock);
    return m_results.GetCount();
}

bool CFindAllSearch::GetResult(size_t index, CRegFinder::SSearchPosition& match) const
{
    std::lock_guard<std::mutex> lock(m_lock);
    if (index >= m_results.GetCount())
        return false;
    match = *m_results[index];
    return true;
}

bool CFindAllSearch::Add(const CRegFinder::SSearchPosition& match)
{
    CRegFinder::SSearchPosition* copy = new (std::nothrow) CRegFinder::SSearchPosition(match);
    if (copy == nullptr)
        return false;
    int added = 0;
    {
        std::lock_guard<std::mutex> lock(m_lock);
        added = m_results.Add(copy);
    }
    if (added < 0)
        return false;
    m_sink.OnMatchAdded(m_run, static_cast<size_t>(added));
    return true;
}

DWORD WINAPI CFindAllSearch::CollectThread(void* argument)
{
    static_cast<CFindAllSearch*>(argument)->Collect();
    return 0;
}

// Watches the requests while the finder walks, adds its matches, and holds
// the first match found after a pause.
class CFindAllSearch::CCollector : public CRegFinder::IWalkObserver {
public:
    explicit CCollector(CFindAllSearch& search) : m_search(search) {}

    bool IsCancelled() override
    {
        // A flag without its event yet: the event follows at once, so look
        // again at the next key.
        if (m_search.m_requested.exchange(false) && !TakeRequests())
            m_search.m_requested = true;
        return m_stopped;
    }

    bool OnMatch(const CRegFinder::SSearchPosition& match) override
    {
        if (m_paused) {
            m_held = match;
            m_holding = true;
            return false;
        }
        m_failed = !m_search.Add(match);
        return !m_failed;
    }

    // After a walk: waits while paused, adds the match held meanwhile, and
    // tells whether to walk on from it.
    bool WalkOn()
    {
        if (m_stopped || m_failed)
            return false;
        const bool holding = m_holding;
        m_holding = false;
        if (m_paused && !WaitForResume())
            return false;
        return holding && m_search.Add(m_held);
    }

private:
    // False when no request's event is set yet.
    bool TakeRequests()
    {
        if (IsSet(m_search.m_stopEvent.Get())) {
            m_stopped = true;
            return true;
        }
        bool taken = false;
        for (const CShdHandle* event : {&m_search.m_pauseEvent, &m_search.m_resumeEvent}) {
            if (IsSet(event->Get())) {
                Acknowledge(event->Get());
                taken = true;
            }
        }
        return taken;
    }

    void Acknowledge(HANDLE request)
    {
        Platform().ResetEvent(request);
        m_paused = request == m_search.m_pauseEvent.Get();
        Platform().SetEvent(m_search.m_ackEvent.Get());
    }

    // False when stopped.
    bool WaitForResume()
    {
        const HANDLE handles[] = {m_search.m_stopEvent.Get(), m_search.m_pauseEvent.Get(),
                                  m_search.m_resumeEvent.Get()};
        while (m_paused) {
            const DWORD wait = Platform().WaitForMultipleObjects(3, handles, FALSE, INFINITE);
            // The stop request, or a failed wait.
            if (wait != WAIT_OBJECT_0 + 1 && wait != WAIT_OBJECT_0 + 2)
                return false;
            // This request's flag is taken here, before the answer lets the
            // next request raise it again.
            m_search.m_requested = false;
            Acknowledge(handles[wait - WAIT_OBJECT_0]);
        }
        return true;
    }

    CFindAllSearch& m_search;
    bool m_stopped = false;
    bool m_paused = false;
    bool m_failed = false;
    bool m_holding = false;
    CRegFinder::SSearchPosition m_held;
};

void CFindAllSearch::Collect()
{
    CCollector collector(*this);
    do {
        m_finder.Walk(collector);
    } while (collector.WalkOn());
    if (!IsSet(m_stopEvent.Get()))
        m_sink.OnSearchRanOut(m_run);
}

LPCWSTR SearchStatusText(DWORD state)
{
    switch (state) {
    case CFindAllSearch::kInProgress:
        return TEXT("Search in progress...");
    case CFindAllSearch::kPaused:
        return TEXT("Search paused");
    case CFindAllSearch::kFinished:
        return TEXT("Search finished");
    case CFindAllSearch::kCancelled:
        return TEXT("Search cancelled");
    default:
        return TEXT("Ready");
    }
}
