#pragma once

#include <atomic>

#include "platform/FaultInjectingPlatform.h"

// A platform for tests of a worker thread, with the faults of its base: the
// worker stops when it opens the key named by PauseAt, until the test sets
// any event (the job's cancel request, say), or for at most ten seconds,
// which fails the test. Keys opened after that are counted.
class CGatePlatform : public CFaultInjectingPlatform {
public:
    CGatePlatform();
    ~CGatePlatform() override;

    void PauseAt(LPCWSTR keyName) { m_gateKey = keyName; }
    // True once the worker waits at the key (within ten seconds).
    bool WaitUntilReached();
    int OpensAfterRelease() const { return m_opensAfterRelease; }

    LONG RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result) override;
    BOOL SetEvent(HANDLE event) override;

private:
    IPlatform& m_system;
    HANDLE m_reached;
    HANDLE m_released;
    CString m_gateKey;
    std::atomic<int> m_opensAfterRelease{0};
};
