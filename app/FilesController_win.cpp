#include "app/FilesController_win.h"

#include "regfile/FileJobs_win.h"

void CFilesController::Export()
{
    CPaneFocus focus(m_panes, CPaneFocus::kList);
    HKEY root = nullptr;
    CString path;
    m_panes.GetSelectedKey(root, path);
    ExportCommand(m_panes.GetOwner(), root, path);
}

void CFilesController::Import()
{
    CPaneFocus focus(m_panes, CPaneFocus::kList);
    ImportCommand(m_panes.GetOwner());
}

void CFilesController::PreviewImport()
{
    ImportPreviewCommand(m_panes.GetOwner(), *this);
}

bool CFilesController::ShowRegistryItem(HKEY root, LPCWSTR path, LPCWSTR valueName)
{
    // The tree may still hold a key deleted since it was loaded.
    if (!m_panes.NavigateToExisting(root, path))
        return false;
    const bool onValue = valueName != nullptr && m_panes.SelectValueByName(valueName);
    SetFocus(onValue ? m_panes.GetList() : m_panes.GetTree());
    return true;
}
