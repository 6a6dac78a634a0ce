#pragma once

#include "base/CString.h"
#include "regfile/RegFileJob.h"

// Applies a .reg file of either version to the registry on a worker thread.
// Cancellation takes effect only when the file has been read to its end or
// to its first error.
class CRegImporter : public CRegFileJob {
public:
    CRegImporter() = default;
    ~CRegImporter() override;

    // `checkHeader` is false when the user chose to skip the header check.
    // False if a job is running or cannot start.
    bool Start(LPCWSTR path, bool checkHeader);
    // As CRegFileJob::GetResult, with the reason for a failure in
    // `errorText` (empty on success).
    bool GetResult(bool& result, CString& errorText);

protected:
    bool Run() override;

private:
    bool m_checkHeader = true;
    CString m_errorText;
};
