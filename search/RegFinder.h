#pragma once

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "base/ObjArray.h"
#include "base/WinTypes.h"
#include "platform/WorkerJob.h"
#include "search/SearchMatcher.h"
#include "search/SearchParams.h"

class CShdRegKey;

// Where a search starts; copied into the finder.
struct SStartPosition {
    // Root of the start key; null starts at HKEY_CLASSES_ROOT.
    HKEY root = nullptr;
    // The start key below the root; empty for the root itself.
    CString keyPath;
    // The start value, when valueSelected.
    CString valueName;
    bool valueSelected = false;
    // Only the start key's subtree, in its root, is searched.
    bool subtreeOnly = false;
    // After HKEY_USERS the search goes on from HKEY_CLASSES_ROOT up to the
    // start position.
    bool wrapAround = true;
};

// Searches the registry, or one subtree, for a text in key names, value
// names and value data. Each step runs on a worker thread of its own and
// stops at the first match after the current position; the next step
// resumes just after it. Keys and values are visited in the order the user
// sees them: case-insensitive name order, a key's name before its values,
// its values before its subkeys, roots from HKEY_CLASSES_ROOT to HKEY_USERS.
//
// Use: SetUp, Start, wait for the done event (or call Collect, which waits),
// Collect; optionally SetPosition; Start again. The caller's thread only
// starts, cancels and collects; the finder's position is written by the
// worker alone and read only after it has ended.
class CRegFinder {
public:
    static const DWORD kStateNotSetUp = 0;
    static const DWORD kStateReady = 1;
    static const DWORD kStateFinished = 2;
    static const DWORD kStateAtKey = 3;
    static const DWORD kStateAtValue = 4;

    // A position in the registry, and the record of a match.
    struct SSearchPosition {
        HKEY root = nullptr;
        // Below the root, components joined with "\".
        CString keyPath;
        // Empty for a key.
        CString valueName;
        // kStateAtKey or kStateAtValue.
        DWORD kind = kStateAtKey;
        // Found before the search left the root where it started.
        bool firstPass = true;
    };

    // One value read while searching a key.
    struct SValueItem {
        CString name;
        DWORD type = REG_NONE;
        CShdCopyableBinaryBuffer data;
    };

    CRegFinder();
    ~CRegFinder();
    CRegFinder(const CRegFinder&) = delete;
    CRegFinder& operator=(const CRegFinder&) = delete;

    // Back to the defaults; a running step is cancelled first.
    void Reset();
    // A new search from the start position; a running step is cancelled first.
    void SetUp(const SSearchParams& params, const SStartPosition& start);
    // Moves the position after a match, before the next step (the user
    // selected another key or value). Null key path means the root itself;
    // a value name, even an empty one, makes the position a value. False
    // unless the finder is at a match and no step runs.
    bool SetPosition(HKEY root, LPCWSTR keyPath, LPCWSTR valueName);

    // Starts one step on a worker thread; false when not set up, a step
    // already runs, or the thread cannot be created.
    bool Start();
    // Ends a running step at the next key and waits for it; the position
    // stays at the last match. The done event is not set.
    void Cancel();
    // Waits for the step, then gives its match; false when it was cancelled
    // or nothing (further) was found.
    bool Collect(SSearchPosition& match);

    bool IsSetUp() const { return m_initialised; }
    // True when not set up or nothing further can be found.
    bool IsFinished() const { return !m_initialised || m_state == kStateFinished; }
    // Signalled when a step ends other than by Cancel.
    HANDLE GetDoneEvent() const { return m_worker.DoneEvent(); }

private:
    // The resume position on entry to a key's search, relative to that key,
    // and the match on return.
    struct SRelativePosition {
        CString keyPath;
        CString valueName;
        bool isValue = false;
    };

    enum class EValues { NotFound, Found, Failed };

    static constexpr DWORD kStepStackSize = 32768;

    void RunStep();
    void FindStep(bool& repeat);
    bool SearchKey(HKEY parent, const CString& keyName, bool resuming, const CString* restrictPath,
                   const CString* stopPath, const CString* stopValue, SRelativePosition& position);
    EValues SearchValues(CShdRegKey& key, bool& resuming, const CString* stopValue, SRelativePosition& position);
    bool ReadValues(CShdRegKey& key, CShdObjArray<SValueItem>& values) const;
    bool IsCancelled() const { return m_worker.IsCancelled(); }
    HKEY StartRoot() const;

    bool m_initialised = false;
    CSearchMatcher m_matcher;
    SStartPosition m_start;

    HKEY m_root = nullptr;
    CString m_keyPath;
    CString m_valueName;
    DWORD m_state = kStateNotSetUp;
    bool m_firstPass = true;

    // Last, so that a running step ends before the members it uses.
    CWorkerJob m_worker{kStepStackSize};
};
