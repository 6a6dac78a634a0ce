#include "regfile/ImportPreview.h"

#include "regfile/RegImportRun.h"
#include "settings/Settings.h"

bool CImportPreview::Start(LPCWSTR path)
{
    if (m_worker.IsRunning())
        return false;
    m_path = path;
    m_checkHeader = !Settings().GetDoNotCheckImportHeader();
    m_changes.clear();
    m_errorText.Empty();
    m_overlayMemory = 0;
    return m_worker.Start([this] { Run(); });
}

void CImportPreview::Run()
{
    // The overlay reads through the platform the program runs on here (a
    // test's counting platform, say), and is this thread's alone.
    COverlayPlatform overlay(Platform());
    {
        CScopedThreadPlatform scoped(overlay);
        CRegImportRun run(m_path, m_checkHeader);
        run.Run([this] { return m_worker.IsCancelled(); }, m_errorText);
    }
    m_changes = overlay.Changes();
    m_overlayMemory = overlay.MemoryUsed();
}
