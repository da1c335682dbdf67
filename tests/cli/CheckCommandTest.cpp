#include "cli/CheckCommand.h"

#include "core/support/Json.h"
#include "core/support/Text.h"
#include "tests/support/Program.h"
#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::runProgram;
using test::TempHome;
using testing::HasSubstr;

std::vector<std::string> check(std::vector<std::string> more) {
    more.insert(more.begin(), "check");
    return more;
}

TEST(CheckCommand, SaysOfEachPathInOrderWhetherItMayBeCleaned) {
    const TempHome home;
    home.file("projects/site/package.json", "{}");
    const std::string at = home.url().path();
    const std::string before = home.outline();
    const ProcessOutput run = runProgram(
        home.url(), check({at + "/.cache/x", "/etc/passwd", "Library/", ".ssh/id", "projects/.env",
                           "projects/site/node_modules", at + "/a/../b"}));
    EXPECT_EQ(
        run.output,
        "allowed  " + at + "/.cache/x\n" +
            "refused  /etc/passwd is outside the folders Tidewright is allowed to clean.\n" +
            "refused  " + at +
            "/Library is a top-level folder; only items inside it can be cleaned.\n" + "refused  " +
            at + "/.ssh/id is on the never-touch list.\n" + "refused  " + at +
            "/projects/.env looks like source control, signing keys or secrets.\n" + "refused  " +
            at +
            "/projects/site/node_modules is inside a project and was not explicitly selected.\n" +
            "allowed  " + at + "/b\n");
    EXPECT_EQ(run.errorOutput, "");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(home.outline(), before);
}

TEST(CheckCommand, AllowedPathsGiveStatus0AndProjectItemsNeedTheirFlag) {
    const TempHome home;
    home.file("projects/site/package.json", "{}");
    const ProcessOutput run =
        runProgram(home.url(), check({"--project-item", "projects/site/node_modules", ".cache"}));
    EXPECT_EQ(run.output, "allowed  " + home.path("projects/site/node_modules").path() + "\n" +
                              "allowed  " + home.path(".cache").path() + "\n");
    EXPECT_EQ(run.exitCode, 0);
}

TEST(CheckCommand, PrintsAListOfVerdictsAsJson) {
    const TempHome home;
    const TempHome outside;
    home.link("link", outside.url().path());
    const ProcessOutput run =
        runProgram(home.url(), check({"--json", "link", "link/inside", ".gnupg"}));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(parseJson(run.output),
              (ParsedJson{
                  {{"path", home.path("link").path()}, {"allowed", true}},
                  {{"path", home.path("link/inside").path()},
                   {"allowed", false},
                   {"violation", "symlinkEscapes"},
                   {"sentence", home.path("link/inside").path() +
                                    " resolves to a location outside the allowed folders."}},
                  {{"path", home.path(".gnupg").path()},
                   {"allowed", false},
                   {"violation", "protectedPath"},
                   {"sentence", home.path(".gnupg").path() + " is on the never-touch list."}},
              }));
}

TEST(CheckCommand, TakesOnePathAsOnePathWhateverItsName) {
    const TempHome home;
    const std::vector<std::string> names{"[a,b]", "[]", "{}", "a,b", "a b", "--yes", "\xff"};
    for (const std::string& name : names) {
        const ProcessOutput run = runProgram(home.url(), check({"--json", "--", name}));
        EXPECT_EQ(run.exitCode, 0) << name;
        const auto list = parseJson(run.output).value_or(ParsedJson::array());
        ASSERT_EQ(list.size(), 1U) << name;
        EXPECT_EQ(list[0]["path"], repairedUTF8(home.path(name).path()));
    }
}

TEST(CheckCommand, NamesCannotMoveTheCursor) {
    const TempHome home;
    const ProcessOutput run = runProgram(home.url(), check({"a\x1b[2Jb\n", "/c\rd"}));
    EXPECT_EQ(run.output, "allowed  " + home.url().path() + "/a\uFFFD[2Jb\uFFFD\n" +
                              "refused  /c\uFFFD" +
                              "d is outside the folders Tidewright is allowed to clean.\n");
}

TEST(CheckCommand, FitsTheTerminal) {
    const std::vector<PathVerdict> verdicts{
        {"/" + std::string(150, 'p'), true, std::nullopt, std::nullopt},
        {"/p", false, PolicyViolation::Kind::protectedPath,
         "/" + std::string(150, 'q') + " is on the never-touch list."}};
    for (std::size_t columns = 40; columns < 120; ++columns)
        for (const std::string& line :
             nonEmptyLines(verdictsText(verdicts, Terminal{true, false, columns})))
            ASSERT_LE(displayWidth(line), columns);
    EXPECT_THAT(verdictsText(verdicts, Terminal{true, true, 80}),
                testing::AllOf(HasSubstr("\x1b[32mallowed\x1b[0m  /ppp"),
                               HasSubstr("\x1b[33mrefused\x1b[0m  /qqq")));
}

TEST(CheckCommand, NoPathAndAnEmptyPathAreWrongUsage) {
    const TempHome home;
    const ProcessOutput none = runProgram(home.url(), {"check"});
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_EQ(none.errorOutput, "tidewright: check needs to be told more: PATH is required. See "
                                "tidewright --help.\n");
    const ProcessOutput empty = runProgram(home.url(), check({".cache", ""}));
    EXPECT_EQ(empty.exitCode, 2);
    EXPECT_EQ(empty.output, "");
    EXPECT_EQ(empty.errorOutput,
              "tidewright: an empty path names nothing. See tidewright check --help.\n");
}

TEST(CheckCommand, AResultThatCannotBeWrittenIsAFailure) {
    const TempHome home;
    const auto run = runProcess({URL("/bin/sh"),
                                 {"-c", "exec \"$0\" check .cache > /dev/full", TIDEWRIGHT_PROGRAM},
                                 test::environmentOf(home.url()),
                                 home.url(),
                                 std::chrono::seconds(60)},
                                CancelToken());
    ASSERT_TRUE(run.has_value());
    EXPECT_EQ(run->exitCode, 1);
    EXPECT_THAT(run->errorOutput, HasSubstr("the result could not be written"));
}

} // namespace
} // namespace tidewright
