#pragma once

#include <vector>

#include "base/CString.h"
#include "platform/OverlayPlatform.h"
#include "platform/WorkerJob.h"

// What importing a .reg file would do, without doing it: the importer itself
// runs on a worker thread against an overlay of the registry, and the
// preview is what the overlay changed. Only the worker sees the overlay (a
// platform of its own thread), so the windows go on reading the registry as
// it is. The file is read as an import would read it, with the user's
// header-check setting at the start.
class CImportPreview {
public:
    using SChange = COverlayPlatform::SChange;

    CImportPreview() = default;
    CImportPreview(const CImportPreview&) = delete;
    CImportPreview& operator=(const CImportPreview&) = delete;

    // False if a preview is running or cannot start.
    bool Start(LPCWSTR path);
    HANDLE DoneEvent() const { return m_worker.DoneEvent(); }
    // Waits for the worker; false when none was started or it was cancelled.
    bool Wait() { return m_worker.Wait(); }
    void Cancel() { m_worker.Cancel(); }

    // After the worker has ended: the changes in key order, the error the
    // import would report (empty when it would succeed), and the bytes the
    // overlay held.
    const std::vector<SChange>& Changes() const { return m_changes; }
    const CString& ErrorText() const { return m_errorText; }
    size_t OverlayMemory() const { return m_overlayMemory; }

private:
    // The overlay's lookups recurse by key depth beside the importer's frames.
    static constexpr DWORD kStackSize = 0x20000;

    void Run();

    CString m_path;
    bool m_checkHeader = true;
    std::vector<SChange> m_changes;
    CString m_errorText;
    size_t m_overlayMemory = 0;
    // Last, so that it ends before the members the work uses.
    CWorkerJob m_worker{kStackSize};
};
