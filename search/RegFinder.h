#pragma once

#include <memory>
#include <vector>

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "base/ObjArray.h"
#include "base/WinTypes.h"
#include "platform/WorkerJob.h"
#include "registry/RegKey.h"
#include "search/SearchMatcher.h"
#include "search/SearchParams.h"

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
// worker alone and read only after it has ended. Walk runs the same search
// on the calling thread instead, from match to match for as long as its
// observer wants.
//
// A step resumes without listing the keys above its position again: the
// finder keeps, between steps, the sorted subkeys of each key on the path to
// its position and the sorted values of the keys whose values it read, and
// trusts them only while the key's stamp (counts and last-write time) is
// unchanged. Keys are open only while a step or walk runs.
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

    // Drives a walk on the calling thread.
    class IWalkObserver {
    public:
        // Polled between keys; true ends the walk where it is, the position
        // staying at the last match.
        virtual bool IsCancelled() = 0;
        // A match, already the finder's position; false ends the walk here,
        // so that the next step or walk resumes just after it.
        virtual bool OnMatch(const SSearchPosition& match) = 0;

    protected:
        ~IWalkObserver() = default;
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

    // Searches on the calling thread from the position on, telling the
    // observer of every match, until it ends the walk or nothing further is
    // found. No step may be running.
    void Walk(IWalkObserver& observer);

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

    // What the walk read of one key, kept for the next step while the key's
    // stamp stays the same. One per depth: the keys on the current path.
    struct SLevel {
        HKEY root = nullptr;
        CString keyPath;
        // False when the key could not be opened or stamped: nothing kept.
        bool stamped = false;
        SRegKeyStamp stamp;
        bool subkeysRead = false;
        std::vector<CString> subkeys;
        bool valuesRead = false;
        CShdObjArray<SValueItem> values;
    };

    // One walk: where it is and how it ends.
    struct SWalk {
        IWalkObserver& observer;
        HKEY root;
        bool firstPass;
        bool cancelled = false;
    };

    // Where a key's walk ends: on with its next sibling, or the whole walk
    // (a match that ended it, or a cancel).
    enum class ENext { Continue, EndWalk };

    static constexpr DWORD kStepStackSize = 32768;

    void RunStep();
    ENext SearchKey(SWalk& walk, HKEY parent, const CString& keyName, const CString& keyPath, size_t depth,
                    bool resuming, const CString* restrictPath, const CString* stopPath, const CString* stopValue,
                    SRelativePosition& resume);
    ENext SearchValues(SWalk& walk, const SLevel& level, bool& resuming, const CString* stopValue,
                       const SRelativePosition& resume);
    // The level of a key just opened at `depth`, still holding what was read
    // of it when its stamp is unchanged.
    SLevel& LevelFor(HKEY root, const CString& keyPath, size_t depth, CShdRegKey& key);
    // False when memory runs out.
    bool ReadValues(CShdRegKey& key, SLevel& level) const;
    void ReadSubkeys(CShdRegKey& key, SLevel& level) const;
    // Makes the match the position and tells the observer; EndWalk when the
    // observer ends the walk there.
    ENext Report(SWalk& walk, const CString& keyPath, const CString* valueName);
    bool IsCancelled(SWalk& walk) const;
    // The current position as a match record.
    SSearchPosition Position() const;
    HKEY StartRoot() const;

    bool m_initialised = false;
    CSearchMatcher m_matcher;
    SStartPosition m_start;

    HKEY m_root = nullptr;
    CString m_keyPath;
    CString m_valueName;
    DWORD m_state = kStateNotSetUp;
    bool m_firstPass = true;

    std::vector<std::unique_ptr<SLevel>> m_levels;

    // Last, so that a running step ends before the members it uses.
    CWorkerJob m_worker{kStepStackSize};
};
