#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "editors/HexEditModel.h"
#include "tests/support/TestText.h"

namespace {

// Round numbers: offsets 40 wide, pairs 20, blanks 10, characters 10, lines
// 10 high. With 4 bytes a row the pairs start at 61 and the characters at
// 187; a 400 x 53 client shows 4 whole rows and 5 partly.
SHexEditMetrics TestMetrics()
{
    // Line, offset, pair, blank, character; margin, column gap, character
    // gap, top margin.
    return SHexEditMetrics{10, 40, 20, 10, 10, 5, 16, 3, 3};
}

const int kWidth = 400;

void Load(CHexEditModel& model, size_t size, UINT perRow = 4)
{
    const std::vector<BYTE> bytes = Sequence(size);
    model.SetData(bytes.data(), bytes.size());
    model.SetRequestedBytesPerRow(perRow);
    model.Measure(TestMetrics(), kWidth, 53);
}

void PlaceCaret(CHexEditModel& model, size_t offset)
{
    model.Key(CHexEditModel::kHome);
    for (size_t i = 0; i < offset; ++i)
        model.Key(CHexEditModel::kRight);
}

std::vector<BYTE> DataOf(const CHexEditModel& model)
{
    return std::vector<BYTE>(model.Data(), model.Data() + model.Size());
}

TEST(HexEditModel, KeysMoveTheCaretAndKeepItVisible)
{
    // 40 bytes, 4 a row, 4 rows shown: the last top that fits is 28.
    using M = CHexEditModel;
    const struct {
        size_t caret; bool selectAll; M::EKey key; size_t expectedCaret, expectedTop, expectedSize;
    } cases[] = {
        {5, false, M::kLeft, 4, 0, 40},       {0, true, M::kLeft, 0, 0, 40},      {0, true, M::kRight, 40, 28, 40},
        {39, false, M::kRight, 40, 28, 40},   {5, false, M::kUp, 1, 0, 40},       {5, false, M::kDown, 9, 0, 40},
        {15, false, M::kDown, 19, 4, 40},     {38, false, M::kDown, 40, 28, 40},
        // Page Up inside the page (below its first row) goes to its top,
        // from the first row a whole page up.
        {5, false, M::kPageUp, 0, 0, 40},     {30, false, M::kPageUp, 16, 16, 40},
        {2, false, M::kPageUp, 0, 0, 40},     {17, false, M::kPageUp, 4, 4, 40},
        // Page Down inside the page goes to its last byte, else a page on.
        {5, false, M::kPageDown, 15, 0, 40},  {14, false, M::kPageDown, 30, 16, 40},
        {30, false, M::kPageDown, 40, 28, 40}, {40, false, M::kHome, 0, 0, 40},   {3, false, M::kEnd, 40, 28, 40},
        {5, false, M::kBackspace, 4, 0, 39},  {5, false, M::kDelete, 5, 0, 39},   {0, true, M::kDelete, 0, 0, 0},
    };
    for (const auto& c : cases) {
        CHexEditModel model;
        Load(model, 40);
        PlaceCaret(model, c.caret);
        if (c.selectAll)
            model.SelectAll();
        model.Key(c.key);
        SCOPED_TRACE(testing::Message() << "caret " << c.caret << " key " << c.key);
        EXPECT_EQ(model.Caret(), c.expectedCaret);
        EXPECT_FALSE(model.HasSelection());
        EXPECT_EQ(model.Top(), c.expectedTop);
        EXPECT_EQ(model.Size(), c.expectedSize);
    }
}

TEST(HexEditModel, ScrollBarFiguresAndScrolling)
{
    using M = CHexEditModel;
    // Without a selection the caret follows a scroll into the page, and
    // stays where it is when the page still shows it.
    const struct {
        size_t size; UINT perRow; size_t start; int scrolls; M::EScroll action; int thumb; SHexScrollInfo expected;
        size_t caret;
    } cases[] = {
        {0, 4, 0, 0, M::kTop, 0, {3, 4, 0}, 0}, {5, 4, 0, 0, M::kTop, 0, {3, 4, 0}, 0},
        {40, 4, 0, 1, M::kLineDown, 0, {10, 4, 1}, 4}, {40, 4, 0, 1, M::kPageDownScroll, 0, {10, 4, 4}, 16},
        {40, 4, 0, 2, M::kPageDownScroll, 0, {10, 4, 7}, 28}, {40, 4, 0, 1, M::kThumb, 100, {10, 4, 7}, 28},
        {0x10000, 16, 0, 1, M::kBottom, 0, {4096, 4, 4093}, 4093 * 16},
        {40, 4, 30, 1, M::kTop, 0, {10, 4, 0}, 12}, {40, 4, 14, 1, M::kLineDown, 0, {10, 4, 1}, 14},
        // 0 bytes a row asked: as many as fit, 7 here.
        {40, 0, 0, 0, M::kTop, 0, {6, 4, 0}, 0},
    };
    for (const auto& c : cases) {
        CHexEditModel model;
        Load(model, c.size, c.perRow);
        PlaceCaret(model, c.start);
        for (int i = 0; i < c.scrolls; ++i)
            model.Scroll(c.action, c.thumb);
        const SHexScrollInfo info = model.UpdateScroll();
        SCOPED_TRACE(testing::Message() << "size " << c.size << " action " << c.action);
        EXPECT_EQ(std::vector<int>({info.rows, info.page, info.position}),
                  std::vector<int>({c.expected.rows, c.expected.page, c.expected.position}));
        EXPECT_EQ(model.Caret(), c.caret);
    }
    CHexEditModel model;
    Load(model, 40);
    EXPECT_EQ(model.ClientWidthFor(4), 241);
    EXPECT_EQ(model.ClientWidthFor(0), 0);
}

TEST(HexEditModel, HitTestAtTheBordersOfRowsAndColumns)
{
    using M = CHexEditModel;
    const struct { int x, y; M::EColumn column; size_t offset; } cases[] = {
        {-1, 3, M::kNoColumn, 0},     {0, 3, M::kOffsetColumn, 0},  {52, 12, M::kOffsetColumn, 0},
        {52, 13, M::kOffsetColumn, 4}, {53, 13, M::kHexColumn, 4},   {86, 3, M::kHexColumn, 1},
        {178, 3, M::kHexColumn, 4},   {179, 3, M::kTextColumn, 0},  {195, 3, M::kTextColumn, 1},
        {kWidth - 1, -50, M::kTextColumn, 4},                       {kWidth - 1, 500, M::kTextColumn, 20},
    };
    for (const auto& c : cases) {
        CHexEditModel model;
        Load(model, 40);
        const CHexEditModel::SHit hit = model.HitTest(c.x, c.y, kWidth);
        SCOPED_TRACE(testing::Message() << c.x << ", " << c.y);
        EXPECT_EQ(hit.column, c.column);
        EXPECT_EQ(hit.offset, c.offset);
    }
    // A drag that starts in the characters stays there, even over the pairs,
    // and a drag past the end stops at the size.
    CHexEditModel model;
    Load(model, 10);
    ASSERT_TRUE(model.BeginTrack(200, 3, kWidth));
    model.TrackTo(70, 30, kWidth);
    EXPECT_FALSE(model.IsHexActive());
    EXPECT_EQ(model.SelectionEnd(), 8u);
    model.TrackTo(kWidth * 2, 500, kWidth);
    model.EndTrack();
    EXPECT_EQ(model.SelectionMin(), 1u);
    EXPECT_EQ(model.SelectionMax(), 10u);
    EXPECT_FALSE(model.BeginTrack(-5, 3, kWidth));
    EXPECT_TRUE(model.IsHexActive());
}

TEST(HexEditModel, TypingInsertsBytes)
{
    const struct {
        std::vector<BYTE> data; bool hex, selectAll; const char* typed; std::vector<BYTE> expected; size_t caret;
        bool pending;
    } cases[] = {
        {{}, true, false, "4", {0x40}, 0, true}, {{}, true, false, "41", {0x41}, 1, false},
        {{}, true, false, "4g\x08 1", {0x41}, 1, false}, {{}, true, false, "a1Bf", {0xA1, 0xBF}, 2, false},
        {{0x00, 0x11, 0x22}, true, true, "5", {0x50}, 0, true}, {{}, false, false, "Az", {0x41, 0x7A}, 2, false},
        {{0xAA}, false, false, "\xE2\x82\xAC", {0x80, 0xAA}, 1, false},
    };
    for (const auto& c : cases) {
        CHexEditModel model;
        model.SetData(c.data.data(), c.data.size());
        model.SetHexActive(c.hex);
        if (c.selectAll)
            model.SelectAll();
        const CString typed = W(c.typed);
        for (size_t i = 0; i < typed.GetLength(); ++i)
            model.Type(typed.GetAt(i));
        SCOPED_TRACE(c.typed);
        EXPECT_EQ(DataOf(model), c.expected);
        EXPECT_EQ(model.Caret(), c.caret);
        EXPECT_EQ(model.IsNibblePending(), c.pending);
    }
    // A half-typed byte left by a move keeps its low nibble 0.
    CHexEditModel model;
    model.Type('A');
    model.Key(CHexEditModel::kRight);
    EXPECT_EQ(DataOf(model), Bytes({0xA0}));
    EXPECT_EQ(model.Caret(), 1u);
}

TEST(HexEditModel, PastesAndCopies)
{
    const struct {
        CHexEditModel::EPasteRule rule; const char* text; bool read; std::vector<BYTE> expected;
    } cases[] = {
        {CHexEditModel::kPasteHex, "1 2 3", true, {0xAA, 0x01, 0x23, 0xBB}},
        {CHexEditModel::kPasteHex, " 0a\r\n\tfF ", true, {0xAA, 0x0A, 0xFF, 0xBB}},
        {CHexEditModel::kPasteHex, "", true, {0xAA, 0xBB}}, {CHexEditModel::kPasteHex, "xyz", false, {0xAA, 0xBB}},
        {CHexEditModel::kPasteHex, "12 3g", false, {0xAA, 0xBB}},
        {CHexEditModel::kPasteAnsiText, "A\xE2\x82\xAC", true, {0xAA, 0x41, 0x80, 0xBB}},
        {CHexEditModel::kPasteUnicodeText, "A\xE2\x82\xAC", true, {0xAA, 0x41, 0x00, 0xAC, 0x20, 0xBB}},
    };
    for (const auto& c : cases) {
        CHexEditModel model;
        const BYTE data[] = {0xAA, 0xBB};
        model.SetData(data, sizeof data);
        model.Key(CHexEditModel::kRight);
        SCOPED_TRACE(c.text);
        EXPECT_EQ(model.Paste(W(c.text), c.rule), c.read);
        EXPECT_EQ(DataOf(model), c.expected);
        EXPECT_EQ(model.Caret(), 1u);
    }
    CHexEditModel model;
    const BYTE data[] = {0x00, 0xFF};
    model.SetData(data, sizeof data);
    model.SelectAll();
    EXPECT_EQ(model.CopyText(), W("00 FF"));
    // More than memory can hold leaves everything as it was.
    EXPECT_FALSE(model.ReplaceSelection(data, SIZE_MAX / 2));
    EXPECT_EQ(DataOf(model), Bytes({0x00, 0xFF}));
    EXPECT_TRUE(model.IsAllSelected());
    // 0x10000 characters at once.
    const CString big = W(std::string(0x10000, 'f').c_str());
    EXPECT_TRUE(model.Paste(big, CHexEditModel::kPasteHex));
    EXPECT_EQ(model.Size(), 0x8000u);
    EXPECT_TRUE(model.Paste(big, CHexEditModel::kPasteUnicodeText));
    EXPECT_EQ(model.Size(), 0x8000u + 0x20000u);
}

TEST(HexEditModel, Texts)
{
    EXPECT_EQ(HexEditText::Offset(0) + HexEditText::Offset(0xFFF0) + HexEditText::Offset(0x10000),
              W("0000FFF010000"));
    CString shown;
    for (int byte : {0x00, 0x20, 0x21, 0x41, 0x7E, 0x7F, 0x80, 0xFF})
        shown += HexEditText::ByteChar(static_cast<BYTE>(byte));
    EXPECT_EQ(shown, W("..!A~.\xE2\x82\xAC."));
}

}  // namespace
