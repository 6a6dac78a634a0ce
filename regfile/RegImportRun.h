#pragma once

#include <functional>
#include <vector>

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "regfile/RegLineReader.h"
#include "regfile/RegSyntax.h"
#include "registry/RegKey.h"

// One import of a .reg file into the registry, from opening the file to the
// final flush: the body of the importer's worker thread. The first error
// stops the import; changes made before it stay in the registry.
class CRegImportRun {
public:
    // `checkHeader` is false when the user chose to skip the header check.
    // `bufferSize` is the read buffer's (tests use small ones).
    CRegImportRun(LPCWSTR path, bool checkHeader, DWORD bufferSize = CRegLineReader::kBufferSize);

    // Runs the import. Cancellation is asked for once, at the end, so that a
    // file is applied whole or up to its first error, never cut at random.
    // Returns true on complete success; otherwise `errorText` says why.
    bool Run(const std::function<bool()>& cancelled, CString& errorText);

private:
    enum class EHeader { NotSeen, Valid, InvalidAllowed };

    // False when the line stops the import (m_error says why).
    bool ProcessLine(CString& line);
    bool ProcessKeyLine(bool deletion, HKEY root, const CString& path);
    bool CreateKey(HKEY root, const CString& path);
    bool ProcessValueLine(CString& line);
    // Goes on after value data was parsed (a whole value or one more line).
    bool TakeData(regsyntax::EData result);
    bool FinishValue();
    // Stops the import with `error`; always false.
    bool Fail(const CString& error);
    bool SyntaxError();
    void ReadAll(HANDLE file);

    CString m_path;
    bool m_checkHeader;
    DWORD m_bufferSize;
    bool m_unicode = false;

    int m_lineNumber = 0;
    EHeader m_header = EHeader::NotSeen;
    bool m_skippingToKey = false;
    CShdRegKey m_key;
    HKEY m_keyRoot = nullptr;
    CString m_keyPath;
    // Keys that this run created and that were absent before it, each below
    // the one before: those above the last key line.
    struct SNewKey {
        HKEY root;
        CString path;
    };
    std::vector<SNewKey> m_newKeys;
    bool m_hasCurrentKey = false;
    bool m_inDeletedKey = false;
    bool m_continuation = false;
    CString m_valueName;
    DWORD m_valueType = REG_NONE;
    CShdBinaryBuffer m_valueData;
    bool m_valueIsHex = false;
    bool m_partial = false;
    bool m_failed = false;
    CString m_error;
};
