#include "tests/regfile/ExportTestFiles.h"

#include "regfile/RegExporter.h"
#include "tests/support/TestFiles.h"

std::string ReadExpectedFile(const char* name)
{
    return ReadFileBytes(std::string(QUENDA_REGFILE_TEST_DATA) + name);
}

bool ExportKey(const CString& file, bool unicode, const CString& path)
{
    CRegExporter exporter;
    bool result = false;
    return exporter.Start(file, false, unicode, HKEY_CURRENT_USER, path) && exporter.GetResult(result) && result;
}
