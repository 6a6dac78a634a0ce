#include <gtest/gtest.h>

#include <functional>

#include "platform/FaultInjectingPlatform.h"
#include "registry/EditOperations.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

using FFault = std::function<void(CFaultInjectingPlatform&)>;
using FEdit = std::function<EEditMessage(const CString& scratch)>;

// Pastes the cut key `source` into Dst.
EEditMessage MoveKey(const CString& scratch, const char* source)
{
    CRegClipboard clipboard;
    clipboard.Put(CRegClipboard::kCutKey, HKEY_CURRENT_USER, ChildKeyPath(scratch, W(source)), nullptr);
    SKeyCopy plan;
    EEditMessage message = EEditMessage::kNone;
    if (PlanKeyPaste(clipboard, HKEY_CURRENT_USER, ChildKeyPath(scratch, W("Dst")), plan, message))
        message = RunKeyCopy(plan, clipboard).message;
    return message;
}

// The failure paths that take a failing registry call: what the user is
// told and what the registry holds afterwards.
TEST(EditOperations, FailuresSayWhatHappenedAndLeaveNothingHalfDone)
{
    const std::string kSrc = "Src (cls)\n  \"a\" 4: 01 00 00 00\n";
    const struct { const char* name; FFault fault; FEdit edit; EEditMessage expected; std::string dump; } cases[] = {
        {"a partial copy that stays",
         [](CFaultInjectingPlatform& f) { f.FailValueWrite(W("c")), f.FailKeyDelete(W("Child")); },
         [](const CString& scratch) { return MoveKey(scratch, "Src"); }, EEditMessage::kCopyKeyNotFinished,
         ".\nDst\nDst\\Src (cls)\nDst\\Src\\Child\n" + kSrc +
             "Src\\Child\n  \"c\" 4: 03 00 00 00\n"},
        {"a move whose source stays", [](CFaultInjectingPlatform& f) { f.FailKeyDelete(W("Child")); },
         [](const CString& scratch) { return MoveKey(scratch, "Src\\Child"); }, EEditMessage::kKeyDeletionNotFinished,
         ".\nDst\nDst\\Child\n  \"c\" 4: 03 00 00 00\n" + kSrc + "Src\\Child\n"},
        {"a refused new key name", [](CFaultInjectingPlatform& f) { f.FailOpen(W("New")); },
         [](const CString& scratch) {
             CRegClipboard clipboard;
             SKeyCopy plan;
             EEditMessage message = EEditMessage::kNone;
             return PlanKeyRename(clipboard, HKEY_CURRENT_USER, scratch, W("Src"), W("New"), plan, message)
                        ? RunKeyCopy(plan, clipboard).message
                        : message;
         },
         EEditMessage::kKeyRenameFailed, ".\nDst\n" + kSrc + "Src\\Child\n  \"c\" 4: 03 00 00 00\n"},
        {"an old value that stays", [](CFaultInjectingPlatform& f) { f.FailValueDelete(W("a")); },
         [](const CString& scratch) {
             CRegClipboard clipboard;
             return RenameRegValue(clipboard, HKEY_CURRENT_USER, ChildKeyPath(scratch, W("Src")), W("a"), W("z"))
                 .message;
         },
         EEditMessage::kValueRenameNotFinished,
         ".\nDst\n" + kSrc + "  \"z\" 4: 01 00 00 00\nSrc\\Child\n  \"c\" 4: 03 00 00 00\n"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        CFaultInjectingPlatform faults;
        CScopedPlatform scoped(faults);
        CScratchKey scratch(TEXT("EditOperations"));
        CShdRegKey(true).Create(scratch.Handle(), W("Dst"), nullptr);
        CShdRegKey source(true);
        ASSERT_TRUE(source.Create(scratch.Handle(), W("Src"), W("cls")) && source.WriteDword(W("a"), 1));
        WriteTestValue(source.GetHandle(), W("Child"), W("c"), REG_DWORD, Bytes({3, 0, 0, 0}));
        source.Close();
        item.fault(faults);
        const EEditMessage message = item.edit(scratch.Path());
        faults.Clear();
        EXPECT_EQ(message, item.expected);
        EXPECT_EQ(DumpTree(HKEY_CURRENT_USER, scratch.Path()), item.dump);
    }
}

}  // namespace
