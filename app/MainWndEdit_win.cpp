// The main window's key and value edits: delete, in-place rename, cut, copy
// and paste. The registry work and the choice of message are portable logic;
// this file asks, shows, keeps the views current and gives the focus back.
#include "app/MainWnd_win.h"

#include "framework/MessageBox_win.h"
#include "framework/WaitCursor_win.h"
#include "views/ValueRows.h"

namespace {

// Gives the focus back, when an edit ends, to whichever of the tree and the
// list had it when it began (the tree when neither had it): a message box
// takes the focus away with it.
class CPaneFocus {
public:
    CPaneFocus(HWND tree, HWND list)
        : m_pane(list != nullptr && (GetFocus() == list || IsChild(list, GetFocus())) ? list : tree)
    {
    }
    ~CPaneFocus() { SetFocus(m_pane); }
    CPaneFocus(const CPaneFocus&) = delete;
    CPaneFocus& operator=(const CPaneFocus&) = delete;

private:
    HWND m_pane;
};

bool IsQuestion(EEditMessage message)
{
    return message == EEditMessage::kConfirmDeleteValue || message == EEditMessage::kConfirmDeleteKey ||
           message == EEditMessage::kConfirmOverwriteValue;
}

}  // namespace

int CMainWnd::ShowEditMessage(EEditMessage message)
{
    const LPCWSTR text = EditMessageText(message);
    if (text == nullptr)
        return 0;
    return ShowMessage(GetHwnd(), text, IsQuestion(message) ? MB_YESNO | MB_ICONQUESTION : MB_ICONEXCLAMATION);
}

void CMainWnd::OnClipboardClearing(const CRegClipboard& clipboard)
{
    if (clipboard.GetKind() == CRegClipboard::kCutKey)
        m_regTree.ClearCut();
    else if (clipboard.GetKind() == CRegClipboard::kCutValue)
        m_values.SetCutValue(nullptr);
}

void CMainWnd::PutOnClipboard(CRegClipboard::EKind kind)
{
    HKEY root = nullptr;
    CString path;
    CString name;
    const bool value = kind == CRegClipboard::kCutValue || kind == CRegClipboard::kCopiedValue;
    if (!GetSelectedKey(root, path) || (value && !GetSelectedValue(name)))
        return;
    if (!m_clipboard.Put(kind, root, path, name))
        return;
    if (kind == CRegClipboard::kCutKey) {
        m_regTree.SetCut(root, path);
    } else if (kind == CRegClipboard::kCutValue) {
        SCutValue cut;
        cut.root = root;
        cut.path = path;
        cut.valueName = name;
        m_values.SetCutValue(&cut);
    }
}

void CMainWnd::DeleteValue()
{
    HKEY root = nullptr;
    CString path;
    CString name;
    if (!GetSelectedKey(root, path) || !GetSelectedValue(name))
        return;
    CPaneFocus focus(m_tree, m_list);
    if (ShowEditMessage(EEditMessage::kConfirmDeleteValue) != IDYES)
        return;
    ShowEditMessage(DeleteRegValue(m_clipboard, root, path, name));
    FillValueList(false, name);
}

void CMainWnd::DeleteKey()
{
    HKEY root = nullptr;
    CString path;
    if (!GetSelectedKey(root, path) || path.IsEmpty())
        return;
    CPaneFocus focus(m_tree, m_list);
    if (ShowEditMessage(EEditMessage::kConfirmDeleteKey) != IDYES)
        return;
    const HTREEITEM item = m_regTree.GetSelectedItem();
    EEditMessage message = EEditMessage::kNone;
    {
        CWaitCursor wait;
        message = DeleteRegKey(m_clipboard, root, path);
    }
    if (message == EEditMessage::kNone) {
        m_regTree.RemoveItem(item);
        return;
    }
    ShowEditMessage(message);
    const HTREEITEM parent = m_regTree.GetParentItem(item);
    m_regTree.RefreshChildren(parent);
    m_regTree.SelectItem(parent);
}

void CMainWnd::RenameValue()
{
    CPaneFocus focus(m_tree, m_list);
    const CValueList::SRename& rename = m_values.GetRename();
    const SValueEdit edit = RenameRegValue(m_clipboard, rename.root, rename.path, rename.oldName, rename.newName);
    ShowEditMessage(edit.message);
    if (edit.changed)
        FillValueList(false, edit.name);
}

void CMainWnd::RenameKey()
{
    CPaneFocus focus(m_tree, m_list);
    const CRegTree::SLabelEdit edit = m_regTree.GetLabelEdit();
    SKeyCopy plan;
    EEditMessage message = EEditMessage::kNone;
    if (!PlanKeyRename(m_clipboard, edit.root, edit.parentPath, edit.oldName, edit.newName, plan, message)) {
        ShowEditMessage(message);
        return;
    }
    SKeyCopyResult result;
    {
        CWaitCursor wait;
        result = RunKeyCopy(plan, m_clipboard);
    }
    if (result.sourceDeleted) {
        m_regTree.SetItemLabel(edit.item, edit.newName);
        // The selected key, or the one the list shows, may lie below it.
        OnTreeSelectionChanged();
        return;
    }
    ShowEditMessage(result.message);
    m_regTree.RefreshTree(m_regTree.GetParentItem(edit.item));
}

void CMainWnd::Paste(bool valuesOnly)
{
    if (m_clipboard.HoldsValue())
        PasteValue();
    else if (m_clipboard.HoldsKey() && !valuesOnly)
        PasteKey();
}

void CMainWnd::PasteValue()
{
    HKEY root = nullptr;
    CString path;
    if (!GetSelectedKey(root, path))
        return;
    CPaneFocus focus(m_tree, m_list);
    const SValueEdit edit = PasteRegValue(m_clipboard, root, path, [this] {
        return ShowEditMessage(EEditMessage::kConfirmOverwriteValue) == IDYES;
    });
    ShowEditMessage(edit.message);
    if (edit.changed)
        FillValueList(false, edit.name);
}

void CMainWnd::PasteKey()
{
    HKEY root = nullptr;
    CString path;
    if (!GetSelectedKey(root, path))
        return;
    CPaneFocus focus(m_tree, m_list);
    const HTREEITEM target = m_regTree.GetSelectedItem();
    SKeyCopy plan;
    EEditMessage message = EEditMessage::kNone;
    if (!PlanKeyPaste(m_clipboard, root, path, plan, message)) {
        ShowEditMessage(message);
        return;
    }
    SKeyCopyResult result;
    {
        CWaitCursor wait;
        result = RunKeyCopy(plan, m_clipboard);
    }
    if (!result.copied) {
        ShowEditMessage(result.message);
        m_regTree.RefreshTree(target);
        return;
    }
    if (result.sourceDeleted)
        m_regTree.RemoveItem(m_regTree.FindItem(plan.sourceRoot, plan.sourcePath));
    NavigateTo(plan.targetRoot, plan.targetPath);
    ShowEditMessage(result.message);
}
