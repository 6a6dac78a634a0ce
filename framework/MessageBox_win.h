#pragma once

#include <functional>

#include <windows.h>

// Every message box of the program: captioned "Quenda" and brought to the
// front (MB_SETFOREGROUND is always added). Returns the button chosen, as
// MessageBoxW does.
int ShowMessage(HWND owner, LPCWSTR text, UINT flags);

// While it lives, messages go to the answerer instead of the screen, which
// returns the button "chosen" (tests answer the program's questions this
// way). Answerers nest; the latest is asked.
class CScopedMessageAnswerer {
public:
    using Answerer = std::function<int(HWND owner, LPCWSTR text, UINT flags)>;

    explicit CScopedMessageAnswerer(Answerer answerer);
    ~CScopedMessageAnswerer();
    CScopedMessageAnswerer(const CScopedMessageAnswerer&) = delete;
    int Answer(HWND owner, LPCWSTR text, UINT flags) const { return m_answerer(owner, text, flags); }
    CScopedMessageAnswerer& operator=(const CScopedMessageAnswerer&) = delete;

private:
    Answerer m_answerer;
    CScopedMessageAnswerer* m_previous;
};
