#include "editors/HexEditCtrl_win.h"

#include <windowsx.h>

#include <algorithm>
#include <cwchar>

#include "framework/DpiScale.h"
#include "framework/HandheldShell_win.h"
#include "framework/WindowHelpers_win.h"

namespace {

const int kMarginLeftDesign = 5;
const int kColumnGapDesign = 16;
const int kCharGapDesign = 3;
const int kMarginTopDesign = 3;
const int kSeparatorPenDesign = 1;
const int kCaretPenDesign = 2;
const int kFontPoints = 9;
const UINT kAutoScrollMilliseconds = 200;
// Arrows, Tab and characters come to the control, not to the dialog.
const LRESULT kDialogCode = DLGC_WANTARROWS | DLGC_WANTTAB | DLGC_WANTCHARS;
const UINT kMenuFlags = TPM_RETURNCMD | TPM_NONOTIFY;

struct SMenuItem {
    UINT command;
    LPCWSTR text;
};

const SMenuItem kMenuItems[] = {
    {CHexEditCtrl::kCmdCut, L"Cut"},
    {CHexEditCtrl::kCmdCopy, L"Copy"},
    {CHexEditCtrl::kCmdPasteHex, L"Paste Hex Data"},
    {CHexEditCtrl::kCmdPasteText, L"Paste as Text"},
    {CHexEditCtrl::kCmdPasteUnicode, L"Paste as Unicode Text"},
    {CHexEditCtrl::kCmdClear, L"Clear"},
    {0, nullptr},
    {CHexEditCtrl::kCmdSelectAll, L"Select All"},
};

SIZE MeasureText(HDC dc, LPCWSTR text, int length, SIZE fallback)
{
    SIZE size = {};
    if (!GetTextExtentExPointW(dc, text, length, 0, nullptr, nullptr, &size))
        return fallback;
    return size;
}

// One line, top-left at the point, no prefix processing: what DrawTextW with
// DT_SINGLELINE | DT_NOPREFIX draws, without its measuring on every call.
void DrawTextAt(HDC dc, LPCWSTR text, int length, int x, int y)
{
    ExtTextOutW(dc, x, y, 0, nullptr, text, static_cast<UINT>(length), nullptr);
}

void FillBand(HDC dc, int left, int top, int right, int bottom, int colorIndex)
{
    const RECT rect = {left, top, right, bottom};
    FillRect(dc, &rect, GetSysColorBrush(colorIndex));
}

void Outline(HDC dc, int left, int top, int right, int bottom, int colorIndex)
{
    CShdUniquePen pen(CreatePen(PS_SOLID, ScaleX(kCaretPenDesign), GetSysColor(colorIndex)));
    CShdSelectObject usePen(dc, pen.Get());
    CShdSelectObject noFill(dc, GetStockObject(NULL_BRUSH));
    Rectangle(dc, left, top, right, bottom);
}

}  // namespace

// The window goes while the object is whole, so that WM_DESTROY still
// reaches this class and stops its timer.
CHexEditCtrl::~CHexEditCtrl()
{
    if (GetHwnd() != nullptr)
        DestroyWindow(GetHwnd());
}

bool CHexEditCtrl::CreateChild(HWND parent, UINT id, const RECT& rect, DWORD style)
{
    return Create(0, nullptr, L"", style, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
                  parent, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), GetModuleHandleW(nullptr));
}

bool CHexEditCtrl::SetData(const BYTE* data, size_t size)
{
    const bool copied = m_model.SetData(data, size);
    Changed();
    return copied;
}

bool CHexEditCtrl::GetData(CShdBinaryBuffer& target) const
{
    return m_model.GetData(target);
}

void CHexEditCtrl::SetBytesPerRow(UINT count)
{
    m_model.SetRequestedBytesPerRow(count);
    Changed();
}

UINT CHexEditCtrl::GetFittingBytesPerRow()
{
    if (!m_measured)
        Measure();
    return m_model.FittedBytesPerRow();
}

int CHexEditCtrl::GetWidthNeeded(UINT count)
{
    RECT window = {};
    RECT client = {};
    if (count == 0 || !GetWindowRect(GetHwnd(), &window) || !GetClientRect(GetHwnd(), &client))
        return 0;
    if (!m_measured)
        Measure();
    int nonClient = (window.right - window.left) - client.right;
    // Room for the scroll bar is kept even while the window has none.
    if ((GetWindowLongW(GetHwnd(), GWL_STYLE) & WS_VSCROLL) == 0)
        nonClient += GetSystemMetrics(SM_CXVSCROLL);
    return m_model.ClientWidthFor(count) + nonClient;
}

void CHexEditCtrl::CreateFontForScreen()
{
    LOGFONTW font = {};
    font.lfHeight = FontHeightForPoints(kFontPoints, ScreenDpiY());
    font.lfWeight = FW_NORMAL;
    font.lfCharSet = ANSI_CHARSET;
    font.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
    wcsncpy(font.lfFaceName, L"Courier New", LF_FACESIZE - 1);
    m_font.Reset(CreateFontIndirectW(&font));
}

void CHexEditCtrl::Measure()
{
    RECT client = {};
    GetClientRect(GetHwnd(), &client);
    CShdClientDC dc(GetHwnd());
    if (dc.Get() == nullptr)
        return;
    CShdSelectObject useFont(dc.Get(), m_font.Get());
    SHexEditMetrics metrics;
    const SIZE one = {1, 1};
    const SIZE offset = MeasureText(dc.Get(), L"0000", 4, one);
    metrics.lineHeight = offset.cy;
    metrics.offsetWidth = offset.cx;
    metrics.pairWidth = MeasureText(dc.Get(), L"00", 2, one).cx;
    metrics.blankWidth = MeasureText(dc.Get(), L" ", 1, SIZE{0, 0}).cx;
    metrics.charWidth = MeasureText(dc.Get(), L"W", 1, one).cx;
    metrics.marginLeft = ScaleX(kMarginLeftDesign);
    metrics.columnGap = ScaleX(kColumnGapDesign);
    metrics.charGap = ScaleX(kCharGapDesign);
    metrics.marginTop = ScaleY(kMarginTopDesign);
    m_model.Measure(metrics, client.right, client.bottom);
    m_measured = true;
    UpdateScrollBar();
}

void CHexEditCtrl::UpdateScrollBar()
{
    if (GetHwnd() == nullptr)
        return;
    const SHexScrollInfo figures = m_model.UpdateScroll();
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    info.nMax = figures.rows;
    info.nPage = static_cast<UINT>(figures.page);
    info.nPos = figures.position;
    SetScrollInfo(GetHwnd(), SB_VERT, &info, TRUE);
}

// One repaint of the whole client area for any change: a keystroke or a
// scroll costs one paint of the rows shown, whatever the size of the data.
void CHexEditCtrl::Changed()
{
    if (GetHwnd() == nullptr)
        return;
    UpdateScrollBar();
    InvalidateRect(GetHwnd(), nullptr, FALSE);
}

int CHexEditCtrl::ClientWidth() const
{
    RECT client = {};
    GetClientRect(GetHwnd(), &client);
    return client.right;
}

void CHexEditCtrl::Paint(HDC target)
{
    ++m_paints;
    if (!m_measured)
        Measure();
    RECT client = {};
    GetClientRect(GetHwnd(), &client);
    CShdUniqueDC memory(CreateCompatibleDC(target));
    const HDC dc = memory.Get();
    if (dc == nullptr)
        return;
    CShdUniqueBitmap bitmap(CreateCompatibleBitmap(target, std::max<LONG>(client.right, 1),
                                                   std::max<LONG>(client.bottom, 1)));
    {
        CShdSelectObject useBitmap(dc, bitmap.Get());
        CShdSelectObject useFont(dc, m_font.Get());
        FillRect(dc, &client, GetSysColorBrush(COLOR_WINDOW));
        SetBkMode(dc, TRANSPARENT);

        const SHexEditMetrics& m = m_model.Metrics();
        const size_t rowLength = m_model.RowLength();
        CShdUniquePen pen(CreatePen(PS_SOLID, ScaleX(kSeparatorPenDesign), GetSysColor(COLOR_GRAYTEXT)));
        {
            CShdSelectObject usePen(dc, pen.Get());
            const int first = m.marginLeft + m.offsetWidth + m.columnGap / 2;
            const int second = first + static_cast<int>(rowLength - 1) * m.blankWidth +
                               static_cast<int>(rowLength) * m.pairWidth + m.columnGap;
            for (const int x : {first, second}) {
                MoveToEx(dc, x, m.marginTop, nullptr);
                LineTo(dc, x, client.bottom - m.marginTop);
            }
        }
        const bool focused = GetFocus() == GetHwnd();
        size_t rowStart = m_model.Top();
        for (int y = m.marginTop; y < client.bottom && rowStart <= m_model.Size(); y += std::max(m.lineHeight, 1)) {
            PaintSelection(dc, y, rowStart, focused);
            PaintRow(dc, y, rowStart);
            if (!m_model.HasSelection())
                PaintCaret(dc, y, rowStart, focused);
            rowStart += rowLength;
        }
        BitBlt(target, 0, 0, client.right, client.bottom, dc, 0, 0, SRCCOPY);
    }
}

void CHexEditCtrl::PaintRow(HDC dc, int y, size_t rowStart) const
{
    const CString offset = HexEditText::Offset(rowStart);
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    DrawTextAt(dc, offset, static_cast<int>(offset.GetLength()), m_model.Metrics().marginLeft, y);
    const size_t size = m_model.Size();
    for (size_t column = 0; column < m_model.RowLength(); ++column) {
        const size_t at = rowStart + column;
        const bool selected = at >= m_model.SelectionMin() && at < m_model.SelectionMax();
        SetTextColor(dc, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
        WCHAR pair[3] = L"  ";
        if (at < size) {
            const BYTE byte = m_model.Data()[at];
            const WCHAR digits[] = L"0123456789ABCDEF";
            pair[0] = digits[byte >> 4];
            pair[1] = digits[byte & 15];
            const WCHAR shown = HexEditText::ByteChar(byte);
            DrawTextAt(dc, &shown, 1, m_model.CharX(column), y);
        }
        DrawTextAt(dc, pair, 2, m_model.PairX(column), y);
    }
}

void CHexEditCtrl::PaintSelection(HDC dc, int y, size_t rowStart, bool focused) const
{
    const size_t rowLength = m_model.RowLength();
    const size_t from = std::max(m_model.SelectionMin(), rowStart);
    const size_t to = std::min(m_model.SelectionMax(), rowStart + rowLength);
    if (from >= to)
        return;
    const SHexEditMetrics& m = m_model.Metrics();
    const int active = focused ? COLOR_HIGHLIGHT : COLOR_GRAYTEXT;
    const size_t first = from - rowStart;
    const size_t last = to - 1 - rowStart;
    const int bottom = y + m.lineHeight;
    FillBand(dc, m_model.PairX(first) - m.blankWidth / 2, y, m_model.PairX(last) + m.pairWidth + m.blankWidth / 2,
             bottom, m_model.IsHexActive() ? active : COLOR_GRAYTEXT);
    FillBand(dc, m_model.CharX(first) - m.charGap / 2, y, m_model.CharX(last) + m.charWidth + m.charGap / 2, bottom,
             m_model.IsHexActive() ? COLOR_GRAYTEXT : active);
}

void CHexEditCtrl::PaintCaret(HDC dc, int y, size_t rowStart, bool focused) const
{
    const size_t caret = m_model.Caret();
    if (caret < rowStart || caret >= rowStart + m_model.RowLength())
        return;
    const SHexEditMetrics& m = m_model.Metrics();
    const int active = focused ? COLOR_HIGHLIGHT : COLOR_GRAYTEXT;
    const size_t column = caret - rowStart;
    const int bottom = y + m.lineHeight;
    int left = m_model.PairX(column) - 1;
    // With a half-typed byte only its low digit is still to come.
    if (m_model.IsNibblePending())
        left += m.pairWidth / 2 + 1;
    Outline(dc, left, y, m_model.PairX(column) + m.pairWidth + 1, bottom,
            m_model.IsHexActive() ? active : COLOR_GRAYTEXT);
    Outline(dc, m_model.CharX(column) - 1, y, m_model.CharX(column) + m.charWidth + 1, bottom,
            m_model.IsHexActive() ? COLOR_GRAYTEXT : active);
}

void CHexEditCtrl::OnKeyDown(WPARAM key)
{
    const bool shift = GetKeyState(VK_SHIFT) < 0;
    const HWND parent = GetParent(GetHwnd());
    const CHexEditModel& model = m_model;
    switch (key) {
    case VK_LEFT: m_model.Key(CHexEditModel::kLeft); break;
    case VK_RIGHT: m_model.Key(CHexEditModel::kRight); break;
    case VK_UP:
        if (IsSmartphone() && model.SelectionMin() < model.RowLength()) {
            SendMessageW(parent, WM_NEXTDLGCTL, 1, 0);
            return;
        }
        m_model.Key(CHexEditModel::kUp);
        break;
    case VK_DOWN:
        if (IsSmartphone() && model.SelectionMax() + model.RowLength() > model.Size()) {
            SendMessageW(parent, WM_NEXTDLGCTL, 0, 0);
            return;
        }
        m_model.Key(CHexEditModel::kDown);
        break;
    case VK_PRIOR: m_model.Key(CHexEditModel::kPageUp); break;
    case VK_NEXT: m_model.Key(CHexEditModel::kPageDown); break;
    case VK_HOME: m_model.Key(CHexEditModel::kHome); break;
    case VK_END: m_model.Key(CHexEditModel::kEnd); break;
    case VK_BACK: m_model.Key(CHexEditModel::kBackspace); break;
    case VK_DELETE: m_model.Key(CHexEditModel::kDelete); break;
    case VK_TAB:
        if (model.IsHexActive() == shift) {
            SendMessageW(parent, WM_NEXTDLGCTL, shift ? 1 : 0, 0);
            return;
        }
        m_model.SetHexActive(shift);
        break;
    case VK_RETURN: {
        RECT client = {};
        GetClientRect(GetHwnd(), &client);
        SHRGINFO gesture = {sizeof gesture, GetHwnd(), {client.right / 2, client.bottom / 2}, 0};
        SHRecognizeGesture(&gesture);
        return;
    }
    default: return;
    }
    Changed();
}

void CHexEditCtrl::OnButtonDown(int x, int y)
{
    SetFocus(GetHwnd());
    EndTracking();
    SHRGINFO gesture = {sizeof gesture, GetHwnd(), {x, y}, SHRG_RETURNCMD};
    if (SHRecognizeGesture(&gesture) == GN_CONTEXTMENU) {
        // The gesture service only reports the hold: the menu is raised here.
        POINT screen = {x, y};
        ClientToScreen(GetHwnd(), &screen);
        SendMessageW(GetHwnd(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(GetHwnd()),
                     MAKELPARAM(screen.x, screen.y));
        return;
    }
    m_lastPointer = {x, y};
    if (m_model.BeginTrack(x, y, ClientWidth()))
        SetCapture(GetHwnd());
    Changed();
}

void CHexEditCtrl::OnMouseMove(int x, int y)
{
    if (!m_model.IsTracking())
        return;
    m_lastPointer = {x, y};
    RECT client = {};
    GetClientRect(GetHwnd(), &client);
    SetAutoScroll(y < 0 ? -1 : y >= client.bottom ? 1 : 0);
    m_model.TrackTo(x, y, client.right);
    Changed();
}

void CHexEditCtrl::SetAutoScroll(int direction)
{
    if (direction == m_autoScroll)
        return;
    m_autoScroll = direction;
    if (direction == 0)
        KillTimer(GetHwnd(), kAutoScrollTimer);
    else
        SetTimer(GetHwnd(), kAutoScrollTimer, kAutoScrollMilliseconds, nullptr);
}

void CHexEditCtrl::OnTimer()
{
    if (m_autoScroll == 0)
        return;
    m_model.Scroll(m_autoScroll < 0 ? CHexEditModel::kLineUp : CHexEditModel::kLineDown, 0);
    m_model.TrackTo(m_lastPointer.x, m_lastPointer.y, ClientWidth());
    Changed();
}

void CHexEditCtrl::EndTracking()
{
    SetAutoScroll(0);
    if (!m_model.IsTracking())
        return;
    m_model.EndTrack();
    if (GetCapture() == GetHwnd())
        ReleaseCapture();
    Changed();
}

void CHexEditCtrl::OnVScroll(WORD code)
{
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(GetHwnd(), SB_VERT, &info);
    CHexEditModel::EScroll action;
    switch (code) {
    case SB_LINEUP: action = CHexEditModel::kLineUp; break;
    case SB_LINEDOWN: action = CHexEditModel::kLineDown; break;
    case SB_PAGEUP: action = CHexEditModel::kPageUpScroll; break;
    case SB_PAGEDOWN: action = CHexEditModel::kPageDownScroll; break;
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK: action = CHexEditModel::kThumb; break;
    case SB_TOP: action = CHexEditModel::kTop; break;
    case SB_BOTTOM: action = CHexEditModel::kBottom; break;
    default: return;
    }
    m_model.Scroll(action, info.nTrackPos);
    Changed();
}

void CHexEditCtrl::OnContextMenu(int x, int y)
{
    if (m_menuOpen)
        return;
    if (x < 0 || y < 0) {
        RECT window = {};
        GetWindowRect(GetHwnd(), &window);
        x = (window.left + window.right) / 2;
        y = (window.top + window.bottom) / 2;
    }
    CShdUniqueMenu menu(CreatePopupMenu());
    if (!menu)
        return;
    for (const SMenuItem& item : kMenuItems)
        AppendMenuW(menu.Get(), item.text != nullptr ? MF_STRING : MF_SEPARATOR, item.command, item.text);
    // The menu is tracked without notifications, so its states are set now.
    OnInitMenuPopup(menu.Get());
    m_menuOpen = true;
    const UINT command = static_cast<UINT>(TrackPopupMenuEx(menu.Get(), kMenuFlags, x, y, GetHwnd(), nullptr));
    m_menuOpen = false;
    OnCommand(command);
}

void CHexEditCtrl::OnInitMenuPopup(HMENU menu) const
{
    const bool selection = m_model.HasSelection();
    const bool text = IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE;
    const bool canSelectAll = m_model.Size() != 0 && !m_model.IsAllSelected();
    const struct {
        UINT command;
        bool enabled;
    } states[] = {{kCmdCut, selection},      {kCmdCopy, selection},         {kCmdPasteHex, text},
                  {kCmdPasteText, text},     {kCmdPasteUnicode, text},      {kCmdClear, selection},
                  {kCmdSelectAll, canSelectAll}};
    for (const auto& state : states)
        EnableMenuItem(menu, state.command, MF_BYCOMMAND | (state.enabled ? MF_ENABLED : MF_GRAYED));
}

void CHexEditCtrl::OnCommand(UINT command)
{
    switch (command) {
    case kCmdCut:
        if (CopyToClipboard())
            m_model.DeleteSelection();
        break;
    case kCmdCopy: CopyToClipboard(); return;
    case kCmdPasteHex: PasteFromClipboard(CHexEditModel::kPasteHex); break;
    case kCmdPasteText: PasteFromClipboard(CHexEditModel::kPasteAnsiText); break;
    case kCmdPasteUnicode: PasteFromClipboard(CHexEditModel::kPasteUnicodeText); break;
    case kCmdClear: m_model.DeleteSelection(); break;
    case kCmdSelectAll: m_model.SelectAll(); break;
    default: return;
    }
    Changed();
}

bool CHexEditCtrl::CopyToClipboard() const
{
    return m_model.HasSelection() && PutClipboardText(GetHwnd(), m_model.CopyText());
}

void CHexEditCtrl::PasteFromClipboard(CHexEditModel::EPasteRule rule)
{
    CString text;
    if (!ReadClipboardText(GetHwnd(), text) || !m_model.Paste(text, rule))
        NotifyPasteFailed();
}

void CHexEditCtrl::NotifyPasteFailed() const
{
    const int id = GetDlgCtrlID(GetHwnd());
    SendMessageW(GetParent(GetHwnd()), WM_COMMAND, MAKEWPARAM(id, kNotifyPasteFailed),
                 reinterpret_cast<LPARAM>(GetHwnd()));
}

void CHexEditCtrl::SetInputPanel(bool up) const
{
    // Only a dialog that asked for the input panel gets it.
    if (FindChildOfClass(GetParent(GetHwnd()), WC_SIPPREF) != nullptr)
        SHSipPreference(GetHwnd(), up ? SIP_UP : SIP_DOWN);
}

LRESULT CHexEditCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        CreateFontForScreen();
        return 0;
    case WM_DESTROY:
        SetAutoScroll(0);
        m_font.Reset();
        m_measured = false;
        return 0;
    case WM_SIZE:
        Measure();
        Changed();
        return 0;
    case WM_SETFOCUS:
        InvalidateRect(GetHwnd(), nullptr, FALSE);
        SetInputPanel(true);
        return 0;
    case WM_KILLFOCUS:
        m_model.SetHexActive(true);
        InvalidateRect(GetHwnd(), nullptr, FALSE);
        SetInputPanel(false);
        return 0;
    case WM_PAINT: {
        CShdPaintDC dc(GetHwnd());
        Paint(dc.Get());
        return 0;
    }
    case WM_ERASEBKGND: return 1;
    case WM_KEYDOWN: OnKeyDown(wParam); return 0;
    case WM_CHAR:
        if (m_model.Type(static_cast<WCHAR>(wParam)))
            Changed();
        return 0;
    case WM_LBUTTONDOWN: OnButtonDown(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)); return 0;
    case WM_MOUSEMOVE: OnMouseMove(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)); return 0;
    case WM_LBUTTONUP:
        if (m_model.IsTracking())
            m_model.TrackTo(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam), ClientWidth());
        EndTracking();
        return 0;
    case WM_CAPTURECHANGED: EndTracking(); return 0;
    case WM_TIMER:
        if (wParam == kAutoScrollTimer)
            OnTimer();
        return 0;
    case WM_VSCROLL: OnVScroll(LOWORD(wParam)); return 0;
    case WM_CONTEXTMENU: OnContextMenu(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)); return 0;
    case WM_INITMENUPOPUP: OnInitMenuPopup(reinterpret_cast<HMENU>(wParam)); return 0;
    case WM_GETDLGCODE: return kDialogCode;
    case WM_COMMAND:
        if (HIWORD(wParam) == 0 && lParam == 0)
            OnCommand(LOWORD(wParam));
        return 0;
    default: return CShdWnd::WindowProc(message, wParam, lParam);
    }
}
