#include "editors/HexEditModel.h"

#include <algorithm>

#include "base/Text.h"
#include "base/ValueData.h"
#include "platform/Platform.h"
#include "views/ValueText.h"

bool CHexEditModel::SetData(const BYTE* data, size_t size)
{
    const bool copied = m_data.Assign(data, size);
    if (!copied)
        m_data.Clear();
    m_top = m_selStart = m_selEnd = m_caret = 0;
    m_nibblePending = false;
    UpdateScroll();
    return copied;
}

bool CHexEditModel::GetData(CShdBinaryBuffer& target) const
{
    if (target.Assign(m_data.GetData(), m_data.GetSize()))
        return true;
    target.Clear();
    return false;
}

void CHexEditModel::SetRequestedBytesPerRow(UINT count)
{
    m_requestedPerRow = count;
    UpdateScroll();
}

size_t CHexEditModel::RowLength() const
{
    if (m_requestedPerRow != 0)
        return m_requestedPerRow;
    return m_fittedPerRow != 0 ? m_fittedPerRow : 1;
}

void CHexEditModel::Measure(const SHexEditMetrics& metrics, int clientWidth, int clientHeight)
{
    m_metrics = metrics;
    m_clientWidth = clientWidth;
    const int avail = clientWidth - 2 * (metrics.marginLeft + metrics.columnGap) - metrics.offsetWidth;
    const int stride = metrics.pairWidth + metrics.blankWidth + metrics.charWidth + metrics.charGap;
    m_fittedPerRow = 1;
    if (avail >= 0 && stride > 0)
        m_fittedPerRow = std::max(1, (avail + metrics.blankWidth + metrics.charGap) / stride);
    if (metrics.lineHeight > 0) {
        const int height = clientHeight - 2 * metrics.marginTop;
        m_visibleRows = height / metrics.lineHeight;
        m_partialRows = std::max(0, (height + metrics.lineHeight - 1) / metrics.lineHeight);
    }
    UpdateScroll();
}

int CHexEditModel::ClientWidthFor(UINT count) const
{
    if (count == 0)
        return 0;
    const SHexEditMetrics& m = m_metrics;
    const int n = static_cast<int>(count);
    return (m.blankWidth + m.charGap) * (n - 1) + (m.pairWidth + m.charWidth) * n +
           2 * (m.marginLeft + m.columnGap) + m.offsetWidth;
}

size_t CHexEditModel::MaxTopRow() const
{
    const size_t rowLength = RowLength();
    const long long rows = std::max<long long>((Size() + rowLength - 1) / rowLength, m_visibleRows - 1);
    return static_cast<size_t>(std::max<long long>(rows - std::max(m_visibleRows, 1) + 1, 0));
}

SHexScrollInfo CHexEditModel::UpdateScroll()
{
    const size_t rowLength = RowLength();
    SHexScrollInfo info;
    info.rows = static_cast<int>(std::max<long long>((Size() + rowLength - 1) / rowLength, m_visibleRows - 1));
    info.page = std::max(m_visibleRows, 1);
    const size_t position = std::min(MaxTopRow(), m_top / rowLength);
    info.position = static_cast<int>(position);
    m_top = position * rowLength;
    return info;
}

void CHexEditModel::Scroll(EScroll action, int thumb)
{
    const long long page = std::max(m_visibleRows, 1);
    long long position = static_cast<long long>(m_top / RowLength());
    switch (action) {
    case kLineUp: --position; break;
    case kLineDown: ++position; break;
    case kPageUpScroll: position -= page; break;
    case kPageDownScroll: position += page; break;
    case kThumb: position = thumb; break;
    case kTop: position = 0; break;
    case kBottom: position = static_cast<long long>(MaxTopRow()); break;
    }
    position = std::clamp<long long>(position, 0, static_cast<long long>(MaxTopRow()));
    m_top = static_cast<size_t>(position) * RowLength();
    if (!HasSelection()) {
        const size_t shown = static_cast<size_t>(std::max(m_visibleRows, 0)) * RowLength();
        if (m_caret < m_top || m_visibleRows <= 0)
            CollapseTo(std::min(m_top, Size()));
        else if (m_caret >= m_top + shown)
            CollapseTo(m_top + shown - RowLength());
        m_nibblePending = false;
    }
}

void CHexEditModel::KeepCaretVisible()
{
    const size_t rowLength = RowLength();
    if (m_caret >= m_top && m_visibleRows > 0) {
        const size_t rows = static_cast<size_t>(m_visibleRows);
        if (m_caret >= m_top + rows * rowLength)
            m_top = ((m_caret - (rows - 1) * rowLength) / rowLength) * rowLength;
    } else {
        m_top = (m_caret / rowLength) * rowLength;
    }
    UpdateScroll();
}

void CHexEditModel::SetHexActive(bool hex)
{
    m_hexActive = hex;
    m_nibblePending = false;
}

void CHexEditModel::CollapseTo(size_t offset)
{
    m_selStart = m_selEnd = m_caret = offset;
}

void CHexEditModel::MoveCaret(size_t offset)
{
    CollapseTo(offset);
    m_nibblePending = false;
    KeepCaretVisible();
}

void CHexEditModel::Key(EKey key)
{
    const size_t size = Size();
    const size_t rowLength = RowLength();
    const size_t rows = static_cast<size_t>(std::max(m_visibleRows, 0));
    const size_t low = SelectionMin();
    const size_t high = SelectionMax();
    switch (key) {
    case kLeft: MoveCaret(low > 0 ? low - 1 : 0); break;
    case kRight: MoveCaret(high < size ? high + 1 : size); break;
    case kUp: MoveCaret(low > rowLength ? low - rowLength : 0); break;
    case kDown: MoveCaret(high + rowLength < size ? high + rowLength : size); break;
    case kPageUp:
        if (low >= m_top + rowLength && low < m_top + static_cast<size_t>(m_partialRows) * rowLength)
            MoveCaret(m_top);
        else
            MoveCaret(low > rows * rowLength ? low - rows * rowLength : 0);
        break;
    case kPageDown:
        if (m_top <= high && high + rowLength < m_top + rows * rowLength)
            MoveCaret(std::min(m_top + rows * rowLength - 1, size));
        else
            MoveCaret(std::min(high + rows * rowLength, size));
        break;
    case kHome: MoveCaret(0); break;
    case kEnd: MoveCaret(size); break;
    case kBackspace:
        if (!HasSelection() && m_caret > 0)
            m_selStart = m_caret - 1, m_selEnd = m_caret;
        DeleteSelection();
        break;
    case kDelete:
        if (!HasSelection() && m_caret < size)
            m_selStart = m_caret, m_selEnd = m_caret + 1;
        DeleteSelection();
        break;
    }
}

bool CHexEditModel::Type(WCHAR c)
{
    if (c < 32)
        return false;
    const int digit = HexDigitValue(c);
    if (m_hexActive && digit < 0)
        return false;
    if (m_hexActive && m_nibblePending && !HasSelection() && m_caret < Size()) {
        BYTE& byte = m_data.GetData()[m_caret];
        byte = static_cast<BYTE>((byte & 0xF0) | digit);
        m_nibblePending = false;
        MoveCaret(m_caret + 1);
        return true;
    }
    const BYTE byte = m_hexActive ? static_cast<BYTE>(digit << 4) : HexEditText::CharByte(c);
    if (!ReplaceSelection(&byte, 1))
        return false;
    if (m_hexActive) {
        m_nibblePending = true;
        KeepCaretVisible();
    } else {
        MoveCaret(m_caret + 1);
    }
    return true;
}

bool CHexEditModel::ReplaceSelection(const BYTE* bytes, size_t count)
{
    const size_t low = std::min(SelectionMin(), Size());
    const size_t high = std::min(SelectionMax(), Size());
    // Inserting first: when memory runs out the selection is still there.
    if (!m_data.Insert(high, bytes, count))
        return false;
    m_data.Erase(low, high - low);
    CollapseTo(low);
    m_nibblePending = false;
    KeepCaretVisible();
    return true;
}

void CHexEditModel::DeleteSelection()
{
    ReplaceSelection(nullptr, 0);
}

void CHexEditModel::SelectAll()
{
    m_selStart = 0;
    m_selEnd = Size();
    m_caret = 0;
    m_nibblePending = false;
}

int CHexEditModel::HexStart() const
{
    return m_metrics.marginLeft + m_metrics.offsetWidth + m_metrics.columnGap;
}

int CHexEditModel::TextStart() const
{
    const int rowLength = static_cast<int>(RowLength());
    return HexStart() + rowLength * m_metrics.pairWidth + (rowLength - 1) * m_metrics.blankWidth +
           m_metrics.columnGap;
}

int CHexEditModel::PairX(size_t column) const
{
    return HexStart() + static_cast<int>(column) * (m_metrics.pairWidth + m_metrics.blankWidth);
}

int CHexEditModel::CharX(size_t column) const
{
    return TextStart() + static_cast<int>(column) * (m_metrics.charWidth + m_metrics.charGap);
}

size_t CHexEditModel::HitColumn(int x, int start, int stride) const
{
    // Half a blank width of allowance in both columns, so that a tap just
    // before a byte still takes it.
    const int within = std::max(x + m_metrics.blankWidth / 2 - start, 0);
    return std::min(RowLength(), static_cast<size_t>(within / std::max(stride, 1)));
}

CHexEditModel::SHit CHexEditModel::HitTest(int x, int y, int clientWidth) const
{
    SHit hit;
    const int lineHeight = std::max(m_metrics.lineHeight, 1);
    const int row = std::clamp((y - m_metrics.marginTop) / lineHeight, 0, std::max(m_partialRows - 1, 0));
    const size_t rowStart = m_top + static_cast<size_t>(row) * RowLength();
    const int hexStart = HexStart();
    const int textStart = TextStart();
    const int halfGap = m_metrics.columnGap / 2;
    if (m_tracking)
        hit.column = m_hexActive ? kHexColumn : kTextColumn;
    else if (x < 0 || x >= clientWidth)
        return hit;
    else if (x < hexStart - halfGap)
        hit.column = kOffsetColumn;
    else if (x < textStart - halfGap)
        hit.column = kHexColumn;
    else
        hit.column = kTextColumn;
    hit.offset = rowStart;
    if (hit.column == kHexColumn)
        hit.offset += HitColumn(x, hexStart, m_metrics.pairWidth + m_metrics.blankWidth);
    else if (hit.column == kTextColumn)
        hit.offset += HitColumn(x, textStart, m_metrics.charWidth + m_metrics.charGap);
    return hit;
}

bool CHexEditModel::BeginTrack(int x, int y, int clientWidth)
{
    m_tracking = false;
    m_nibblePending = false;
    const SHit hit = HitTest(x, y, clientWidth);
    if (hit.column == kNoColumn) {
        m_hexActive = true;
        CollapseTo(std::min(m_top, Size()));
        return false;
    }
    m_hexActive = hit.column != kTextColumn;
    CollapseTo(std::min(hit.offset, Size()));
    m_tracking = true;
    return true;
}

void CHexEditModel::TrackTo(int x, int y, int clientWidth)
{
    if (!m_tracking)
        return;
    m_selEnd = m_caret = std::min(HitTest(x, y, clientWidth).offset, Size());
}

void CHexEditModel::EndTrack()
{
    m_tracking = false;
    if (!HasSelection())
        KeepCaretVisible();
}

CString CHexEditModel::CopyText() const
{
    const size_t low = std::min(SelectionMin(), Size());
    return HexPairsText(m_data.GetData() + low, std::min(SelectionMax(), Size()) - low);
}

bool CHexEditModel::Paste(const CString& text, EPasteRule rule)
{
    CShdBinaryBuffer bytes;
    return HexEditText::ToBytes(text, rule, bytes) && ReplaceSelection(bytes.GetData(), bytes.GetSize());
}

namespace HexEditText {

CString Offset(size_t offset)
{
    return CString::Formatted(TEXT("%04X"), static_cast<unsigned long long>(offset));
}

WCHAR ByteChar(BYTE byte)
{
    if (byte < 33 || byte == 127 || byte == 255)
        return TEXT('.');
    if (byte < 127)
        return static_cast<WCHAR>(byte);
    const char narrow = static_cast<char>(byte);
    WCHAR wide = 0;
    if (Platform().MultiByteToWideChar(CP_ACP, 0, &narrow, 1, &wide, 1) != 1)
        return TEXT('.');
    return wide;
}

BYTE CharByte(WCHAR c)
{
    char narrow[4] = {};
    if (Platform().WideCharToMultiByte(CP_ACP, WC_COMPOSITECHECK, &c, 1, narrow, sizeof narrow) == 1)
        return static_cast<BYTE>(narrow[0]);
    return static_cast<BYTE>(c & 0xFF);
}

namespace {

// Digits pair from the right and blanks do not separate bytes: "12 3" and
// "123" both read as 01 23.
bool HexToBytes(const CString& text, CShdBinaryBuffer& bytes)
{
    size_t digits = 0;
    for (size_t i = 0; i < text.GetLength(); ++i) {
        if (IsSpace(text.GetAt(i)))
            continue;
        if (HexDigitValue(text.GetAt(i)) < 0)
            return false;
        ++digits;
    }
    if (!bytes.SetSize((digits + 1) / 2))
        return false;
    size_t nibble = 0;
    for (size_t i = text.GetLength(); i-- > 0;) {
        if (IsSpace(text.GetAt(i)))
            continue;
        BYTE& byte = bytes.GetData()[bytes.GetSize() - 1 - nibble / 2];
        byte = static_cast<BYTE>(byte | (HexDigitValue(text.GetAt(i)) << (nibble % 2 * 4)));
        ++nibble;
    }
    return true;
}

bool AnsiToBytes(const CString& text, CShdBinaryBuffer& bytes)
{
    const int length = static_cast<int>(text.GetLength());
    if (length == 0)
        return true;
    if (Platform().WideCharToMultiByte(CP_ACP, WC_COMPOSITECHECK, text, length, nullptr, 0) != length ||
        !bytes.SetSize(text.GetLength()))
        return false;
    return Platform().WideCharToMultiByte(CP_ACP, WC_COMPOSITECHECK, text, length,
                                          reinterpret_cast<char*>(bytes.GetData()), length) == length;
}

bool UnicodeToBytes(const CString& text, CShdBinaryBuffer& bytes)
{
    if (!bytes.SetSize(text.GetLength() * 2))
        return false;
    for (size_t i = 0; i < text.GetLength(); ++i) {
        PutUnit(bytes.GetData(), i, text.GetAt(i));
    }
    return true;
}

}  // namespace

bool ToBytes(const CString& text, CHexEditModel::EPasteRule rule, CShdBinaryBuffer& bytes)
{
    bytes.Clear();
    bool read = false;
    switch (rule) {
    case CHexEditModel::kPasteHex: read = HexToBytes(text, bytes); break;
    case CHexEditModel::kPasteAnsiText: read = AnsiToBytes(text, bytes); break;
    case CHexEditModel::kPasteUnicodeText: read = UnicodeToBytes(text, bytes); break;
    }
    if (!read)
        bytes.Clear();
    return read;
}

}  // namespace HexEditText
