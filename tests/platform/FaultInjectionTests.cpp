#include <gtest/gtest.h>

#include "platform/FaultInjectingPlatform.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

TEST(FaultInjection, FailsChosenRegistryCallsAndCountsThem)
{
    CFaultInjectingPlatform faults;
    CScopedPlatform scoped(faults);
    CScratchKey scratch(TEXT("Faults"));
    HKEY key = nullptr;
    faults.RegCreateKeyExW(scratch.Handle(), W("Locked"), nullptr, 0, 0, &key, nullptr);
    faults.RegCloseKey(key);

    faults.ResetRegistryCallCount();
    faults.FailOpen(TEXT("locked"));
    EXPECT_EQ(faults.RegOpenKeyExW(scratch.Handle(), W("Locked\\"), 0, 0, &key), ERROR_ACCESS_DENIED);
    EXPECT_EQ(key, nullptr);

    const BYTE data[] = {1, 2, 3, 4};
    faults.FailValueWrite(TEXT("Bad"), ERROR_DISK_FULL);
    EXPECT_EQ(faults.RegSetValueExW(scratch.Handle(), W("bad"), REG_DWORD, data, 4), ERROR_DISK_FULL);
    faults.FailValueWritesAfter(1);
    EXPECT_EQ(faults.RegSetValueExW(scratch.Handle(), W("a"), REG_DWORD, data, 4), ERROR_SUCCESS);
    EXPECT_EQ(faults.RegSetValueExW(scratch.Handle(), W("b"), REG_DWORD, data, 4), ERROR_ACCESS_DENIED);
    EXPECT_EQ(faults.RegistryCallCount(), 4u);

    faults.Clear();
    EXPECT_EQ(faults.RegSetValueExW(scratch.Handle(), W("b"), REG_DWORD, data, 4), ERROR_SUCCESS);
}

TEST(FaultInjection, CutsFileWritesShortAndRefusesThreads)
{
    CFaultInjectingPlatform faults;
    const CString path = W("fault-injection-test.bin");
    HANDLE file = faults.CreateFileW(path, GENERIC_WRITE, 0, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    faults.LimitFileWrites(5);
    DWORD written = 0;
    EXPECT_TRUE(faults.WriteFile(file, "abc", 3, &written));
    EXPECT_EQ(written, 3u);
    EXPECT_TRUE(faults.WriteFile(file, "defg", 4, &written));
    EXPECT_EQ(written, 2u);
    EXPECT_TRUE(faults.WriteFile(file, "h", 1, &written));
    EXPECT_EQ(written, 0u);
    faults.CloseHandle(file);
    file = faults.CreateFileW(path, GENERIC_READ, 0, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(faults.GetFileSize(file), 5u);
    faults.CloseHandle(file);
    faults.DeleteFileW(path);

    faults.FailThreadCreation();
    EXPECT_EQ(faults.CreateThread(32768, [](void*) -> DWORD { return 0; }, nullptr), nullptr);
}

}  // namespace
