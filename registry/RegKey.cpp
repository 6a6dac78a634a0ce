#include "registry/RegKey.h"

#include <algorithm>
#include <vector>

#include "base/Text.h"
#include "base/ValueData.h"
#include "platform/Platform.h"

namespace {

const DWORD kFirstNameCapacity = 260 + 1;
const DWORD kFirstDataCapacity = 1024 + 1;

// The growth rule for a buffer that a call fills. A name that exactly fills
// its buffer does not fit (the call reports ERROR_MORE_DATA). When the call
// tells the length it needs, the buffer grows to that; when it only repeats
// the capacity (as it does for names), by half. No progress is a failure.
bool NextCapacity(LONG status, DWORD returned, DWORD& capacity)
{
    if (status != ERROR_MORE_DATA || returned < capacity)
        return false;
    capacity = returned > capacity ? returned + 1 : std::max(capacity * 3 / 2, capacity + 1);
    return true;
}

}  // namespace

CShdRegKey::CShdRegKey(bool flushOnClose) : m_flushOnClose(flushOnClose) {}

CShdRegKey::~CShdRegKey()
{
    Close();
}

bool CShdRegKey::Open(HKEY parent, LPCWSTR path)
{
    Close();
    HKEY key = nullptr;
    if (Platform().RegOpenKeyExW(parent, path != nullptr ? path : TEXT(""), 0, 0, &key) != ERROR_SUCCESS)
        return false;
    m_key = key;
    return true;
}

bool CShdRegKey::Create(HKEY parent, LPCWSTR path, LPCWSTR className)
{
    Close();
    HKEY key = nullptr;
    DWORD disposition = 0;
    if (Platform().RegCreateKeyExW(parent, path != nullptr ? path : TEXT(""), className, 0, 0, &key,
                                   &disposition) != ERROR_SUCCESS)
        return false;
    m_key = key;
    return true;
}

void CShdRegKey::Close(bool flush)
{
    if (m_key == nullptr)
        return;
    if (flush)
        Platform().RegFlushKey(m_key);
    Platform().RegCloseKey(m_key);
    m_key = nullptr;
}

bool CShdRegKey::WriteString(LPCWSTR name, LPCWSTR text)
{
    if (m_key == nullptr || text == nullptr)
        return false;
    const DWORD size = static_cast<DWORD>((StrLen(text) + 1) * sizeof(WCHAR));
    return Platform().RegSetValueExW(m_key, name, REG_SZ, reinterpret_cast<const BYTE*>(text), size) ==
           ERROR_SUCCESS;
}

bool CShdRegKey::ReadString(LPCWSTR name, CString& text)
{
    text.Empty();
    DWORD type = 0;
    DWORD size = 0;
    if (m_key == nullptr || Platform().RegQueryValueExW(m_key, name, &type, nullptr, &size) != ERROR_SUCCESS ||
        !IsStringType(type))
        return false;
    std::vector<WCHAR> buffer(size / sizeof(WCHAR) + 1, 0);
    DWORD capacity = static_cast<DWORD>(size / sizeof(WCHAR) * sizeof(WCHAR));
    if (Platform().RegQueryValueExW(m_key, name, &type, reinterpret_cast<BYTE*>(buffer.data()), &capacity) !=
            ERROR_SUCCESS ||
        !IsStringType(type))
        return false;
    const size_t units = capacity / sizeof(WCHAR);
    text = CString(buffer.data(), std::find(buffer.begin(), buffer.begin() + units, 0) - buffer.begin());
    return true;
}

CString CShdRegKey::ReadStringOr(LPCWSTR name, LPCWSTR defaultText)
{
    CString text;
    return ReadString(name, text) ? text : CString(defaultText);
}

bool CShdRegKey::WriteDword(LPCWSTR name, DWORD value)
{
    const auto bytes = DwordBytes(value);
    return WriteValue(name, REG_DWORD, bytes.data(), bytes.size());
}

bool CShdRegKey::ReadDword(LPCWSTR name, DWORD& value)
{
    value = 0;
    BYTE bytes[4] = {};
    DWORD type = 0;
    DWORD size = sizeof(bytes);
    if (m_key == nullptr || Platform().RegQueryValueExW(m_key, name, &type, bytes, &size) != ERROR_SUCCESS ||
        type != REG_DWORD || size != sizeof(bytes))
        return false;
    value = DwordAt(bytes);
    return true;
}

DWORD CShdRegKey::ReadDwordOr(LPCWSTR name, DWORD defaultValue)
{
    DWORD value = 0;
    return ReadDword(name, value) ? value : defaultValue;
}

bool CShdRegKey::ReadBool(LPCWSTR name, bool defaultValue)
{
    DWORD value = 0;
    return ReadDword(name, value) ? value != 0 : defaultValue;
}

bool CShdRegKey::WriteValue(LPCWSTR name, DWORD type, const BYTE* data, DWORD size)
{
    return m_key != nullptr && Platform().RegSetValueExW(m_key, name, type, data, size) == ERROR_SUCCESS;
}

bool CShdRegKey::ReadValue(LPCWSTR name, DWORD& type, CShdBinaryBuffer& data)
{
    type = REG_NONE;
    data.Clear();
    DWORD capacity = 0;
    if (m_key == nullptr || Platform().RegQueryValueExW(m_key, name, &type, nullptr, &capacity) != ERROR_SUCCESS)
        return false;
    for (;;) {
        if (!data.SetSize(capacity))
            break;
        DWORD size = capacity;
        const LONG status = Platform().RegQueryValueExW(m_key, name, &type, data.GetData(), &size);
        if (status == ERROR_SUCCESS && size <= capacity) {
            data.SetSize(size);
            return true;
        }
        if (!NextCapacity(status, size, capacity))
            break;
    }
    data.Clear();
    type = REG_NONE;
    return false;
}

bool CShdRegKey::ValueExists(LPCWSTR name)
{
    return m_key != nullptr && Platform().RegQueryValueExW(m_key, name, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

bool CShdRegKey::GetValueType(LPCWSTR name, DWORD& type)
{
    type = REG_NONE;
    return m_key != nullptr && Platform().RegQueryValueExW(m_key, name, &type, nullptr, nullptr) == ERROR_SUCCESS;
}

bool CShdRegKey::DeleteValue(LPCWSTR name)
{
    return m_key != nullptr && Platform().RegDeleteValueW(m_key, name) == ERROR_SUCCESS;
}

bool CShdRegKey::QueryInfo(DWORD* subKeys, DWORD* maxSubKeyLength, DWORD* values, DWORD* maxValueNameLength)
{
    return m_key != nullptr && Platform().RegQueryInfoKeyW(m_key, nullptr, nullptr, subKeys, maxSubKeyLength, values,
                                                           maxValueNameLength, nullptr) == ERROR_SUCCESS;
}

DWORD CShdRegKey::ValueCount()
{
    DWORD values = 0;
    return QueryInfo(nullptr, nullptr, &values, nullptr) ? values : 0;
}

DWORD CShdRegKey::SubkeyCount()
{
    DWORD subKeys = 0;
    return QueryInfo(&subKeys, nullptr, nullptr, nullptr) ? subKeys : 0;
}

bool CShdRegKey::EnumSubkeyFrom(DWORD index, DWORD capacity, CString& name)
{
    name.Empty();
    if (m_key == nullptr)
        return false;
    std::vector<WCHAR> buffer;
    for (;;) {
        buffer.assign(capacity + 1, 0);
        DWORD length = capacity;
        const LONG status = Platform().RegEnumKeyExW(m_key, index, buffer.data(), &length);
        if (status == ERROR_SUCCESS && length < capacity) {
            name = CString(buffer.data(), length);
            return true;
        }
        if (!NextCapacity(status, length, capacity))
            return false;
    }
}

bool CShdRegKey::EnumSubkey(DWORD index, CString& name)
{
    return EnumSubkeyFrom(index, kFirstNameCapacity, name);
}

bool CShdRegKey::EnumSubkeyFast(DWORD index, CString& name)
{
    DWORD longest = 0;
    if (!QueryInfo(nullptr, &longest, nullptr, nullptr))
        longest = 260;
    return EnumSubkeyFrom(index, longest, name);
}

bool CShdRegKey::EnumValueNameFrom(DWORD index, DWORD capacity, CString& name, DWORD& type)
{
    name.Empty();
    type = REG_NONE;
    if (m_key == nullptr)
        return false;
    std::vector<WCHAR> buffer;
    for (;;) {
        buffer.assign(capacity + 1, 0);
        DWORD length = capacity;
        const LONG status = Platform().RegEnumValueW(m_key, index, buffer.data(), &length, &type, nullptr, nullptr);
        if (status == ERROR_SUCCESS && length < capacity) {
            name = CString(buffer.data(), length);
            return true;
        }
        type = REG_NONE;
        if (!NextCapacity(status, length, capacity))
            return false;
    }
}

bool CShdRegKey::EnumValueName(DWORD index, CString& name, DWORD& type)
{
    return EnumValueNameFrom(index, kFirstNameCapacity, name, type);
}

bool CShdRegKey::EnumValueNameFast(DWORD index, CString& name, DWORD& type)
{
    DWORD longest = 0;
    if (!QueryInfo(nullptr, nullptr, nullptr, &longest))
        longest = 260;
    return EnumValueNameFrom(index, longest, name, type);
}

bool CShdRegKey::EnumValue(DWORD index, CString& name, DWORD& type, CShdBinaryBuffer& data)
{
    name.Empty();
    type = REG_NONE;
    data.Clear();
    if (m_key == nullptr)
        return false;
    DWORD nameCapacity = kFirstNameCapacity;
    DWORD dataCapacity = kFirstDataCapacity;
    std::vector<WCHAR> buffer;
    for (;;) {
        buffer.assign(nameCapacity + 1, 0);
        if (!data.SetSize(dataCapacity))
            break;
        DWORD length = nameCapacity;
        DWORD size = dataCapacity;
        const LONG status =
            Platform().RegEnumValueW(m_key, index, buffer.data(), &length, &type, data.GetData(), &size);
        if (status == ERROR_SUCCESS && length < nameCapacity && size <= dataCapacity) {
            name = CString(buffer.data(), length);
            data.SetSize(size);
            return true;
        }
        // Either buffer may be the one that was short; grow whichever was.
        const bool nameGrew = NextCapacity(status, length, nameCapacity);
        const bool dataGrew = status == ERROR_MORE_DATA && size > dataCapacity && NextCapacity(status, size, dataCapacity);
        if (!nameGrew && !dataGrew)
            break;
    }
    type = REG_NONE;
    data.Clear();
    return false;
}

bool CShdRegKey::GetClass(CString& text)
{
    DWORD subkeys = 0;
    DWORD values = 0;
    return GetInfo(text, subkeys, values);
}

bool CShdRegKey::GetInfo(CString& className, DWORD& subkeys, DWORD& values)
{
    className.Empty();
    subkeys = 0;
    values = 0;
    if (m_key == nullptr)
        return false;
    DWORD capacity = 260;
    std::vector<WCHAR> buffer;
    for (;;) {
        buffer.assign(capacity + 1, 0);
        DWORD length = capacity;
        const LONG status = Platform().RegQueryInfoKeyW(m_key, buffer.data(), &length, &subkeys, nullptr, &values,
                                                        nullptr, nullptr);
        if (status == ERROR_SUCCESS && length < capacity) {
            className = CString(buffer.data(), length);
            return true;
        }
        subkeys = 0;
        values = 0;
        if (!NextCapacity(status, length, capacity))
            return false;
    }
}

bool CShdRegKey::GetStamp(SRegKeyStamp& stamp)
{
    stamp = SRegKeyStamp();
    return m_key != nullptr &&
           Platform().RegQueryKeyStampW(m_key, &stamp.subkeys, &stamp.values, &stamp.lastWrite) == ERROR_SUCCESS;
}
