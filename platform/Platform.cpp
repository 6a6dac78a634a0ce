#include "platform/Platform.h"

namespace {
IPlatform* g_current = nullptr;
}

IPlatform& Platform()
{
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
