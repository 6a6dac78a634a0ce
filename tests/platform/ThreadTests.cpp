#include <gtest/gtest.h>

#include <atomic>

#include "platform/Platform.h"

namespace {

// Long enough for any healthy thread; a broken one fails the test instead of
// hanging it.
const DWORD kPatience = 10000;

struct SWorker {
    HANDLE go;
    HANDLE done;
    std::atomic<int> steps{0};
};

DWORD WINAPI WorkerMain(void* argument)
{
    auto* worker = static_cast<SWorker*>(argument);
    Platform().SetThreadPriority(Platform().GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
    if (Platform().WaitForSingleObject(worker->go, kPatience) == WAIT_OBJECT_0)
        ++worker->steps;
    Platform().SetEvent(worker->done);
    return 0;
}

TEST(PlatformThreads, WorkerRunsWhenToldAndSignalsBack)
{
    IPlatform& platform = Platform();
    SWorker worker{platform.CreateEventW(TRUE, FALSE), platform.CreateEventW(TRUE, FALSE)};
    HANDLE thread = platform.CreateThread(32768, WorkerMain, &worker);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(platform.WaitForSingleObject(worker.done, 20), static_cast<DWORD>(WAIT_TIMEOUT));
    EXPECT_EQ(platform.WaitForSingleObject(thread, 0), static_cast<DWORD>(WAIT_TIMEOUT));

    platform.SetEvent(worker.go);
    const HANDLE both[] = {worker.done, thread};
    ASSERT_EQ(platform.WaitForMultipleObjects(2, both, TRUE, kPatience), static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_EQ(worker.steps, 1);
    EXPECT_TRUE(platform.CloseHandle(thread));
    EXPECT_TRUE(platform.CloseHandle(worker.go));
    EXPECT_TRUE(platform.CloseHandle(worker.done));
}

TEST(PlatformThreads, ManualResetEventsStaySetAutoResetOnesAreConsumed)
{
    IPlatform& platform = Platform();
    HANDLE manual = platform.CreateEventW(TRUE, TRUE);
    HANDLE automatic = platform.CreateEventW(FALSE, TRUE);
    EXPECT_EQ(platform.WaitForSingleObject(manual, 0), static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_EQ(platform.WaitForSingleObject(manual, 0), static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_EQ(platform.WaitForSingleObject(automatic, 0), static_cast<DWORD>(WAIT_OBJECT_0));
    EXPECT_EQ(platform.WaitForSingleObject(automatic, 0), static_cast<DWORD>(WAIT_TIMEOUT));

    platform.ResetEvent(manual);
    const HANDLE pair[] = {manual, automatic};
    EXPECT_EQ(platform.WaitForMultipleObjects(2, pair, FALSE, 10), static_cast<DWORD>(WAIT_TIMEOUT));
    platform.SetEvent(automatic);
    EXPECT_EQ(platform.WaitForMultipleObjects(2, pair, FALSE, 0), static_cast<DWORD>(WAIT_OBJECT_0 + 1));
    platform.SetEvent(manual);
    platform.SetEvent(automatic);
    EXPECT_EQ(platform.WaitForMultipleObjects(2, pair, FALSE, 0), static_cast<DWORD>(WAIT_OBJECT_0))
        << "the lowest signalled index wins";
    EXPECT_EQ(platform.WaitForSingleObject(automatic, 0), static_cast<DWORD>(WAIT_OBJECT_0))
        << "an auto-reset event that did not satisfy the wait is not consumed";
    platform.CloseHandle(manual);
    platform.CloseHandle(automatic);
}

}  // namespace
