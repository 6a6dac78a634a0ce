#pragma once

// The geometry of the floating search toolbar: a row of grips to drag it by,
// then a row of equal buttons, inside a raised frame. Pure arithmetic, so
// that size, hit test and clamping hold at every resolution.

// The toolbar's lengths in pixels, scaled from their 96-dpi designs.
struct SToolBarMetrics {
    int gripStart = 0;
    int gripWidth = 0;
    int gripGap = 0;
    int gapAfterGrips = 0;
    int firstButton = 0;
    int buttonGap = 0;
    int rightPadding = 0;
    int verticalPadding = 0;
    // Above and below the grips; also half the height of a toolbar without
    // buttons.
    int gripInset = 0;
    // Between a button's edge and its image, on each side.
    int imageBorderX = 0;
    int imageBorderY = 0;

    // The scaling functions of the screen (or of a test's resolution).
    static SToolBarMetrics Scaled(int (*scaleX)(int), int (*scaleY)(int));
};

struct SToolBarRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

struct SToolBarPoint {
    int x = 0;
    int y = 0;
};

class CToolBarGeometry {
public:
    static const int kHitNone = -2;
    static const int kHitGrip = -1;

    CToolBarGeometry(const SToolBarMetrics& metrics, int gripCount, int iconWidth, int iconHeight, int buttonCount);

    int GetWidth() const;
    int GetHeight() const;
    // The end of the grips and the gap after them: the part that drags.
    int GetGripAreaWidth() const;
    SToolBarRect GetGripRect(int index) const;
    SToolBarRect GetButtonRect(int index) const;
    // Where the image of a button lies within it.
    SToolBarPoint GetImageOffset() const { return {m_metrics.imageBorderX, m_metrics.imageBorderY}; }
    // kHitGrip, a button's index, or kHitNone (outside, in a gap, beside the
    // buttons' band).
    int HitTest(int x, int y) const;

private:
    SToolBarMetrics m_metrics;
    int m_gripCount;
    int m_buttonWidth;
    int m_buttonHeight;
    int m_buttonCount;
};

// Keeps a box of the given size inside the parent's client area: pushed left
// and up where it overhangs the right or bottom edge, then right and down
// where it lies beyond the left or top edge, so that a box larger than the
// parent keeps its top-left corner in view.
SToolBarPoint ClampToParent(SToolBarPoint position, int width, int height, int parentWidth, int parentHeight);

// A negative coordinate counts from the parent's right or bottom edge to the
// box's right or bottom edge; the result is clamped.
SToolBarPoint PlaceInParent(SToolBarPoint position, int width, int height, int parentWidth, int parentHeight);
