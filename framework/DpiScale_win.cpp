#include "framework/DpiScale.h"

#include <windows.h>

int QuerySystemDpi(bool vertical)
{
    const HDC screen = GetDC(nullptr);
    if (screen == nullptr)
        return 96;
    const int dpi = GetDeviceCaps(screen, vertical ? LOGPIXELSY : LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return dpi > 0 ? dpi : 96;
}
