#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "editors/EditValueModel.h"
#include "editors/ValueEditRules.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/RegKey.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

const CString kBreak = W("\r\n");

std::vector<BYTE> Data(const CShdBinaryBuffer& buffer)
{
    return std::vector<BYTE>(buffer.GetData(), buffer.GetData() + buffer.GetSize());
}

// A stored value is shown as text and, saved unchanged, written back as the
// bytes the rules make of that text.
TEST(EditValueModel, StoredBytesBecomeTextAndTextBecomesBytes)
{
    const struct {
        DWORD type;
        std::vector<BYTE> stored;
        CString text;
        std::vector<BYTE> written;
    } cases[] = {
        {REG_SZ, Utf16Bytes(W("ab"), true), W("ab"), Utf16Bytes(W("ab"), true)},
        {REG_EXPAND_SZ, Utf16Bytes(W("%x%"), false), W("%x%"), Utf16Bytes(W("%x%"), true)},
        {REG_SZ, Bytes({'a', 0, 'b', 0, 'c'}), W("ab"), Utf16Bytes(W("ab"), true)},
        {REG_SZ, Utf16Bytes(W("a"), true) + Utf16Bytes(W("lost"), true), W("a"), Utf16Bytes(W("a"), true)},
        {REG_MULTI_SZ, Bytes({'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0}), W("a") + kBreak + W("b"),
         Bytes({'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0})},
        {REG_MULTI_SZ, Bytes({'a', 0, 0, 0, 'b', 0}), W("a") + kBreak + W("b"),
         Bytes({'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0})},
        {REG_MULTI_SZ, Bytes({'a', 0, 0, 0, 0, 0, 0, 0}), W("a") + kBreak, Bytes({'a', 0, 0, 0, 0, 0, 0, 0})},
        {REG_MULTI_SZ, Bytes({'a', 0, 0, 0, 0, 0, 'b', 0, 0, 0, 0, 0}), W("a") + kBreak + kBreak + W("b"),
         Bytes({'a', 0, 0, 0, 0, 0, 'b', 0, 0, 0, 0, 0})},
        {REG_MULTI_SZ, {}, W(""), Bytes({0, 0, 0, 0})},
        {REG_DWORD, Bytes({0xFF, 0xFF, 0xFF, 0xFF}), W("4294967295"), Bytes({0xFF, 0xFF, 0xFF, 0xFF})},
        {REG_DWORD, Bytes({0x2A, 0, 0, 0}), W("42"), Bytes({0x2A, 0, 0, 0})},
    };
    CScratchKey scratch(TEXT("EditRules"));
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << "type " << test.type << ", " << test.stored.size() << " bytes");
        WriteTestValue(HKEY_CURRENT_USER, scratch.Path(), TEXT("v"), test.type, test.stored);
        CEditValueModel model(HKEY_CURRENT_USER, scratch.Path(), TEXT("v"), false);
        ASSERT_TRUE(model.Load());
        EXPECT_EQ(model.GetEditorText(), test.text);
        CEditValueModel::SInput input;
        input.text = model.GetEditorText();
        ASSERT_EQ(model.Save(input), CEditValueModel::kSaved);
        CShdRegKey key;
        DWORD type = 0;
        CShdBinaryBuffer written;
        ASSERT_TRUE(key.Open(HKEY_CURRENT_USER, scratch.Path()) && key.ReadValue(TEXT("v"), type, written));
        EXPECT_EQ(type, test.type);
        EXPECT_EQ(Data(written), test.written);
    }
}

TEST(EditValueModel, TypedLineBreaksOfEveryKindEndOneMember)
{
    const struct {
        CString text;
        std::vector<BYTE> bytes;
    } cases[] = {
        {W("a\nb"), Bytes({'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0})},
        {W("a\n\rb"), Bytes({'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0})},
        {W("a\rb"), Bytes({'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0})},
        {W("a\r\n\nb"), Bytes({'a', 0, 0, 0, 0, 0, 'b', 0, 0, 0, 0, 0})},
    };
    for (const auto& test : cases) {
        CShdBinaryBuffer bytes;
        ASSERT_TRUE(TextToMultiString(test.text, bytes));
        EXPECT_EQ(Data(bytes), test.bytes) << test.text.GetLength() << " units";
    }
}

TEST(EditValueModel, NumbersAreDigitsOnlyWithinTheirLimit)
{
    const struct {
        const char* text;
        bool hexadecimal;
        DWORD limit;
        bool valid;
        DWORD value;
    } cases[] = {
        {"4294967295", false, 0, true, 0xFFFFFFFF}, {"4294967296", false, 0, false, 0},
        {"ffffffff", true, 0, true, 0xFFFFFFFF},    {"FfFf", true, 0, true, 0xFFFF},
        {"-1", false, 0, false, 0},                 {"-1", true, 0, false, 0},
        {"0x10", true, 0, false, 0},                {" 1", false, 0, false, 0},
        {"1.5", false, 0, false, 0},                {"a", false, 0, false, 0},
        {"", false, 0, false, 0},                   {"ffff", true, 0xFFFF, true, 0xFFFF},
        {"10000", true, 0xFFFF, false, 0},          {"007", false, 0, true, 7},
        // 2^64 + 5 wraps round unnoticed to 5: the digits are never checked
        // against overflow on the way.
        {"18446744073709551621", false, 0, true, 5},
    };
    for (const auto& test : cases) {
        DWORD value = 123;
        EXPECT_EQ(ParseNumber(W(test.text), test.hexadecimal, test.limit, value), test.valid)
            << test.text << (test.hexadecimal ? " hex" : " dec");
        EXPECT_EQ(value, test.value) << test.text;
    }
    EXPECT_EQ(DwordToText(255, 16), W("ff"));
    EXPECT_EQ(ValueTypeName(REG_EXPAND_SZ), W("REG_EXPAND_SZ"));
    EXPECT_EQ(ValueTypeName(REG_DWORD_BIG_ENDIAN), W("Unknown (0x5)"));
    EXPECT_EQ(ValueTypeName(0x1A2B), W("Unknown (0x1A2B)"));
}

TEST(EditValueModel, TheBaseSwitchRefusesWhatTheCurrentBaseCannotRead)
{
    CScratchKey scratch(TEXT("EditBase"));
    CEditValueModel model(HKEY_CURRENT_USER, scratch.Path(), TEXT(""), REG_DWORD, false);
    ASSERT_TRUE(model.Load());
    EXPECT_EQ(model.GetEditorText(), W("0"));
    CString shown;
    EXPECT_FALSE(model.SwitchBase(16, TEXT("abc"), shown));
    EXPECT_EQ(model.GetBase(), 10u);
    ASSERT_TRUE(model.SwitchBase(16, TEXT("255"), shown));
    EXPECT_EQ(shown, W("ff"));
    CEditValueModel::SInput input;
    input.name = TEXT("n");
    input.text = TEXT("10");
    ASSERT_EQ(model.Save(input), CEditValueModel::kSaved);
    EXPECT_EQ(DumpTree(HKEY_CURRENT_USER, scratch.Path()), ".\n  \"n\" 4: 10 00 00 00\n");
}

// Which editor a value gets, and which values cannot be opened at all.
TEST(EditValueModel, EachValueGetsItsEditorOrCannotBeOpened)
{
    CScratchKey scratch(TEXT("EditLoad"));
    const CString path = scratch.Path();
    WriteTestValue(HKEY_CURRENT_USER, path, TEXT("short"), REG_DWORD, Bytes({1, 2, 3}));
    WriteTestValue(HKEY_CURRENT_USER, path, TEXT("text"), REG_SZ, Utf16Bytes(W("t"), true));
    WriteTestValue(HKEY_CURRENT_USER, path, TEXT("big"), REG_DWORD_BIG_ENDIAN, Bytes({0, 0, 0, 1}));
    using M = CEditValueModel;
    struct {
        M model;
        bool loads;
        M::EEditor editor;
        const char* typeLine;
    } cases[] = {
        {M(HKEY_CURRENT_USER, path, TEXT("short"), false), false, M::kEditorHex, ""},
        {M(HKEY_CURRENT_USER, path, TEXT("short"), true), true, M::kEditorHex, "Type: REG_DWORD"},
        {M(HKEY_CURRENT_USER, path, TEXT("missing"), false), false, M::kEditorHex, ""},
        {M(HKEY_CURRENT_USER, path, TEXT("text"), true), true, M::kEditorHex, "Type: REG_SZ"},
        {M(HKEY_CURRENT_USER, path, TEXT("big"), false), true, M::kEditorHex, "Type: Unknown (0x5)"},
        {M(HKEY_CURRENT_USER, path, TEXT(""), REG_EXPAND_SZ, false), true, M::kEditorString, "Type: REG_EXPAND_SZ"},
        {M(HKEY_CURRENT_USER, path, TEXT(""), REG_MULTI_SZ, false), true, M::kEditorMultiString, "Type: REG_MULTI_SZ"},
        {M(HKEY_CURRENT_USER, path, TEXT(""), REG_BINARY, false), true, M::kEditorHex, "Type: REG_BINARY"},
        {M(HKEY_CURRENT_USER, path, TEXT(""), REG_NONE, true), true, M::kEditorHex, "Type: REG_NONE"},
        {M(HKEY_CURRENT_USER, path, TEXT(""), REG_DWORD_BIG_ENDIAN, false), false, M::kEditorHex, ""},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(testing::Message() << test.typeLine);
        ASSERT_EQ(test.model.Load(), test.loads);
        if (test.loads) {
            EXPECT_EQ(test.model.GetEditor(), test.editor);
            EXPECT_EQ(test.model.GetTypeLine(), W(test.typeLine));
        }
    }
}

// Whatever goes wrong, the registry keeps what it had: nothing half-written.
TEST(EditValueModel, SavingWritesTheWholeValueOrNothing)
{
    CFaultInjectingPlatform faults;
    CScopedPlatform scoped(faults);
    CScratchKey scratch(TEXT("EditSave"));
    const CString path = scratch.Path() + TEXT("\\Gone");
    WriteTestValue(HKEY_CURRENT_USER, scratch.Path(), TEXT("taken"), REG_SZ, Utf16Bytes(W("x"), true));
    WriteTestValue(HKEY_CURRENT_USER, scratch.Path(), TEXT("odd"), REG_DWORD, Bytes({1, 2, 3}));
    const std::string before = DumpTree(HKEY_CURRENT_USER, scratch.Path());
    const struct {
        const char* name;
        DWORD type;
        bool custom;
        const char* text;
        const char* customType;
        const char* fault;
        CEditValueModel::ESaveResult result;
        const char* message;
    } failures[] = {
        {"d", REG_DWORD, false, "4294967296", "", "", CEditValueModel::kInvalidInput, "Entered value is invalid"},
        {"d", REG_DWORD, false, "", "", "", CEditValueModel::kInvalidInput, "Entered value is invalid"},
        {"c", REG_NONE, true, "", "10000", "", CEditValueModel::kInvalidInput, "Entered value is invalid"},
        {"c", REG_NONE, true, "", "", "", CEditValueModel::kInvalidInput, "Entered value is invalid"},
        {"Taken", REG_SZ, false, "y", "", "", CEditValueModel::kNameExists, "Value with this name already exists"},
        {"w", REG_SZ, false, "y", "", "w", CEditValueModel::kWriteFailed, "Unable to write value"},
        {"k", REG_SZ, false, "y", "", "k", CEditValueModel::kKeyNotWritable, ""},
    };
    for (const auto& test : failures) {
        SCOPED_TRACE(test.message);
        faults.Clear();
        if (*test.fault != 0) {
            faults.FailValueWrite(W(test.fault));
            faults.FailOpen(W(test.fault));
        }
        const CString key = *test.fault == 'k' ? path + TEXT("\\k") : scratch.Path();
        CEditValueModel model(HKEY_CURRENT_USER, key, TEXT(""), test.type, test.custom);
        ASSERT_TRUE(model.Load());
        CEditValueModel::SInput input;
        input.name = W(test.name);
        input.text = W(test.text);
        input.customType = W(test.customType);
        const CEditValueModel::ESaveResult result = model.Save(input);
        EXPECT_EQ(result, test.result);
        const LPCWSTR message = CEditValueModel::SaveFailureMessage(result);
        EXPECT_EQ(CString(message != nullptr ? message : TEXT("")), W(test.message));
        EXPECT_EQ(DumpTree(HKEY_CURRENT_USER, scratch.Path()), before);
    }
    faults.Clear();

    // A custom type is read in hexadecimal; editing as binary keeps the type;
    // a key deleted meanwhile is made again.
    CEditValueModel custom(HKEY_CURRENT_USER, path, TEXT(""), REG_NONE, true);
    ASSERT_TRUE(custom.Load());
    EXPECT_EQ(custom.GetCustomTypeText(), W("0"));
    CEditValueModel::SInput input;
    input.name = TEXT("c");
    input.customType = TEXT("4");
    input.bytes.Assign("\x01\x02\x03\x04", 4);
    ASSERT_EQ(custom.Save(input), CEditValueModel::kSaved);
    EXPECT_EQ(custom.GetName(), W("c"));
    CEditValueModel binary(HKEY_CURRENT_USER, scratch.Path(), TEXT("odd"), true);
    ASSERT_TRUE(binary.Load());
    input.customType = TEXT("ffff");
    ASSERT_EQ(binary.Save(input), CEditValueModel::kSaved);
    EXPECT_EQ(DumpTree(HKEY_CURRENT_USER, scratch.Path()),
              ".\n  \"odd\" 4: 01 02 03 04\n  \"taken\" 1: 78 00 00 00\nGone\n  \"c\" 4: 01 02 03 04\n");
}

}  // namespace
