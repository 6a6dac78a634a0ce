#include <gtest/gtest.h>

#include "framework/ObjectKey.h"
#include "tests/support/TestText.h"

namespace {

CString Encoded(DWORD value)
{
    WCHAR key[kObjectKeyLength];
    EncodeObjectKey(value, key);
    return CString(key);
}

TEST(ObjectKey, EncodesValueDigitsThenCheckDigitsLowestNibbleFirst)
{
    // Check value of 1..8: 1, 4, 11, 26, 57, 120, 247, 502 = 0x1F6; of eight Fs
    // 15 * 255 = 0xEF1.
    EXPECT_EQ(Encoded(0x12345678), W("123456786F10"));
    EXPECT_EQ(Encoded(0), W("000000000000"));
    EXPECT_EQ(Encoded(0xFFFFFFFF), W("FFFFFFFF1FE0"));
}

TEST(ObjectKey, DecodesWhatItEncodes)
{
    for (DWORD value : {0x1u, 0x12345678u, 0xABCDEF01u, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(DecodeObjectKey(Encoded(value)), value);
    EXPECT_EQ(DecodeObjectKey(W("abcdef01").GetString()), 0u) << "too short";
    EXPECT_EQ(DecodeObjectKey(W("123456786f10")), 0x12345678u) << "lower case is accepted";
    EXPECT_EQ(DecodeObjectKey(W("123456786F10trailing")), 0x12345678u);
}

TEST(ObjectKey, RefusesDamagedKeys)
{
    const char* damaged[] = {
        "123456786F11",  // a check digit altered
        "123456796F10",  // a value digit altered
        "213456786F10",  // two digits swapped
        "123456786F1",   // eleven digits
        "",
        "12345678 6F10",
        "1234567G6F10",
    };
    for (const char* text : damaged)
        EXPECT_EQ(DecodeObjectKey(W(text)), 0u) << text;
    EXPECT_EQ(DecodeObjectKey(nullptr), 0u);
}

TEST(ObjectTokens, TokensStandForLiveObjectsOnly)
{
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
