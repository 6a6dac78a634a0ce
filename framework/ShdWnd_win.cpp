#include "framework/ShdWnd_win.h"

#include <algorithm>

#include "base/Text.h"

namespace {

const WCHAR kObjectProperty[] = L"{8246859B-2E0D-4A43-8C9F-F04A3F059952}";
const WCHAR kDefaultClassName[] = L"{6433D18B-57B6-4E29-8AB3-7A91EAC34B76}";

const size_t kFirstClassNameCapacity = 260;
// Room asked for beyond the length a window reports for its text.
const int kTextReserve = 32;
const int kTextReadSlack = 24;

const CShdWnd::CClass* DefaultClass()
{
    static CShdWnd::CClass defaultClass;
    if (!defaultClass.IsRegistered())
        defaultClass.Register(kDefaultClassName, 0, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    return defaultClass.IsRegistered() ? &defaultClass : nullptr;
}

}  // namespace

CShdWnd::CClass::~CClass()
{
    Unregister();
}

bool CShdWnd::CClass::Register(LPCWSTR name, int extraBytes, HBRUSH background)
{
    Unregister();
    const size_t length = StrLen(name);
    m_name = static_cast<LPWSTR>(LocalAlloc(LMEM_FIXED, (length + 1) * sizeof(WCHAR)));
    if (m_name == nullptr)
        return false;
    std::copy(name, name + length + 1, m_name);
    WNDCLASSW windowClass = {};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    // Without extra bytes of its own the class holds the object pointer in
    // word 0; a class with extra bytes leaves them to the window's code and
    // keeps the object in a property.
    windowClass.lpfnWndProc = extraBytes == 0 ? WordRouter : PropertyRouter;
    windowClass.cbWndExtra = extraBytes == 0 ? static_cast<int>(sizeof(LONG_PTR)) : extraBytes;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hbrBackground = background;
    windowClass.lpszClassName = m_name;
    if (RegisterClassW(&windowClass) == 0) {
        LocalFree(m_name);
        m_name = nullptr;
        return false;
    }
    m_registered = true;
    return true;
}

bool CShdWnd::CClass::Register(LPCWSTR name)
{
    return Register(name, 0, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
}

void CShdWnd::CClass::Unregister()
{
    if (m_registered)
        UnregisterClassW(m_name, GetModuleHandleW(nullptr));
    m_registered = false;
    if (m_name != nullptr)
        LocalFree(m_name);
    m_name = nullptr;
}

CShdWnd::~CShdWnd()
{
    if (m_hwnd != nullptr && IsWindow(m_hwnd))
        DestroyWindow(m_hwnd);
    // A window that survived (another thread's) must not keep pointing here.
    Detach();
}

LRESULT CShdWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (m_previousProc != nullptr)
        return CallWindowProcW(m_previousProc, m_hwnd, message, wParam, lParam);
    return DefWindowProcW(m_hwnd, message, wParam, lParam);
}

bool CShdWnd::Create(DWORD exStyle, const CClass* windowClass, LPCWSTR title, DWORD style, int x, int y, int width,
                     int height, HWND parent, HMENU idOrMenu, HINSTANCE instance)
{
    if (m_hwnd != nullptr || (windowClass != nullptr && !windowClass->IsRegistered()))
        return false;
    const CClass* used = windowClass != nullptr ? windowClass : DefaultClass();
    if (used == nullptr)
        return false;
    if (CreateWindowExW(exStyle, used->GetName(), title, style, x, y, width, height, parent, idOrMenu, instance,
                        this) != nullptr)
        return true;
    // A window refused in WM_NCCREATE ends without WM_DESTROY.
    m_hwnd = nullptr;
    m_attachment = kAttachedByWord;
    return false;
}

bool CShdWnd::Subclass(HWND window)
{
    if (m_hwnd != nullptr || m_previousProc != nullptr || !IsWindow(window))
        return false;
    const WNDPROC current = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
    if (current == nullptr)
        return false;
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(PropertyRouter));
    if (!SetPropW(window, kObjectProperty, this)) {
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(current));
        return false;
    }
    m_hwnd = window;
    m_previousProc = current;
    m_attachment = kAttachedByProperty;
    return true;
}

void CShdWnd::Unsubclass()
{
    if (m_previousProc != nullptr)
        Detach();
}

CShdWnd* CShdWnd::FromHandle(HWND window)
{
    return window != nullptr ? static_cast<CShdWnd*>(GetPropW(window, kObjectProperty)) : nullptr;
}

void CShdWnd::Detach()
{
    if (m_hwnd != nullptr && IsWindow(m_hwnd)) {
        if (m_previousProc != nullptr) {
            SetWindowLongPtrW(m_hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_previousProc));
            RemovePropW(m_hwnd, kObjectProperty);
        } else if (m_attachment == kAttachedByProperty) {
            RemovePropW(m_hwnd, kObjectProperty);
        } else {
            SetWindowLongPtrW(m_hwnd, 0, 0);
        }
    }
    m_hwnd = nullptr;
    m_previousProc = nullptr;
    m_attachment = kAttachedByWord;
}

CShdWnd* CShdWnd::AttachOnCreate(HWND window, UINT message, LPARAM lParam, EAttachment attachment)
{
    // The handheld's first message is WM_CREATE; the desktop sends
    // WM_NCCREATE (and a few others) before it. Whichever comes first with
    // the creation parameters attaches the object.
    if (message != WM_NCCREATE && message != WM_CREATE)
        return nullptr;
    CShdWnd* object = static_cast<CShdWnd*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    if (object == nullptr || object->m_hwnd == window)
        return nullptr;
    if (attachment == kAttachedByWord)
        SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(object));
    else if (!SetPropW(window, kObjectProperty, object))
        return nullptr;
    object->m_hwnd = window;
    object->m_attachment = attachment;
    return object;
}

LRESULT CALLBACK CShdWnd::WordRouter(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    CShdWnd* object = AttachOnCreate(window, message, lParam, kAttachedByWord);
    if (object == nullptr)
        object = reinterpret_cast<CShdWnd*>(GetWindowLongPtrW(window, 0));
    return Route(object, window, message, wParam, lParam);
}

LRESULT CALLBACK CShdWnd::PropertyRouter(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    CShdWnd* object = AttachOnCreate(window, message, lParam, kAttachedByProperty);
    if (object == nullptr)
        object = FromHandle(window);
    return Route(object, window, message, wParam, lParam);
}

LRESULT CShdWnd::Route(CShdWnd* object, HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (object == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    const LRESULT result = object->WindowProc(message, wParam, lParam);
    if (message == WM_DESTROY)
        object->Detach();
    return result;
}

bool CShdWnd::GetWindowText(HWND window, CString& text)
{
    text.Empty();
    const int length = GetWindowTextLengthW(window);
    if (length <= 0)
        return true;
    LPWSTR buffer = text.GetBuffer(static_cast<size_t>(length + kTextReserve));
    const int read = ::GetWindowTextW(window, buffer, length + kTextReadSlack);
    if (read <= 0) {
        text.ReleaseBuffer(0);
        return false;
    }
    text.ReleaseBuffer(read);
    return true;
}

CString CShdWnd::GetWindowTextOr(HWND window, LPCWSTR defaultText)
{
    CString text;
    return GetWindowText(window, text) ? text : CString(defaultText);
}

bool CShdWnd::GetClassName(HWND window, CString& name)
{
    name.Empty();
    size_t capacity = kFirstClassNameCapacity;
    for (;;) {
        LPWSTR buffer = name.GetBuffer(capacity);
        const int read = ::GetClassNameW(window, buffer, static_cast<int>(capacity));
        if (read <= 0 || static_cast<size_t>(read) > capacity) {
            name.ReleaseBuffer(0);
            return false;
        }
        // A name that fills the buffer to within one character may have been
        // cut: try again with more room.
        if (static_cast<size_t>(read) + 1 < capacity) {
            name.ReleaseBuffer(read);
            return true;
        }
        capacity = capacity * 3 / 2 + 32;
    }
}

CString CShdWnd::GetClassNameOr(HWND window, LPCWSTR defaultName)
{
    CString name;
    return GetClassName(window, name) ? name : CString(defaultName);
}
