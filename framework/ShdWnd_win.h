#pragma once

#include <windows.h>

#include "base/CString.h"

// Binds a window to a C++ object and routes the window's messages to the
// object's WindowProc. The object pointer lives in the window's extra word 0
// (windows of classes registered without extra bytes of their own) or in a
// window property (windows of classes with extra bytes, and windows that the
// object subclasses). The object gains its window while the window is being
// created (or by Subclass) and loses it right after WM_DESTROY; it may then
// create another. The framework never deletes an object: its owner does.
class CShdWnd {
public:
    // One registered window class.
    class CClass {
    public:
        CClass() = default;
        virtual ~CClass();
        CClass(const CClass&) = delete;
        CClass& operator=(const CClass&) = delete;

        // Registers (again, if registered) a class with CS_HREDRAW and
        // CS_VREDRAW, no icon or cursor, the given background brush (may be
        // null) and, for 0 extra bytes, room for the object pointer; a class
        // with extra bytes leaves them to the window's own code.
        bool Register(LPCWSTR name, int extraBytes, HBRUSH background);
        // No extra bytes, a white background.
        bool Register(LPCWSTR name);
        bool IsRegistered() const { return m_registered; }
        void Unregister();
        LPCWSTR GetName() const { return m_name; }

    private:
        bool m_registered = false;
        // Allocated with LocalAlloc.
        LPWSTR m_name = nullptr;
    };

    CShdWnd() = default;
    // Destroys a window that the object still holds, or unsubclasses it.
    virtual ~CShdWnd();
    CShdWnd(const CShdWnd&) = delete;
    CShdWnd& operator=(const CShdWnd&) = delete;

    // The object's handler; by default the previous procedure of a subclassed
    // window, or DefWindowProcW.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);

    // Fails when the object has a window already, or when the class object
    // given is not registered; without one, the shared default class is used.
    bool Create(DWORD exStyle, const CClass* windowClass, LPCWSTR title, DWORD style, int x, int y, int width,
                int height, HWND parent, HMENU idOrMenu, HINSTANCE instance);
    // Takes a window that the object did not create; fails when the object
    // has a window, or the window is none.
    bool Subclass(HWND window);
    void Unsubclass();
    // The object of a window attached by property, or null.
    static CShdWnd* FromHandle(HWND window);

    HWND GetHwnd() const { return m_hwnd; }

    // The text of a window; true with an empty text for a window without.
    static bool GetWindowText(HWND window, CString& text);
    static CString GetWindowTextOr(HWND window, LPCWSTR defaultText);
    static bool GetClassName(HWND window, CString& name);
    static CString GetClassNameOr(HWND window, LPCWSTR defaultName);

private:
    enum EAttachment : BYTE { kAttachedByWord = 0, kAttachedByProperty = 1 };

    static LRESULT CALLBACK WordRouter(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK PropertyRouter(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT Route(CShdWnd* object, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static CShdWnd* AttachOnCreate(HWND window, UINT message, LPARAM lParam, EAttachment attachment);
    void Detach();

    HWND m_hwnd = nullptr;
    // Non-null only while the object subclasses a window it did not create.
    WNDPROC m_previousProc = nullptr;
    EAttachment m_attachment = kAttachedByWord;
};
