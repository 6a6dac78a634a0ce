#include "framework/CommandLine.h"

namespace {

const WCHAR kBlank = ' ';
const WCHAR kQuote = '"';

void Unquote(CString& token)
{
    if (token.IsEmpty() || token.GetAt(0) != kQuote)
        return;
    token.Delete(0);
    if (!token.IsEmpty() && token.GetAt(token.GetLength() - 1) == kQuote)
        token.Truncate(token.GetLength() - 1);
    for (size_t i = 0; i + 1 < token.GetLength(); ++i) {
        if (token.GetAt(i) == kQuote && token.GetAt(i + 1) == kQuote)
            token.Delete(i + 1);
    }
}

}  // namespace

bool ReadCommandLineToken(LPCWSTR text, size_t& position, size_t length, CString& token)
{
    token.Empty();
    if (text == nullptr || position >= length)
        return false;
    while (position < length && text[position] == kBlank)
        ++position;
    const size_t start = position;
    bool quoted = false;
    while (position < length && (quoted || text[position] != kBlank)) {
        if (text[position] == kQuote)
            quoted = !quoted;
        ++position;
    }
    if (position == start)
        return false;
    token.Append(text + start, position - start);
    Unquote(token);
    return true;
}
