#include <gtest/gtest.h>

#include <set>
#include <string>

#include "base/Utf8.h"
#include "platform/FaultInjectingPlatform.h"
#include "regfile/ImportPreview.h"
#include "regfile/RegImportRun.h"
#include "tests/support/ImportPreviewCases.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestFiles.h"

namespace {

using EChange = COverlayPlatform::EChange;

// The preview as DumpDifference lines, keys relative to the scratch key.
std::set<std::string> PreviewLines(const std::vector<CImportPreview::SChange>& changes, const CString& scratchPath)
{
    static const char* const kNames[] = {"Key created", "Key deleted", "Value added", "Value changed",
                                         "Value deleted"};
    std::set<std::string> lines;
    for (const auto& change : changes) {
        const auto valueLine = [](const CString& name, const COverlayPlatform::SData& data) {
            const std::string line = DumpValue(name, data.type, data.bytes.data(), data.bytes.size());
            return line.substr(2, line.size() - 3);
        };
        std::string data;
        if (change.kind == EChange::ValueChanged || change.kind == EChange::ValueDeleted)
            data = valueLine(change.valueName, change.before);
        if (change.kind == EChange::ValueChanged || change.kind == EChange::ValueAdded)
            data += (data.empty() ? "" : " ") + valueLine(change.valueName, change.after);
        const std::string key = change.path == scratchPath ? "." : ToUtf8(change.path.Mid(scratchPath.GetLength() + 1));
        lines.insert(std::string(kNames[static_cast<int>(change.kind)]) + "|" + key + "|" +
                     ToUtf8(change.valueName) + "|" + data);
    }
    return lines;
}

// Each case: a registry made by importing one generated file, then a second
// file previewed and imported; the preview must be exactly what the import
// changed, report the import's error, and write nothing.
TEST(ImportPreviewTest, PreviewIsWhatTheImportChangesAndWritesNothing)
{
    const struct {
        unsigned setupSeed;
        unsigned importSeed;
        const char* tail;
    } cases[] = {
        {0, 1, ""},    // into an empty key: everything is new
        {2, 3, ""},    // over keys and values the file changes and deletes
        {4, 4, ""},    // the same file again: only what it deletes
        {5, 6, kPreviewSyntaxErrorTail},  // the error stops both at the same line
    };
    CFaultInjectingPlatform counting;
    CScopedPlatform scoped(counting);
    CTestFile file("preview-test.reg");
    for (const auto& test : cases) {
        SCOPED_TRACE(test.importSeed);
        CScratchKey scratch(TEXT("Preview"));
        CString error;
        if (test.setupSeed != 0) {
            file.Write(PreviewCaseFile(test.setupSeed, ""));
            CRegImportRun(file.Path(), true).Run([] { return false; }, error);
        }
        const std::string before = DumpTree(HKEY_CURRENT_USER, scratch.Path());
        file.Write(PreviewCaseFile(test.importSeed, test.tail));
        CImportPreview preview;
        const unsigned writes = counting.RegistryWriteCount();
        ASSERT_TRUE(preview.Start(file.Path()));
        ASSERT_TRUE(preview.Wait());
        EXPECT_EQ(counting.RegistryWriteCount(), writes);
        CRegImportRun(file.Path(), true).Run([] { return false; }, error);
        EXPECT_EQ(preview.ErrorText(), error);
        EXPECT_EQ(PreviewLines(preview.Changes(), scratch.Path()),
                  DumpDifference(before, DumpTree(HKEY_CURRENT_USER, scratch.Path())));
    }
}

}  // namespace
