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

void CFindAllSearch::Handshake(HANDLE request)
{
    Platform().ResetEvent(m_ackEvent.Get());
    Platform().SetEvent(request);
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
    Platform().SetEvent(m_stopEvent.Get());
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

bool CFindAllSearch::Append(const CRegFinder::SSearchPosition& match, size_t& index)
{
    CRegFinder::SSearchPosition* copy = new (std::nothrow) CRegFinder::SSearchPosition(match);
    if (copy == nullptr)
        return false;
    std::lock_guard<std::mutex> lock(m_lock);
    const int added = m_results.Add(copy);
    if (added < 0)
        return false;
    index = static_cast<size_t>(added);
    return true;
}

DWORD WINAPI CFindAllSearch::CollectThread(void* argument)
{
    static_cast<CFindAllSearch*>(argument)->Collect();
    return 0;
}

void CFindAllSearch::Collect()
{
    const HANDLE handles[] = {m_stopEvent.Get(), m_pauseEvent.Get(), m_resumeEvent.Get(), m_finder.GetDoneEvent()};
    const DWORD kPause = WAIT_OBJECT_0 + 1;
    const DWORD kResume = WAIT_OBJECT_0 + 2;
    const DWORD kStepDone = WAIT_OBJECT_0 + 3;
    bool paused = false;
    bool stepRunning = false;
    for (;;) {
        if (!paused && !stepRunning) {
            if (!m_finder.Start())
                break;
            stepRunning = true;
        }
        // While paused the step may run on to its match and wait there; it is
        // collected after the resume.
        const DWORD wait = Platform().WaitForMultipleObjects(paused ? 3 : 4, handles, FALSE, INFINITE);
        if (wait == kPause || wait == kResume) {
            Platform().ResetEvent(handles[wait - WAIT_OBJECT_0]);
            Platform().SetEvent(m_ackEvent.Get());
            paused = wait == kPause;
            continue;
        }
        // The stop request, or a failed wait.
        if (wait != kStepDone)
            break;
        stepRunning = false;
        CRegFinder::SSearchPosition match;
        size_t index = 0;
        if (!m_finder.Collect(match) || !Append(match, index))
            break;
        m_sink.OnMatchAdded(m_run, index);
    }
    m_finder.Cancel();
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
