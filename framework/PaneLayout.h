#pragma once

// Where the main window puts its panes: the key name bar along the bottom,
// and above it the tree and the value list with the splitter between them,
// side by side on a short screen (landscape) and stacked on a tall one.
// Pure arithmetic, so that the rules hold on every screen size and DPI.

struct SPaneRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

// The lengths of the layout: as declared, their 96-dpi designs; ForDpi gives
// them in pixels at a resolution.
struct SPaneMetrics {
    // A client area at least this high stacks the panes.
    int stackThreshold = 180;
    int minPaneHeight = 50;
    // Scaled by the vertical resolution as well, so that a pane keeps the
    // same proportions whichever way the panes stand.
    int minPaneWidth = 100;
    int keyNameHeight = 17;
    int splitterThickness = 6;

    static SPaneMetrics ForDpi(int dpiY);
};

struct SPaneLayout {
    bool stacked = false;
    // The area above the key name bar, also the find-results window's.
    SPaneRect panes;
    SPaneRect tree;
    SPaneRect splitter;
    SPaneRect list;
    SPaneRect keyName;
};

// The split between tree and list, remembered across layouts: the tree's
// width for side-by-side panes and its height for stacked ones (0 while not
// yet set), so that turning the screen back restores the earlier split.
class CPaneSplit {
public:
    void Reset();
    // After a drag the splitter's left edge (side by side) or top edge
    // (stacked) decides the split; otherwise the remembered split does. The
    // split is kept within the minimum pane sizes and remembered.
    SPaneLayout Compute(const SPaneMetrics& metrics, int clientWidth, int clientHeight, bool afterDrag,
                        int splitterLeft, int splitterTop);

    int GetTreeWidth() const { return m_treeWidth; }
    int GetTreeHeight() const { return m_treeHeight; }

private:
    int m_treeWidth = 0;
    int m_treeHeight = 0;
};
