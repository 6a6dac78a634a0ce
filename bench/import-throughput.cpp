// The importer's throughput natively, on the in-memory registry, against a
// plain read of the same file's bytes and against reading its lines: MB/s
// of each and their ratios.
//   import-throughput FILE

#include <chrono>
#include <cstdio>
#include <vector>

#include "base/Utf8.h"
#include "platform/PortablePlatform.h"
#include "regfile/RegImportRun.h"
#include "regfile/RegLineReader.h"

namespace {

double Seconds(std::chrono::steady_clock::time_point from)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - from).count();
}

// Reads the file through the same 512 KiB buffer size the importer uses.
double TimePlainRead(const CString& file, DWORD& size)
{
    const auto start = std::chrono::steady_clock::now();
    HANDLE handle = Platform().CreateFileW(file, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    std::vector<char> buffer(0x80000);
    size = 0;
    DWORD read = 0;
    while (Platform().ReadFile(handle, buffer.data(), static_cast<DWORD>(buffer.size()), &read) && read > 0)
        size += read;
    Platform().CloseHandle(handle);
    return Seconds(start);
}

// Reads the file's lines as the importer does, without parsing them.
double TimeLineRead(const CString& file)
{
    const auto start = std::chrono::steady_clock::now();
    HANDLE handle = Platform().CreateFileW(file, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    CRegLineReader reader(handle);
    CString line;
    if (reader.Open(Platform().GetFileSize(handle)) == CRegLineReader::EResult::Line) {
        while (reader.ReadLine(line) == CRegLineReader::EResult::Line) {
        }
    }
    Platform().CloseHandle(handle);
    return Seconds(start);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: import-throughput FILE\n");
        return 2;
    }
    const CString file = FromUtf8(argv[1]);
    double best = 1e300;
    double bestRead = 1e300;
    double bestLines = 1e300;
    DWORD size = 0;
    for (int round = 0; round < 5; ++round) {
        bestRead = std::min(bestRead, TimePlainRead(file, size));
        bestLines = std::min(bestLines, TimeLineRead(file));
        // A fresh registry each round, so that every round creates every key.
        CPortablePlatform platform;
        CScopedPlatform scoped(platform);
        const auto start = std::chrono::steady_clock::now();
        CString error;
        if (!CRegImportRun(file, true).Run([] { return false; }, error)) {
            std::fprintf(stderr, "import failed: %s\n", ToUtf8(error).c_str());
            return 1;
        }
        best = std::min(best, Seconds(start));
    }
    const double megabytes = size / 1e6;
    std::printf("file: %.1f MB\n", megabytes);
    std::printf("plain read of the bytes: %.0f MB/s\n", megabytes / bestRead);
    std::printf("reading its lines:       %.0f MB/s\n", megabytes / bestLines);
    std::printf("import:                  %.0f MB/s (%.1f times the line reading, %.1f times the plain read)\n",
                megabytes / best, best / bestLines, best / bestRead);
    return 0;
}
