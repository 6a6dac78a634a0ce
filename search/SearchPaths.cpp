#include "search/SearchPaths.h"

#include <algorithm>

#include "base/Text.h"

namespace {

size_t ComponentLength(LPCWSTR path)
{
    size_t length = 0;
    while (path[length] != 0 && path[length] != '\\')
        ++length;
    return length;
}

}  // namespace

int ComparePaths(LPCWSTR a, LPCWSTR b)
{
    if (a == nullptr || b == nullptr)
        return (a != nullptr) - (b != nullptr);
    for (;;) {
        const size_t lengthA = ComponentLength(a);
        const size_t lengthB = ComponentLength(b);
        const int difference = CompareNoCase(a, b, std::min(lengthA, lengthB));
        if (difference != 0)
            return difference;
        if (lengthA != lengthB)
            return lengthA < lengthB ? -1 : 1;
        a += lengthA;
        b += lengthB;
        if (*a != '\\' || *b != '\\')
            break;
        ++a;
        ++b;
    }
    const size_t restA = StrLen(a);
    const size_t restB = StrLen(b);
    return restA == restB ? 0 : (restA < restB ? -1 : 1);
}

void SplitFirstComponent(const CString& path, CString& first, CString& rest)
{
    const int separator = path.Find('\\');
    if (separator < 0) {
        first = path;
        rest.Empty();
        return;
    }
    first = path.Left(static_cast<size_t>(separator));
    rest = path.Mid(static_cast<size_t>(separator) + 1);
}
