#include "core/platform/Process.h"

#include "core/platform/Directory.h"
#include "core/platform/posix/FileDescriptor.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <deque>
#include <thread>

extern char** environ; // NOLINT: POSIX leaves its declaration to the program

namespace tidewright {

// What a failed expectation shows.
static void PrintTo(const Result<ProcessOutput, ProcessError>& result, std::ostream* stream) {
    if (result)
        *stream << "status " << result->exitCode << ", output \"" << result->output << "\"/\""
                << result->errorOutput << '"';
    else
        *stream << (result.error().kind == ProcessError::Kind::timedOut ? "timed out"
                                                                        : "not launched: ")
                << result.error().reason;
}

namespace {

using namespace std::chrono_literals;
using test::TempHome;

/// Longer than any of these programs takes, and shorter than anybody waits for a test.
constexpr Duration ample = 60s;

/// Enough for a shell to have begun its script on a busy machine.
constexpr Duration moment = 2s;

std::size_t openDescriptors() {
    const auto entries = readDirectory(URL("/dev/fd"));
    return entries ? entries->size() : 0;
}

/// A program that the system has; all of these exist under one of the two on every system.
URL systemProgram(const std::string& name) {
    const URL inBin("/bin/" + name);
    return isExecutableFile(inBin) ? inBin : URL("/usr/bin/" + name);
}

Result<ProcessOutput, ProcessError> run(const URL& executable,
                                        const std::vector<std::string>& arguments = {},
                                        Duration timeout = ample,
                                        const CancelToken& cancel = CancelToken()) {
    return runProcess({executable, arguments, processEnvironment(), std::nullopt, timeout}, cancel);
}

bool isEnd(const Result<ProcessOutput, ProcessError>& result, int status, std::string_view output) {
    return result && result->exitCode == status && result->output == output;
}

bool isTimedOut(const Result<ProcessOutput, ProcessError>& result) {
    return !result && result.error().kind == ProcessError::Kind::timedOut;
}

bool isNotLaunched(const Result<ProcessOutput, ProcessError>& result, int code) {
    return !result && result.error().kind == ProcessError::Kind::launchFailed &&
           result.error().reason == SystemError{code, {}, {}}.reason();
}

void waitFor(const URL& file) {
    for (int i = 0; i < 3000 && !fileExists(file); ++i)
        std::this_thread::sleep_for(10ms);
    EXPECT_TRUE(fileExists(file)) << file.path() << " was never made";
}

/// Every call has to give back what it opened, and to leave no ended program behind.
class ProcessTest : public testing::Test {
protected:
    ~ProcessTest() override {
        EXPECT_EQ(openDescriptors(), m_before);
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child was not waited for";
        EXPECT_EQ(errno, ECHILD);
    }

    /// A shell script, run to its end.
    Result<ProcessOutput, ProcessError> runScript(std::string_view body,
                                                  Duration timeout = ample) const {
        return run(home.tool("tool", body), {}, timeout);
    }

    TempHome home;

private:
    std::size_t m_before = openDescriptors();
};

TEST_F(ProcessTest, BothOutputsArriveEachInItsField) {
    const auto result = runScript("echo to the output; echo to the errors >&2; echo more");
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->output, "to the output\nmore\n");
    EXPECT_EQ(result->errorOutput, "to the errors\n");
    EXPECT_EQ(result->exitCode, 0);
}

TEST_F(ProcessTest, BytesArriveUnchanged) {
    const std::string bytes("\0\xff\xfe\r\n\0end", 9);
    home.file("bytes", bytes);
    EXPECT_PRED3(isEnd, run(systemProgram("cat"), {home.path("bytes").path()}), 0, bytes);
}

TEST_F(ProcessTest, ProgramThatWritesNothingLeavesNothing) {
    const auto result = runScript("exit 0");
    EXPECT_PRED3(isEnd, result, 0, "");
    EXPECT_EQ(result->errorOutput, "");
}

TEST_F(ProcessTest, ProgramMayCloseItsOutputsLongBeforeItsEnd) {
    EXPECT_PRED3(isEnd, runScript("exec >&- 2>&-; sleep 0.3; exit 5"), 5, "");
}

TEST_F(ProcessTest, ExitStatusIsPassedOn) {
    for (const int status : {0, 1, 3, 127, 255})
        EXPECT_PRED3(isEnd, runScript(fmt::format("exit {}", status)), status, "");
}

TEST_F(ProcessTest, DeathBySignalGivesTheSignalsNumber) {
    for (const int signal : {SIGKILL, SIGTERM, SIGHUP, SIGUSR1})
        EXPECT_PRED3(isEnd, runScript(fmt::format("echo before; kill -{} $$", signal)), signal,
                     "before\n");
}

TEST_F(ProcessTest, MegabytesOfManyProgramsAtOnceArriveInOrderInTheRightField) {
    constexpr int programs = 200;
    constexpr std::size_t size = 4 * 1024 * 1024;
    std::string output;
    std::string errors;
    for (int line = 0; output.size() < size; ++line) {
        output += fmt::format("output line {}\n", line);
        errors += fmt::format("error line {}, which is longer\n", line);
    }
    const std::string paths =
        home.file("output", output).path() + " " + home.file("errors", errors).path();
    const URL tool = home.tool("tool", "set -- $1 " + paths +
                                           "\necho $1; echo $1 >&2\ncat $2 & cat $3 >&2; wait");
    std::array<bool, programs> isRight{};
    std::vector<std::thread> callers;
    for (int program = 0; program < programs; ++program)
        callers.emplace_back([&, program] {
            const std::string number = std::to_string(program);
            const auto result = run(tool, {number}, 200s);
            const std::string begin = number + "\n";
            isRight.at(static_cast<std::size_t>(program)) =
                result && result->exitCode == 0 && result->output.starts_with(begin) &&
                result->errorOutput.starts_with(begin) &&
                std::string_view(result->output).substr(begin.size()) == output &&
                std::string_view(result->errorOutput).substr(begin.size()) == errors;
        });
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_THAT(isRight, testing::Each(true));
}

TEST_F(ProcessTest, DescendantThatHoldsTheOutputIsReadToItsEnd) {
    const auto result = runScript("(sleep 0.5; echo late; echo late >&2) &\necho early; exit 4");
    EXPECT_PRED3(isEnd, result, 4, "early\nlate\n");
    EXPECT_EQ(result->errorOutput, "late\n");
}

TEST_F(ProcessTest, TimeLimitIsForTheProgramAndNotForItsDescendants) {
    EXPECT_PRED3(isEnd, runScript("(sleep 2.5; echo late) &\necho early", moment), 0,
                 "early\nlate\n");
}

TEST_F(ProcessTest, ArgumentsArriveAsTheyStand) {
    const std::vector<std::string> arguments{"a b",
                                             "",
                                             "\"quotes\" 'and' `others`",
                                             "$HOME; exit 9 | cat > file",
                                             "*",
                                             "\\n",
                                             "line\nbreak",
                                             "\xff\xfe",
                                             "-n",
                                             std::string(100'000, 'x')};
    const URL tool = home.tool("tool", R"(printf '%s,' "$#"; printf '<%s>' "$@")");
    EXPECT_PRED3(isEnd, run(tool, arguments), 0,
                 fmt::format("{},<{}>", arguments.size(), fmt::join(arguments, "><")));
}

TEST_F(ProcessTest, ProgramsOwnNameIsItsPath) {
    const URL tool = home.tool("a folder/a tool", R"(printf '%s' "$0")");
    EXPECT_PRED3(isEnd, run(tool), 0, tool.path());
}

TEST_F(ProcessTest, EnvironmentIsTheOneAskedFor) {
    const Environment environment{{"A", "1 2"}, {"B", "x=y"}, {"EMPTY", ""}, {"N", "\xff"}};
    const auto result =
        runProcess({systemProgram("env"), {}, environment, std::nullopt, ample}, CancelToken());
    EXPECT_PRED3(isEnd, result, 0, "A=1 2\nB=x=y\nEMPTY=\nN=\xff\n");
}

TEST_F(ProcessTest, EnvironmentOfThisProcessIsReadWithTheFirstOfTwoValues) {
    std::string first = "NAME=first";
    std::string second = "NAME=second";
    std::string noValue = "nothing of the kind";
    std::string equals = "OTHER==";
    std::array<char*, 5> entries{first.data(), second.data(), noValue.data(), equals.data(),
                                 nullptr};
    char** const before = std::exchange(environ, entries.data());
    const Environment environment = processEnvironment();
    environ = before;
    EXPECT_EQ(environment, (Environment{{"NAME", "first"}, {"OTHER", "="}}));
}

TEST_F(ProcessTest, WorkingDirectoryIsTheOneAskedForOrThisProcesssOwn) {
    const URL folder = home.folder("a folder\nwith \xff");
    const URL tool = home.tool("tool", "pwd -P");
    EXPECT_PRED3(isEnd, runProcess({tool, {}, {}, folder, ample}, CancelToken()), 0,
                 folder.path() + "\n");
    const std::array<char, 4096> empty{};
    std::array<char, 4096> own = empty;
    ASSERT_NE(getcwd(own.data(), own.size()), nullptr);
    EXPECT_PRED3(isEnd, run(tool), 0, std::string(own.data()) + "\n");
}

TEST_F(ProcessTest, WorkingDirectoryThatIsNoneFailsTheLaunch) {
    const URL marker = home.path("started");
    const URL tool = home.tool("tool", "touch " + marker.path());
    const auto runIn = [&](const URL& folder) {
        return runProcess({tool, {}, processEnvironment(), folder, ample}, CancelToken());
    };
    EXPECT_PRED2(isNotLaunched, runIn(home.path("missing")), ENOENT);
    EXPECT_PRED2(isNotLaunched, runIn(tool), ENOTDIR);
    EXPECT_FALSE(fileExists(marker));
    EXPECT_PRED3(isEnd, runIn(home.url()), 0, "");
    EXPECT_TRUE(fileExists(marker));
}

TEST_F(ProcessTest, WhatCantBeExecutedFailsTheLaunchWithTheSystemsWords) {
    EXPECT_PRED2(isNotLaunched, run(home.path("missing")), ENOENT);
    EXPECT_PRED2(isNotLaunched, run(home.file("plain", "#!/bin/sh\n")), EACCES);
    EXPECT_PRED2(isNotLaunched, run(home.folder("folder")), EACCES);
    home.file("interpreted", "#!/no/such/interpreter\n");
    home.setMode("interpreted", 0755);
    EXPECT_PRED2(isNotLaunched, run(home.path("interpreted")), ENOENT);
}

TEST_F(ProcessTest, ScriptWithoutAnInterpreterLineIsNotGivenToAShell) {
    const URL marker = home.path("started");
    home.file("script", "touch " + marker.path() + "\n");
    home.setMode("script", 0755);
    EXPECT_PRED2(isNotLaunched, run(home.path("script")), ENOEXEC);
    EXPECT_FALSE(fileExists(marker));
}

TEST_F(ProcessTest, ArgumentsBeyondTheSystemsLimitFailTheLaunch) {
    const std::vector<std::string> arguments(100, std::string(1'000'000, 'x'));
    EXPECT_PRED2(isNotLaunched, run(systemProgram("echo"), arguments), E2BIG);
}

TEST_F(ProcessTest, InputIsTheNullDevice) {
    // This program's own input has something to read.
    auto input = makePipe();
    ASSERT_TRUE(input.has_value());
    ASSERT_EQ(write(input->writeEnd.get(), "secret\n", 7), 7);
    const FileDescriptor before(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10));
    dup2(input->readEnd.get(), STDIN_FILENO);
    const auto result = runScript("cat; test -c /dev/fd/0 && echo a device");
    if (before)
        dup2(before.get(), STDIN_FILENO);
    else
        close(STDIN_FILENO);
    EXPECT_PRED3(isEnd, result, 0, "a device\n");
}

TEST_F(ProcessTest, ProgramLeadsAProcessGroupOfItsOwn) {
    const auto result = runScript("echo $$; ps -o pgid= -p $$");
    ASSERT_TRUE(result.has_value());
    int id = 0;
    int group = 0;
    ASSERT_EQ(std::sscanf(result->output.c_str(), "%d\n%d", &id, &group), 2) << result->output;
    EXPECT_EQ(group, id);
    EXPECT_NE(group, getpgrp());
}

TEST_F(ProcessTest, OtherDescriptorsAreClosedInTheProgram) {
    // Such as a library may leave behind: not closed on exec.
    const FileDescriptor low(dup(STDERR_FILENO));
    const FileDescriptor high(fcntl(STDERR_FILENO, F_DUPFD, 200));
    ASSERT_EQ(fcntl(high.get(), F_GETFD), 0);
    // 3 is the one with which the folder is read.
    EXPECT_PRED3(isEnd, run(systemProgram("ls"), {"/proc/self/fd"}), 0, "0\n1\n2\n3\n");
}

TEST_F(ProcessTest, SignalsAreNeitherBlockedNorIgnoredInTheProgram) {
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigaddset(&blocked, SIGCHLD);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto pipeBefore = std::signal(SIGPIPE, SIG_IGN);
    const auto interruptBefore = std::signal(SIGINT, SIG_IGN);
    const auto result = runScript("while read -r name mask; do case $name in Sig[BI]*) "
                                  "echo $name $((0x$mask & 0x7fffffff)) ;; esac; done "
                                  "< /proc/self/status");
    const auto death = runScript("kill -PIPE $$; echo still here");
    std::signal(SIGINT, interruptBefore);
    std::signal(SIGPIPE, pipeBefore);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_PRED3(isEnd, result, 0, "SigBlk: 0\nSigIgn: 0\n");
    EXPECT_PRED3(isEnd, death, SIGPIPE, "");
}

TEST_F(ProcessTest, ProgramBeyondItsTimeIsAskedToEnd) {
    EXPECT_PRED1(isTimedOut, run(systemProgram("sleep"), {"60"}, 100ms));
}

TEST_F(ProcessTest, TimeLimitOfNothingOrLessEndsTheProgramAtOnce) {
    for (const Duration limit : {Duration(0), Duration(-1s), Duration::min()})
        EXPECT_PRED1(isTimedOut, run(systemProgram("sleep"), {"60"}, limit));
}

TEST_F(ProcessTest, LongestTimeLimitIsNoLimit) {
    for (const Duration limit : {Duration::max(), Duration::max() - 1s, Duration(1'000'000h)})
        EXPECT_PRED3(isEnd, runScript("sleep 0.1; echo done", limit), 0, "done\n");
}

TEST_F(ProcessTest, CallStaysOpenUntilTheProgramHasHandledTheRequestToEnd) {
    // While it waits for another program, a shell misses no signal.
    const URL asked = home.path("asked");
    const URL ended = home.path("ended");
    const auto result = runScript("trap 'echo >> " + asked.path() +
                                      "' TERM\nsleep 60 & wait\nsleep 0.5; echo > " + ended.path(),
                                  moment);
    EXPECT_PRED1(isTimedOut, result);
    EXPECT_EQ(fileInfo(asked, Links::follow).map([](auto info) { return info.logicalBytes; }), 1)
        << "it was not asked exactly once";
    EXPECT_TRUE(fileExists(ended)) << "something stronger was sent";
}

TEST_F(ProcessTest, ProgramThatIgnoresTheRequestKeepsTheCallOpenUntilItsOwnEnd) {
    const URL ended = home.path("ended");
    const auto result = runScript(
        "trap '' TERM; echo unread; sleep 3; echo > " + ended.path() + "; exit 0", moment);
    EXPECT_PRED1(isTimedOut, result);
    EXPECT_TRUE(fileExists(ended));
}

TEST_F(ProcessTest, RequestToEndReachesTheProgramsOwnChildren) {
    // The child holds a pipe for as long as it lives.
    const URL pipe = home.path("pipe");
    ASSERT_EQ(mkfifo(pipe.path().c_str(), 0644), 0);
    const FileDescriptor readEnd(open(pipe.path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    const URL tool =
        home.tool("tool", "(echo begun; exec sleep 60) > " + pipe.path() + " &\nsleep 60");
    const auto comes = [&](short event) {
        pollfd waiting{readEnd.get(), event, 0};
        return poll(&waiting, 1, 30'000) == 1 && (waiting.revents & event) != 0;
    };
    CancelSource source;
    std::thread canceller([&] {
        EXPECT_TRUE(comes(POLLIN));
        source.cancel();
    });
    EXPECT_PRED1(isTimedOut, run(tool, {}, ample, source.token()));
    canceller.join();
    EXPECT_TRUE(comes(POLLHUP)) << "the child still runs";
}

TEST_F(ProcessTest, ProgramThatWritesWithoutEndIsStoppedAtItsTime) {
    const auto result = run(systemProgram("yes"), {}, 200ms);
    EXPECT_PRED1(isTimedOut, result);
}

TEST_F(ProcessTest, CancelledBeforeItsStartEndsAtOnce) {
    CancelSource source;
    source.cancel();
    EXPECT_PRED1(isTimedOut, run(systemProgram("sleep"), {"60"}, ample, source.token()));
}

TEST_F(ProcessTest, CancelledWhileItRunsIsAskedToEnd) {
    const URL begun = home.path("begun");
    const URL asked = home.path("asked");
    const URL tool =
        home.tool("tool", "trap 'echo > " + asked.path() + "; exit 0' TERM\nsleep 60 &\necho > " +
                              begun.path() + "\nwait");
    CancelSource source;
    std::thread canceller([&] {
        waitFor(begun);
        source.cancel();
    });
    EXPECT_PRED1(isTimedOut, run(tool, {}, ample, source.token()));
    canceller.join();
    EXPECT_TRUE(fileExists(asked));
}

TEST_F(ProcessTest, CancelledAfterItsEndStillReturns) {
    // The descendant would hold the output for a minute.
    const URL begun = home.path("begun");
    const URL tool = home.tool("tool", "sleep 60 &\necho > " + begun.path());
    CancelSource source;
    std::thread canceller([&] {
        waitFor(begun);
        std::this_thread::sleep_for(300ms);
        source.cancel();
    });
    const auto start = std::chrono::steady_clock::now();
    const auto result = run(tool, {}, ample, source.token());
    canceller.join();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 50s);
    EXPECT_TRUE(isEnd(result, 0, "") || isTimedOut(result)) << testing::PrintToString(result);
}

TEST_F(ProcessTest, CancellingWhenAllIsOverIsNothing) {
    CancelSource source;
    EXPECT_PRED3(isEnd, run(systemProgram("echo"), {"done"}, ample, source.token()), 0, "done\n");
    source.cancel();
}

TEST_F(ProcessTest, OneCancellationEndsManyCalls) {
    const URL sleep = systemProgram("sleep");
    CancelSource source;
    std::array<bool, 40> timedOut{};
    std::vector<std::thread> callers;
    for (bool& each : timedOut)
        callers.emplace_back([&] { each = isTimedOut(run(sleep, {"60"}, ample, source.token())); });
    std::this_thread::sleep_for(100ms);
    source.cancel();
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_THAT(timedOut, testing::Each(true));
}

TEST_F(ProcessTest, ShortageOfDescriptorsIsAFailedLaunchAndNoMore) {
    if (test::underSanitizer)
        GTEST_SKIP() << "the checks of the sanitizer need descriptors themselves";
    const URL echo = systemProgram("echo");
    const FileDescriptor next(dup(STDERR_FILENO));
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    int launched = 0;
    int failed = 0;
    for (int spare = 0; spare < 12; ++spare) {
        const rlimit limit{static_cast<rlim_t>(next.get() + 1 + spare), before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &limit);
        const auto result = run(echo, {"done"});
        setrlimit(RLIMIT_NOFILE, &before);
        launched += isEnd(result, 0, "done\n") ? 1 : 0;
        failed += isNotLaunched(result, EMFILE) ? 1 : 0;
    }
    EXPECT_GT(failed, 0);
    EXPECT_GT(launched, 0);
    EXPECT_EQ(launched + failed, 12);
}

TEST_F(ProcessTest, WorksInAProgramWithoutStandardDescriptors) {
    const URL tool = home.tool("tool", "cat; echo output; echo errors >&2");
    home.setMode("", 0755);
    const auto answer = [&] {
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            close(descriptor);
        const auto result = run(tool);
        return result ? result->output + result->errorOutput : result.error().reason;
    };
    EXPECT_EQ(test::asOrdinaryUser(answer), "output\nerrors\n");
}

} // namespace

} // namespace tidewright
