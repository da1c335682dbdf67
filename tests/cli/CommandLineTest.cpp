#include "cli/CommandLine.h"

#include "tests/support/Program.h"
#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::runProgram;
using test::TempHome;
using testing::HasSubstr;
using testing::StartsWith;

struct BadInput {
    std::vector<std::string> arguments;
    std::string sentence;
};

TEST(CommandLine, AnswersBadInputWithOneSentenceAndStatus2) {
    const TempHome home;
    home.file("file");
    const std::vector<BadInput> inputs{
        {{}, "name a command, for instance: tidewright scan. See tidewright --help."},
        {{"frob"}, "there is no command \"frob\". See tidewright --help."},
        {{"--bogus"}, "there is no option \"--bogus\". See tidewright --help."},
        {{"scan", "--bogus"}, "there is no option \"--bogus\". See tidewright --help."},
        {{"scan", "extra"}, "there is no option \"extra\". See tidewright --help."},
        {{"scan", "--root"}, "--root needs a value behind it. See tidewright --help."},
        {{"scan", "--root", "gone"}, "the folder gone can't be used: No such file or directory."},
        {{"scan", "--root", "file"}, "file is not a folder."},
        {{"scan", "--root", "file/x"}, "the folder file/x can't be used: Not a directory."},
        {{"scan", "--root", "a\x1b[2Jb"},
         "the folder a\uFFFD[2Jb can't be used: No such file or directory."},
        {{"explain"}, "explain needs to be told more: ID is required. See tidewright --help."},
        {{"rules", "--root"}, "there is no option \"--root\". See tidewright --help."},
    };
    for (const BadInput& input : inputs) {
        const ProcessOutput run = runProgram(home.url(), input.arguments);
        EXPECT_EQ(run.errorOutput, "tidewright: " + input.sentence + "\n");
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.exitCode, 2) << input.sentence;
    }
}

TEST(CommandLine, HelpAndVersionGoToStandardOutput) {
    const TempHome home;
    const ProcessOutput version = runProgram(home.url(), {"--version"});
    EXPECT_THAT(version.output, StartsWith("tidewright "));
    EXPECT_EQ(version.exitCode, 0);
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"},
                                                      {"scan", "--help"},
                                                      {"rules", "--help"},
                                                      {"projects", "--help"},
                                                      {"explain", "--help"},
                                                      {"clean", "--help"},
                                                      {"check", "--help"}}) {
        const ProcessOutput help = runProgram(home.url(), arguments);
        EXPECT_THAT(help.output, HasSubstr("Usage: tidewright"));
        EXPECT_EQ(help.errorOutput, "");
        EXPECT_EQ(help.exitCode, 0);
    }
}

TEST(CommandLine, HelpListsEveryCommand) {
    const TempHome home;
    const std::string help = runProgram(home.url(), {"--help"}).output;
    for (const char* command : {"scan", "explain", "clean", "check", "projects", "rules"})
        EXPECT_THAT(help, HasSubstr(std::string("\n  ") + command + " "));
    const std::string cleanHelp = runProgram(home.url(), {"clean", "--help"}).output;
    for (const char* option : {"--recommended", "--id ID", "--dry-run", "--yes", "--json",
                               "--root DIR", "--exclude DIR"})
        EXPECT_THAT(cleanHelp, HasSubstr(option));
}

} // namespace
} // namespace tidewright
