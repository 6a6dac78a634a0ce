#include "search/SearchParams.h"

LPCWSTR CheckSearchParams(const SSearchParams& params)
{
    if (params.searchString.IsEmpty())
        return TEXT("Search string can't be empty.");
    if (!params.keyNames && !params.valueNames && !params.valueData)
        return TEXT("You should specify at least one item type to search for.");
    return nullptr;
}
