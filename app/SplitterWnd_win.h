#pragma once

#include <windows.h>

#include "framework/ShdWnd_win.h"

// The bar between the tree and the value list. Dragging it (or, with the
// focus, the arrow keys along its axis) tells the target window how far it
// moved: message(code, delta) with code 1 when a move begins, 2 while the
// pointer moves and 3 when the move ends, the delta packed as x in the low
// and y in the high 16 bits, only the moving axis non-zero. The target moves
// the bar itself (MoveBy) when the move ends.
class CSplitterWnd : public CShdWnd {
public:
    static const WPARAM kMoveBegin = 1;
    static const WPARAM kMoving = 2;
    static const WPARAM kMoveEnd = 3;

    // `horizontal`: a bar between stacked panes, which moves up and down.
    bool Create(bool horizontal, DWORD style, int x, int y, int width, int height, HWND parent, UINT id,
                HINSTANCE instance);
    void SetOrientation(bool horizontal) { m_horizontal = horizontal; }
    bool IsHorizontal() const { return m_horizontal; }
    void SetNotify(HWND target, UINT message);
    // Moves the bar along its own axis, in its parent's coordinates.
    void MoveBy(int dx, int dy);

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    // The feedback bar that follows the pointer during a drag.
    class CDragWnd : public CShdWnd {
    public:
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    };

    RECT RectInParent() const;
    // The movement from the drag's start along the bar's axis.
    POINT AxisDelta() const;
    void Notify(WPARAM code, POINT delta);
    void FinishDrag();
    void OnKeyDown(WPARAM key);
    void Paint();

    CDragWnd m_drag;
    bool m_horizontal = true;
    HWND m_target = nullptr;
    UINT m_message = 0;
    bool m_dragging = false;
    POINTS m_start = {};
    POINTS m_current = {};
};
