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
