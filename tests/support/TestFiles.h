#pragma once

#include <string>

#include "base/CString.h"

// A file that a test writes in its working folder (inside the build tree),
// deleted before and after the test.
class CTestFile {
public:
    explicit CTestFile(const char* name);
    ~CTestFile();
    CTestFile(const CTestFile&) = delete;
    CTestFile& operator=(const CTestFile&) = delete;

    const CString& Path() const { return m_path; }
    // The whole file; empty when it cannot be read.
    std::string Bytes() const;
    void Write(const std::string& bytes) const;
    bool Exists() const;

private:
    std::string m_name;
    CString m_path;
};

// Any file's bytes; empty when it cannot be read.
std::string ReadFileBytes(const std::string& path);

// A UTF-16 file's bytes from UTF-8 text: the byte-order mark, then the text
// in UTF-16LE, with each "\n" written as CR LF when asked.
std::string Utf16FileBytes(const std::string& utf8Text, bool crLfLineEnds = false);
