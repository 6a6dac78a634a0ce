#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/CommandLineRunner.h"
#include "base/Utf8.h"
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

std::string Question(const char* path)
{
    return "message 65572 Do you want to import registry file \"" + std::string(path) + "\"?";
}

const char kUsage[] = "message 65600 Usage:\r\n\"Quenda.exe <file>\"\r\nor\r\n\"Quenda.exe /e <file> <key>\"";
const char kInvalid[] = "message 65584 Invalid command line arguments.";

// Each command line, with the answers to its questions (Yes when they run
// out), and the messages and jobs it makes.
TEST(CommandLineRunner, EachCommandLineShowsItsMessagesAndRunsItsJobs)
{
    CScratchKey scratch(TEXT("CommandLineRunner"));
    const std::string path = ToUtf8(scratch.Path());
    const std::string key = "HKCU\\" + path;
    const struct {
        std::string arguments;
        std::vector<int> answers;
        std::vector<std::string> events;
    } cases[] = {
        {"\"My Files\\a.reg\"", {}, {Question("My Files\\a.reg"), "import My Files\\a.reg"}},
        {"a.reg b.reg", {7, 6}, {Question("a.reg"), Question("b.reg"), "import b.reg"}},
        // The question is asked even when silence is asked for.
        {"/s \"a\"\"b.reg\"", {}, {Question("a\"b.reg"), "import a\"b.reg"}},
        // An empty argument is still a file name.
        {"\"\"", {7}, {Question("")}},
        // Quotes inside an argument stay; an open quote runs to the end;
        // only the space separates arguments.
        {"a\"b c\"d \"open", {7, 7}, {Question("a\"b c\"d"), Question("open")}},
        {"\ttab ", {7}, {Question("\ttab")}},
        // Options count only before the first file.
        {"file.reg /e x", {7, 7, 7}, {Question("file.reg"), Question("/e"), Question("x")}},
        {"a.reg /?", {7, 7}, {Question("a.reg"), Question("/?")}},
        {"/?", {}, {kUsage}},
        {"-S -? a.reg", {}, {kUsage}},  // help stops the run
        {"/e", {}, {}},
        {"   ", {}, {}},
        {"/E out.reg " + key, {}, {"export out.reg HKCU " + path}},
        {"-s /e \"my out.reg\"", {}, {"export my out.reg  "}},  // no key: the whole registry
        {"/e out.reg HKEY_LOCAL_MACHINE", {}, {"export out.reg HKLM "}},
        {"/e out.reg HKLM", {}, {"export out.reg HKLM "}},
        {"/e out.reg " + key + "\\Nope", {}, {kInvalid}},
        {"/e out.reg HKXX\\Software", {}, {kInvalid}},
        {"/e out.reg HKLM extra", {}, {kInvalid}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments);
        CRecordingRunner runner;
        runner.m_answers = c.answers;
        runner.Process(W(c.arguments.c_str()));
        EXPECT_EQ(runner.m_events, c.events);
    }
}

}  // namespace
