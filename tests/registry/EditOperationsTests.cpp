#include <gtest/gtest.h>

#include <functional>

#include "platform/FaultInjectingPlatform.h"
#include "registry/EditOperations.h"
#include "registry/KeyOperations.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

// The failure paths of the edits: what the user is told and what the
// registry holds afterwards, with one call failing.
TEST(EditOperations, FailuresSayWhatHappenedAndLeaveNothingHalfDone)
{
    const char* const kBefore = ".\nDst\nSrc (cls)\n  \"a\" 4: 01 00 00 00\n  \"b\" 4: 02 00 00 00\n"
                                "Src\\Child\n  \"c\" 4: 03 00 00 00\n";
    const struct {
        const char* name;
        std::function<void(CFaultInjectingPlatform&)> fault;
        CRegClipboard::EKind kind;
        const char* clipPath;
        // Runs the edit on the scratch key's path; returns its message.
        std::function<EEditMessage(CRegClipboard&, const CString&)> edit;
        EEditMessage expected;
        const char* dump;
    } cases[] = {
        {"a partial copy that stays", [](CFaultInjectingPlatform& f) {
             f.FailValueWrite(W("b"));
             f.FailKeyDelete(W("Src"));
         },
         CRegClipboard::kCutKey, "Src", nullptr, EEditMessage::kCopyKeyNotFinished,
         ".\nDst\nDst\\Src (cls)\nSrc (cls)\n  \"a\" 4: 01 00 00 00\n  \"b\" 4: 02 00 00 00\n"
         "Src\\Child\n  \"c\" 4: 03 00 00 00\n"},
        {"a move whose source stays", [](CFaultInjectingPlatform& f) { f.FailKeyDelete(W("Child")); },
         CRegClipboard::kCutKey, "Src\\Child", nullptr, EEditMessage::kKeyDeletionNotFinished,
         ".\nDst\nDst\\Child\n  \"c\" 4: 03 00 00 00\nSrc (cls)\n  \"a\" 4: 01 00 00 00\n  \"b\" 4: 02 00 00 00\n"
         "Src\\Child\n"},
        {"a refused new key name", [](CFaultInjectingPlatform& f) { f.FailOpen(W("New")); },
         CRegClipboard::kCutKey, "Src", [](CRegClipboard& clip, const CString& path) {
             SKeyCopy plan;
             EEditMessage message;
             return PlanKeyRename(clip, HKEY_CURRENT_USER, path, W("Src"), W("New"), plan, message)
                        ? RunKeyCopy(plan, clip).message
                        : message;
         },
         EEditMessage::kKeyRenameFailed, kBefore},
        {"an old value that stays", [](CFaultInjectingPlatform& f) { f.FailValueDelete(W("a")); },
         CRegClipboard::kCutValue, "Src", [](CRegClipboard& clip, const CString& path) {
             return RenameRegValue(clip, HKEY_CURRENT_USER, ChildKeyPath(path, W("Src")), W("a"), W("z")).message;
         },
         EEditMessage::kValueRenameNotFinished,
         ".\nDst\nSrc (cls)\n  \"a\" 4: 01 00 00 00\n  \"b\" 4: 02 00 00 00\n  \"z\" 4: 01 00 00 00\n"
         "Src\\Child\n  \"c\" 4: 03 00 00 00\n"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        CFaultInjectingPlatform faults;
        CScopedPlatform scoped(faults);
        CScratchKey scratch(TEXT("EditOperations"));
        CShdRegKey(true).Create(scratch.Handle(), W("Dst"), nullptr);
        CShdRegKey classy(true);
        ASSERT_TRUE(classy.Create(scratch.Handle(), W("Src"), W("cls")));
        ASSERT_TRUE(classy.WriteDword(W("a"), 1) && classy.WriteDword(W("b"), 2));
        WriteTestValue(scratch.Handle(), W("Src\\Child"), W("c"), REG_DWORD, Bytes({3, 0, 0, 0}));
        classy.Close();
        item.fault(faults);

        CRegClipboard clipboard;
        clipboard.Put(item.kind, HKEY_CURRENT_USER, ChildKeyPath(scratch.Path(), W(item.clipPath)), W("a"));
        const CString target = ChildKeyPath(scratch.Path(), W("Dst"));
        EEditMessage message = EEditMessage::kNone;
        if (item.edit) {
            message = item.edit(clipboard, scratch.Path());
        } else if (clipboard.HoldsValue()) {
            message = PasteRegValue(clipboard, HKEY_CURRENT_USER, target, [] { return true; }).message;
        } else {
            SKeyCopy plan;
            if (PlanKeyPaste(clipboard, HKEY_CURRENT_USER, target, plan, message))
                message = RunKeyCopy(plan, clipboard).message;
        }
        faults.Clear();
        EXPECT_EQ(message, item.expected);
        EXPECT_EQ(DumpTree(HKEY_CURRENT_USER, scratch.Path()), item.dump);
    }
}

}  // namespace
