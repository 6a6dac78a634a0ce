#pragma once

#include "base/WinTypes.h"

// Where the value editor puts its controls. A tall screen stacks them: the
// name, the value's editor, and the "Type:" line along the bottom. A short
// one (landscape) drops the type line and, for the tall editors (the hex
// control and the multi-line edit), puts the editor beside the name in the
// right column. Pure arithmetic, so that it holds on every screen and DPI.

struct SEditValueRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

// The lengths of the layout in pixels, scaled from their 96-dpi designs.
struct SEditValueMetrics {
    int top = 31;
    int bottomMargin = 8;
    int labelHeight = 13;
    int editHeight = 19;
    int radioHeight = 16;
    int margin = 8;
    int gap = 4;
    // A client area lower than this takes the compact arrangement.
    int compactBelow = 180;

    static SEditValueMetrics ForDpi(int dpiX, int dpiY);
};

// What is being edited, as far as the layout cares.
struct SEditValueShape {
    // The hex control is the editor.
    bool hexEditor = false;
    DWORD type = 0;
    // A new value of a type the user enters.
    bool custom = false;
};

struct SEditValueLayout {
    // The tall editor stands in the right column beside the name.
    bool sideBySide = false;
    bool typeLineShown = false;
    SEditValueRect nameLabel;
    SEditValueRect nameField;
    SEditValueRect valueLabel;
    SEditValueRect customTypeLabel;
    SEditValueRect customTypeField;
    SEditValueRect baseLabel;
    SEditValueRect stringField;
    SEditValueRect dwordField;
    SEditValueRect decimalRadio;
    SEditValueRect hexadecimalRadio;
    // The hex control and the multi-line edit.
    SEditValueRect tallEditor;
    SEditValueRect typeLine;
};

SEditValueLayout ComputeEditValueLayout(const SEditValueMetrics& metrics, int width, int height,
                                        const SEditValueShape& shape);

// The row length the hex control is given for the bytes a row that fit its
// width: the largest of 1, 2, 4, 8 and 16 not above it, so that offsets stay
// round. Nothing fitting (0) gives 4.
DWORD HexBytesPerRow(DWORD fitting);
