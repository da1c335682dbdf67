#include "cli/ScanCommand.h"

#include "core/support/Json.h"
#include "core/support/Text.h"
#include "tests/support/Program.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <filesystem>

namespace tidewright {
namespace {

using test::runProgram;
using test::runProgramInTerminal;
using test::TempHome;
using testing::HasSubstr;
using testing::Not;

// The folder is searched for tools before those of the system.
constexpr const char* toolFolder = ".volta/bin/";

void clutter(const TempHome& home) {
    home.allocatedFile("Library/Logs/Foo/foo.log", 2 * megabyte);
    home.allocatedFile("Library/Caches/Homebrew/x", 3 * megabyte);
    home.allocatedFile(".Trash/with \xff and \n.txt", 4 * megabyte);
}

ParsedJson scannedAsJson(const TempHome& home, std::vector<std::string> more = {}) {
    std::vector<std::string> arguments{"scan", "--json"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const ProcessOutput run = runProgram(home.url(), arguments);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errorOutput, "");
    const auto report = parseJson(run.output);
    EXPECT_TRUE(report.has_value()) << run.output;
    return report.value_or(ParsedJson::object());
}

TEST(ScanCommand, PrintsAReadableReportWithoutEscapesWhenPiped) {
    const TempHome home;
    clutter(home);
    const ProcessOutput run = runProgram(home.url(), {"scan"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errorOutput, "");
    EXPECT_THAT(run.output,
                HasSubstr("clean  Homebrew downloads  Old bottles and downloads Homebrew "
                          "keeps after upgrades.\n"));
    EXPECT_THAT(run.output, HasSubstr("ask    Trash (1 items) "));
    EXPECT_THAT(run.output, Not(HasSubstr("\x1b")));
}

TEST(ScanCommand, PrintsTheWholeReportAsJson) {
    const TempHome home;
    clutter(home);
    const ParsedJson report = scannedAsJson(home);
    std::vector<std::string> keys;
    for (const auto& [key, value] : report.items())
        keys.push_back(key);
    EXPECT_THAT(keys, testing::UnorderedElementsAre("items", "projects", "needed", "apps",
                                                    "largeFiles", "insights", "disk", "avdNames",
                                                    "scannedAt", "duration"));
    ASSERT_EQ(report["items"].size(), 3U);
    const ParsedJson& trash = report["items"][2];
    EXPECT_EQ(trash["id"], "system.trash:trash");
    EXPECT_EQ(trash["category"], "system");
    EXPECT_EQ(trash["decision"], "ask");
    EXPECT_EQ(trash["risk"], "check");
    EXPECT_EQ(trash["method"], ParsedJson::parse(R"({"remove":{}})"));
    EXPECT_EQ(trash["urls"][0], home.path(".Trash/with \uFFFD and \n.txt").path());
    EXPECT_GE(trash["sizeBytes"], 4 * megabyte);
    EXPECT_FALSE(trash.contains("owner"));
    EXPECT_EQ(report["projects"], ParsedJson::array());
    EXPECT_TRUE(report["duration"].is_number_float());
    EXPECT_EQ(report["scannedAt"].get<std::string>().size(),
              std::string("2026-01-01T00:00:00Z").size());
}

TEST(ScanCommand, KeepsWhatIsExcluded) {
    const TempHome home;
    clutter(home);
    const ParsedJson report =
        scannedAsJson(home, {"--exclude", "Library/../Library/Caches/", "--exclude", "/nowhere"});
    EXPECT_EQ(report["items"][0]["title"], "Homebrew downloads");
    EXPECT_EQ(report["items"][0]["decision"], "keep");
    EXPECT_EQ(report["items"][0]["reason"], "You excluded this location in Settings.");
    EXPECT_EQ(report["items"][1]["decision"], "clean");
}

TEST(ScanCommand, AcceptsSeveralRoots) {
    const TempHome home;
    home.folder("a");
    home.folder("b");
    EXPECT_EQ(scannedAsJson(home, {"--root", "a", "--root", "b"})["items"], ParsedJson::array());
}

TEST(ScanCommand, AnUnreadableFolderGivesFewerItemsAndStatus0) {
    const TempHome home;
    clutter(home);
    const URL program = home.path("tidewright");
    std::filesystem::copy_file(TIDEWRIGHT_PROGRAM, program.path());
    home.setMode("", 0755);
    home.setMode(".Trash", 0);
    home.setMode("Library/Logs", 0);
    const std::string answer = test::asOrdinaryUser([&] {
        const ProcessOutput run = runProgram(home.url(), {"scan"}, program);
        return fmt::format("{}|{}|{}", run.exitCode, run.errorOutput, run.output);
    });
    EXPECT_THAT(answer, testing::StartsWith("0||"));
    EXPECT_THAT(answer, HasSubstr("Homebrew downloads"));
    EXPECT_THAT(answer, Not(HasSubstr("App logs")));
    EXPECT_THAT(answer, Not(HasSubstr("Trash")));
}

TEST(ScanCommand, AResultThatCannotBeWrittenIsAFailure) {
    const TempHome home;
    clutter(home);
    const auto run = runProcess({URL("/bin/sh"),
                                 {"-c", "exec \"$0\" scan > /dev/full", TIDEWRIGHT_PROGRAM},
                                 test::environmentOf(home.url()),
                                 home.url(),
                                 std::chrono::seconds(60)},
                                CancelToken());
    ASSERT_TRUE(run.has_value());
    EXPECT_EQ(run->exitCode, 1);
    EXPECT_EQ(run->errorOutput,
              "tidewright: the result could not be written: No space left on device.\n");
}

TEST(ScanCommand, FitsTheTerminalAndShowsProgressThere) {
    const TempHome home;
    clutter(home);
    const auto run = runProgramInTerminal(home.url(), {"scan"}, 60);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("Checking what your projects need…"));
    const std::size_t barGone = run.output.rfind("\r\x1b[K");
    ASSERT_NE(barGone, std::string::npos);
    const std::string report = run.output.substr(barGone + 4);
    EXPECT_THAT(report, HasSubstr("\x1b[32mclean\x1b[0m"));
    for (std::string line : nonEmptyLines(report)) {
        for (const char* escape : {"\x1b[0m", "\x1b[1m", "\x1b[2m", "\x1b[32m", "\x1b[33m"})
            line = removing(escape, line);
        EXPECT_LE(displayWidth(line), 60U) << line;
    }
}

TEST(ScanCommand, CtrlCStopsTheScanWithStatus130) {
    const TempHome home;
    home.tool(std::string(toolFolder) + "xcrun", "exec sleep 60");
    const auto run =
        runProgramInTerminal(home.url(), {"scan"}, 80, {{"Finding your projects", test::ctrlC}});
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_THAT(run.output, HasSubstr("The scan was stopped. Nothing was changed."));
}

TEST(ScanCommand, ASecondCtrlCEndsAtOnce) {
    const TempHome home;
    // It ignores the request to end, and ends by itself when the test is over.
    home.tool(std::string(toolFolder) + "xcrun",
              fmt::format("trap '' TERM; while [ -e '{}' ]; do sleep 0.1; done",
                          home.file("running").path()));
    const auto run = runProgramInTerminal(
        home.url(), {"scan"}, 80,
        {{"Finding your projects", test::ctrlC}, {"Finding your projects", test::ctrlC}});
    std::filesystem::remove(home.path("running").path());
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_THAT(run.output, Not(HasSubstr("The scan was stopped.")));
}

} // namespace
} // namespace tidewright
