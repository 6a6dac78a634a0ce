#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestText.h"

namespace {

TEST(PlatformFiles, CreateWriteSeekReadAndDelete)
{
    IPlatform& platform = Platform();
    const CTestFile testFile("platform-files-test.bin");
    const CString& path = testFile.Path();
    HANDLE file = platform.CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    DWORD written = 0;
    ASSERT_TRUE(platform.WriteFile(file, "hello, world", 12, &written));
    EXPECT_EQ(written, 12u);
    EXPECT_TRUE(platform.FlushFileBuffers(file));
    EXPECT_TRUE(platform.CloseHandle(file));

    EXPECT_EQ(platform.CreateFileW(path, GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_NORMAL),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(platform.GetLastError(), static_cast<DWORD>(ERROR_FILE_EXISTS));

    file = platform.CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_EQ(platform.GetFileSize(file), 12u);
    EXPECT_EQ(platform.SetFilePointer(file, 7, FILE_BEGIN), 7u);
    char buffer[16] = {};
    DWORD read = 0;
    ASSERT_TRUE(platform.ReadFile(file, buffer, sizeof(buffer), &read));
    EXPECT_EQ(std::string(buffer, read), "world") << "a read at the end is short, not a failure";
    ASSERT_TRUE(platform.ReadFile(file, buffer, sizeof(buffer), &read));
    EXPECT_EQ(read, 0u);
    EXPECT_TRUE(platform.CloseHandle(file));

    EXPECT_EQ(platform.GetFileAttributesW(path) & FILE_ATTRIBUTE_DIRECTORY, 0u);
    EXPECT_EQ(platform.GetFileAttributesW(W(".")) & FILE_ATTRIBUTE_DIRECTORY,
              static_cast<DWORD>(FILE_ATTRIBUTE_DIRECTORY));
    EXPECT_TRUE(platform.DeleteFileW(path));
    EXPECT_EQ(platform.GetFileAttributesW(path), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(platform.GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(platform.CreateFileW(path, GENERIC_READ, 0, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(platform.GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_FALSE(platform.DeleteFileW(path));
}

// The ANSI code page is Windows-1252 on both builds (the test prefix runs
// with an English locale).
TEST(PlatformText, AnsiIsWindows1252BothWays)
{
    IPlatform& platform = Platform();
    std::string bytes;
    for (int byte = 0x20; byte <= 0xFF; ++byte)
        bytes += static_cast<char>(byte);
    std::vector<WCHAR> wide(bytes.size());
    ASSERT_EQ(platform.MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, bytes.data(), static_cast<int>(bytes.size()),
                                           wide.data(), static_cast<int>(wide.size())),
              static_cast<int>(bytes.size()));
    // The euro sign, Š, Ÿ and ä.
    EXPECT_EQ(std::vector<WCHAR>({wide[0x80 - 0x20], wide[0x8A - 0x20], wide[0x9F - 0x20], wide[0xE4 - 0x20]}),
              std::vector<WCHAR>({0x20AC, 0x0160, 0x0178, 0x00E4}));

    std::string back(bytes.size(), '\0');
    ASSERT_EQ(platform.WideCharToMultiByte(CP_ACP, WC_COMPOSITECHECK, wide.data(), static_cast<int>(wide.size()),
                                           &back[0], static_cast<int>(back.size())),
              static_cast<int>(bytes.size()));
    EXPECT_EQ(back, bytes);

    // A character outside the code page still takes one byte.
    const CString cyrillic = W("Ж");
    char narrow[4] = {};
    EXPECT_EQ(platform.WideCharToMultiByte(CP_ACP, WC_COMPOSITECHECK, cyrillic, 1, narrow, 4), 1);
    // Counting mode and a buffer that is too small.
    EXPECT_EQ(platform.WideCharToMultiByte(CP_ACP, 0, W("abc"), 3, nullptr, 0), 3);
    EXPECT_EQ(platform.WideCharToMultiByte(CP_ACP, 0, W("abc"), 3, narrow, 2), 0);
    EXPECT_EQ(platform.GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
}

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
    if (Platform().WaitForSingleObject(worker->go, kPatience) == WAIT_OBJECT_0)
        ++worker->steps;
    Platform().SetEvent(worker->done);
    return 0;
}

TEST(PlatformThreads, WorkerRunsWhenToldAndEventsResetByKind)
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

    // Manual-reset events stay set; auto-reset ones are consumed.
    HANDLE manual = platform.CreateEventW(TRUE, TRUE);
    HANDLE automatic = platform.CreateEventW(FALSE, TRUE);
    std::vector<DWORD> waits;
    for (HANDLE event : {manual, manual, automatic, automatic})
        waits.push_back(platform.WaitForSingleObject(event, 0));
    EXPECT_EQ(waits, std::vector<DWORD>({WAIT_OBJECT_0, WAIT_OBJECT_0, WAIT_OBJECT_0, WAIT_TIMEOUT}));

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
