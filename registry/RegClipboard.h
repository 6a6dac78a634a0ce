#pragma once

#include "base/CString.h"
#include "base/WinTypes.h"

// The program's own clipboard for one key or one value, apart from the
// system's. It names its item by place (root, key path, value name), never
// holds its data: a paste reads the source as it is at that moment.
class CRegClipboard {
public:
    enum EKind { kEmpty = 0, kCutValue = 1, kCopiedValue = 2, kCutKey = 3, kCopiedKey = 4 };

    // Told just before the clipboard empties, with the kind of item it held,
    // so that the views can take the cut look off it.
    class IObserver {
    public:
        virtual void OnClipboardClearing(EKind kind) = 0;

    protected:
        ~IObserver() = default;
    };

    CRegClipboard() = default;
    CRegClipboard(const CRegClipboard&) = delete;
    CRegClipboard& operator=(const CRegClipboard&) = delete;

    void SetObserver(IObserver* observer) { m_observer = observer; }

    // Empties the clipboard, then holds the item. A key needs a path: a root
    // key cannot be cut or copied (false, and the clipboard stays empty).
    bool Put(EKind kind, HKEY root, LPCWSTR path, LPCWSTR valueName);
    void Clear();

    EKind GetKind() const { return m_kind; }
    HKEY GetRoot() const { return m_root; }
    const CString& GetPath() const { return m_path; }
    const CString& GetValueName() const { return m_valueName; }
    bool HoldsValue() const { return m_kind == kCutValue || m_kind == kCopiedValue; }
    bool HoldsKey() const { return m_kind == kCutKey || m_kind == kCopiedKey; }
    bool IsCut() const { return m_kind == kCutValue || m_kind == kCutKey; }

    // The clipboard holds this very value (names compared without regard to
    // case).
    bool HoldsValueOf(HKEY root, LPCWSTR path, LPCWSTR valueName) const;
    // The clipboard holds something whose key is this key or lies below it.
    bool HoldsSomethingIn(HKEY root, LPCWSTR path) const;

private:
    IObserver* m_observer = nullptr;
    EKind m_kind = kEmpty;
    HKEY m_root = nullptr;
    CString m_path;
    CString m_valueName;
};
