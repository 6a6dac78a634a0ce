#include "platform/Platform.h"

namespace {
IPlatform* g_current = nullptr;
thread_local IPlatform* t_current = nullptr;
}

IPlatform& Platform()
{
    if (t_current != nullptr)
        return *t_current;
    return g_current ? *g_current : SystemPlatform();
}

CScopedPlatform::CScopedPlatform(IPlatform& platform) : m_previous(g_current)
{
    g_current = &platform;
}

CScopedPlatform::~CScopedPlatform()
{
    g_current = m_previous;
}

CScopedThreadPlatform::CScopedThreadPlatform(IPlatform& platform) : m_previous(t_current)
{
    t_current = &platform;
}

CScopedThreadPlatform::~CScopedThreadPlatform()
{
    t_current = m_previous;
}
