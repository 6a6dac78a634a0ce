#include "regfile/RegFileJob.h"

#include "platform/Platform.h"

CRegFileJob::CRegFileJob() = default;

CRegFileJob::~CRegFileJob() = default;

bool CRegFileJob::StartJob(LPCWSTR path)
{
    if (IsRunning())
        return false;
    m_path = path != nullptr ? path : TEXT("");
    m_result = false;
    return m_worker.Start([this] { m_result = Run(); });
}

bool CRegFileJob::GetResult(bool& result)
{
    result = false;
    if (!m_worker.Wait())
        return false;
    result = m_result;
    return true;
}

void CRegFileJob::Cancel(bool deleteFile)
{
    if (m_worker.Cancel() && deleteFile)
        Platform().DeleteFileW(m_path);
}
