// The same tests run against the in-memory registry (Linux build) and the
// real one (Windows build, under Wine): together they show that the two
// agree on every call the program makes. Each runs again through an overlay
// above that registry (the import preview's), which must answer the same.

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "base/Text.h"
#include "platform/OverlayPlatform.h"
#include "platform/Platform.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

class RegistryConformance : public testing::TestWithParam<bool> {
protected:
    RegistryConformance() : m_scratch(TEXT("Conformance")), m_key(m_scratch.Handle()) {}

    HKEY Create(HKEY parent, const CString& path, LPCWSTR className = nullptr, DWORD* disposition = nullptr)
    {
        HKEY key = nullptr;
        EXPECT_EQ(m_platform.RegCreateKeyExW(parent, path, className, 0, 0, &key, disposition), ERROR_SUCCESS);
        return key;
    }

    void Set(HKEY key, const CString& name, DWORD type, const std::vector<BYTE>& data)
    {
        ASSERT_EQ(m_platform.RegSetValueExW(key, name, type, data.data(), static_cast<DWORD>(data.size())),
                  ERROR_SUCCESS);
    }

    // The value's type and bytes, read the way the program reads them:
    // size first, then the data.
    std::vector<BYTE> Get(HKEY key, const CString& name, DWORD* type = nullptr)
    {
        DWORD size = 0;
        EXPECT_EQ(m_platform.RegQueryValueExW(key, name, type, nullptr, &size), ERROR_SUCCESS);
        std::vector<BYTE> data(size + 8, 0xBD);
        DWORD capacity = static_cast<DWORD>(data.size());
        EXPECT_EQ(m_platform.RegQueryValueExW(key, name, type, data.data(), &capacity), ERROR_SUCCESS);
        EXPECT_EQ(capacity, size);
        data.resize(capacity);
        return data;
    }

    // The names in the order of enumeration: of the subkeys, or of the values.
    std::vector<CString> Names(HKEY key, bool values = false)
    {
        std::vector<CString> names;
        WCHAR name[300];
        DWORD length = 300;
        while ((values ? m_platform.RegEnumValueW(key, static_cast<DWORD>(names.size()), name, &length, nullptr,
                                                  nullptr, nullptr)
                       : m_platform.RegEnumKeyExW(key, static_cast<DWORD>(names.size()), name, &length)) ==
               ERROR_SUCCESS) {
            names.push_back(CString(name, length));
            length = 300;
        }
        return names;
    }

    std::unique_ptr<COverlayPlatform> m_overlay =
        GetParam() ? std::make_unique<COverlayPlatform>(Platform()) : nullptr;
    std::unique_ptr<CScopedPlatform> m_scoped = m_overlay ? std::make_unique<CScopedPlatform>(*m_overlay) : nullptr;
    IPlatform& m_platform = Platform();
    CScratchKey m_scratch;
    HKEY m_key;
};

TEST_P(RegistryConformance, KeysAreFoundWithoutRegardToCaseAndKeepTheirCase)
{
    DWORD disposition = 0;
    HKEY created = Create(m_key, W("Mixed\\Ärger"), nullptr, &disposition);
    EXPECT_EQ(disposition, static_cast<DWORD>(REG_CREATED_NEW_KEY));
    m_platform.RegCloseKey(created);
    HKEY absent = nullptr;
    EXPECT_EQ(m_platform.RegCreateAbsentKeyW(m_key, W("Mixed\\Ärger\\New"), nullptr, &absent, &disposition), 0);
    EXPECT_EQ(disposition, static_cast<DWORD>(REG_CREATED_NEW_KEY));
    m_platform.RegCloseKey(absent);
    HKEY again = Create(m_key, W("MIXED\\ärger"), nullptr, &disposition);
    EXPECT_EQ(disposition, static_cast<DWORD>(REG_OPENED_EXISTING_KEY));
    m_platform.RegCloseKey(again);

    HKEY opened = nullptr;
    EXPECT_EQ(m_platform.RegOpenKeyExW(m_key, W("mixed\\ÄRGER"), 0, 0, &opened), ERROR_SUCCESS);
    m_platform.RegCloseKey(opened);
    EXPECT_EQ(m_platform.RegOpenKeyExW(m_key, W("Mixed\\Nope"), 0, 0, &opened), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Names(m_key), std::vector<CString>{W("Mixed")});

    // An empty path opens the parent itself; so does a trailing backslash.
    HKEY self = nullptr;
    ASSERT_EQ(m_platform.RegOpenKeyExW(m_key, W(""), 0, 0, &self), ERROR_SUCCESS);
    EXPECT_EQ(Names(self), std::vector<CString>{W("Mixed")});
    m_platform.RegCloseKey(self);
    ASSERT_EQ(m_platform.RegOpenKeyExW(m_key, W("Mixed\\"), 0, 0, &opened), ERROR_SUCCESS);
    EXPECT_EQ(Names(opened), std::vector<CString>{W("Ärger")});
    m_platform.RegCloseKey(opened);
}

TEST_P(RegistryConformance, SubkeysEnumerateInCaseInsensitiveOrder)
{
    for (const char* name : {"b", "A", "c", "_x", "B2"})
        m_platform.RegCloseKey(Create(m_key, W(name)));
    // The order is that of the program's own comparison: "_" (0x5F) sorts
    // before letters, as if they were lower case.
    const std::vector<CString> expected = {W("_x"), W("A"), W("b"), W("B2"), W("c")};
    EXPECT_EQ(Names(m_key), expected);

    WCHAR name[4];
    DWORD length = 5;
    EXPECT_EQ(m_platform.RegEnumKeyExW(m_key, 99, name, &length), ERROR_NO_MORE_ITEMS);
}

TEST_P(RegistryConformance, ANameThatExactlyFillsTheBufferIsMoreDataAndDataTooLargeReportsItsSize)
{
    m_platform.RegCloseKey(Create(m_key, W("Sub")));
    WCHAR name[261];
    for (DWORD capacity : {3u, 2u}) {
        DWORD length = capacity;
        EXPECT_EQ(m_platform.RegEnumKeyExW(m_key, 0, name, &length), ERROR_MORE_DATA);
        EXPECT_EQ(length, capacity) << "the length is left as given";
    }
    DWORD length = 4;
    EXPECT_EQ(m_platform.RegEnumKeyExW(m_key, 0, name, &length), ERROR_SUCCESS);
    EXPECT_EQ(length, 3u);
    EXPECT_EQ(CString(name), W("Sub"));

    Set(m_key, W("val"), REG_BINARY, Bytes({1, 2, 3, 4, 5}));
    DWORD type = 0;
    DWORD size = 0;
    length = 3;
    EXPECT_EQ(m_platform.RegEnumValueW(m_key, 0, name, &length, &type, nullptr, &size), ERROR_MORE_DATA);
    EXPECT_EQ(length, 3u);
    EXPECT_EQ(size, 5u) << "the data size is still reported";
    EXPECT_EQ(type, static_cast<DWORD>(REG_BINARY));
    ASSERT_EQ(m_platform.RegDeleteValueW(m_key, W("val")), ERROR_SUCCESS);

    // Value data that does not fit reports its size.
    const std::vector<BYTE> big = Sequence(3000, 7);
    Set(m_key, W("big"), REG_BINARY, big);
    BYTE small[1025];
    size = sizeof(small);
    EXPECT_EQ(m_platform.RegQueryValueExW(m_key, W("big"), &type, small, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 3000u);

    length = 261;
    size = sizeof(small);
    EXPECT_EQ(m_platform.RegEnumValueW(m_key, 0, name, &length, &type, small, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 3000u);
    EXPECT_EQ(length, 3u) << "the name was read";
    EXPECT_EQ(CString(name), W("big"));

    std::vector<BYTE> whole(3000);
    size = 3000;
    length = 261;
    EXPECT_EQ(m_platform.RegEnumValueW(m_key, 0, name, &length, &type, whole.data(), &size), ERROR_SUCCESS);
    EXPECT_EQ(whole, big);
    size = 3000;
    EXPECT_EQ(m_platform.RegQueryValueExW(m_key, W("big"), &type, whole.data(), &size), ERROR_SUCCESS)
        << "data that exactly fills the buffer fits";

    EXPECT_EQ(m_platform.RegQueryValueExW(m_key, W("missing"), &type, nullptr, &size), ERROR_FILE_NOT_FOUND);
    length = 261;
    EXPECT_EQ(m_platform.RegEnumValueW(m_key, 1, name, &length, &type, nullptr, nullptr), ERROR_NO_MORE_ITEMS);
}

TEST_P(RegistryConformance, ValueNamesIgnoreCaseAndKeepTheirFirstSpelling)
{
    Set(m_key, W("Ärger"), REG_DWORD, Bytes({1, 0, 0, 0}));
    Set(m_key, W("ärger"), REG_BINARY, Bytes({2}));
    Set(m_key, W(""), REG_SZ, Utf16Bytes(W("default"), true));
    Set(m_key, W("second"), REG_SZ, Utf16Bytes(W("x"), true));

    DWORD type = 0;
    EXPECT_EQ(Get(m_key, W("ÄRGER"), &type), Bytes({2}));
    EXPECT_EQ(type, static_cast<DWORD>(REG_BINARY));
    DWORD size = 0;
    EXPECT_EQ(m_platform.RegQueryValueExW(m_key, nullptr, &type, nullptr, &size), ERROR_SUCCESS)
        << "a null name is the default value";
    EXPECT_EQ(size, 16u);

    // Values enumerate in name order too. (So does Wine; desktop Windows
    // keeps the order of writing. The program sorts wherever order shows.)
    const std::vector<CString> expected = {W(""), W("second"), W("Ärger")};
    EXPECT_EQ(Names(m_key, true), expected);

    EXPECT_EQ(m_platform.RegDeleteValueW(m_key, W("äRGER")), ERROR_SUCCESS);
    EXPECT_EQ(m_platform.RegDeleteValueW(m_key, W("Ärger")), ERROR_FILE_NOT_FOUND);
}

TEST_P(RegistryConformance, QueryInfoReportsCountsLongestNamesAndClassKeysWithSubkeysStay)
{
    HKEY key = Create(m_key, W("Info"), TEXT("myclass"));
    Set(key, W("a"), REG_BINARY, Bytes({1, 2, 3}));
    Set(key, W("longer name"), REG_BINARY, Bytes({1}));
    m_platform.RegCloseKey(Create(key, W("k")));
    m_platform.RegCloseKey(Create(key, W("longest key")));

    WCHAR className[260];
    DWORD classLength = 260;
    DWORD subKeys = 0, maxSubKey = 0, values = 0, maxValueName = 0, maxValue = 0;
    ASSERT_EQ(m_platform.RegQueryInfoKeyW(key, className, &classLength, &subKeys, &maxSubKey, &values,
                                          &maxValueName, &maxValue),
              ERROR_SUCCESS);
    EXPECT_EQ(CString(className), W("myclass"));
    EXPECT_EQ(std::vector<DWORD>({classLength, subKeys, maxSubKey, values, maxValueName, maxValue}),
              std::vector<DWORD>({7, 2, 11, 2, 11, 3}));

    // A class that exactly fills the buffer does not fit.
    classLength = 7;
    EXPECT_NE(m_platform.RegQueryInfoKeyW(key, className, &classLength, nullptr, nullptr, nullptr, nullptr, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(classLength, 7u);

    // The stamp gives the same counts, and a write moves the last-write time.
    DWORD stampSubkeys = 0, stampValues = 0;
    FILETIME before = {}, after = {};
    ASSERT_EQ(m_platform.RegQueryKeyStampW(key, &stampSubkeys, &stampValues, &before), ERROR_SUCCESS);
    EXPECT_EQ(std::vector<DWORD>({stampSubkeys, stampValues}), std::vector<DWORD>({2, 2}));
    Set(key, W("a"), REG_BINARY, Bytes({4}));
    ASSERT_EQ(m_platform.RegQueryKeyStampW(key, &stampSubkeys, &stampValues, &after), ERROR_SUCCESS);
    EXPECT_TRUE(before.dwLowDateTime != after.dwLowDateTime || before.dwHighDateTime != after.dwHighDateTime);

    // Creating an existing key (as every "open for writing, creating when
    // missing" does) and writing into it keeps its class, whatever class the
    // creation names; the disposition still says the key existed.
    for (LPCWSTR given : {TEXT("other"), static_cast<LPCWSTR>(nullptr), TEXT("")}) {
        DWORD disposition = 0;
        HKEY again = Create(m_key, W("Info"), given, &disposition);
        EXPECT_EQ(disposition, static_cast<DWORD>(REG_OPENED_EXISTING_KEY));
        Set(again, W("written"), REG_BINARY, Bytes({1}));
        classLength = 260;
        EXPECT_EQ(m_platform.RegQueryInfoKeyW(again, className, &classLength, nullptr, nullptr, nullptr, nullptr,
                                              nullptr),
                  ERROR_SUCCESS);
        EXPECT_EQ(CString(className), W("myclass"));
        m_platform.RegCloseKey(again);
    }
    m_platform.RegCloseKey(key);

    // Keys with subkeys refuse deletion.
    m_platform.RegCloseKey(Create(m_key, W("Parent\\Child")));
    EXPECT_EQ(m_platform.RegDeleteKeyW(m_key, W("Parent")), ERROR_ACCESS_DENIED);
    EXPECT_EQ(m_platform.RegDeleteKeyW(m_key, W("parent\\CHILD")), ERROR_SUCCESS);
    EXPECT_EQ(m_platform.RegDeleteKeyW(m_key, W("Parent\\Child")), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(m_platform.RegDeleteKeyW(m_key, W("Parent")), ERROR_SUCCESS);
    EXPECT_EQ(Names(m_key), std::vector<CString>{W("Info")});
}

// A key opened with no rights is read and written all the same; the roots
// need no opening; the handle of a deleted key answers "key deleted".
TEST_P(RegistryConformance, HandlesWithoutRightsOfRootsAndOfDeletedKeys)
{
    Set(m_key, W("v"), REG_DWORD, Bytes({1, 0, 0, 0}));
    HKEY key = nullptr;
    ASSERT_EQ(m_platform.RegOpenKeyExW(HKEY_CURRENT_USER, m_scratch.Path(), 0, 0, &key), ERROR_SUCCESS);
    EXPECT_EQ(Get(key, W("v")), Bytes({1, 0, 0, 0}));
    Set(key, W("w"), REG_BINARY, Bytes({2}));
    EXPECT_EQ(m_platform.RegFlushKey(key), ERROR_SUCCESS);
    EXPECT_EQ(m_platform.RegCloseKey(key), ERROR_SUCCESS);

    DWORD subKeys = 0;
    EXPECT_EQ(m_platform.RegQueryInfoKeyW(HKEY_CURRENT_USER, nullptr, nullptr, &subKeys, nullptr, nullptr, nullptr,
                                          nullptr),
              ERROR_SUCCESS);
    EXPECT_GE(subKeys, 1u);
    EXPECT_EQ(m_platform.RegFlushKey(HKEY_LOCAL_MACHINE), ERROR_SUCCESS);
    EXPECT_EQ(m_platform.RegCloseKey(HKEY_USERS), ERROR_SUCCESS);
    EXPECT_EQ(m_platform.RegOpenKeyExW(HKEY_CLASSES_ROOT, W(""), 0, 0, &key), ERROR_SUCCESS);
    m_platform.RegCloseKey(key);

    HKEY doomed = Create(m_key, W("Doomed"));
    Set(doomed, W("v"), REG_BINARY, Bytes({1}));
    ASSERT_EQ(m_platform.RegDeleteKeyW(m_key, W("Doomed")), ERROR_SUCCESS);
    DWORD size = 0;
    EXPECT_EQ(m_platform.RegQueryValueExW(doomed, W("v"), nullptr, nullptr, &size), ERROR_KEY_DELETED);
    EXPECT_EQ(m_platform.RegSetValueExW(doomed, W("w"), REG_BINARY, nullptr, 0), ERROR_KEY_DELETED);
    EXPECT_EQ(m_platform.RegCloseKey(doomed), ERROR_SUCCESS);
}

INSTANTIATE_TEST_SUITE_P(DirectAndOverlaid, RegistryConformance, testing::Bool());

}  // namespace
