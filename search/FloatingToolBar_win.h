#pragma once

#include <windows.h>

#include <commctrl.h>

#include "base/CString.h"
#include "base/ObjArray.h"
#include "framework/FloatingToolBarLayout.h"
#include "framework/ShdWnd_win.h"
#include "framework/WindowHelpers_win.h"

// A small owner-drawn child that floats over its parent's client area with a
// row of image buttons. A tap on an enabled button sends the button's
// command to the parent (WM_COMMAND, the toolbar as the sender); the grips
// at its left drag it, and it never leaves the parent's client area.
class CFloatingToolBar : public CShdWnd {
public:
    struct SButtonInfo {
        WORD command = 0;
        // A negative pressed or disabled image means the normal one.
        int normalImage = 0;
        int pressedImage = -1;
        int disabledImage = -1;
        // What the button does, for whoever lists the buttons; not drawn.
        CString text;
        bool disabled = false;
    };

    bool Create(DWORD style, int x, int y, int width, int height, HWND parent, UINT id, HINSTANCE instance);

    // Takes ownership; the buttons take the images' size.
    void SetImageList(HIMAGELIST images);
    // An enabled button at the end; false if it cannot be added.
    bool AddButton(WORD command, int normalImage, int pressedImage, int disabledImage, LPCWSTR text);
    // Negative arguments keep the image they stand for.
    void SetButtonImages(int index, int normalImage, int pressedImage, int disabledImage);
    void EnableButton(int index, bool enable);
    int GetButtonCount() const { return static_cast<int>(m_buttons.GetCount()); }
    const SButtonInfo* GetButton(int index) const;

    // A negative x puts the right edge that far from the parent's right
    // edge, a negative y the bottom edge from the parent's bottom.
    void MoveTo(int x, int y);
    // Back inside the parent's client area, after the parent shrank.
    void Clamp();

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    CToolBarGeometry Geometry() const;
    // Sized to its buttons, kept inside the parent, repainted.
    void Refit();
    SToolBarPoint PositionInParent() const;
    // Where the toolbar may lie nearest to `wanted` (negative coordinates
    // counted from the right and bottom when `fromFarEdges`).
    SToolBarPoint FitInParent(SToolBarPoint wanted, bool fromFarEdges) const;
    void SetPosition(SToolBarPoint position);

    void OnPenDown(POINT point);
    void OnPenMove(POINT point);
    void OnPenUp(POINT point);
    void CancelPen();
    void Repaint();

    void Paint();
    void PaintButton(HDC dc, const CToolBarGeometry& geometry, int index) const;

    CShdUniqueImageList m_images;
    int m_gripCount = 3;
    int m_iconWidth = 0;
    int m_iconHeight = 0;
    CShdObjArray<SButtonInfo> m_buttons;
    bool m_dragging = false;
    int m_pressed = -1;
    // The pressed button looks pressed only while the pen is over it.
    bool m_pressedLook = false;
    SToolBarPoint m_penDownPosition;
    POINT m_penDownScreen = {};
};
