#include "tests/support/GatePlatform.h"

#include <gtest/gtest.h>

#include "base/Text.h"

namespace {

// Long enough for any healthy worker; a broken one fails the test instead of
// hanging it.
const DWORD kPatience = 10000;

}  // namespace

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
    return m_system.WaitForSingleObject(m_reached, kPatience) == WAIT_OBJECT_0;
}

LONG CGatePlatform::RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result)
{
    if (m_system.WaitForSingleObject(m_released, 0) == WAIT_OBJECT_0)
        ++m_opensAfterRelease;
    else if (subKey != nullptr && !m_gateKey.IsEmpty() && CompareNoCase(subKey, m_gateKey) == 0) {
        m_system.SetEvent(m_reached);
        if (m_system.WaitForSingleObject(m_released, kPatience) != WAIT_OBJECT_0)
            ADD_FAILURE() << "the worker waited at the gate for ten seconds: nothing released it";
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
