#pragma once

#include <windows.h>

#include "editors/HexEditModel.h"
#include "framework/ShdWnd_win.h"
#include "framework/WinHandles_win.h"

// A child window that shows bytes as rows of an offset, hexadecimal pairs and
// the same bytes as characters, and edits them with the stylus and the keys.
// Its owner creates it, hands it the bytes and reads them back; a paste that
// cannot be read is reported to the owner as WM_COMMAND with
// MAKEWPARAM(id, kNotifyPasteFailed) and the control as lParam, so that the
// owner can say so.
class CHexEditCtrl : public CShdWnd {
public:
    static constexpr WORD kNotifyPasteFailed = 1;
    static constexpr UINT kAutoScrollTimer = 101;

    // The context menu's commands; an owner's own menu (a soft key) may send
    // them to the control as WM_COMMAND too.
    enum ECommand : UINT {
        kCmdCut = 1,
        kCmdCopy = 2,
        kCmdPasteHex = 3,
        kCmdPasteText = 4,
        kCmdPasteUnicode = 5,
        kCmdClear = 6,
        kCmdSelectAll = 7,
    };

    CHexEditCtrl() = default;
    ~CHexEditCtrl() override;

    // A child with a vertical scroll bar and a tab stop unless other styles
    // are given.
    bool CreateChild(HWND parent, UINT id, const RECT& rect,
                     DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_BORDER);

    // Copies the bytes in; caret, selection and view go to the start.
    bool SetData(const BYTE* data, size_t size);
    // Copies the bytes out; on failure the target is emptied.
    bool GetData(CShdBinaryBuffer& target) const;
    // 0: as many as fit the width.
    void SetBytesPerRow(UINT count);
    UINT GetFittingBytesPerRow();
    // The window width that shows `count` bytes a row exactly, room for the
    // scroll bar included; 0 for 0 or when the window cannot be measured.
    int GetWidthNeeded(UINT count);

    // What the control holds and shows (tests and the owner read it).
    const CHexEditModel& GetModel() const { return m_model; }
    // Paints so far, for the benchmark.
    unsigned GetPaintCount() const { return m_paints; }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void CreateFontForScreen();
    void Measure();
    void UpdateScrollBar();
    void Changed();
    void Paint(HDC target);
    void PaintRow(HDC dc, int y, size_t rowStart) const;
    void PaintSelection(HDC dc, int y, size_t rowStart, bool focused) const;
    void PaintCaret(HDC dc, int y, size_t rowStart, bool focused) const;
    void OnKeyDown(WPARAM key);
    void OnButtonDown(int x, int y);
    void OnMouseMove(int x, int y);
    void EndTracking();
    void SetAutoScroll(int direction);
    void OnTimer();
    void OnVScroll(WORD code);
    void OnContextMenu(int x, int y);
    void OnInitMenuPopup(HMENU menu) const;
    void OnCommand(UINT command);
    bool CopyToClipboard() const;
    void PasteFromClipboard(CHexEditModel::EPasteRule rule);
    void NotifyPasteFailed() const;
    void SetInputPanel(bool up) const;
    int ClientWidth() const;

    CHexEditModel m_model;
    CShdUniqueFont m_font;
    bool m_measured = false;
    POINT m_lastPointer = {};
    int m_autoScroll = 0;
    bool m_menuOpen = false;
    unsigned m_paints = 0;
};
