// libFuzzer target: any bytes as a .reg file, imported into a fresh
// in-memory registry. Whatever the input, the import must end with success
// or one of its own error texts, without crashing, hanging or touching
// memory it does not own (the build adds AddressSanitizer and
// UndefinedBehaviorSanitizer).

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "base/CString.h"
#include "platform/PortablePlatform.h"
#include "regfile/RegImportRun.h"

namespace {

const char16_t kFile[] = u"fuzz-input.reg";

bool IsKnownOutcome(bool result, const CString& error)
{
    static const char16_t* const kErrors[] = {
        u"Unable to get file size.", u"Unable to read file.", u"Out of memory.", u"Invalid file header.",
        u"Conversion error.",        u"Cancelled by user.",   u"Not all keys and values were imported.",
    };
    if (result)
        return error.IsEmpty();
    for (const char16_t* text : kErrors) {
        if (error == text)
            return true;
    }
    const CString prefix(u"Syntax error at line ");
    return error.Left(prefix.GetLength()) == prefix && error.Right(1) == u".";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    CPortablePlatform platform;
    CScopedPlatform scoped(platform);
    HANDLE file = platform.CreateFileW(kFile, GENERIC_WRITE, 0, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL);
    DWORD written = 0;
    platform.WriteFile(file, data, static_cast<DWORD>(size), &written);
    platform.CloseHandle(file);

    // A small read buffer makes refills and long lines common; odd sizes
    // also skip the header check to reach the grammar behind it.
    CRegImportRun run(kFile, size % 2 == 0, 64);
    CString error;
    const bool result = run.Run([] { return false; }, error);
    if (!IsKnownOutcome(result, error))
        std::abort();
    return 0;
}
