#include "framework/MessageBox_win.h"

#include <utility>

namespace {

const WCHAR kCaption[] = L"Quenda";
CScopedMessageAnswerer* g_answerer = nullptr;

}  // namespace

int ShowMessage(HWND owner, LPCWSTR text, UINT flags)
{
    flags |= MB_SETFOREGROUND;
    if (g_answerer != nullptr)
        return g_answerer->Answer(owner, text, flags);
    return MessageBoxW(owner, text, kCaption, flags);
}

CScopedMessageAnswerer::CScopedMessageAnswerer(Answerer answerer)
    : m_answerer(std::move(answerer)), m_previous(g_answerer)
{
    g_answerer = this;
}

CScopedMessageAnswerer::~CScopedMessageAnswerer()
{
    g_answerer = m_previous;
}
