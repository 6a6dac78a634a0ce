#include "framework/DpiScale.h"

#include <cstdint>

namespace {

// 0 until first read.
int g_dpiX = 0;
int g_dpiY = 0;

int CachedDpi(int& cache, bool vertical)
{
    if (cache == 0)
        cache = QuerySystemDpi(vertical);
    return cache;
}

}  // namespace

int ScaleByDpi(int designUnits, int dpi)
{
    const int64_t magnitude = (designUnits < 0 ? -static_cast<int64_t>(designUnits) : designUnits);
    const int64_t scaled = (magnitude * dpi + 48) / 96;
    return static_cast<int>(designUnits < 0 ? -scaled : scaled);
}

int FontHeightForPoints(int points, int dpi)
{
    return -((points * dpi + 36) / 72);
}

int ScreenDpiX()
{
    return CachedDpi(g_dpiX, false);
}

int ScreenDpiY()
{
    return CachedDpi(g_dpiY, true);
}

int ScaleX(int designUnits)
{
    return ScaleByDpi(designUnits, ScreenDpiX());
}

int ScaleY(int designUnits)
{
    return ScaleByDpi(designUnits, ScreenDpiY());
}

CScopedScreenDpi::CScopedScreenDpi(int dpiX, int dpiY) : m_previousX(g_dpiX), m_previousY(g_dpiY)
{
    g_dpiX = dpiX;
    g_dpiY = dpiY;
}

CScopedScreenDpi::~CScopedScreenDpi()
{
    g_dpiX = m_previousX;
    g_dpiY = m_previousY;
}
