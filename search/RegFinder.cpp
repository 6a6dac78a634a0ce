#include "search/RegFinder.h"

#include <new>
#include <vector>

#include "base/Text.h"
#include "platform/Platform.h"
#include "registry/RegKey.h"
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
    if (IsCancelled() || !m_initialised || (m_state != kStateAtKey && m_state != kStateAtValue))
        return false;
    match.root = m_root;
    match.keyPath = m_keyPath;
    match.valueName = m_valueName;
    match.kind = m_state;
    match.firstPass = m_firstPass;
    return true;
}

void CRegFinder::RunStep()
{
    bool repeat = false;
    do {
        FindStep(repeat);
    } while (repeat);
}

void CRegFinder::FindStep(bool& repeat)
{
    repeat = false;
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
    SRelativePosition position{m_keyPath, m_valueName, m_state == kStateAtValue};
    bool resuming = true;
    HKEY root = m_root;
    // Committed only with a match or the end, so that a step cancelled after
    // leaving its root resumes from the last match as if it had not run.
    bool firstPass = m_firstPass;
    for (;;) {
        if (IsCancelled())
            return;
        const bool stopHere = !firstPass && m_start.wrapAround && root == StartRoot();
        const CString* stopPath = stopHere ? &m_start.keyPath : nullptr;
        const CString* stopValue = stopHere && m_start.valueSelected ? &m_start.valueName : nullptr;
        if (SearchKey(root, CString(), resuming, restrictPath, stopPath, stopValue, position)) {
            m_root = root;
            m_keyPath = position.keyPath;
            m_valueName = position.valueName;
            m_state = position.isValue ? kStateAtValue : kStateAtKey;
            m_firstPass = firstPass;
            repeat = IsInsideOwnKey(root, m_keyPath);
            return;
        }
        if (IsCancelled())
            return;
        if (restricted || stopHere) {
            m_state = kStateFinished;
            return;
        }
        firstPass = false;
        position = SRelativePosition();
        resuming = false;
        root = NextRoot(root);
        if (root == nullptr && m_start.wrapAround && !m_start.subtreeOnly)
            root = HKEY_CLASSES_ROOT;
        if (root == nullptr) {
            m_state = kStateFinished;
            return;
        }
    }
}

bool CRegFinder::SearchKey(HKEY parent, const CString& keyName, bool resuming, const CString* restrictPath,
                           const CString* stopPath, const CString* stopValue, SRelativePosition& position)
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
        return false;
    if (stopPath != nullptr && !isStopKey)
        SplitFirstComponent(*stopPath, stopFirst, stopRest);

    const SSearchParams& params = m_matcher.Params();
    if (!restricted && !resuming && params.keyNames && m_matcher.MatchName(keyName)) {
        position = SRelativePosition();
        return true;
    }
    // Resuming at this very key: its name was tested in the step that found it.
    if (resuming && !position.isValue && position.keyPath.IsEmpty())
        resuming = false;

    if (CompareNoCase(keyName, kYieldKeyName) == 0)
        Platform().Sleep(0);
    // A key that cannot be opened has neither values nor subkeys: every
    // enumeration of an unopened key fails.
    CShdRegKey key;
    key.Open(parent, keyName);

    const bool resumeIsDeeper = resuming && (!position.isValue || !position.keyPath.IsEmpty());
    if (!restricted && (params.valueNames || params.valueData) && !resumeIsDeeper) {
        const EValues result = SearchValues(key, resuming, isStopKey ? stopValue : nullptr, position);
        if (result == EValues::Found)
            return true;
        if (result == EValues::Failed)
            return false;
    }
    if (isStopKey)
        return false;
    if (resuming && position.isValue && position.keyPath.IsEmpty())
        resuming = false;
    if (IsCancelled())
        return false;

    std::vector<CString> subkeys;
    ReadSortedSubkeyNames(key, subkeys);
    CString resumeFirst;
    if (resuming) {
        CString rest;
        SplitFirstComponent(position.keyPath, resumeFirst, rest);
        position.keyPath = rest;
    }

    for (const CString& subkey : subkeys) {
        if (resuming) {
            const int order = CompareNoCase(subkey, resumeFirst);
            if (order < 0)
                continue;
            // The resume key is gone: its later siblings are still ahead.
            if (order > 0) {
                resuming = false;
                position = SRelativePosition();
            }
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
        if (SearchKey(key.GetHandle(), subkey, resuming, restricted ? &restrictRest : nullptr, childStop,
                      childStop != nullptr ? stopValue : nullptr, position)) {
            position.keyPath = position.keyPath.IsEmpty() ? subkey : subkey + TEXT("\\") + position.keyPath;
            return true;
        }
        resuming = false;
        if (childStop != nullptr || IsCancelled())
            return false;
    }
    return false;
}

CRegFinder::EValues CRegFinder::SearchValues(CShdRegKey& key, bool& resuming, const CString* stopValue,
                                             SRelativePosition& position)
{
    CShdObjArray<SValueItem> values;
    if (!ReadValues(key, values))
        return EValues::Failed;
    values.Sort([](const SValueItem& a, const SValueItem& b) { return CompareNoCase(a.name, b.name); });

    const SSearchParams& params = m_matcher.Params();
    for (size_t i = 0; i < values.GetCount(); ++i) {
        const SValueItem& value = *values[i];
        if (stopValue != nullptr && CompareNoCase(value.name, *stopValue) >= 0)
            break;
        if (resuming) {
            if (CompareNoCase(value.name, position.valueName) == 0)
                resuming = false;
            continue;
        }
        if (CompareNoCase(value.name, kYieldValueName) == 0)
            Platform().Sleep(0);
        if ((params.valueNames && m_matcher.MatchName(value.name)) ||
            (params.valueData && m_matcher.MatchData(value.type, value.data.GetData(), value.data.GetSize()))) {
            position = SRelativePosition();
            position.valueName = value.name;
            position.isValue = true;
            return EValues::Found;
        }
    }
    return EValues::NotFound;
}

bool CRegFinder::ReadValues(CShdRegKey& key, CShdObjArray<SValueItem>& values) const
{
    // Data is read only when it is searched; names alone are much cheaper.
    const bool withData = m_matcher.Params().valueData;
    for (DWORD index = 0;; ++index) {
        SValueItem* item = new (std::nothrow) SValueItem;
        if (item == nullptr)
            return false;
        const bool read = withData ? key.EnumValue(index, item->name, item->type, item->data)
                                   : key.EnumValueName(index, item->name, item->type);
        if (!read) {
            delete item;
            return true;
        }
        if (values.Add(item) < 0)
            return false;
    }
}
