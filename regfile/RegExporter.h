#pragma once

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "base/WinTypes.h"
#include "regfile/RegFileJob.h"

class CRegFileWriter;

// Writes a key with its values and whole subtree, or the whole registry, to
// a .reg file on a worker thread. Keys go depth-first, each key's subkeys in
// the program's case-insensitive name order, values in registry order; keys
// that cannot be opened are skipped. A cancelled file ends with
// "*** cancelled ***". A partly written file stays on disk unless the cancel
// asks for its deletion.
class CRegExporter : public CRegFileJob {
public:
    static constexpr DWORD kCacheSize = 0x80000;

    CRegExporter() = default;
    ~CRegExporter() override;

    // `root` is a predefined root, or null for all four; `subkeyPath` is
    // below it (empty for the root itself). `unicode` selects version 5 of
    // the format, otherwise version 4. With `createNew` an existing file
    // makes the export fail. False if a job is running or cannot start.
    bool Start(LPCWSTR path, bool createNew, bool unicode, HKEY root, LPCWSTR subkeyPath);

protected:
    bool Run() override;

private:
    // Writes the tree of the key `openPath` below the open key (or root)
    // `parent`, whose full path below `root` is `path`. False stops the
    // export.
    bool WriteTree(CRegFileWriter& writer, HKEY parent, LPCWSTR openPath, HKEY root, const CString& path);

    bool m_createNew = false;
    bool m_unicode = true;
    HKEY m_root = nullptr;
    CString m_subkeyPath;
    // Reused for every value, since values are written before recursing.
    CString m_valueName;
    CShdBinaryBuffer m_valueData;
};
