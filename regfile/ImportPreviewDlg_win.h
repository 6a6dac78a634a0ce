#pragma once

#include <windows.h>

#include "base/CString.h"
#include "framework/ShdFormDialog_win.h"
#include "regfile/ImportPreview.h"

// What the preview asks of the window it was opened from.
class IImportPreviewHost {
public:
    // Shows the key `root` \ `path`, with the value `valueName` selected when
    // it is not null and exists. False when the key cannot be shown.
    virtual bool ShowRegistryItem(HKEY root, LPCWSTR path, LPCWSTR valueName) = 0;

protected:
    ~IImportPreviewHost() = default;
};

// "Preview Import": every change the import of a file would make, and the
// error it would report, in a virtual list that asks for the rows it shows.
// Above the list stands the deepest key that holds every change; the rows
// name their keys below it, so that they fit the handheld's narrow screen.
// "Import" ends the dialog with OK; tapping a change whose key exists ends
// it with kResultShow after the host has shown that key.
class CImportPreviewDlg : public CShdFormDialog {
public:
    static const INT_PTR kResultShow = 4;

    CImportPreviewDlg(const CImportPreview& preview, IImportPreviewHost& host) : m_preview(preview), m_host(host) {}

private:
    bool OnInitDialog() override;
    void OnOk() override;
    INT_PTR OnCommand(WORD id, WORD code) override;
    INT_PTR OnOtherMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void Layout(int width, int height) override;
    // The text of one cell; the error, when there is one, is the first row.
    CString CellText(int row, int column) const;
    void ShowRow(int row);
    HWND List() const;

    const CImportPreview& m_preview;
    HKEY m_baseRoot = nullptr;  // null when the changes span roots
    CString m_basePath;
    IImportPreviewHost& m_host;
    CString m_cellText;  // what the list was last given to show
};

// "Preview Import..." (IDM_IMPORT_PREVIEW): asks for a file, previews its
// import behind the progress dialog, shows the preview, and imports the file
// (RunImportJob) when the user chooses "Import".
void ImportPreviewCommand(HWND owner, IImportPreviewHost& host);
