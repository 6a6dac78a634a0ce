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

}  // namespace
