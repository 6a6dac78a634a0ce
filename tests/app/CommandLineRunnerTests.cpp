#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/CommandLineRunner.h"
#include "framework/Utf8.h"
#include "registry/RegistryRoots.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

// Records every message and job as one line of text; questions are answered
// from a list (Yes when it runs out).
class CRecordingRunner : public CCommandLineRunner {
public:
    std::vector<std::string> m_events;
    std::vector<int> m_answers;

protected:
    int ShowMessage(LPCWSTR text, UINT flags) override
    {
        m_events.push_back("message " + std::to_string(flags) + " " + ToUtf8(text));
        if (m_answers.empty())
            return kAnswerYes;
        const int answer = m_answers.front();
        m_answers.erase(m_answers.begin());
        return answer;
    }
    void RunImportJob(const CString& path) override { m_events.push_back("import " + ToUtf8(path)); }
    void RunExportJob(const CString& file, HKEY root, const CString& subkeyPath) override
    {
        const LPCWSTR rootName = RootShortName(root);
        m_events.push_back("export " + ToUtf8(file) + " " + ToUtf8(rootName) + " " + ToUtf8(subkeyPath));
    }
};

std::vector<std::string> RunVerbs(const char* arguments, std::vector<int> answers = {})
{
    CRecordingRunner runner;
    runner.m_answers = answers;
    runner.Process(W(arguments));
    return runner.m_events;
}

std::string Question(const char* path)
{
    return "message 65572 Do you want to import registry file \"" + std::string(path) + "\"?";
}

const char kUsage[] = "message 65600 Usage:\r\n\"Quenda.exe <file>\"\r\nor\r\n\"Quenda.exe /e <file> <key>\"";
const char kInvalid[] = "message 65584 Invalid command line arguments.";

TEST(CommandLineRunner, ImportsEachFileAfterItsOwnQuestion)
{
    using Events = std::vector<std::string>;
    EXPECT_EQ(RunVerbs("\"My Files\\a.reg\""), (Events{Question("My Files\\a.reg"), "import My Files\\a.reg"}));
    EXPECT_EQ(RunVerbs("a.reg b.reg", {7, 6}), (Events{Question("a.reg"), Question("b.reg"), "import b.reg"}));
    EXPECT_EQ(RunVerbs("/s \"a\"\"b.reg\""), (Events{Question("a\"b.reg"), "import a\"b.reg"}))
        << "the question is asked even when silence is asked for";
    EXPECT_EQ(RunVerbs("\"\"", {7}), (Events{Question("")})) << "an empty argument is still a file name";
    EXPECT_EQ(RunVerbs("file.reg /e x", {7, 7, 7}), (Events{Question("file.reg"), Question("/e"), Question("x")}))
        << "options count only before the first file";
    EXPECT_EQ(RunVerbs("a.reg /?", {7, 7}), (Events{Question("a.reg"), Question("/?")}));
}

TEST(CommandLineRunner, HelpAndEmptyExportsShowUsageOrNothing)
{
    using Events = std::vector<std::string>;
    EXPECT_EQ(RunVerbs("/?"), (Events{kUsage}));
    EXPECT_EQ(RunVerbs("-S -? a.reg"), (Events{kUsage})) << "help stops the run";
    EXPECT_EQ(RunVerbs("/e"), Events{});
    EXPECT_EQ(RunVerbs("   "), Events{});
}

TEST(CommandLineRunner, ExportsAnExistingKeyOrReportsInvalidArguments)
{
    CScratchKey scratch(TEXT("CommandLineRunner"));
    const std::string path = ToUtf8(scratch.Path());
    const std::string key = "HKCU\\" + path;
    using Events = std::vector<std::string>;
    EXPECT_EQ(RunVerbs(("/E out.reg " + key).c_str()), (Events{"export out.reg HKCU " + path}));
    EXPECT_EQ(RunVerbs("-s /e \"my out.reg\""), (Events{"export my out.reg  "})) << "no key: the whole registry";
    EXPECT_EQ(RunVerbs("/e out.reg HKEY_LOCAL_MACHINE"), (Events{"export out.reg HKLM "}));
    EXPECT_EQ(RunVerbs("/e out.reg HKLM"), (Events{"export out.reg HKLM "}));
    EXPECT_EQ(RunVerbs(("/e out.reg " + key + "\\Nope").c_str()), (Events{kInvalid}));
    EXPECT_EQ(RunVerbs("/e out.reg HKXX\\Software"), (Events{kInvalid}));
    EXPECT_EQ(RunVerbs("/e out.reg HKLM extra"), (Events{kInvalid}));
}

}  // namespace
