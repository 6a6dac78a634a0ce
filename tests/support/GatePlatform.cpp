#include "tests/support/GatePlatform.h"

#include "framework/Text.h"

CGatePlatform::CGatePlatform()
    : m_system(SystemPlatform()), m_reached(m_system.CreateEventW(TRUE, FALSE)),
      m_released(m_system.CreateEventW(TRUE, FALSE))
{
}

CGatePlatform::~CGatePlatform()
{
    m_system.CloseHandle(m_reached);
    m_system.CloseHandle(m_released);
}

bool CGatePlatform::WaitUntilReached()
{
    return m_system.WaitForSingleObject(m_reached, 10000) == WAIT_OBJECT_0;
}

LONG CGatePlatform::RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result)
{
    if (m_system.WaitForSingleObject(m_released, 0) == WAIT_OBJECT_0)
        ++m_opensAfterRelease;
    else if (subKey != nullptr && !m_gateKey.IsEmpty() && CompareNoCase(subKey, m_gateKey) == 0) {
        m_system.SetEvent(m_reached);
        m_system.WaitForSingleObject(m_released, INFINITE);
    }
    return CFaultInjectingPlatform::RegOpenKeyExW(parent, subKey, options, sam, result);
}

BOOL CGatePlatform::SetEvent(HANDLE event)
{
    const BOOL result = CFaultInjectingPlatform::SetEvent(event);
    if (m_system.WaitForSingleObject(m_reached, 0) == WAIT_OBJECT_0)
        m_system.SetEvent(m_released);
    return result;
}
