#include "framework/EditValueLayout.h"

#include "framework/DpiScale.h"

namespace {

const DWORD kWidestRow = 16;
const DWORD kRowWhenNothingFits = 4;

SEditValueRect Rect(int x, int y, int width, int height)
{
    SEditValueRect rect;
    rect.x = x;
    rect.y = y;
    rect.width = width;
    rect.height = height;
    return rect;
}

}  // namespace

SEditValueMetrics SEditValueMetrics::ForDpi(int dpiX, int dpiY)
{
    const SEditValueMetrics design;
    SEditValueMetrics scaled;
    scaled.top = ScaleByDpi(design.top, dpiY);
    scaled.bottomMargin = ScaleByDpi(design.bottomMargin, dpiY);
    scaled.labelHeight = ScaleByDpi(design.labelHeight, dpiY);
    scaled.editHeight = ScaleByDpi(design.editHeight, dpiY);
    scaled.radioHeight = ScaleByDpi(design.radioHeight, dpiY);
    scaled.margin = ScaleByDpi(design.margin, dpiX);
    scaled.gap = ScaleByDpi(design.gap, dpiY);
    scaled.compactBelow = ScaleByDpi(design.compactBelow, dpiY);
    return scaled;
}

SEditValueLayout ComputeEditValueLayout(const SEditValueMetrics& metrics, int width, int height,
                                        const SEditValueShape& shape)
{
    SEditValueLayout layout;
    const int m = metrics.margin;
    const int g = metrics.gap;
    const int lh = metrics.labelHeight;
    const int eh = metrics.editHeight;
    const int rh = metrics.radioHeight;
    const int iw = width - 2 * m;
    const int hw = (iw - m) / 2;
    const int x = (width + m) / 2;
    int bottom = height - metrics.bottomMargin;

    if (height < metrics.compactBelow) {
        layout.sideBySide = shape.hexEditor || shape.type == REG_BINARY || shape.type == REG_MULTI_SZ;
    } else if (!shape.custom) {
        layout.typeLineShown = true;
        layout.typeLine = Rect(m, bottom - lh, iw, lh);
        bottom -= g + lh;
    }
    const bool side = layout.sideBySide;

    const int y = metrics.top;
    layout.nameLabel = Rect(m, y, hw, lh);
    (side ? layout.valueLabel : layout.customTypeLabel) = Rect(x, y, hw, lh);

    const int y1 = y + lh + g;
    if (side) {
        layout.nameField = Rect(m, y1, hw, eh);
        layout.tallEditor = Rect(x, y1, hw, bottom - y1);
    } else if (shape.custom) {
        layout.nameField = Rect(m, y1, hw, eh);
        layout.customTypeField = Rect(x, y1, hw, eh);
    } else {
        layout.nameField = Rect(m, y1, iw, eh);
    }

    const int y2 = y1 + eh + g;
    (side ? layout.customTypeLabel : layout.valueLabel) = Rect(m, y2, hw, lh);
    layout.baseLabel = Rect(x, y2, hw, lh);

    const int y3 = y2 + lh + g;
    layout.stringField = Rect(m, y3, iw, eh);
    layout.dwordField = Rect(m, y3, hw, eh);
    if (side)
        layout.customTypeField = Rect(m, y3, hw, eh);
    layout.decimalRadio = Rect(x, y3, hw, rh);
    layout.hexadecimalRadio = Rect(x, y3 + rh + g, hw, rh);
    if (!side)
        layout.tallEditor = Rect(m, y3, iw, bottom - y3);
    return layout;
}

DWORD HexBytesPerRow(DWORD fitting)
{
    if (fitting == 0)
        return kRowWhenNothingFits;
    DWORD row = kWidestRow;
    while (row > fitting)
        row /= 2;
    return row;
}
