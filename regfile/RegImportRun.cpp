#include "regfile/RegImportRun.h"

#include <new>
#include <vector>

#include "base/Text.h"
#include "base/ValueData.h"
#include "platform/Platform.h"
#include "platform/PlatformHandle.h"
#include "regfile/RegSyntax.h"
#include "registry/KeyOperations.h"
#include "registry/RegistryRoots.h"

using namespace regsyntax;

namespace {

const WCHAR kUnicodeHeader[] = TEXT("Windows Registry Editor Version 5.00");
const WCHAR kAnsiHeader[] = TEXT("QUENDA4");

}  // namespace

CRegImportRun::CRegImportRun(LPCWSTR path, bool checkHeader, DWORD bufferSize)
    : m_path(path), m_checkHeader(checkHeader), m_bufferSize(bufferSize)
{
}

bool CRegImportRun::Run(const std::function<bool()>& cancelled, CString& errorText)
{
    {
        CShdHandle file(Platform().CreateFileW(m_path, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING,
                                                FILE_ATTRIBUTE_NORMAL));
        if (!file.IsValid()) {
            Fail(CString::Formatted(TEXT("Unable to open file \"%s\"."), m_path));
        } else {
            ReadAll(file.Get());
        }
        m_key.Close();
        for (DWORD root = kRootClassesRoot; root < kRootClassesRoot + kRootCount; ++root)
            Platform().RegFlushKey(RootKeyFromValue(root));
    }
    if (cancelled()) {
        errorText = TEXT("Cancelled by user.");
        return false;
    }
    if (!m_failed && m_partial) {
        errorText = TEXT("Not all keys and values were imported.");
        return false;
    }
    errorText = m_failed ? m_error : CString();
    return !m_failed;
}

void CRegImportRun::ReadAll(HANDLE file)
{
    const DWORD size = Platform().GetFileSize(file);
    if (size == INVALID_FILE_SIZE && Platform().GetLastError() != ERROR_SUCCESS) {
        Fail(TEXT("Unable to get file size."));
        return;
    }
    CRegLineReader reader(file, m_bufferSize);
    CRegLineReader::EResult result = reader.Open(size);
    m_unicode = reader.IsUnicode();
    CString line;
    while (result == CRegLineReader::EResult::Line) {
        result = reader.ReadLine(line);
        if (result == CRegLineReader::EResult::Line && !ProcessLine(line))
            return;
    }
    if (result == CRegLineReader::EResult::OutOfMemory) {
        Fail(TEXT("Out of memory."));
    } else if (result == CRegLineReader::EResult::ReadError) {
        Fail(TEXT("Unable to read file."));
    }
    // A file that ends inside a hex value announcing more lines was cut off:
    // the bytes collected so far are not the value, so nothing is written.
}

bool CRegImportRun::Fail(const CString& error)
{
    m_failed = true;
    m_error = error;
    return false;
}

bool CRegImportRun::SyntaxError()
{
    return Fail(CString::Formatted(TEXT("Syntax error at line %i."), m_lineNumber));
}

bool CRegImportRun::ProcessLine(CString& line)
{
    ++m_lineNumber;
    line.Trim();
    if (line.IsEmpty())
        return true;

    if (m_continuation) {
        StripComment(line);
        line.Trim();
        if (line.IsEmpty())
            return true;
        return TakeData(ParseHexBytes(line, 0, m_valueData));
    }

    if (m_header == EHeader::NotSeen) {
        if (line.CompareNoCase(m_unicode ? kUnicodeHeader : kAnsiHeader) == 0) {
            m_header = EHeader::Valid;
            return true;
        }
        if (m_checkHeader) {
            return Fail(TEXT("Invalid file header."));
        }
        // Without the check, whatever precedes the first key line is passed
        // over: the invalid header may be followed by more of its kind.
        m_header = EHeader::InvalidAllowed;
        m_skippingToKey = true;
        return true;
    }
    if (m_skippingToKey) {
        if (line.Find('[') < 0 && line.Find(']') < 0)
            return true;
        m_skippingToKey = false;
    }

    bool deletion = false;
    HKEY root = nullptr;
    CString path;
    switch (ParseKeyLine(line, deletion, root, path)) {
    case EKeyLine::SyntaxError:
        return SyntaxError();
    case EKeyLine::Key:
        return ProcessKeyLine(deletion, root, path);
    case EKeyLine::NotKeyLine:
        break;
    }
    return ProcessValueLine(line);
}

bool CRegImportRun::ProcessKeyLine(bool deletion, HKEY root, const CString& path)
{
    // A second section of the key that is open goes on through its handle.
    if (!deletion && m_key.IsOpen() && root == m_keyRoot && CompareNoCase(path, m_keyPath) == 0)
        return true;
    m_key.Close();
    m_keyRoot = root;
    m_keyPath = path;
    m_hasCurrentKey = !deletion;
    m_inDeletedKey = deletion;
    if (deletion) {
        // A whole root is never deleted: one line must not be able to empty
        // the registry. It counts as a change that could not be made.
        if (path.IsEmpty() || !DeleteKeyTree(root, path))
            m_partial = true;
        // What was deleted may come back, from this file or another program.
        m_newKeys.clear();
    } else if (!CreateKey(root, path)) {
        // The key's values will fail to be written, and say so too.
        m_partial = true;
    }
    return true;
}

bool CRegImportRun::CreateKey(HKEY root, const CString& path)
{
    // Below a key that this run created new there is nothing but what this
    // run made, with no class: nothing that a create could spoil, so the
    // platform need not look for an existing key first (which files of new
    // keys would otherwise pay once a key). Files list a key's subtree after
    // it, so the keys made new above the current one are a short chain.
    while (!m_newKeys.empty() &&
           !IsSameOrDescendant(root, path, m_newKeys.back().root, m_newKeys.back().path, true))
        m_newKeys.pop_back();
    bool createdNew = false;
    if (!(m_newKeys.empty() ? m_key.Create(root, path, TEXT(""), &createdNew)
                            : m_key.CreateAbsent(root, path, TEXT(""), &createdNew)))
        return false;
    try {
        if (createdNew)
            m_newKeys.push_back({root, path});
    } catch (const std::bad_alloc&) {
        // Without the record, the keys below are only created the slower way.
    }
    return true;
}

bool CRegImportRun::ProcessValueLine(CString& line)
{
    StripComment(line);
    line.Trim();
    if (line.IsEmpty())
        return true;
    if (!m_hasCurrentKey && !m_inDeletedKey)
        return SyntaxError();
    size_t position = 0;
    if (!ParseValueName(line, position, m_valueName))
        return SyntaxError();
    if (IsDeletion(line, position)) {
        if (m_hasCurrentKey && !m_key.DeleteValue(m_valueName))
            m_partial = true;
        return true;
    }
    return TakeData(ParseValueData(line, position, m_valueType, m_valueData, m_valueIsHex));
}

bool CRegImportRun::TakeData(EData result)
{
    switch (result) {
    case EData::SyntaxError:
        return SyntaxError();
    case EData::OutOfMemory:
        return Fail(TEXT("Out of memory."));
    case EData::Continues:
        m_continuation = true;
        return true;
    case EData::Complete:
        break;
    }
    return FinishValue();
}

bool CRegImportRun::FinishValue()
{
    m_continuation = false;
    // In an ANSI file, hex data of the text types holds ANSI text, one byte
    // for each character; quoted strings were read as characters already.
    if (!m_unicode && m_valueIsHex && IsStringType(m_valueType) && !m_valueData.IsEmpty()) {
        const int count = static_cast<int>(m_valueData.GetSize());
        std::vector<WCHAR> wide;
        CShdBinaryBuffer converted;
        try {
            wide.resize(static_cast<size_t>(count));
        } catch (const std::bad_alloc&) {
            return Fail(TEXT("Out of memory."));
        }
        if (Platform().MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, reinterpret_cast<const char*>(m_valueData.GetData()),
                                           count, wide.data(), count) != count)
            return Fail(TEXT("Conversion error."));
        if (!m_valueData.Assign(wide.data(), wide.size() * sizeof(WCHAR)))
            return Fail(TEXT("Out of memory."));
    }
    if (m_hasCurrentKey &&
        !m_key.WriteValue(m_valueName, m_valueType, m_valueData.GetData(), static_cast<DWORD>(m_valueData.GetSize())))
        m_partial = true;
    return true;
}
