#include "core/probes/ShellRunner.h"

#include "core/platform/FileInfo.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace tidewright {

// What a failed expectation shows.
static void PrintTo(const Result<ShellResult, ShellError>& result, std::ostream* stream) {
    if (result)
        *stream << "status " << result->exitCode << ", output \"" << result->output << "\"/\""
                << result->errorOutput << '"';
    else
        *stream << result.error().errorDescription();
}

namespace {

using namespace std::chrono_literals;
using test::TempHome;
using testing::Each;

constexpr Duration ample = 60s;

Result<ShellResult, ShellError> succeeded(std::string output, std::string errorOutput = {}) {
    return ShellResult{0, std::move(output), std::move(errorOutput)};
}

Result<ShellResult, ShellError> failed(ShellError::Kind kind,
                                       std::string tool,
                                       std::string underlying = {}) {
    return Failure(ShellError{kind, std::move(tool), std::move(underlying)});
}

class ShellRunnerTest : public testing::Test {
protected:
    ShellRunnerTest() { runner.locator.searchPath = {home.path("bin").path(), "/usr/bin", "/bin"}; }

    Result<ShellResult, ShellError> run(const std::string& tool,
                                        const std::vector<std::string>& arguments = {},
                                        const std::optional<URL>& workingDirectory = std::nullopt,
                                        Duration timeout = ample) const {
        return runner.run(tool, arguments, workingDirectory, timeout, CancelToken());
    }

    TempHome home;
    ShellRunner runner;
};

TEST_F(ShellRunnerTest, ToolIsFoundOnTheSearchPathAndRun) {
    home.tool("bin/tool", "echo \"$1\"; echo \"$2\" >&2");
    EXPECT_EQ(run("tool", {"a", "b"}), succeeded("a\n", "b\n"));
    EXPECT_TRUE(runner.isAvailable("tool"));
}

TEST_F(ShellRunnerTest, AnotherStatusThanZeroIsNoError) {
    home.tool("bin/tool", "echo out; echo err >&2; exit 3");
    const auto result = run("tool");
    EXPECT_EQ(result, (ShellResult{3, "out\n", "err\n"}));
    EXPECT_FALSE(result->succeeded());
    home.tool("bin/killed", "kill -9 $$");
    EXPECT_EQ(run("killed"), (ShellResult{9, "", ""}));
    EXPECT_TRUE((ShellResult{0, "", "error"}).succeeded());
}

TEST_F(ShellRunnerTest, MissingToolIsAnErrorWithTheNameAsGiven) {
    const std::string path = home.file("plain", "#!/bin/sh\n").path();
    for (const std::string& tool : {std::string("no-such-tool"), std::string("no/such tool"),
                                    home.path("missing").path(), path}) {
        EXPECT_EQ(run(tool), failed(ShellError::Kind::toolNotFound, tool));
        EXPECT_FALSE(runner.isAvailable(tool));
        EXPECT_EQ(run(tool).error().errorDescription(), tool + " is not installed or not on PATH.");
    }
}

TEST_F(ShellRunnerTest, RefusedLaunchHasTheSystemsWords) {
    home.tool("bin/tool", "exit 0");
    EXPECT_EQ(run("tool", {}, home.path("missing")),
              failed(ShellError::Kind::launchFailed, "tool", std::strerror(ENOENT)));
    EXPECT_EQ(run("tool", {}, home.path("missing")).error().errorDescription(),
              "Could not run tool: No such file or directory");
    home.file("bin/script", "exit 0\n"); // no interpreter is named
    home.setMode("bin/script", 0755);
    EXPECT_EQ(run("script"),
              failed(ShellError::Kind::launchFailed, "script", std::strerror(ENOEXEC)));
}

TEST_F(ShellRunnerTest, ErrorsNameTheToolAsGivenAndNotItsPlace) {
    home.tool("bin/inner/tool", "sleep 60");
    EXPECT_EQ(run("inner/tool", {}, std::nullopt, 0s),
              failed(ShellError::Kind::timedOut, "inner/tool"));
    EXPECT_EQ(run("inner/tool", {}, std::nullopt, 0s).error().errorDescription(),
              "inner/tool did not finish in time.");
}

TEST_F(ShellRunnerTest, FailureDropsWhatTheToolWrote) {
    home.tool("bin/tool", "echo written; exec sleep 60");
    EXPECT_EQ(run("tool", {}, std::nullopt, 500ms), failed(ShellError::Kind::timedOut, "tool"));
}

TEST_F(ShellRunnerTest, ToolThatIgnoresTheRequestToEndNeverReturnsAStatus) {
    const URL ended = home.path("ended");
    home.tool("bin/tool", "trap '' TERM; sleep 3; echo > " + ended.path() + "; exit 0");
    EXPECT_EQ(run("tool", {}, std::nullopt, 2s), failed(ShellError::Kind::timedOut, "tool"));
    EXPECT_TRUE(fileExists(ended)) << "it was killed";
}

TEST_F(ShellRunnerTest, BackgroundProcessThatHoldsTheOutputIsWaitedFor) {
    home.tool("bin/tool", "(sleep 0.5; echo late) & echo early");
    EXPECT_EQ(run("tool"), succeeded("early\nlate\n"));
}

TEST_F(ShellRunnerTest, MegabytesInBothPipesArriveInTheRightField) {
    std::string lines;
    for (int line = 0; lines.size() < 3'000'000; ++line)
        lines += fmt::format("line {}\n", line);
    std::string reversed(lines.rbegin(), lines.rend());
    home.file("lines", lines);
    home.file("reversed", reversed);
    home.tool("bin/tool", "cat lines & cat reversed >&2; wait");
    EXPECT_TRUE(run("tool", {}, home.url()) == succeeded(lines, reversed));
}

TEST_F(ShellRunnerTest, NoShellSeesTheArguments) {
    home.tool("bin/tool", R"(printf '<%s>' "$@")");
    EXPECT_EQ(run("tool", {"a b", "", "$HOME", "`id`", "'\"", "*", ";exit 1", "-n"}),
              succeeded("<a b><><$HOME><`id`><'\"><*><;exit 1><-n>"));
}

TEST_F(ShellRunnerTest, OutputThatIsNotUTF8IsRepaired) {
    home.tool("bin/tool", R"(printf 'a\377b\303'; printf '\360\237\230' >&2)");
    EXPECT_EQ(run("tool"), succeeded("a\uFFFDb\uFFFD", "\uFFFD"));
    home.tool("bin/tool", R"(printf 'Größe 😀')");
    EXPECT_EQ(run("tool"), succeeded("Größe 😀"));
}

TEST_F(ShellRunnerTest, CharacterThatArrivesInTwoPiecesStaysWhole) {
    home.tool("bin/tool", R"(printf '\360\237'; sleep 0.2; printf '\230\200')");
    EXPECT_EQ(run("tool"), succeeded("😀"));
}

TEST_F(ShellRunnerTest, ToolsFindEachOtherOnTheSearchPath) {
    home.tool("bin/tool", "inner; echo \"$PATH\"; echo \"$TIDEWRIGHT_TEST_VARIABLE\"");
    home.tool("bin/inner", "echo the inner one");
    setenv("TIDEWRIGHT_TEST_VARIABLE", "inherited", 1);
    const auto result = run("tool");
    unsetenv("TIDEWRIGHT_TEST_VARIABLE");
    EXPECT_EQ(result, succeeded("the inner one\n" + home.path("bin").path() +
                                ":/usr/bin:/bin\ninherited\n"));
}

TEST_F(ShellRunnerTest, ToolStartsInTheWorkingDirectoryOfItsCommand) {
    home.tool("bin/tool", "pwd -P; echo $#");
    const URL folder = home.folder("a folder");
    EXPECT_EQ(run("tool", {}, folder), succeeded(folder.path() + "\n0\n"));
    const ShellCommand command{
        .tool = "tool", .arguments = {"x", "y z"}, .workingDirectory = folder};
    EXPECT_EQ(runner.run(command, ample, CancelToken()), succeeded(folder.path() + "\n2\n"));
}

TEST_F(ShellRunnerTest, CommandIsRunWithItsTimeLimit) {
    const ShellCommand command{.tool = "sleep", .arguments = {"60"}, .workingDirectory = {}};
    EXPECT_EQ(runner.run(command, -1s, CancelToken()), failed(ShellError::Kind::timedOut, "sleep"));
}

TEST_F(ShellRunnerTest, CancelledCallEndsAsTimedOut) {
    CancelSource source;
    std::thread canceller([&] {
        std::this_thread::sleep_for(200ms);
        source.cancel();
    });
    EXPECT_EQ(runner.run("sleep", {"60"}, std::nullopt, ample, source.token()),
              failed(ShellError::Kind::timedOut, "sleep"));
    canceller.join();
    EXPECT_EQ(runner.run("sleep", {"60"}, std::nullopt, ample, source.token()),
              failed(ShellError::Kind::timedOut, "sleep"));
}

TEST_F(ShellRunnerTest, OneRunnerServesManyThreads) {
    home.tool("bin/tool", "echo \"$1\"; exit \"$1\"");
    std::array<bool, 60> isRight{};
    std::vector<std::thread> callers;
    for (std::size_t i = 0; i < isRight.size(); ++i)
        callers.emplace_back([&, i] {
            const int status = static_cast<int>(i);
            isRight.at(i) =
                run("tool", {std::to_string(i)}) == ShellResult{status, fmt::format("{}\n", i), ""};
        });
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_THAT(isRight, Each(true));
}

TEST_F(ShellRunnerTest, AvailabilityOfAFolderIsItsExecuteBit) {
    home.setMode("", 0755);
    home.folder("open");
    home.folder("closed");
    home.setMode("closed", 0644);
    const auto answer = [&] {
        return fmt::format("{} {}", runner.isAvailable(home.path("open").path()),
                           runner.isAvailable(home.path("closed").path()));
    };
    EXPECT_EQ(test::asOrdinaryUser(answer), "true false");
    EXPECT_EQ(
        run(home.path("open").path()),
        failed(ShellError::Kind::launchFailed, home.path("open").path(), std::strerror(EACCES)));
}

} // namespace

} // namespace tidewright
