#include "tests/support/TestFiles.h"

#include <fstream>
#include <iterator>

#include "base/Utf8.h"
#include "platform/Platform.h"

CTestFile::CTestFile(const char* name) : m_name(name), m_path(FromUtf8(name))
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

void CTestFile::Write(const std::string& bytes) const
{
    std::ofstream(m_name, std::ios::binary | std::ios::trunc) << bytes;
}

bool CTestFile::Exists() const
{
    return Platform().GetFileAttributesW(m_path) != INVALID_FILE_ATTRIBUTES;
}

std::string ReadFileBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::string Utf16FileBytes(const std::string& utf8Text, bool crLfLineEnds)
{
    std::string bytes = "\xFF\xFE";
    const CString text = FromUtf8(utf8Text.c_str());
    for (size_t i = 0; i < text.GetLength(); ++i) {
        const uint16_t unit = static_cast<uint16_t>(text.GetAt(i));
        if (crLfLineEnds && unit == '\n')
            bytes += std::string("\r\0", 2);
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}
