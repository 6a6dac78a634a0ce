#include <gtest/gtest.h>

#include <vector>

#include "app/VersionInfo.h"
#include "tests/support/TestText.h"

namespace {

TEST(VersionInfo, ReadsTheFileVersionAfterTheAlignedSignature)
{
    // A misaligned signature first, then the real one: 1.2.3, build 456.
    const std::vector<BYTE> data = Bytes({0x00, 0x00, 0xBD, 0x04, 0xEF, 0xFE, 0x00, 0x00,
                                          0xBD, 0x04, 0xEF, 0xFE, 0x00, 0x00, 0x01, 0x00,
                                          0x02, 0x00, 0x01, 0x00, 0xC8, 0x01, 0x03, 0x00});
    SFileVersion version;
    ASSERT_TRUE(ReadFixedFileVersion(data.data(), data.size(), version));
    EXPECT_EQ(std::vector<int>({version.major, version.minor, version.patch, version.build}),
              std::vector<int>({1, 2, 3, 456}));

    version.major = 9;
    EXPECT_FALSE(ReadFixedFileVersion(data.data(), data.size() - 1, version)) << "cut short";
    EXPECT_EQ(version.major, 0);
    EXPECT_FALSE(ReadFixedFileVersion(nullptr, 0, version));
}

}  // namespace
