#include "framework/PaneLayout.h"

#include <initializer_list>

#include "framework/DpiScale.h"

SPaneMetrics SPaneMetrics::ForDpi(int dpiY)
{
    // The members' own values are the 96-dpi designs.
    SPaneMetrics metrics;
    for (int* length : {&metrics.stackThreshold, &metrics.minPaneHeight, &metrics.minPaneWidth,
                        &metrics.keyNameHeight, &metrics.splitterThickness})
        *length = ScaleByDpi(*length, dpiY);
    return metrics;
}

void CPaneSplit::Reset()
{
    m_treeWidth = 0;
    m_treeHeight = 0;
}

namespace {

// The tree's share of `extent`, kept so that both panes keep their minimum
// where they can; the tree wins when there is room for neither.
int ClampSplit(int wanted, int extent, int thickness, int minimum)
{
    if (wanted < minimum)
        return minimum;
    if (extent - wanted < thickness + minimum)
        return extent - thickness - minimum;
    return wanted;
}

}  // namespace

SPaneLayout CPaneSplit::Compute(const SPaneMetrics& metrics, int clientWidth, int clientHeight, bool afterDrag,
                                int splitterLeft, int splitterTop)
{
    SPaneLayout layout;
    const int width = clientWidth;
    const int height = clientHeight - metrics.keyNameHeight;
    layout.keyName = {0, height, width, metrics.keyNameHeight};
    layout.panes = {0, 0, width, height};
    layout.stacked = clientHeight >= metrics.stackThreshold;
    if (m_treeWidth == 0 && m_treeHeight == 0) {
        m_treeWidth = width / 2;
        m_treeHeight = height / 2;
    }
    const int thickness = metrics.splitterThickness;
    if (layout.stacked) {
        const int wanted = afterDrag ? splitterTop : m_treeHeight;
        m_treeHeight = ClampSplit(wanted, height, thickness, metrics.minPaneHeight);
        layout.tree = {0, 0, width, m_treeHeight};
        layout.splitter = {0, m_treeHeight, width, thickness};
        layout.list = {0, m_treeHeight + thickness, width, height - m_treeHeight - thickness};
    } else {
        const int wanted = afterDrag ? splitterLeft : m_treeWidth;
        m_treeWidth = ClampSplit(wanted, width, thickness, metrics.minPaneWidth);
        layout.tree = {0, 0, m_treeWidth, height};
        layout.splitter = {m_treeWidth, 0, thickness, height};
        layout.list = {m_treeWidth + thickness, 0, width - m_treeWidth - thickness, height};
    }
    return layout;
}
