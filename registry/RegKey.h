#pragma once

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "base/WinTypes.h"

// What a key looked like when it was read: a key whose stamp is unchanged
// still has the subkeys and values read then.
struct SRegKeyStamp {
    DWORD subkeys = 0;
    DWORD values = 0;
    FILETIME lastWrite = {0, 0};

    bool operator==(const SRegKeyStamp& other) const
    {
        return subkeys == other.subkeys && values == other.values &&
               lastWrite.dwLowDateTime == other.lastWrite.dwLowDateTime &&
               lastWrite.dwHighDateTime == other.lastWrite.dwHighDateTime;
    }
    bool operator!=(const SRegKeyStamp& other) const { return !(*this == other); }
};

// The program's only registry handle: one open key, closed (and flushed when
// asked) by its destructor. Every operation returns false, 0 or an empty
// result when no key is open or the platform call fails, and clears its
// outputs first, so a failure leaves them empty. Used by one thread at a time.
class CShdRegKey {
public:
    explicit CShdRegKey(bool flushOnClose = false);
    virtual ~CShdRegKey();
    CShdRegKey(const CShdRegKey&) = delete;
    CShdRegKey& operator=(const CShdRegKey&) = delete;

    HKEY GetHandle() const { return m_key; }
    bool IsOpen() const { return m_key != nullptr; }

    // All close any key already open first. An empty path opens the parent
    // itself. Create opens an existing key as well; `createdNew`, when given,
    // says whether the key was absent before. CreateAbsent is Create for a
    // key that the caller knows to be absent, which some platforms make in
    // fewer calls.
    bool Open(HKEY parent, LPCWSTR path);
    bool Create(HKEY parent, LPCWSTR path, LPCWSTR className, bool* createdNew = nullptr);
    bool CreateAbsent(HKEY parent, LPCWSTR path, LPCWSTR className, bool* createdNew = nullptr);
    void Close(bool flush);
    void Close() { Close(m_flushOnClose); }

    bool WriteString(LPCWSTR name, LPCWSTR text);
    // Only string types; the text ends at the first NUL (a multi-string
    // gives its first element).
    bool ReadString(LPCWSTR name, CString& text);
    CString ReadStringOr(LPCWSTR name, LPCWSTR defaultText);
    bool WriteDword(LPCWSTR name, DWORD value);
    // Only a REG_DWORD of exactly four bytes.
    bool ReadDword(LPCWSTR name, DWORD& value);
    DWORD ReadDwordOr(LPCWSTR name, DWORD defaultValue);
    bool ReadBool(LPCWSTR name, bool defaultValue);
    // The bytes as they are, with any type number.
    bool WriteValue(LPCWSTR name, DWORD type, const BYTE* data, DWORD size);
    bool ReadValue(LPCWSTR name, DWORD& type, CShdBinaryBuffer& data);
    bool ValueExists(LPCWSTR name);
    bool GetValueType(LPCWSTR name, DWORD& type);
    bool DeleteValue(LPCWSTR name);

    DWORD ValueCount();
    DWORD SubkeyCount();

    // What an enumeration of the whole key needs to know first: how many
    // subkeys and values it has and the lengths of their longest names, so
    // that every name buffer is big enough at once. One query; when it
    // fails, the counts say "until enumeration fails" and the lengths are
    // the plain first capacity's.
    static constexpr DWORD kUntilFailure = 0xFFFFFFFF;
    static constexpr DWORD kPlainNameLength = 260;
    struct SListing {
        DWORD subkeys = kUntilFailure;
        DWORD longestSubkey = kPlainNameLength;
        DWORD values = kUntilFailure;
        DWORD longestValueName = kPlainNameLength;
    };
    SListing QueryListing();

    // Enumeration by index from 0; it ends at the first failure of any kind.
    // The first name buffer holds `longestName` characters and the NUL.
    bool EnumSubkey(DWORD index, CString& name, DWORD longestName = kPlainNameLength);
    bool EnumValueName(DWORD index, CString& name, DWORD& type, DWORD longestName = kPlainNameLength);
    bool EnumValue(DWORD index, CString& name, DWORD& type, CShdBinaryBuffer& data);
    bool GetClass(CString& text);
    // The class string and the numbers of subkeys and values, in one query.
    bool GetInfo(CString& className, DWORD& subkeys, DWORD& values);
    // The counts and the last-write time, in one query.
    bool GetStamp(SRegKeyStamp& stamp);

private:
    bool TakeCreated(LONG status, HKEY key, DWORD disposition, bool* createdNew);
    bool QueryInfo(DWORD* subKeys, DWORD* maxSubKeyLength, DWORD* values, DWORD* maxValueNameLength);

    HKEY m_key = nullptr;
    bool m_flushOnClose;
};
