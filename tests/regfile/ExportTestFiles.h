#pragma once

#include <string>

#include <vector>

#include "framework/CString.h"

// Files of the export tests: those the tests write go in the working folder
// (inside the build tree); the expected ones are committed under data/.

// The whole file as bytes; empty when it cannot be read.
std::string ReadFileBytes(const std::string& path);
std::string ReadExpectedFile(const char* name);

// A version 5 file's bytes from UTF-8 text whose lines end in "\n": the
// byte-order mark, then the text in UTF-16LE with CR LF line ends.
std::string Version5Bytes(const char* utf8Text);

// Writes a value into the key `keyPath` below `parent`, creating the key.
void WriteTestValue(HKEY parent, const char* keyPath, const char* name, DWORD type, const std::vector<BYTE>& data);

// A file that the test writes, deleted when the object goes.
class CTestFile {
public:
    explicit CTestFile(const char* name);
    ~CTestFile();
    CTestFile(const CTestFile&) = delete;
    CTestFile& operator=(const CTestFile&) = delete;

    const CString& Path() const { return m_path; }
    std::string Bytes() const;
    bool Exists() const;

private:
    std::string m_name;
    CString m_path;
};
