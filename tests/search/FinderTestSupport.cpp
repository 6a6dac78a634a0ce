#include "tests/search/FinderTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "framework/Text.h"
#include "framework/Utf8.h"
#include "platform/Platform.h"
#include "registry/RegKey.h"
#include "registry/RegistryRoots.h"
#include "tests/support/TestText.h"

std::string Describe(const CRegFinder::SSearchPosition& match, const CString& prefix)
{
    CString path = match.keyPath;
    if (!prefix.IsEmpty() && path.GetLength() >= prefix.GetLength() &&
        CompareNoCase(path, prefix, prefix.GetLength()) == 0)
        path = path.Mid(std::min(path.GetLength(), prefix.GetLength() + 1));
    std::string text = ToUtf8(CString(RootShortName(match.root)));
    if (!path.IsEmpty())
        text += "\\" + ToUtf8(path);
    if (match.kind == CRegFinder::kStateAtValue)
        text += "|" + ToUtf8(match.valueName);
    if (!match.firstPass)
        text += " (pass 2)";
    return text;
}

std::vector<std::string> FindAll(CRegFinder& finder, const CString& prefix)
{
    std::vector<std::string> found;
    CRegFinder::SSearchPosition match;
    // A bound, so that a search that never ends fails instead of hanging.
    while (found.size() < 1000 && finder.Start() && finder.Collect(match))
        found.push_back(Describe(match, prefix));
    return found;
}

void PutKey(HKEY parent, const char* path)
{
    CShdRegKey key;
    EXPECT_TRUE(key.Create(parent, W(path), nullptr)) << path;
}

void PutString(HKEY parent, const char* path, const char* name)
{
    CShdRegKey key;
    EXPECT_TRUE(key.Create(parent, W(path), nullptr) && key.WriteString(W(name), TEXT("-"))) << path;
}

SStartPosition StartAt(HKEY root, const CString& keyPath, const char* valueName, bool subtreeOnly)
{
    SStartPosition start;
    start.root = root;
    start.keyPath = keyPath;
    start.valueSelected = valueName != nullptr;
    start.valueName = valueName != nullptr ? W(valueName) : CString();
    start.subtreeOnly = subtreeOnly;
    return start;
}

SSearchParams NameSearch(const char* text)
{
    SSearchParams params;
    params.searchString = W(text);
    params.valueData = false;
    return params;
}
