#include "app/EditController_win.h"

#include "editors/EditKeyDlg_win.h"
#include "editors/EditValueDlg_win.h"
#include "editors/KeyPropertiesDlg_win.h"
#include "framework/MessageBox_win.h"
#include "framework/WaitCursor_win.h"
#include "views/ValueRows.h"

namespace {

bool IsQuestion(EEditMessage message)
{
    return message == EEditMessage::kConfirmDeleteValue || message == EEditMessage::kConfirmDeleteKey;
}

}  // namespace

CEditController::CEditController(CMainPanes& panes) : m_panes(panes)
{
    m_clipboard.SetObserver(this);
}

int CEditController::ShowEditMessage(EEditMessage message)
{
    const LPCWSTR text = EditMessageText(message);
    if (text == nullptr)
        return 0;
    return ShowMessage(m_panes.GetOwner(), text,
                       IsQuestion(message) ? MB_YESNO | MB_ICONQUESTION : MB_ICONEXCLAMATION);
}

bool CEditController::ConfirmOverwrite(LPCWSTR question)
{
    return ShowMessage(m_panes.GetOwner(), question, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

void CEditController::OnClipboardClearing(CRegClipboard::EKind kind)
{
    if (kind == CRegClipboard::kCutKey)
        m_panes.Tree().ClearCut();
    else if (kind == CRegClipboard::kCutValue)
        m_panes.Values().SetCutValue(nullptr);
}

void CEditController::EditSelectedValue(bool asBinary)
{
    SValueToEdit value;
    if (!m_panes.GetSelectedKey(value.root, value.path) || !m_panes.GetSelectedValue(value.name))
        return;
    value.asBinary = asBinary;
    RunValueEditor(value);
}

void CEditController::NewValue(DWORD type, bool custom)
{
    SValueToEdit value;
    if (!m_panes.GetSelectedKey(value.root, value.path))
        return;
    value.isNew = true;
    value.type = type;
    value.custom = custom;
    RunValueEditor(value);
}

void CEditController::RunValueEditor(const SValueToEdit& value)
{
    if (const std::optional<SValueToEdit> written = RunEditValueDlg(m_panes.GetOwner(), value))
        m_panes.FillValueList(false, written->name);
}

void CEditController::NewKey()
{
    HKEY root = nullptr;
    CString path;
    CRegTree& tree = m_panes.Tree();
    const HTREEITEM parent = tree.GetSelectedItem();
    if (!m_panes.GetSelectedKey(root, path))
        return;
    SNewKey key;
    key.root = root;
    key.parentPath = path;
    const std::optional<SNewKey> created = RunEditKeyDlg(m_panes.GetOwner(), key);
    if (!created)
        return;
    // The parent may have been loaded before the key existed: merge the
    // registry into it, then show the new child.
    tree.RefreshTree(parent);
    TreeView_Expand(m_panes.GetTree(), parent, TVE_EXPAND);
    const HTREEITEM child = tree.FindChild(parent, created->name);
    if (child != nullptr)
        TreeView_SelectItem(m_panes.GetTree(), child);
}

void CEditController::ShowKeyProperties()
{
    HKEY root = nullptr;
    CString path;
    if (m_panes.GetSelectedKey(root, path))
        KeyPropertiesDialog(m_panes.GetOwner(), root, path);
}

void CEditController::PutOnClipboard(CRegClipboard::EKind kind)
{
    HKEY root = nullptr;
    CString path;
    CString name;
    const bool value = kind == CRegClipboard::kCutValue || kind == CRegClipboard::kCopiedValue;
    if (!m_panes.GetSelectedKey(root, path) || (value && !m_panes.GetSelectedValue(name)))
        return;
    if (!m_clipboard.Put(kind, root, path, name))
        return;
    if (kind == CRegClipboard::kCutKey) {
        m_panes.Tree().SetCut(root, path);
    } else if (kind == CRegClipboard::kCutValue) {
        SCutValue cut;
        cut.root = root;
        cut.path = path;
        cut.valueName = name;
        m_panes.Values().SetCutValue(&cut);
    }
}

void CEditController::DeleteInFocusedPane()
{
    if (m_panes.TreeHasFocus())
        DeleteKey();
    else if (GetFocus() == m_panes.GetList())
        DeleteValue();
}

void CEditController::DeleteValue()
{
    HKEY root = nullptr;
    CString path;
    CString name;
    if (!m_panes.GetSelectedKey(root, path) || !m_panes.GetSelectedValue(name))
        return;
    CPaneFocus focus(m_panes);
    if (ShowEditMessage(EEditMessage::kConfirmDeleteValue) != IDYES)
        return;
    ShowEditMessage(DeleteRegValue(m_clipboard, root, path, name));
    m_panes.FillValueList(false, name);
}

void CEditController::DeleteKey()
{
    HKEY root = nullptr;
    CString path;
    if (!m_panes.GetSelectedKey(root, path) || path.IsEmpty())
        return;
    CPaneFocus focus(m_panes);
    if (ShowEditMessage(EEditMessage::kConfirmDeleteKey) != IDYES)
        return;
    CRegTree& tree = m_panes.Tree();
    const HTREEITEM item = tree.GetSelectedItem();
    EEditMessage message = EEditMessage::kNone;
    {
        CWaitCursor wait;
        message = DeleteRegKey(m_clipboard, root, path);
    }
    if (message == EEditMessage::kNone) {
        tree.RemoveItem(item);
        return;
    }
    ShowEditMessage(message);
    const HTREEITEM parent = tree.GetParentItem(item);
    tree.RefreshChildren(parent);
    tree.SelectItem(parent);
}

void CEditController::Rename(CMainPanes::ERename what)
{
    if (what == CMainPanes::kRenameKey)
        RenameKey();
    else
        RenameValue();
}

void CEditController::RenameValue()
{
    CPaneFocus focus(m_panes);
    const CValueList::SRename& rename = m_panes.Values().GetRename();
    const SValueEdit edit = RenameRegValue(m_clipboard, rename.root, rename.path, rename.oldName, rename.newName);
    ShowEditMessage(edit.message);
    if (edit.changed)
        m_panes.FillValueList(false, edit.name);
}

void CEditController::RenameKey()
{
    CPaneFocus focus(m_panes);
    CRegTree& tree = m_panes.Tree();
    const CRegTree::SLabelEdit edit = tree.GetLabelEdit();
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
        tree.SetItemLabel(edit.item, edit.newName);
        // The selected key, or the one the list shows, may lie below it.
        m_panes.OnTreeSelectionChanged();
        return;
    }
    ShowEditMessage(result.message);
    // Whatever the failed rename left is loaded afresh, not merged.
    tree.RefreshChildren(tree.GetParentItem(edit.item));
}

void CEditController::Paste(bool valuesOnly)
{
    const bool value = m_clipboard.HoldsValue();
    HKEY root = nullptr;
    CString path;
    if ((!value && (valuesOnly || !m_clipboard.HoldsKey())) || !m_panes.GetSelectedKey(root, path))
        return;
    CPaneFocus focus(m_panes);
    if (value)
        PasteValue(root, path);
    else
        PasteKey(root, path);
}

void CEditController::PasteValue(HKEY root, const CString& path)
{
    const SValueEdit edit = PasteRegValue(m_clipboard, root, path, *this);
    ShowEditMessage(edit.message);
    if (edit.changed)
        m_panes.FillValueList(false, edit.name);
}

void CEditController::PasteKey(HKEY root, const CString& path)
{
    CRegTree& tree = m_panes.Tree();
    const HTREEITEM target = tree.GetSelectedItem();
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
        // Whatever the failed copy left is loaded afresh, not merged.
        tree.RefreshChildren(target);
        return;
    }
    if (result.sourceDeleted)
        tree.RemoveItem(tree.FindItem(plan.sourceRoot, plan.sourcePath));
    m_panes.NavigateTo(plan.targetRoot, plan.targetPath);
    ShowEditMessage(result.message);
}
