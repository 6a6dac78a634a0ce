#include "tests/regfile/ExportTestFiles.h"

#include <fstream>
#include <iterator>

#include "platform/Platform.h"
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
