#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "base/Utf8.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/EditOperations.h"
#include "registry/KeyOperations.h"
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

const char kStart[] = ".\nBar\n  \"Abc\" 4: 09 00 00 00\nFoo (cls)\n  \"Abc\" 4: 01 00 00 00\nFoo\\Sub\n";
const char kOverwrite[] = "Value with this name already exists. Do you want to overwrite existing value?";

// Plays the edit commands on a selection of the scratch key's keys and
// values, the way the main window drives them, collecting what the user is
// asked and told.
class CEditSession : private IOverwriteQuestion {
public:
    explicit CEditSession(const CString& scratch) : m_scratch(scratch) {}

    void Run(const std::string& step)
    {
        const size_t space = step.find(' ');
        const std::string verb = step.substr(0, space);
        const CString arg = space == std::string::npos ? CString() : W(step.substr(space + 1).c_str());
        const CString path = arg == W(".") ? m_scratch : ChildKeyPath(m_scratch, arg);
        const HKEY root = HKEY_CURRENT_USER;
        if (verb == "key")
            m_key = path;
        else if (verb == "value")
            m_value = arg;
        else if (verb == "answer")
            m_yes = arg != W("no");
        else if (verb == "fail-write")
            m_faults.FailValueWrite(arg);
        else if (verb == "heal")
            m_faults.Clear();
        else if (verb == "remove")
            EXPECT_TRUE(DeleteKeyTree(root, path));
        else if (verb == "key-cut" || verb == "key-copy")
            m_clipboard.Put(verb == "key-cut" ? CRegClipboard::kCutKey : CRegClipboard::kCopiedKey, root, m_key,
                            nullptr);
        else if (verb == "value-cut" || verb == "value-copy")
            m_clipboard.Put(verb == "value-cut" ? CRegClipboard::kCutValue : CRegClipboard::kCopiedValue, root, m_key,
                            m_value);
        else if (verb == "paste" && m_clipboard.HoldsValue())
            Tell(PasteRegValue(m_clipboard, root, m_key, *this).message);
        else if (verb == "paste")
            Tell(CopyKey(PlanKeyPaste(m_clipboard, root, m_key, m_plan, m_message)));
        else if (verb == "rename-value")
            Tell(RenameRegValue(m_clipboard, root, m_key, m_value, arg).message);
        else if (verb == "rename-key")
            Tell(CopyKey(PlanKeyRename(m_clipboard, root, m_scratch, m_key.Mid(m_scratch.GetLength() + 1), arg, m_plan,
                                       m_message)));
        else if (verb == "delete-key")
            Tell(DeleteRegKey(m_clipboard, root, m_key));
        else if (verb == "delete-value")
            Tell(DeleteRegValue(m_clipboard, root, m_key, m_value));
        else
            ADD_FAILURE() << "no such step";
    }

    CFaultInjectingPlatform m_faults;
    CRegClipboard m_clipboard;
    std::vector<std::string> m_messages;

private:
    bool ConfirmOverwrite(LPCWSTR question) override
    {
        m_messages.push_back(ToUtf8(CString(question)));
        return m_yes;
    }
    EEditMessage CopyKey(bool planned) { return planned ? RunKeyCopy(m_plan, m_clipboard).message : m_message; }
    void Tell(EEditMessage message)
    {
        if (message != EEditMessage::kNone)
            m_messages.push_back(ToUtf8(CString(EditMessageText(message))));
    }

    CString m_scratch;
    CString m_key;
    CString m_value;
    bool m_yes = true;
    SKeyCopy m_plan;
    EEditMessage m_message = EEditMessage::kNone;
};

// The paste and rename rules, step by step: what the user is told and what
// the registry holds at the end, classes included.
TEST(EditOperations, PasteAndRenameRules)
{
    const struct {
        const char* name;
        std::vector<std::string> steps;
        std::vector<std::string> messages;
        std::string dump;
    } cases[] = {
        {"a cut key cannot go into itself or beside itself",
         {"key Foo", "key-cut", "key Foo\\Sub", "paste", "key .", "paste"},
         {"Registry key can not be copied to itself.", "Key can not be moved to the same location."},
         kStart},
        {"a cut key moves, and keys are never merged",
         {"key Foo", "key-cut", "key Bar", "paste", "key Bar\\Foo\\Sub", "key-copy", "key Bar", "paste", "paste"},
         {"Key with this name already exists."},
         ".\nBar\n  \"Abc\" 4: 09 00 00 00\nBar\\Foo (cls)\n  \"Abc\" 4: 01 00 00 00\nBar\\Foo\\Sub\nBar\\Sub\n"},
        {"a copied key takes a new name beside itself",
         {"key Foo\\Sub", "key-copy", "key Foo", "paste", "paste"},
         {},
         std::string(kStart) + "Foo\\Sub (2)\nFoo\\Sub (3)\n"},
        {"a cut value stays in its own key",
         {"key Foo", "value Abc", "value-cut", "paste", "value-copy", "delete-value", "paste"},
         {"You can not move value to the same registry key."},
         ".\nBar\n  \"Abc\" 4: 09 00 00 00\nFoo (cls)\nFoo\\Sub\n"},
        {"a copied value takes a new name beside itself and asks before it replaces",
         {"key Foo", "value Abc", "value-copy", "paste", "key Bar", "answer no", "paste", "answer yes", "paste"},
         {kOverwrite, kOverwrite},
         ".\nBar\n  \"Abc\" 4: 01 00 00 00\nFoo (cls)\n  \"Abc\" 4: 01 00 00 00\n  \"Abc (2)\" 4: 01 00 00 00\n"
         "Foo\\Sub\n"},
        {"a cut value moves once",
         {"key Foo", "value Abc", "value-cut", "key Foo\\Sub", "paste", "key Bar", "paste"},
         {},
         ".\nBar\n  \"Abc\" 4: 09 00 00 00\nFoo (cls)\nFoo\\Sub\n  \"Abc\" 4: 01 00 00 00\n"},
        {"renames",
         {"key Foo", "value Abc", "rename-value abc", "rename-value Xyz", "rename-key a\\b", "rename-key ",
          "fail-write Xyz", "rename-key Qux", "heal", "rename-key Bar", "rename-key Baz"},
         {"Invalid key name.", "Invalid key name.", "Unable to rename registry key.",
          "Key with this name already exists."},
         ".\nBar\n  \"Abc\" 4: 09 00 00 00\nBaz (cls)\n  \"Xyz\" 4: 01 00 00 00\nBaz\\Sub\n"},
        {"a copy that fails is taken away again",
         {"key Foo", "key-copy", "key Bar", "fail-write Abc", "paste"},
         {"Unable to copy registry key."},
         kStart},
        {"a vanished source passes the place checks first, then fails its copy",
         {"key Foo", "key-cut", "remove Foo", "key .", "paste", "key Bar", "paste", "key Bar\\Abc", "key-copy",
          "key Bar", "paste", "value Abc", "value-cut", "remove Bar", "key .", "paste"},
         {"Key can not be moved to the same location.", "Unable to copy registry key.", "Unable to copy registry key.",
          "Unable to open source registry key."},
         ".\n"},
        {"deleting empties the clipboard that names what went",
         {"key Foo", "value Abc", "value-cut", "delete-value", "key Foo\\Sub", "key-cut", "key Foo", "delete-key",
          "key Bar", "paste"},
         {},
         ".\nBar\n  \"Abc\" 4: 09 00 00 00\n"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        CScratchKey scratch(TEXT("EditRules"));
        CShdRegKey foo(true);
        ASSERT_TRUE(foo.Create(HKEY_CURRENT_USER, scratch.Path() + W("\\Foo"), W("cls")));
        ASSERT_TRUE(foo.WriteDword(W("Abc"), 1));
        CShdRegKey(true).Create(foo.GetHandle(), W("Sub"), nullptr);
        WriteTestValue(scratch.Handle(), W("Bar"), W("Abc"), REG_DWORD, Bytes({9, 0, 0, 0}));
        foo.Close();
        CEditSession session(scratch.Path());
        CScopedPlatform scoped(session.m_faults);
        for (const std::string& step : item.steps) {
            SCOPED_TRACE(step);
            session.Run(step);
        }
        session.m_faults.Clear();
        EXPECT_EQ(session.m_messages, item.messages);
        EXPECT_EQ(DumpTree(HKEY_CURRENT_USER, scratch.Path()), item.dump);
    }
}

}  // namespace
