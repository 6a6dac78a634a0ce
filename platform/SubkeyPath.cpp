#include "platform/SubkeyPath.h"

std::vector<CString> SplitSubkeyPath(LPCWSTR path)
{
    std::vector<CString> parts;
    CString current;
    for (; path != nullptr && *path != 0; ++path) {
        if (*path == '\\') {
            if (!current.IsEmpty())
                parts.push_back(current);
            current.Empty();
        } else {
            current += *path;
        }
    }
    if (!current.IsEmpty())
        parts.push_back(current);
    return parts;
}
