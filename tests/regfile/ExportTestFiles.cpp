#include "tests/regfile/ExportTestFiles.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "platform/Platform.h"
#include "registry/RegKey.h"
#include "tests/support/TestText.h"

std::string ReadFileBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::string ReadExpectedFile(const char* name)
{
    return ReadFileBytes(std::string(QUENDA_REGFILE_TEST_DATA) + name);
}

std::string Version5Bytes(const char* utf8Text)
{
    std::string bytes = "\xFF\xFE";
    const CString text = W(utf8Text);
    for (size_t i = 0; i < text.GetLength(); ++i) {
        const uint16_t unit = static_cast<uint16_t>(text.GetAt(i));
        if (unit == '\n')
            bytes += std::string("\r\0", 2);
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

void WriteTestValue(HKEY parent, const char* keyPath, const char* name, DWORD type, const std::vector<BYTE>& data)
{
    CShdRegKey key(true);
    ASSERT_TRUE(key.Create(parent, W(keyPath), nullptr));
    ASSERT_TRUE(key.WriteValue(W(name), type, data.data(), static_cast<DWORD>(data.size())));
}

CTestFile::CTestFile(const char* name) : m_name(name), m_path(W(name))
{
    Platform().DeleteFileW(m_path);
}

CTestFile::~CTestFile()
{
    Platform().DeleteFileW(m_path);
}

std::string CTestFile::Bytes() const
{
    return ReadFileBytes(m_name);
}

bool CTestFile::Exists() const
{
    return Platform().GetFileAttributesW(m_path) != INVALID_FILE_ATTRIBUTES;
}
