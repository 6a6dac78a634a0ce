#pragma once

#include <cstddef>

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "base/WinTypes.h"

// The pixel sizes the hex editor lays its rows out with: what the font
// measures and the margins, already scaled to the screen.
struct SHexEditMetrics {
    int lineHeight = 1;
    int offsetWidth = 1;
    int pairWidth = 1;
    int blankWidth = 0;
    int charWidth = 1;
    int marginLeft = 0;
    int columnGap = 0;
    int charGap = 0;
    int marginTop = 0;
};

// The range, page and position of the vertical scroll bar, in rows.
struct SHexScrollInfo {
    int rows = 0;
    int page = 1;
    int position = 0;
};

// The state of the hex editor without a window: the bytes, the caret, the
// selection, a half-typed byte, the row arithmetic and the scroll position.
// Keys, typing, the stylus and pastes act on it; the window only measures,
// draws and forwards. Offsets are byte positions, 0..size.
class CHexEditModel {
public:
    enum EColumn { kNoColumn, kOffsetColumn, kHexColumn, kTextColumn };
    enum EKey { kLeft, kRight, kUp, kDown, kPageUp, kPageDown, kHome, kEnd, kBackspace, kDelete };
    enum EScroll { kLineUp, kLineDown, kPageUpScroll, kPageDownScroll, kThumb, kTop, kBottom };
    enum EPasteRule { kPasteHex, kPasteAnsiText, kPasteUnicodeText };

    struct SHit {
        EColumn column = kNoColumn;
        size_t offset = 0;
    };

    CHexEditModel() = default;
    CHexEditModel(const CHexEditModel&) = delete;
    CHexEditModel& operator=(const CHexEditModel&) = delete;

    // Copies the bytes in and puts caret, selection and view at the start.
    bool SetData(const BYTE* data, size_t size);
    // Copies the bytes out; on failure the target is left empty.
    bool GetData(CShdBinaryBuffer& target) const;
    const BYTE* Data() const { return m_data.GetData(); }
    size_t Size() const { return m_data.GetSize(); }

    // 0: as many as fit.
    void SetRequestedBytesPerRow(UINT count);
    // The row length every calculation uses.
    size_t RowLength() const;

    // Fits the rows to a client area of this size with these metrics.
    void Measure(const SHexEditMetrics& metrics, int clientWidth, int clientHeight);
    const SHexEditMetrics& Metrics() const { return m_metrics; }
    UINT FittedBytesPerRow() const { return m_fittedPerRow; }
    int VisibleRows() const { return m_visibleRows; }
    // The window width that shows `count` bytes a row exactly, without the
    // non-client parts; 0 for 0.
    int ClientWidthFor(UINT count) const;

    // Clamps the view to the data and returns the scroll bar's figures.
    SHexScrollInfo UpdateScroll();
    // Scrolls as the scroll bar asks; `thumb` is the position for kThumb.
    void Scroll(EScroll action, int thumb);
    void KeepCaretVisible();
    size_t Top() const { return m_top; }

    size_t Caret() const { return m_caret; }
    size_t SelectionEnd() const { return m_selEnd; }
    size_t SelectionMin() const { return m_selStart < m_selEnd ? m_selStart : m_selEnd; }
    size_t SelectionMax() const { return m_selStart < m_selEnd ? m_selEnd : m_selStart; }
    bool HasSelection() const { return m_selStart != m_selEnd; }
    bool IsAllSelected() const { return SelectionMin() == 0 && SelectionMax() >= Size(); }
    bool IsHexActive() const { return m_hexActive; }
    void SetHexActive(bool hex);
    bool IsNibblePending() const { return m_nibblePending; }

    // The moves and deletions of the key table.
    void Key(EKey key);
    // A typed character (below 32: ignored); false when it was not taken.
    bool Type(WCHAR c);
    // Removes the selection and puts the caret at its start.
    void DeleteSelection();
    void SelectAll();

    // Which column and byte lies under a point of the client area. While
    // tracking, the active column reaches across the whole width.
    SHit HitTest(int x, int y, int clientWidth) const;
    // The stylus: down starts tracking (false when the point was in no
    // column), moves extend the selection, up ends it.
    bool BeginTrack(int x, int y, int clientWidth);
    void TrackTo(int x, int y, int clientWidth);
    void EndTrack();
    bool IsTracking() const { return m_tracking; }

    // The selected bytes as "0A 1B FF".
    CString CopyText() const;
    // Replaces the selection with the bytes of the text by the rule; false
    // (and nothing changed) when the text cannot be read so or memory runs
    // out.
    bool Paste(const CString& text, EPasteRule rule);
    // Inserts at the caret in place of the selection, the caret staying
    // before the bytes; false and nothing changed when memory runs out.
    bool ReplaceSelection(const BYTE* bytes, size_t count);

    // Geometry of a row, from the client's left edge.
    int HexStart() const;
    int TextStart() const;
    int PairX(size_t column) const;
    int CharX(size_t column) const;

private:
    size_t HitColumn(int x, int start, int stride) const;
    void CollapseTo(size_t offset);
    void MoveCaret(size_t offset);
    size_t MaxTopRow() const;

    CShdBinaryBuffer m_data;
    SHexEditMetrics m_metrics;
    UINT m_requestedPerRow = 0;
    UINT m_fittedPerRow = 1;
    int m_visibleRows = 0;
    int m_partialRows = 0;
    int m_clientWidth = 0;
    size_t m_top = 0;
    size_t m_selStart = 0;
    size_t m_selEnd = 0;
    size_t m_caret = 0;
    bool m_hexActive = true;
    bool m_nibblePending = false;
    bool m_tracking = false;
};

// The texts of the hex editor.
namespace HexEditText {

// "%04X" of a row's first offset (five digits and more past 0xFFFF).
CString Offset(size_t offset);
// What the character column shows for a byte: itself when printable ASCII,
// its ANSI character above 127, "." otherwise.
WCHAR ByteChar(BYTE byte);
// The byte a typed character stands for in the ANSI code page, or its low
// eight bits when it is not a single byte there.
BYTE CharByte(WCHAR c);
// Text to bytes by a paste rule; false when the text does not fit the rule.
bool ToBytes(const CString& text, CHexEditModel::EPasteRule rule, CShdBinaryBuffer& bytes);

}  // namespace HexEditText
