#include "regfile/RegImporter.h"

#include "regfile/RegImportRun.h"

CRegImporter::~CRegImporter()
{
    Cancel(false);
}

bool CRegImporter::Start(LPCWSTR path, bool checkHeader)
{
    if (IsRunning())
        return false;
    m_checkHeader = checkHeader;
    m_errorText.Empty();
    return StartJob(path);
}

bool CRegImporter::GetResult(bool& result, CString& errorText)
{
    const bool finished = CRegFileJob::GetResult(result);
    errorText = finished ? m_errorText : CString();
    return finished;
}

bool CRegImporter::Run()
{
    CRegImportRun run(FilePath(), m_checkHeader);
    return run.Run([this] { return IsCancelled(); }, m_errorText);
}
