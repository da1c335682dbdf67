#include "core/platform/LogFile.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "tests/support/ForkedAnswer.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>

namespace tidewright {

namespace {

using test::asOrdinaryUser;
using test::forkedAnswer;
using test::TempHome;

constexpr Int64 most = 1'000'000'000;

std::string contents(const URL& url) { return readFile(url, most).value_or("unreadable"); }

unsigned modeOf(const URL& url) {
    struct stat status = {};
    lstat(url.path().c_str(), &status);
    return status.st_mode & 07777;
}

std::size_t openDescriptors() {
    const auto entries = readDirectory(URL("/dev/fd"));
    return entries ? entries->size() : 0;
}

/// This process's descriptor of a file; -1 where it has none.
int descriptorOf(const URL& url) {
    struct stat wanted = {};
    stat(url.path().c_str(), &wanted);
    for (int descriptor = 0; descriptor < 1000; ++descriptor) {
        struct stat status = {};
        if (fstat(descriptor, &status) == 0 && status.st_dev == wanted.st_dev &&
            status.st_ino == wanted.st_ino)
            return descriptor;
    }
    return -1;
}

/// The largest file that this process may make from now on. Writing more is an error, no signal.
bool limitFileSize(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    return getrlimit(RLIMIT_FSIZE, &limit) == 0 &&
           (limit.rlim_cur = bytes, setrlimit(RLIMIT_FSIZE, &limit) == 0);
}

/// "done", or what went wrong: for the answer of a child process.
std::string told(const Result<void, SystemError>& result) {
    return result ? "done" : result.error().sentence();
}

bool nothing() { return true; }

class LogFileTest : public testing::Test {
protected:
    ~LogFileTest() override { EXPECT_EQ(openDescriptors(), m_before); }

    TempHome home;
    TempHome memory{TempHome::Place::memory};
    URL log = home.path("logs/log");

private:
    std::size_t m_before = openDescriptors();
};

// Making the file

TEST_F(LogFileTest, NewFileIsEmptyInFoldersMadeForIt) {
    const auto made = LogFile::create(home.path("a/b/c/log"));
    ASSERT_TRUE(made) << made.error().sentence();
    EXPECT_EQ(made->url(), home.path("a/b/c/log"));
    EXPECT_EQ(contents(made->url()), "");
}

TEST_F(LogFileTest, OnlyTheUserMayEnterWhatIsMadeAndWhatIsThereStaysAsItIs) {
    home.folder("there");
    home.setMode("there", 0755);
    const auto answer = forkedAnswer(nothing, [&]() -> std::string {
        umask(0);
        return LogFile::create(home.path("there/new/newer/log")) ? "made" : "failed";
    });
    EXPECT_EQ(answer, "made");
    EXPECT_EQ(modeOf(home.path("there")), 0755U);
    EXPECT_EQ(modeOf(home.path("there/new")), 0700U);
    EXPECT_EQ(modeOf(home.path("there/new/newer")), 0700U);
    EXPECT_EQ(modeOf(home.path("there/new/newer/log")), 0600U);
}

TEST_F(LogFileTest, FolderMayBeALink) {
    home.folder("disk/logs");
    home.link("logs", "disk/logs");
    ASSERT_TRUE(LogFile::create(log));
    EXPECT_EQ(contents(home.path("disk/logs/log")), "");
}

TEST_F(LogFileTest, ProgramsThatAreStartedDoNotGetTheFile) {
    const auto made = LogFile::create(log);
    ASSERT_TRUE(made);
    const int descriptor = descriptorOf(log);
    ASSERT_GE(descriptor, 0);
    EXPECT_NE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(LogFileTest, AnEarlierFileIsReplacedAndNotWrittenTo) {
    home.file("logs/log", "earlier, and longer than the later one");
    home.setMode("logs/log", 0444);
    home.hardLink("canary", "logs/log");
    auto made = LogFile::create(log);
    ASSERT_TRUE(made) << made.error().sentence();
    ASSERT_TRUE(made->append("later\n"));
    EXPECT_EQ(contents(log), "later\n");
    EXPECT_EQ(modeOf(log), 0600U);
    EXPECT_EQ(contents(home.path("canary")), "earlier, and longer than the later one");
}

TEST_F(LogFileTest, LinkAtThePathLeadsNowhere) {
    home.file("canary", "whole");
    home.file("folder/canary", "whole");
    for (const char* target : {"../canary", "../folder", "../missing", "log", "."}) {
        unlink(log.path().c_str());
        home.link("logs/log", target);
        auto made = LogFile::create(log);
        ASSERT_TRUE(made) << target << ": " << made.error().sentence();
        ASSERT_TRUE(made->append("line\n"));
        EXPECT_EQ(fileInfo(log, Links::dontFollow)->kind, FileKind::regular) << target;
        EXPECT_EQ(contents(log), "line\n") << target;
    }
    EXPECT_EQ(contents(home.path("canary")), "whole");
    EXPECT_EQ(contents(home.path("folder/canary")), "whole");
    EXPECT_FALSE(fileExists(home.path("missing")));
}

TEST_F(LogFileTest, PipeAtThePathIsReplacedAndNotWrittenTo) {
    home.folder("logs");
    ASSERT_EQ(mkfifo(log.path().c_str(), 0600), 0);
    // With a reader, so that a mistake fails this test and does not stop it.
    const FileDescriptor reader(open(log.path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    ASSERT_TRUE(LogFile::create(log));
    EXPECT_EQ(fileInfo(log, Links::dontFollow)->kind, FileKind::regular);
}

TEST_F(LogFileTest, LinksPlantedAllTheTimeLeadNowhere) {
    const URL canary = home.file("canary", "whole");
    home.folder("logs");
    std::atomic<bool> stop = false;
    std::thread attacker([&] {
        while (!stop) {
            unlink(log.path().c_str());
            (void)!symlink(canary.path().c_str(), log.path().c_str());
        }
    });
    int made = 0;
    for (int i = 0; i < 300; ++i) {
        if (auto file = LogFile::create(log)) {
            EXPECT_TRUE(file->append("line\n"));
            ++made;
        } else {
            EXPECT_EQ(file.error().code, EEXIST) << file.error().sentence();
        }
    }
    stop = true;
    attacker.join();
    EXPECT_EQ(contents(canary), "whole");
    EXPECT_GT(made, 0);
}

TEST_F(LogFileTest, FolderOfThatNameIsAnErrorAndStays) {
    home.file("logs/log/file", "whole");
    const auto made = LogFile::create(log);
    ASSERT_FALSE(made);
    EXPECT_EQ(made.error().path, log.path());
    EXPECT_EQ(contents(home.path("logs/log/file")), "whole");
    rename(home.path("logs/log/file").path().c_str(), home.path("file").path().c_str());
    EXPECT_FALSE(LogFile::create(log)) << "nor does an empty one go";
    EXPECT_EQ(fileInfo(log, Links::dontFollow)->kind, FileKind::directory);
}

TEST_F(LogFileTest, WhatStandsWhereAFolderShouldBeIsAnErrorAndStays) {
    home.file("file", "whole");
    home.link("nowhere", "missing");
    struct Case {
        const char* path;
        int code;
    };
    const Case cases[] = {
        {"file/log", ENOTDIR},
        {"file/a/b/log", ENOTDIR},
        {"nowhere/log", ENOENT},
        {"nowhere/a/log", ENOENT},
    };
    for (const Case& each : cases) {
        const auto made = LogFile::create(home.path(each.path));
        ASSERT_FALSE(made) << each.path;
        EXPECT_EQ(made.error().code, each.code) << each.path;
    }
    EXPECT_EQ(contents(home.path("file")), "whole");
    EXPECT_FALSE(fileExists(home.path("missing")));
}

TEST_F(LogFileTest, PathsThatNoFileCanHaveAreErrors) {
    home.file("logs/log", "whole");
    EXPECT_EQ(LogFile::create(URL(log.path() + std::string("\0x", 2))).error().code, EINVAL);
    EXPECT_EQ(LogFile::create(URL()).error().code, ENOENT);
    EXPECT_FALSE(LogFile::create(URL("/")));
    EXPECT_EQ(LogFile::create(home.path(std::string(300, 'n'))).error().code, ENAMETOOLONG);
    EXPECT_EQ(contents(log), "whole");
}

TEST_F(LogFileTest, FolderThatMayNotBeWrittenToIsAnErrorToAnOrdinaryUser) {
    home.setMode("", 0755);
    home.file("logs/log", "whole");
    home.setMode("logs", 0555);
    const auto answer = [&](const char* path) {
        return asOrdinaryUser([&, path]() -> std::string {
            const auto made = LogFile::create(home.path(path));
            return made ? "made" : made.error().reason();
        });
    };
    EXPECT_EQ(answer("logs/new"), "Permission denied");
    EXPECT_EQ(answer("logs/log"), "Permission denied");
    EXPECT_EQ(answer("logs/new/log"), "Permission denied");
    EXPECT_EQ(contents(log), "whole");
}

// Appending

TEST_F(LogFileTest, PiecesStandOneAfterTheOther) {
    auto made = LogFile::create(log);
    ASSERT_TRUE(made);
    std::string expected;
    for (const std::string& piece :
         {std::string("line\n"), std::string(), std::string("\0\xff\n", 3), std::string("{}\n"),
          std::string(10'000'000, 'x') + '\n', std::string("end\n")}) {
        ASSERT_TRUE(made->append(piece));
        expected += piece;
        EXPECT_TRUE(contents(log) == expected) << expected.size();
    }
}

TEST_F(LogFileTest, MovedFileGoesOn) {
    auto made = LogFile::create(log);
    ASSERT_TRUE(made);
    ASSERT_TRUE(made->append("1\n"));
    LogFile moved = std::move(*made);
    EXPECT_TRUE(moved.append("2\n"));
    EXPECT_EQ(moved.url(), log);
    EXPECT_EQ(contents(log), "1\n2\n");
}

TEST_F(LogFileTest, FileThatSomebodyEmptiedIsWrittenFromItsStart) {
    auto made = LogFile::create(log);
    ASSERT_TRUE(made);
    ASSERT_TRUE(made->append("1\n"));
    ASSERT_EQ(truncate(log.path().c_str(), 0), 0);
    ASSERT_TRUE(made->append("2\n"));
    EXPECT_EQ(contents(log), "2\n");
}

/// How often this thread has asked the system to write.
std::optional<int> writeCalls() {
    const std::string text = contents(URL("/proc/thread-self/io"));
    const std::string name = "syscw: ";
    const std::size_t found = text.find(name);
    if (found == std::string::npos)
        return std::nullopt;
    return std::stoi(text.substr(found + name.size()));
}

TEST_F(LogFileTest, EachPieceIsWrittenByOneCall) {
    if (!writeCalls())
        GTEST_SKIP() << "this system does not count the calls";
    auto made = LogFile::create(log);
    ASSERT_TRUE(made);
    for (const std::size_t size : {1U, 100U, 4096U, 5000U, 10'000'000U}) {
        const std::string piece(size, 'x');
        const int before = writeCalls().value();
        ASSERT_TRUE(made->append(piece));
        EXPECT_EQ(writeCalls().value() - before, 1) << size;
    }
}

TEST_F(LogFileTest, PieceThatDoesNotFitLeavesNothingBehindWhereverItIsCut) {
    const std::string lines[] = {"first\n", "the second one\n", "third\n"};
    const auto answer = forkedAnswer(nothing, [&]() -> std::string {
        for (rlim_t limit = 0; limit <= 30; ++limit) {
            auto made = LogFile::create(log);
            if (!made || !limitFileSize(limit))
                return "no file";
            std::string expected;
            for (const std::string& line : lines) {
                const bool fits = expected.size() + line.size() <= limit;
                if (made->append(line).has_value() != fits)
                    return fmt::format("a wrong answer at {}", limit);
                if (fits)
                    expected += line;
                if (contents(log) != expected)
                    return fmt::format("{} at {}", contents(log), limit);
            }
            limitFileSize(RLIM_INFINITY);
            if (!made->append("more\n") || contents(log) != expected + "more\n")
                return fmt::format("it did not go on after {}", limit);
        }
        return "whole";
    });
    EXPECT_EQ(answer, "whole");
}

bool setAppendOnly(const URL& url, bool value) {
    const FileDescriptor file(open(url.path().c_str(), O_RDONLY | O_CLOEXEC));
    int flags = 0;
    if (ioctl(file.get(), FS_IOC_GETFLAGS, &flags) != 0)
        return false;
    flags = value ? flags | FS_APPEND_FL : flags & ~FS_APPEND_FL;
    return ioctl(file.get(), FS_IOC_SETFLAGS, &flags) == 0;
}

TEST_F(LogFileTest, PieceThatCantBeTakenBackIsTakenBackBeforeTheNext) {
    ASSERT_TRUE(LogFile::create(log));
    if (!setAppendOnly(log, true))
        GTEST_SKIP() << "this file system or user can't forbid shortening";
    setAppendOnly(log, false);
    const auto answer = forkedAnswer(nothing, [&]() -> std::string {
        auto made = LogFile::create(log);
        if (!made || !made->append("first\n") || !setAppendOnly(log, true) || !limitFileSize(10))
            return "not prepared";
        std::string story = told(made->append("second\n"));
        limitFileSize(RLIM_INFINITY);
        story += "; " + told(made->append("third\n")) + "; " + contents(log);
        setAppendOnly(log, false);
        return story + "; " + told(made->append("fourth\n"));
    });
    const std::string refused = SystemError{EPERM, "shorten", log.path()}.sentence();
    EXPECT_EQ(answer, fmt::format("{}; {}; first\nseco; done", refused, refused));
    EXPECT_EQ(contents(log), "first\nfourth\n");
}

TEST_F(LogFileTest, FullDiskHoldsWholeLinesOnlyAndWritingGoesOnOnceThereIsRoom) {
    const URL disk = home.folder("disk");
    const auto answer = test::withOwnMounts([&]() -> std::string {
        if (mount("none", disk.path().c_str(), "tmpfs", 0, "size=256k") != 0)
            return "not mounted";
        const URL ballast = home.allocatedFile("disk/ballast", 128 * 1024);
        auto made = LogFile::create(home.path("disk/log"));
        if (!made)
            return made.error().sentence();
        std::string expected;
        const auto fill = [&] {
            std::mt19937 random(1);
            int refused = 0;
            for (int i = 0; refused < 20; ++i) {
                const std::string line =
                    fmt::format("{}{}\n", i, std::string(random() % 9000, 'x'));
                if (made->append(line))
                    expected += line;
                else
                    ++refused;
            }
        };
        fill();
        if (expected.empty() || contents(made->url()) != expected)
            return "the full disk";
        const std::size_t before = expected.size();
        unlink(ballast.path().c_str());
        fill();
        if (expected.size() < before + 100 * 1024 || contents(made->url()) != expected)
            return "after the ballast was dropped";
        return "whole";
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(answer, "whole");
}

// Being killed

/// The line of this number: of a length of its own, up to many pages.
std::string numberedLine(int number) {
    const std::size_t sizes[] = {30, 200, 3000, 150, 4096, 20'000, 90, 100'001};
    const auto index = static_cast<std::size_t>(number);
    return fmt::format("{:x>{}}\n", number, sizes[index % std::size(sizes)] + index % 97);
}

constexpr int lineCount = 3000;

/// Writes all lines and waits to be killed, in vain if this program has ended before.
[[noreturn]] void writeLines(const URL& url) {
    alarm(60);
    auto made = LogFile::create(url);
    for (int number = 0; made && number < lineCount; ++number)
        (void)made->append(numberedLine(number));
    for (;;)
        pause();
}

bool isWrittenToSoon(const URL& url) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < end) {
        const auto info = fileInfo(url, Links::dontFollow);
        if (info && info->logicalBytes > 0)
            return true;
        std::this_thread::yield();
    }
    return false;
}

/// How many lines stand there whole. Only the end may be cut, and only between two pages of memory:
/// there the system ends a call of a process that is killed, and nobody is left to take that back.
int expectWholeLines(const std::string& text) {
    std::size_t end = 0;
    int number = 0;
    std::string line = numberedLine(number);
    while (end < text.size() && text.compare(end, line.size(), line) == 0) {
        end += line.size();
        line = numberedLine(++number);
    }
    if (end == text.size())
        return number;
    EXPECT_TRUE(line.starts_with(text.substr(end))) << "after " << end << " bytes";
    EXPECT_EQ(text.size() % static_cast<std::size_t>(sysconf(_SC_PAGESIZE)), 0U)
        << "cut after " << end << " bytes";
    return number;
}

TEST_F(LogFileTest, KilledProcessLeavesWholeLinesUpToTheOneItWasKilledIn) {
    std::mt19937 random(std::random_device{}());
    int interrupted = 0;
    for (int i = 0; i < 200; ++i) {
        const URL url = (i % 2 == 0 ? memory : home).path(fmt::format("killed/{}", i));
        const pid_t child = fork();
        if (child == 0)
            writeLines(url);
        ASSERT_GT(child, 0);
        EXPECT_TRUE(isWrittenToSoon(url));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 1500));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        interrupted += expectWholeLines(contents(url)) < lineCount ? 1 : 0;
        unlink(url.path().c_str());
    }
    EXPECT_GT(interrupted, 20);
}

} // namespace

} // namespace tidewright
