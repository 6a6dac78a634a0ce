#include <gtest/gtest.h>

#include "framework/CString.h"
#include "framework/Utf8.h"
#include "tests/support/TestText.h"

namespace {

TEST(CStringFormat, FollowsTheWidePrintfRules)
{
    EXPECT_EQ(CString::Formatted(TEXT("%s (%i)"), W("Foo"), 2), W("Foo (2)"));
    EXPECT_EQ(CString::Formatted(TEXT("dword:%08x"), 0x1Au), W("dword:0000001a"));
    EXPECT_EQ(CString::Formatted(TEXT("%02x,%02X"), 0xABu, 0x5u), W("ab,05"));
    EXPECT_EQ(CString::Formatted(TEXT("hex(%x):"), 11), W("hex(b):"));
    EXPECT_EQ(CString::Formatted(TEXT("%x"), -1), W("ffffffff"));
    EXPECT_EQ(CString::Formatted(TEXT("%u"), static_cast<DWORD>(4294967295u)), W("4294967295"));
    EXPECT_EQ(CString::Formatted(TEXT("%d|%5d|%-5d|%05d"), -42, 42, 42, -42), W("-42|   42|42   |-0042"));
    EXPECT_EQ(CString::Formatted(TEXT("%c%c"), static_cast<WCHAR>('o'), static_cast<WCHAR>('k')), W("ok"));
    EXPECT_EQ(CString::Formatted(TEXT("%.2s|%4s"), W("abcdef"), W("ä")), W("ab|   ä"));
    EXPECT_EQ(CString::Formatted(TEXT("100%% %q %i")), W("100% %q %i"));
    CString text = W("x=");
    text.AppendFormat(TEXT("%i"), 5);
    EXPECT_EQ(text, W("x=5"));
}

TEST(CString, SearchesAndCutsByCodeUnits)
{
    const CString path = W("HKLM\\Software\\Foo (3)");
    EXPECT_EQ(path.Find('\\'), 4);
    EXPECT_EQ(path.Find('\\', 5), 13);
    EXPECT_EQ(path.Find(W("Foo")), 14);
    EXPECT_EQ(path.Find('#'), -1);
    EXPECT_EQ(path.ReverseFind('('), 18);
    EXPECT_EQ(path.Left(4), W("HKLM"));
    EXPECT_EQ(path.Mid(5, 8), W("Software"));
    EXPECT_EQ(path.Mid(14), W("Foo (3)"));
    EXPECT_EQ(path.Mid(99), W(""));
    EXPECT_EQ(path.Right(3), W("(3)"));
    EXPECT_EQ(path.Right(99), path);
}

TEST(CString, EditsCompareAndKeepEmbeddedNuls)
{
    CString text = W("  ab c \t");
    text.Trim();
    EXPECT_EQ(text, W("ab c"));
    text.Insert(2, TEXT("--"));
    text.Delete(0);
    EXPECT_EQ(text, W("b-- c"));
    text.Truncate(1);
    EXPECT_EQ(text + W("x") + static_cast<WCHAR>('y'), W("bxy"));
    EXPECT_EQ(W("abc").CompareNoCase(TEXT("ABC")), 0);
    EXPECT_LT(W("ABC").Compare(TEXT("abc")), 0);

    const WCHAR units[] = {'a', 0, 'b'};
    const CString withNul(units, 3);
    EXPECT_EQ(withNul.GetLength(), 3u);
    EXPECT_NE(withNul, CString(units, 1));
    EXPECT_EQ(withNul, CString(units, 3));

    CString filled;
    LPWSTR buffer = filled.GetBuffer(10);
    buffer[0] = 'h';
    buffer[1] = 'i';
    buffer[2] = 0;
    filled.ReleaseBuffer();
    EXPECT_EQ(filled, W("hi"));
    EXPECT_EQ(CString(static_cast<LPCWSTR>(nullptr)), W(""));
}

}  // namespace
