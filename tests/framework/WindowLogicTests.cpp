#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/DpiScale.h"
#include "framework/ObjectKey.h"
#include "framework/SystemInfo.h"
#include "framework/WaitCursorState.h"
#include "tests/support/TestText.h"

namespace {

TEST(DpiScale, RoundsHalfAwayFromZeroEachAxisByItsOwnResolution)
{
    struct SCase { int units; int dpi; int pixels; } cases[] = {
        {0, 96, 0},    {7, 96, 7},     {7, 192, 14},   {1, 120, 1},  {2, 120, 3},    {-2, 120, -3},
        {-1, 120, -1}, {17, 144, 26},  {-17, 144, -26}, {5, 131, 7}, {-5, 131, -7}, {1, 48, 1},
        {-1, 48, -1},  {1, 47, 0},     {-1, 47, 0},    {100000000, 192, 200000000},
    };
    for (const SCase& c : cases)
        EXPECT_EQ(ScaleByDpi(c.units, c.dpi), c.pixels) << c.units << " at " << c.dpi;

    // Each axis scales by its own resolution; point sizes become character heights.
    CScopedScreenDpi dpi(192, 120);
    EXPECT_EQ(std::vector<int>({ScaleX(10), ScaleY(10), ScaleY(-10)}), std::vector<int>({20, 13, -13}));
    EXPECT_EQ(std::vector<int>({FontHeightForPoints(8, 96), FontHeightForPoints(8, 192), FontHeightForPoints(9, 96)}),
              std::vector<int>({-11, -21, -12}));
}

TEST(OsVersion, PacksAsBinaryCodedDecimalClampedTo99AndNamesSmartphones)
{
    EXPECT_EQ(std::vector<DWORD>({PackOsVersion(4, 20), PackOsVersion(4, 21), PackOsVersion(5, 0),
                                  PackOsVersion(10, 0), PackOsVersion(120, 2), PackOsVersion(5, 250)}),
              std::vector<DWORD>({0x0420, 0x0421, 0x0500, 0x1000, 0x9902, 0x0599}));
    EXPECT_TRUE(IsSmartphonePlatformType(W("SmartPhone")));
    EXPECT_FALSE(IsSmartphonePlatformType(W("PocketPC")));
    EXPECT_FALSE(IsSmartphonePlatformType(nullptr));
}

class CRecordingCursor : public ICursorDevice {
public:
    HANDLE ShowWaitCursor() override
    {
        m_log += "wait ";
        const HANDLE previous = m_current;
        m_current = Wait();
        return previous;
    }
    void ShowCursor(HANDLE cursor) override
    {
        m_log += cursor == Arrow() ? "arrow " : cursor == nullptr ? "none " : "other ";
        m_current = cursor;
    }
    static HANDLE Arrow() { return reinterpret_cast<HANDLE>(0x10); }
    static HANDLE Wait() { return reinterpret_cast<HANDLE>(0x20); }

    HANDLE m_current = Arrow();
    std::string m_log;
};

TEST(WaitCursor, NestedWaitsRestoreTheFirstCursorAtTheLastEnd)
{
    CRecordingCursor cursor;
    CWaitCursorState state;
    for (int i = 0; i < 3; ++i)
        state.Change(+1, cursor);
    state.Change(-1, cursor);
    state.Change(-1, cursor);
    EXPECT_EQ(cursor.m_current, CRecordingCursor::Wait());
    state.Change(-1, cursor);
    EXPECT_EQ(cursor.m_log, "wait wait wait wait wait arrow ");
    EXPECT_EQ(state.GetCount(), 0);

    state.Change(-1, cursor);
    EXPECT_EQ(state.GetCount(), 0) << "an extra end does not go below 0";
    const HANDLE other = reinterpret_cast<HANDLE>(0x30);
    cursor.m_current = other;
    state.Change(+1, cursor);
    EXPECT_EQ(state.GetCount(), 1);
    state.Change(-1, cursor);
    EXPECT_EQ(cursor.m_current, other) << "a fresh wait saves the cursor of its own start";
}


CString Encoded(DWORD value)
{
    WCHAR key[kObjectKeyLength];
    EncodeObjectKey(value, key);
    return CString(key);
}

TEST(ObjectKey, EncodesValueThenCheckDigitsLowestNibbleFirstAndRefusesDamage)
{
    // Check value of 1..8: 1, 4, 11, 26, 57, 120, 247, 502 = 0x1F6; of eight Fs
    // 15 * 255 = 0xEF1.
    EXPECT_EQ(Encoded(0x12345678), W("123456786F10"));
    EXPECT_EQ(Encoded(0), W("000000000000"));
    EXPECT_EQ(Encoded(0xFFFFFFFF), W("FFFFFFFF1FE0"));
    for (DWORD value : {0x1u, 0x12345678u, 0xABCDEF01u, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(DecodeObjectKey(Encoded(value)), value);
    EXPECT_EQ(DecodeObjectKey(W("abcdef01").GetString()), 0u) << "too short";
    EXPECT_EQ(DecodeObjectKey(W("123456786f10")), 0x12345678u) << "lower case is accepted";
    EXPECT_EQ(DecodeObjectKey(W("123456786F10trailing")), 0x12345678u);

    // Damaged: a check digit altered, a value digit altered, two digits
    // swapped, eleven digits, empty, a blank, a non-digit.
    for (const char* text : {"123456786F11", "123456796F10", "213456786F10", "123456786F1", "", "12345678 6F10",
                             "1234567G6F10"})
        EXPECT_EQ(DecodeObjectKey(W(text)), 0u) << text;
    EXPECT_EQ(DecodeObjectKey(nullptr), 0u);

    // Tokens stand for live objects only.
    CShdObjectTokens tokens;
    int first = 0;
    int second = 0;
    const DWORD a = tokens.Add(&first);
    const DWORD b = tokens.Add(&second);
    EXPECT_NE(a, 0u);
    EXPECT_NE(a, b);
    EXPECT_EQ(tokens.Find(a), &first);
    EXPECT_EQ(tokens.Find(b), &second);
    tokens.Remove(a);
    EXPECT_EQ(tokens.Find(a), nullptr);
    EXPECT_EQ(tokens.Find(b), &second);
    EXPECT_NE(tokens.Add(&first), a) << "a dead token is not handed out again at once";
    EXPECT_EQ(tokens.Add(nullptr), 0u);
    EXPECT_EQ(tokens.Find(0), nullptr);
}

}  // namespace
