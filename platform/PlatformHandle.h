#pragma once

#include "base/UniqueHandle.h"
#include "platform/Platform.h"

// A handle that the platform made (a file, an event, a thread), given back
// through the platform as well.
inline BOOL ClosePlatformHandle(HANDLE handle)
{
    return Platform().CloseHandle(handle);
}

using CShdHandle = CShdUniqueHandle<HANDLE, ClosePlatformHandle>;
