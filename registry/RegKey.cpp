#include "registry/RegKey.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "base/Text.h"
#include "base/ValueData.h"
#include "platform/Platform.h"

namespace {

const DWORD kFirstDataCapacity = 1024 + 1;

// One buffer that a registry call fills: its capacity (characters for a
// name, bytes for data) and the length that the call reported.
struct SGrowingBuffer {
    DWORD capacity;
    bool isName;
    DWORD length = 0;

    // A name that exactly fills its buffer does not fit (the call reports
    // ERROR_MORE_DATA); data may fill it.
    bool Fits() const { return isName ? length < capacity : length <= capacity; }
    // When the call tells the length it needs, the buffer grows to that; when
    // it only repeats the capacity (as it does for names), by half. No
    // progress is no growth.
    bool Grow(LONG status)
    {
        if (status != ERROR_MORE_DATA || length < capacity)
            return false;
        capacity = length > capacity ? length + 1 : std::max(capacity * 3 / 2, capacity + 1);
        return true;
    }
};

// Repeats `call`, which fills the buffers at their capacities, sets their
// lengths and returns the call's status, until it succeeds with every buffer
// big enough; false at the first failure that growing cannot mend.
template <typename Call>
bool ReadGrowing(std::initializer_list<SGrowingBuffer*> buffers, Call call)
{
    for (;;) {
        const LONG status = call();
        if (status == ERROR_SUCCESS &&
            std::all_of(buffers.begin(), buffers.end(), [](const SGrowingBuffer* buffer) { return buffer->Fits(); }))
            return true;
        bool grew = false;
        for (SGrowingBuffer* buffer : buffers)
            grew = buffer->Grow(status) || grew;
        if (!grew)
            return false;
    }
}

// A name read by `call(buffer, length)` with the growth rule, starting from
// room for `longest` characters.
template <typename Call>
bool ReadName(DWORD longest, CString& name, Call call)
{
    std::vector<WCHAR> buffer;
    SGrowingBuffer chars{longest + 1, true};
    const bool read = ReadGrowing({&chars}, [&]() -> LONG {
        buffer.assign(chars.capacity + 1, 0);
        chars.length = chars.capacity;
        return call(buffer.data(), &chars.length);
    });
    if (read)
        name = CString(buffer.data(), chars.length);
    return read;
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

bool CShdRegKey::Create(HKEY parent, LPCWSTR path, LPCWSTR className, bool* createdNew)
{
    Close();
    HKEY key = nullptr;
    DWORD disposition = 0;
    const LONG status =
        Platform().RegCreateKeyExW(parent, path != nullptr ? path : TEXT(""), className, 0, 0, &key, &disposition);
    return TakeCreated(status, key, disposition, createdNew);
}

bool CShdRegKey::CreateAbsent(HKEY parent, LPCWSTR path, LPCWSTR className, bool* createdNew)
{
    Close();
    HKEY key = nullptr;
    DWORD disposition = 0;
    const LONG status =
        Platform().RegCreateAbsentKeyW(parent, path != nullptr ? path : TEXT(""), className, &key, &disposition);
    return TakeCreated(status, key, disposition, createdNew);
}

bool CShdRegKey::TakeCreated(LONG status, HKEY key, DWORD disposition, bool* createdNew)
{
    if (createdNew != nullptr)
        *createdNew = status == ERROR_SUCCESS && disposition == REG_CREATED_NEW_KEY;
    if (status != ERROR_SUCCESS)
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
    SGrowingBuffer bytes{0, false};
    if (m_key == nullptr ||
        Platform().RegQueryValueExW(m_key, name, &type, nullptr, &bytes.capacity) != ERROR_SUCCESS)
        return false;
    const bool read = ReadGrowing({&bytes}, [&]() -> LONG {
        if (!data.SetSize(bytes.capacity))
            return ERROR_NOT_ENOUGH_MEMORY;
        bytes.length = bytes.capacity;
        return Platform().RegQueryValueExW(m_key, name, &type, data.GetData(), &bytes.length);
    });
    if (read)
        return data.SetSize(bytes.length);
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

CShdRegKey::SListing CShdRegKey::QueryListing()
{
    SListing listing;
    SListing known;
    if (QueryInfo(&known.subkeys, &known.longestSubkey, &known.values, &known.longestValueName))
        listing = known;
    return listing;
}

bool CShdRegKey::EnumSubkey(DWORD index, CString& name, DWORD longestName)
{
    name.Empty();
    return m_key != nullptr && ReadName(longestName, name, [&](LPWSTR buffer, DWORD* length) {
               return Platform().RegEnumKeyExW(m_key, index, buffer, length);
           });
}

bool CShdRegKey::EnumValueName(DWORD index, CString& name, DWORD& type, DWORD longestName)
{
    name.Empty();
    type = REG_NONE;
    if (m_key != nullptr && ReadName(longestName, name, [&](LPWSTR buffer, DWORD* length) {
            return Platform().RegEnumValueW(m_key, index, buffer, length, &type, nullptr, nullptr);
        }))
        return true;
    type = REG_NONE;
    return false;
}

bool CShdRegKey::EnumValue(DWORD index, CString& name, DWORD& type, CShdBinaryBuffer& data)
{
    name.Empty();
    type = REG_NONE;
    data.Clear();
    if (m_key == nullptr)
        return false;
    std::vector<WCHAR> buffer;
    // Either buffer may be the one that was short; whichever was grows.
    SGrowingBuffer chars{kPlainNameLength + 1, true};
    SGrowingBuffer bytes{kFirstDataCapacity, false};
    const bool read = ReadGrowing({&chars, &bytes}, [&]() -> LONG {
        buffer.assign(chars.capacity + 1, 0);
        if (!data.SetSize(bytes.capacity))
            return ERROR_NOT_ENOUGH_MEMORY;
        chars.length = chars.capacity;
        bytes.length = bytes.capacity;
        return Platform().RegEnumValueW(m_key, index, buffer.data(), &chars.length, &type, data.GetData(),
                                        &bytes.length);
    });
    if (read && data.SetSize(bytes.length)) {
        name = CString(buffer.data(), chars.length);
        return true;
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
    if (m_key != nullptr && ReadName(kPlainNameLength - 1, className, [&](LPWSTR buffer, DWORD* length) {
            return Platform().RegQueryInfoKeyW(m_key, buffer, length, &subkeys, nullptr, &values, nullptr, nullptr);
        }))
        return true;
    subkeys = 0;
    values = 0;
    return false;
}

bool CShdRegKey::GetStamp(SRegKeyStamp& stamp)
{
    stamp = SRegKeyStamp();
    return m_key != nullptr &&
           Platform().RegQueryKeyStampW(m_key, &stamp.subkeys, &stamp.values, &stamp.lastWrite) == ERROR_SUCCESS;
}
