#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/FaultInjectingPlatform.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"

// A fixed key of the registry the tests run on (the program's own key, the
// .reg association), copied aside into a scratch key and removed for the
// test, then put back as it was.
class CSavedKey {
public:
    CSavedKey(HKEY root, LPCWSTR path, LPCWSTR scratchName);
    ~CSavedKey();
    CSavedKey(const CSavedKey&) = delete;
    CSavedKey& operator=(const CSavedKey&) = delete;

private:
    HKEY m_root;
    CString m_path;
    CScratchKey m_copy;
    bool m_existed;
};

// Every value of a key's tree, one "subkey path[name]=data" line each in
// name order: "#n" for a four-byte DWORD, the text for REG_SZ, "type n"
// otherwise.
std::string DescribeTree(HKEY root, LPCWSTR path);

// Tests of the program's own key, with failures to inject.
class ProgramKeyTest : public testing::Test {
protected:
    ProgramKeyTest() : m_scoped(m_faults) {}

    CSavedKey m_programKey{HKEY_LOCAL_MACHINE, TEXT("SOFTWARE\\Marrowick"), TEXT("SavedProgramKey")};
    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped;
};
