#include "framework/PpcDialogHelper_win.h"

#include "framework/DpiScale.h"
#include "framework/HandheldShell_win.h"

namespace {

const int kHeaderLeftDesign = 7;
const int kHeaderTopDesign = 5;
const int kHeaderHeightDesign = 17;
const int kSeparatorDesign = 1;
const int kHeaderPoints = 8;

}  // namespace

CShdPpcDialogHelper::~CShdPpcDialogHelper()
{
    DestroyControls();
}

void CShdPpcDialogHelper::SetHeader(LPCWSTR text, UINT controlId)
{
    m_hasHeader = true;
    m_headerText = text;
    m_headerId = controlId;
}

void CShdPpcDialogHelper::SetHeaderText(LPCWSTR text)
{
    m_headerText = text;
    if (m_header != nullptr)
        SetWindowTextW(m_header, m_headerText);
}

void CShdPpcDialogHelper::EnableSipPref()
{
    m_wantsSipPref = true;
}

void CShdPpcDialogHelper::RemoveVScroll()
{
    m_removeVScroll = true;
}

int CShdPpcDialogHelper::GetHeaderHeight() const
{
    return ScaleY(kHeaderHeightDesign) + 2 * ScaleY(kSeparatorDesign) + ScaleY(kHeaderTopDesign);
}

INT_PTR CShdPpcDialogHelper::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (m_removeVScroll) {
        const LONG style = GetWindowLongW(m_dialog, GWL_STYLE);
        if ((style & WS_VSCROLL) != 0)
            SetWindowLongW(m_dialog, GWL_STYLE, style & ~WS_VSCROLL);
    }
    switch (message) {
    case WM_INITDIALOG:
        if (m_hasHeader && m_header == nullptr)
            CreateHeader();
        if (m_wantsSipPref && m_sipPref == nullptr)
            CreateSipPref();
        return 0;
    case WM_PAINT:
        if (m_header != nullptr)
            PaintSeparator();
        return 0;
    case WM_CTLCOLORSTATIC:
        if (m_header == nullptr || reinterpret_cast<HWND>(lParam) != m_header)
            return 0;
        SetTextColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_ACTIVECAPTION));
        // The text's own background matches the brush behind it.
        SetBkColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_STATIC));
        return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_STATIC));
    case WM_DESTROY:
        DestroyControls();
        return 0;
    default:
        return 0;
    }
}

void CShdPpcDialogHelper::DestroyControls()
{
    if (m_header != nullptr) {
        SendMessageW(m_header, WM_SETFONT, 0, FALSE);
        DestroyWindow(m_header);
        m_header = nullptr;
    }
    m_headerFont.Reset();
    if (m_sipPref != nullptr) {
        DestroyWindow(m_sipPref);
        m_sipPref = nullptr;
    }
}

void CShdPpcDialogHelper::CreateHeader()
{
    HFONT dialogFont = reinterpret_cast<HFONT>(SendMessageW(m_dialog, WM_GETFONT, 0, 0));
    if (dialogFont == nullptr)
        dialogFont = Handheld::SystemFont();
    LOGFONTW description = {};
    if (GetObjectW(dialogFont, sizeof(description), &description) == 0)
        return;
    description.lfHeight = FontHeightForPoints(kHeaderPoints, ScreenDpiY());
    description.lfWeight = FW_BOLD;
    m_headerFont.Reset(CreateFontIndirectW(&description));

    RECT client = {};
    GetClientRect(m_dialog, &client);
    const int left = ScaleX(kHeaderLeftDesign);
    m_header = CreateWindowExW(0, L"STATIC", m_headerText, WS_CHILD | WS_VISIBLE | SS_NOPREFIX, left,
                               ScaleY(kHeaderTopDesign), client.right - 2 * left, ScaleY(kHeaderHeightDesign),
                               m_dialog, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(m_headerId)),
                               reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(m_dialog, GWLP_HINSTANCE)), nullptr);
    if (m_header == nullptr)
        return;
    SendMessageW(m_header, WM_SETFONT, reinterpret_cast<WPARAM>(m_headerFont.Get()), FALSE);
    SetWindowPos(m_header, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void CShdPpcDialogHelper::CreateSipPref()
{
    SHInitExtraControls();
    m_sipPref = CreateWindowExW(0, WC_SIPPREF, L"", WS_CHILD, -10, -10, 0, 0, m_dialog, nullptr,
                                reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(m_dialog, GWLP_HINSTANCE)), nullptr);
    if (m_sipPref != nullptr)
        SetWindowPos(m_sipPref, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void CShdPpcDialogHelper::PaintSeparator()
{
    RECT header = {};
    GetWindowRect(m_header, &header);
    MapWindowPoints(nullptr, m_dialog, reinterpret_cast<POINT*>(&header), 2);
    RECT client = {};
    GetClientRect(m_dialog, &client);
    const RECT line = {0, header.bottom + ScaleY(kSeparatorDesign), client.right,
                       header.bottom + 2 * ScaleY(kSeparatorDesign)};
    {
        CShdClientDC dc(m_dialog);
        SetBkColor(dc.Get(), GetSysColor(COLOR_WINDOWTEXT));
        ExtTextOutW(dc.Get(), 0, 0, ETO_OPAQUE, &line, nullptr, 0, nullptr);
    }
    ValidateRect(m_dialog, &line);
}
