#include "regfile/RegExporter.h"

#include <vector>

#include "platform/Platform.h"
#include "platform/PlatformHandle.h"
#include "regfile/FileWriteCache.h"
#include "regfile/RegFileWriter.h"
#include "registry/KeyPath.h"
#include "registry/RegistryRoots.h"
#include "registry/RegKey.h"
#include "registry/SortedNames.h"

CRegExporter::~CRegExporter()
{
    Cancel(false);
}

bool CRegExporter::Start(LPCWSTR path, bool createNew, bool unicode, HKEY root, LPCWSTR subkeyPath)
{
    if (IsRunning())
        return false;
    m_createNew = createNew;
    m_unicode = unicode;
    m_root = root;
    m_subkeyPath = subkeyPath != nullptr ? subkeyPath : TEXT("");
    return StartJob(path);
}

bool CRegExporter::Run()
{
    CShdHandle file(Platform().CreateFileW(FilePath(), GENERIC_WRITE, FILE_SHARE_READ,
                                           m_createNew ? CREATE_NEW : CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL));
    if (!file.IsValid())
        return false;
    CShdFileWriteCache cache;
    CRegFileWriter writer(cache, m_unicode);
    bool ok = cache.SetBufferSize(kCacheSize) && cache.Attach(file.Get()) && writer.WriteHeader();
    if (m_root != nullptr) {
        // A key line needs the root's name.
        ok = ok && RootLongName(m_root) != nullptr && WriteTree(writer, m_root, m_subkeyPath, m_root, m_subkeyPath);
    } else {
        for (DWORD value = kRootClassesRoot; ok && value < kRootClassesRoot + kRootCount; ++value) {
            const HKEY root = RootKeyFromValue(value);
            ok = WriteTree(writer, root, TEXT(""), root, CString());
        }
    }
    if (IsCancelled()) {
        writer.WriteCancelledLine();
        ok = false;
    }
    if (ok)
        ok = cache.Flush();
    cache.Close();
    Platform().FlushFileBuffers(file.Get());
    return ok;
}

bool CRegExporter::WriteTree(CRegFileWriter& writer, HKEY parent, LPCWSTR openPath, HKEY root, const CString& path)
{
    CShdRegKey key;
    if (!key.Open(parent, openPath))
        return true;
    if (IsCancelled() || !writer.WriteKeyLine(root, path))
        return false;
    // One query tells how many values and subkeys to read, which spares the
    // two calls that would only report the ends of the enumerations.
    const CShdRegKey::SListing listing = key.QueryListing();
    DWORD type = 0;
    for (DWORD index = 0; index < listing.values && key.EnumValue(index, m_valueName, type, m_valueData); ++index) {
        if (IsCancelled() || !writer.WriteValueLine(m_valueName, type, m_valueData))
            return false;
    }
    if (!writer.WriteEmptyLine())
        return false;

    std::vector<CString> subkeys;
    if (!ReadSortedSubkeyNames(key, listing, subkeys))
        return false;
    // Each subkey opens relative to its open parent, which spares the
    // registry a walk down the whole path.
    for (const CString& subkey : subkeys) {
        if (!WriteTree(writer, key.GetHandle(), subkey, root, ChildKeyPath(path, subkey)))
            return false;
    }
    return true;
}
