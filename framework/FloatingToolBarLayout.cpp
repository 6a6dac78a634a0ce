#include "framework/FloatingToolBarLayout.h"

namespace {

const int kGripDesign = 4;
const int kGripGapDesign = 2;
const int kGapAfterGripsDesign = 2;
const int kFirstButtonDesign = 3;
const int kButtonGapDesign = 2;
const int kVerticalPaddingDesign = 3;
const int kGripInsetDesign = 2;
// The double frame round the toolbar, one line each.
const int kFrameLinesDesign = 2;

}  // namespace

SToolBarMetrics SToolBarMetrics::Scaled(int (*scaleX)(int), int (*scaleY)(int))
{
    SToolBarMetrics metrics;
    const int framesX = kFrameLinesDesign * scaleX(1);
    const int framesY = kFrameLinesDesign * scaleY(1);
    metrics.gripStart = scaleX(kGripDesign) + framesX;
    metrics.gripWidth = scaleX(kGripDesign);
    metrics.gripGap = scaleX(kGripGapDesign);
    metrics.gapAfterGrips = scaleX(kGapAfterGripsDesign);
    metrics.firstButton = scaleX(kFirstButtonDesign);
    metrics.buttonGap = scaleX(kButtonGapDesign);
    metrics.rightPadding = scaleX(kGripDesign) + framesX;
    metrics.verticalPadding = scaleY(kVerticalPaddingDesign) + framesY;
    metrics.gripInset = scaleY(kGripInsetDesign) + framesY;
    metrics.imageBorderX = scaleX(1);
    metrics.imageBorderY = scaleY(1);
    return metrics;
}

CToolBarGeometry::CToolBarGeometry(const SToolBarMetrics& metrics, int gripCount, int iconWidth, int iconHeight,
                                   int buttonCount)
    : m_metrics(metrics),
      m_gripCount(gripCount),
      m_buttonWidth(iconWidth + 2 * metrics.imageBorderX),
      m_buttonHeight(iconHeight + 2 * metrics.imageBorderY),
      m_buttonCount(buttonCount)
{
}

int CToolBarGeometry::GetGripAreaWidth() const
{
    const int gaps = m_gripCount > 0 ? m_gripCount - 1 : 0;
    return m_metrics.gripStart + m_gripCount * m_metrics.gripWidth + gaps * m_metrics.gripGap +
           m_metrics.gapAfterGrips;
}

int CToolBarGeometry::GetWidth() const
{
    // No buttons, no gaps between them.
    const int gaps = m_buttonCount > 0 ? m_buttonCount - 1 : 0;
    return GetGripAreaWidth() + m_metrics.firstButton + m_buttonCount * m_buttonWidth + gaps * m_metrics.buttonGap +
           m_metrics.rightPadding;
}

int CToolBarGeometry::GetHeight() const
{
    if (m_buttonCount == 0)
        return 2 * m_metrics.gripInset;
    return m_buttonHeight + 2 * m_metrics.verticalPadding;
}

SToolBarRect CToolBarGeometry::GetGripRect(int index) const
{
    SToolBarRect rect;
    rect.left = m_metrics.gripStart + index * (m_metrics.gripWidth + m_metrics.gripGap);
    rect.right = rect.left + m_metrics.gripWidth;
    rect.top = m_metrics.gripInset;
    rect.bottom = GetHeight() - m_metrics.gripInset;
    return rect;
}

SToolBarRect CToolBarGeometry::GetButtonRect(int index) const
{
    SToolBarRect rect;
    rect.left = GetGripAreaWidth() + m_metrics.firstButton + index * (m_buttonWidth + m_metrics.buttonGap);
    rect.right = rect.left + m_buttonWidth;
    rect.top = (GetHeight() - m_buttonHeight) / 2;
    rect.bottom = rect.top + m_buttonHeight;
    return rect;
}

int CToolBarGeometry::HitTest(int x, int y) const
{
    if (x < 0 || y < 0 || x >= GetWidth() || y >= GetHeight())
        return kHitNone;
    if (x < GetGripAreaWidth())
        return kHitGrip;
    const int bandTop = m_metrics.verticalPadding;
    if (m_buttonCount == 0 || y < bandTop || y >= bandTop + m_buttonHeight)
        return kHitNone;
    const int fromFirst = x - GetGripAreaWidth() - m_metrics.firstButton;
    if (fromFirst < 0)
        return kHitNone;
    const int pitch = m_buttonWidth + m_metrics.buttonGap;
    const int index = fromFirst / pitch;
    if (index >= m_buttonCount || fromFirst % pitch >= m_buttonWidth)
        return kHitNone;
    return index;
}

SToolBarPoint ClampToParent(SToolBarPoint position, int width, int height, int parentWidth, int parentHeight)
{
    if (position.x + width > parentWidth)
        position.x = parentWidth - width;
    if (position.y + height > parentHeight)
        position.y = parentHeight - height;
    if (position.x < 0)
        position.x = 0;
    if (position.y < 0)
        position.y = 0;
    return position;
}

SToolBarPoint PlaceInParent(SToolBarPoint position, int width, int height, int parentWidth, int parentHeight)
{
    if (position.x < 0)
        position.x = parentWidth + position.x - width;
    if (position.y < 0)
        position.y = parentHeight + position.y - height;
    return ClampToParent(position, width, height, parentWidth, parentHeight);
}
