#include "framework/DpiScale.h"

// Without a screen the design resolution is the screen's.
int QuerySystemDpi(bool)
{
    return 96;
}
