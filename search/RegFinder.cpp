#include "search/RegFinder.h"

#include <algorithm>
#include <new>
#include <vector>

#include "base/Text.h"
#include "platform/Platform.h"
#include "registry/SortedNames.h"
#include "search/SearchPaths.h"

namespace {

// The program keeps its settings, and with them the last search text, here:
// a search would otherwise always find its own criteria.
const WCHAR kOwnKeyPath[] = TEXT("SOFTWARE\\Marrowick\\Quenda");

// At these two entries the search thread gives up the rest of its time slice
// once; they are searched like any other.
const WCHAR kYieldValueName[] = TEXT("DhcpServer");
const WCHAR kYieldKeyName[] = TEXT("SWLD25SP1");

bool IsInsideOwnKey(HKEY root, const CString& keyPath)
{
    if (root != HKEY_LOCAL_MACHINE)
        return false;
    const size_t length = StrLen(kOwnKeyPath);
    if (keyPath.GetLength() < length || CompareNoCase(keyPath, kOwnKeyPath, length) != 0)
        return false;
    return keyPath.GetLength() == length || keyPath.GetAt(length) == '\\';
}

HKEY NextRoot(HKEY root)
{
    if (root == HKEY_CLASSES_ROOT)
        return HKEY_CURRENT_USER;
    if (root == HKEY_CURRENT_USER)
        return HKEY_LOCAL_MACHINE;
    if (root == HKEY_LOCAL_MACHINE)
        return HKEY_USERS;
    return nullptr;
}

// Enumerations stop at the count the stamp gave, which saves the call that
// would only say there is nothing more; without a stamp they stop at the
// first failure.
const DWORD kCountUnknown = 0xFFFFFFFF;

CString ChildPath(const CString& keyPath, const CString& name)
{
    return keyPath.IsEmpty() ? name : keyPath + TEXT("\\") + name;
}

}  // namespace

CRegFinder::CRegFinder() = default;

CRegFinder::~CRegFinder() = default;

void CRegFinder::Reset()
{
    Cancel();
    m_initialised = false;
    m_matcher.SetUp(SSearchParams());
    m_start = SStartPosition();
    m_root = nullptr;
    m_keyPath.Empty();
    m_valueName.Empty();
    m_state = kStateNotSetUp;
    m_firstPass = true;
    m_levels.clear();
}

void CRegFinder::SetUp(const SSearchParams& params, const SStartPosition& start)
{
    Cancel();
    m_initialised = true;
    m_matcher.SetUp(params);
    m_start = start;
    m_root = nullptr;
    m_keyPath.Empty();
    m_valueName.Empty();
    m_state = kStateReady;
    m_firstPass = true;
    // What was read under other criteria may lack the data now searched.
    m_levels.clear();
}

HKEY CRegFinder::StartRoot() const
{
    return m_start.root != nullptr ? m_start.root : HKEY_CLASSES_ROOT;
}

bool CRegFinder::SetPosition(HKEY root, LPCWSTR keyPath, LPCWSTR valueName)
{
    if (!m_initialised || m_worker.IsRunning() || (m_state != kStateAtKey && m_state != kStateAtValue))
        return false;
    if (root == nullptr)
        root = HKEY_CLASSES_ROOT;
    const CString path = keyPath != nullptr ? keyPath : TEXT("");
    if (root != m_root || path.CompareNoCase(m_keyPath) != 0) {
        // Whether the wrap-around still lies ahead depends on which side of
        // the start the new position is.
        m_firstPass = false;
        if (root == StartRoot()) {
            const int order = ComparePaths(path, m_start.keyPath);
            m_firstPass = order > 0 || (order == 0 && valueName != nullptr);
        }
        m_root = root;
        m_keyPath = path;
    }
    m_valueName = valueName != nullptr ? valueName : TEXT("");
    m_state = valueName != nullptr ? kStateAtValue : kStateAtKey;
    return true;
}

bool CRegFinder::Start()
{
    return m_initialised && m_worker.Start([this] { RunStep(); });
}

void CRegFinder::Cancel()
{
    m_worker.Cancel();
}

bool CRegFinder::Collect(SSearchPosition& match)
{
    match = SSearchPosition();
    m_worker.Wait();
    if (m_worker.IsCancelled() || !m_initialised || (m_state != kStateAtKey && m_state != kStateAtValue))
        return false;
    match = Position();
    return true;
}

CRegFinder::SSearchPosition CRegFinder::Position() const
{
    SSearchPosition position;
    position.root = m_root;
    position.keyPath = m_keyPath;
    position.valueName = m_valueName;
    position.kind = m_state;
    position.firstPass = m_firstPass;
    return position;
}

void CRegFinder::RunStep()
{
    // A step is a walk that ends at its first match.
    class CStep : public IWalkObserver {
    public:
        explicit CStep(const CWorkerJob& job) : m_job(job) {}
        bool IsCancelled() override { return m_job.IsCancelled(); }
        bool OnMatch(const SSearchPosition&) override { return false; }

    private:
        const CWorkerJob& m_job;
    };
    CStep step(m_worker);
    Walk(step);
}

void CRegFinder::Walk(IWalkObserver& observer)
{
    if (!m_initialised || m_state == kStateFinished)
        return;
    if (m_state == kStateReady) {
        m_root = StartRoot();
        m_keyPath = m_start.keyPath;
        m_valueName = m_start.valueSelected ? m_start.valueName : CString();
        m_state = m_start.valueSelected ? kStateAtValue : kStateAtKey;
        m_firstPass = true;
    }
    const bool restricted = m_start.subtreeOnly && m_start.root != nullptr;
    const CString* restrictPath = restricted ? &m_start.keyPath : nullptr;
    SRelativePosition resume{m_keyPath, m_valueName, m_state == kStateAtValue};
    bool resuming = true;
    // The pass is committed with each match or the end, so that a walk
    // cancelled after leaving its root resumes from the last match as if it
    // had not run on.
    SWalk walk{observer, m_root, m_firstPass};
    for (;;) {
        if (IsCancelled(walk))
            return;
        const bool stopHere = !walk.firstPass && m_start.wrapAround && walk.root == StartRoot();
        const CString* stopPath = stopHere ? &m_start.keyPath : nullptr;
        const CString* stopValue = stopHere && m_start.valueSelected ? &m_start.valueName : nullptr;
        if (SearchKey(walk, walk.root, CString(), CString(), 0, resuming, restrictPath, stopPath, stopValue,
                      resume) == ENext::EndWalk || IsCancelled(walk))
            return;
        if (restricted || stopHere) {
            m_state = kStateFinished;
            return;
        }
        walk.firstPass = false;
        resume = SRelativePosition();
        resuming = false;
        walk.root = NextRoot(walk.root);
        if (walk.root == nullptr && m_start.wrapAround && !m_start.subtreeOnly)
            walk.root = HKEY_CLASSES_ROOT;
        if (walk.root == nullptr) {
            m_state = kStateFinished;
            return;
        }
    }
}

bool CRegFinder::IsCancelled(SWalk& walk) const
{
    if (!walk.cancelled)
        walk.cancelled = walk.observer.IsCancelled();
    return walk.cancelled;
}

CRegFinder::ENext CRegFinder::Report(SWalk& walk, const CString& keyPath, const CString* valueName)
{
    m_root = walk.root;
    m_keyPath = keyPath;
    m_valueName = valueName != nullptr ? *valueName : CString();
    m_state = valueName != nullptr ? kStateAtValue : kStateAtKey;
    m_firstPass = walk.firstPass;
    if (IsInsideOwnKey(walk.root, keyPath))
        return ENext::Continue;
    return walk.observer.OnMatch(Position()) ? ENext::Continue : ENext::EndWalk;
}

CRegFinder::ENext CRegFinder::SearchKey(SWalk& walk, HKEY parent, const CString& keyName, const CString& keyPath,
                                        size_t depth, bool resuming, const CString* restrictPath,
                                        const CString* stopPath, const CString* stopValue, SRelativePosition& resume)
{
    const bool restricted = restrictPath != nullptr && !restrictPath->IsEmpty();
    CString restrictFirst;
    CString restrictRest;
    if (restricted)
        SplitFirstComponent(*restrictPath, restrictFirst, restrictRest);
    const bool isStopKey = stopPath != nullptr && stopPath->IsEmpty();
    CString stopFirst;
    CString stopRest;
    if (isStopKey && stopValue == nullptr)
        return ENext::Continue;
    if (stopPath != nullptr && !isStopKey)
        SplitFirstComponent(*stopPath, stopFirst, stopRest);

    const SSearchParams& params = m_matcher.Params();
    if (!restricted && !resuming && params.keyNames && m_matcher.MatchName(keyName) &&
        Report(walk, keyPath, nullptr) == ENext::EndWalk)
        return ENext::EndWalk;
    // Resuming at this very key: its name was tested in the step that found it.
    if (resuming && !resume.isValue && resume.keyPath.IsEmpty())
        resuming = false;

    if (CompareNoCase(keyName, kYieldKeyName) == 0)
        Platform().Sleep(0);
    // A key that cannot be opened has neither values nor subkeys: every
    // enumeration of an unopened key fails.
    CShdRegKey key;
    key.Open(parent, keyName);
    SLevel& level = LevelFor(walk.root, keyPath, depth, key);

    const bool resumeIsDeeper = resuming && (!resume.isValue || !resume.keyPath.IsEmpty());
    if (!restricted && (params.valueNames || params.valueData) && !resumeIsDeeper) {
        // A key whose values cannot all be held in memory is passed over.
        if (!level.valuesRead && !ReadValues(key, level))
            return ENext::Continue;
        if (SearchValues(walk, level, resuming, isStopKey ? stopValue : nullptr, resume) == ENext::EndWalk)
            return ENext::EndWalk;
    }
    if (isStopKey)
        return ENext::Continue;
    if (resuming && resume.isValue && resume.keyPath.IsEmpty())
        resuming = false;
    if (IsCancelled(walk))
        return ENext::EndWalk;

    if (!level.subkeysRead)
        ReadSubkeys(key, level);
    CString resumeFirst;
    size_t first = 0;
    if (resuming) {
        CString rest;
        SplitFirstComponent(resume.keyPath, resumeFirst, rest);
        resume.keyPath = rest;
        // The subkeys before the resume key were searched in earlier steps;
        // found by halves, a step costs the same among any number of them.
        first = static_cast<size_t>(
            std::lower_bound(level.subkeys.begin(), level.subkeys.end(), resumeFirst,
                             [](const CString& a, const CString& b) { return CompareNoCase(a, b) < 0; }) -
            level.subkeys.begin());
    }

    // By index: the walk below this key may add levels, never this one.
    for (size_t i = first; i < level.subkeys.size(); ++i) {
        const CString subkey = level.subkeys[i];
        // The resume key is gone: its later siblings are still ahead.
        if (resuming && CompareNoCase(subkey, resumeFirst) > 0) {
            resuming = false;
            resume = SRelativePosition();
        }
        if (restricted && CompareNoCase(subkey, restrictFirst) != 0)
            continue;
        const CString* childStop = nullptr;
        if (stopPath != nullptr) {
            const int order = CompareNoCase(subkey, stopFirst);
            if (order > 0)
                break;
            if (order == 0)
                childStop = &stopRest;
        }
        if (SearchKey(walk, key.GetHandle(), subkey, ChildPath(keyPath, subkey), depth + 1, resuming,
                      restricted ? &restrictRest : nullptr, childStop, childStop != nullptr ? stopValue : nullptr,
                      resume) == ENext::EndWalk)
            return ENext::EndWalk;
        resuming = false;
        if (childStop != nullptr)
            break;
        if (IsCancelled(walk))
            return ENext::EndWalk;
    }
    return ENext::Continue;
}

CRegFinder::SLevel& CRegFinder::LevelFor(HKEY root, const CString& keyPath, size_t depth, CShdRegKey& key)
{
    while (m_levels.size() <= depth)
        m_levels.push_back(std::make_unique<SLevel>());
    SLevel& level = *m_levels[depth];
    SRegKeyStamp stamp;
    const bool stamped = key.GetStamp(stamp);
    if (stamped && level.stamped && level.root == root && CompareNoCase(level.keyPath, keyPath) == 0 &&
        level.stamp == stamp)
        return level;
    level.root = root;
    level.keyPath = keyPath;
    level.stamped = stamped;
    level.stamp = stamp;
    level.subkeysRead = false;
    level.subkeys.clear();
    level.valuesRead = false;
    level.values.RemoveAll();
    return level;
}

CRegFinder::ENext CRegFinder::SearchValues(SWalk& walk, const SLevel& level, bool& resuming,
                                           const CString* stopValue, const SRelativePosition& resume)
{
    const SSearchParams& params = m_matcher.Params();
    for (size_t i = 0; i < level.values.GetCount(); ++i) {
        const SValueItem& value = *level.values[i];
        if (stopValue != nullptr && CompareNoCase(value.name, *stopValue) >= 0)
            break;
        if (resuming) {
            if (CompareNoCase(value.name, resume.valueName) == 0)
                resuming = false;
            continue;
        }
        if (CompareNoCase(value.name, kYieldValueName) == 0)
            Platform().Sleep(0);
        if (((params.valueNames && m_matcher.MatchName(value.name)) ||
             (params.valueData && m_matcher.MatchData(value.type, value.data.GetData(), value.data.GetSize()))) &&
            Report(walk, level.keyPath, &value.name) == ENext::EndWalk)
            return ENext::EndWalk;
    }
    return ENext::Continue;
}

bool CRegFinder::ReadValues(CShdRegKey& key, SLevel& level) const
{
    // Data is read only when it is searched; names alone are much cheaper.
    const bool withData = m_matcher.Params().valueData;
    const DWORD count = level.stamped ? level.stamp.values : kCountUnknown;
    level.values.RemoveAll();
    for (DWORD index = 0; index < count; ++index) {
        SValueItem* item = new (std::nothrow) SValueItem;
        if (item == nullptr || level.values.Add(item) < 0) {
            level.values.RemoveAll();
            return false;
        }
        const bool read = withData ? key.EnumValue(index, item->name, item->type, item->data)
                                   : key.EnumValueName(index, item->name, item->type);
        if (!read) {
            level.values.RemoveAt(level.values.GetCount() - 1);
            break;
        }
    }
    level.values.Sort([](const SValueItem& a, const SValueItem& b) { return CompareNoCase(a.name, b.name); });
    level.valuesRead = level.stamped;
    return true;
}

void CRegFinder::ReadSubkeys(CShdRegKey& key, SLevel& level) const
{
    const DWORD count = level.stamped ? level.stamp.subkeys : kCountUnknown;
    level.subkeys.clear();
    CString name;
    try {
        for (DWORD index = 0; index < count && key.EnumSubkey(index, name); ++index)
            level.subkeys.push_back(name);
    } catch (const std::bad_alloc&) {
        level.subkeys.clear();
    }
    SortNamesNoCase(level.subkeys);
    level.subkeysRead = level.stamped;
}
