#include "cli/CleanCommand.h"

#include "core/support/Json.h"
#include "core/support/Text.h"
#include "tests/support/Program.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace tidewright {
namespace {

using test::runProgram;
using test::runProgramInTerminal;
using test::TempHome;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* homebrew = "Library/Caches/Homebrew";
constexpr const char* appLog = "Library/Logs/Foo/foo.log";
constexpr const char* download = "Downloads/Old.dmg";
constexpr const char* trashed = ".Trash/gone.txt";
constexpr const char* packages = "work/site/node_modules";

/// A home whose mark keeps the tools of this machine out, with two recommended items and some that
/// are not.
class CleanCommand : public testing::Test {
protected:
    CleanCommand() {
        m_home.file(".sample-home/about.txt");
        m_home.allocatedFile(std::string(homebrew) + "/bottle", 3 * megabyte);
        m_home.allocatedFile(appLog, 2 * megabyte);
        m_home.allocatedFile(trashed, 2 * megabyte);
    }

    /// What a person may choose to clean: an old download and the packages of a dormant project.
    void addPersonalThings() const {
        m_home.allocatedFile(download, 11 * megabyte);
        m_home.setModified(download, currentDate() - std::chrono::days(100));
        m_home.file("work/site/package.json", "{}");
        m_home.setModified("work/site/package.json", currentDate() - std::chrono::days(100));
        m_home.allocatedFile(std::string(packages) + "/x", 60 * megabyte);
    }

    TempHome m_home;

    std::string homebrewId() const { return "system.homebrew:" + m_home.path(homebrew).path(); }
    std::string logId() const { return "system.logs:" + m_home.path("Library/Logs/Foo").path(); }
    std::string downloadId() const { return "system.oldDownloads:" + m_home.path(download).path(); }

    /// A stand-in for the package manager, which cleans as the real one.
    void installHomebrew(const std::string& before = "") const {
        m_home.tool(".volta/bin/brew", fmt::format("{}\n[ \"$*\" = 'cleanup --prune=all' ] || exit "
                                                   "9\nrm -rf '{}'/* && touch '{}'",
                                                   before, m_home.path(homebrew).path(),
                                                   m_home.path("brew-ran").path()));
    }

    bool has(std::string_view path) const {
        return std::filesystem::exists(m_home.path(path).path());
    }

    ProcessOutput run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "clean");
        return runProgram(m_home.url(), std::move(arguments));
    }

    test::TerminalRun runInTerminal(std::vector<std::string> arguments,
                                    const std::vector<test::Typing>& typings,
                                    unsigned short columns = 80) const {
        arguments.insert(arguments.begin(), "clean");
        return runProgramInTerminal(m_home.url(), arguments, columns, typings);
    }

    ProcessOutput runInShell(const std::string& script) const {
        const auto output = runProcess({URL("/bin/sh"),
                                        {"-c", script, TIDEWRIGHT_PROGRAM},
                                        test::environmentOf(m_home.url()),
                                        m_home.url(),
                                        std::chrono::seconds(60)},
                                       CancelToken());
        EXPECT_TRUE(output);
        return output.value_or(ProcessOutput{});
    }

    /// The lines of all audit logs.
    std::vector<ParsedJson> logged() const {
        std::vector<ParsedJson> lines;
        const std::filesystem::path folder = m_home.path(".local/state/Tidewright/Logs").path();
        if (!std::filesystem::exists(folder))
            return lines;
        for (const auto& file : std::filesystem::directory_iterator(folder)) {
            std::ifstream stream(file.path());
            for (std::string line; std::getline(stream, line);)
                lines.push_back(parseJson(line).value_or(line));
        }
        return lines;
    }

    /// Runs what must leave everything as it is, and expects that.
    ProcessOutput runWithoutTrace(const std::vector<std::string>& arguments) const {
        const std::string before = m_home.outline();
        ProcessOutput output = run(arguments);
        EXPECT_EQ(m_home.outline(), before);
        return output;
    }
};

// Picking items

ScanItem item(const std::string& id, Int64 bytes, Decision decision, CleanMethod method) {
    ScanItem result;
    result.id = id;
    result.title = "Title of " + id;
    result.sizeBytes = bytes;
    result.decision = decision;
    result.reason = "Because of it.";
    result.method = std::move(method);
    return result;
}

std::vector<ScanItem> everyKind() {
    return {item("small", 1, Decision::clean, CleanMethod::remove()),
            item("ask", 5, Decision::ask, CleanMethod::trash()),
            item("keep", 6, Decision::keep, CleanMethod::remove()),
            item("info", 7, Decision::info, CleanMethod::manual("By it.")),
            item("manual", 8, Decision::clean, CleanMethod::manual("Do it yourself.")),
            item("bad\xff", 2, Decision::clean, CleanMethod::remove())};
}

using Ids = std::vector<std::string>;

TEST(IdsToClean, AreThoseOfTheItemsThatAreMeant) {
    EXPECT_EQ(idsToClean(everyKind(), {"small", "ask"}), (Ids{"small", "ask"}));
    EXPECT_EQ(idsToClean(everyKind(), {"bad\uFFFD", "bad\xff"}), (Ids{"bad\xff", "bad\xff"}));
}

TEST(IdsToClean, AreNoneWhenOneOfThemCannotBeCleaned) {
    const std::vector<std::pair<std::string, std::string>> refusals{
        {"nope", "no item has the id \"nope\"; tidewright scan --json shows all ids."},
        {"", "no item has the id \"\"; tidewright scan --json shows all ids."},
        {"keep", "Title of keep is kept: Because of it."},
        {"info", "Title of info is shown for information only: Because of it."},
        {"manual", "Title of manual is cleaned by hand: Do it yourself."},
    };
    for (const auto& [id, sentence] : refusals) {
        const auto ids = idsToClean(everyKind(), {"small", id});
        ASSERT_FALSE(ids) << id;
        EXPECT_EQ(ids.error(), sentence);
    }
}

// Wrong usage and refusals

TEST_F(CleanCommand, WrongUsageSaysWhatIsWrongAndTouchesNothing) {
    const std::string either = "say what to clean: either --recommended, or --id with the id of an "
                               "item. See tidewright clean --help.";
    struct Case {
        std::vector<std::string> arguments;
        std::string sentence;
    };
    const std::vector<Case> cases{
        {{"--yes"}, either},
        {{"--yes", "--recommended", "--id", homebrewId()}, either},
        {{"--yes", "--id"}, "--id needs a value behind it. See tidewright --help."},
        {{"--yes", "--id", homebrewId(), "--id", "nope"},
         "no item has the id \"nope\"; tidewright scan --json shows all ids."},
        {{"--yes", "--id", homebrewId(), "--exclude", homebrew},
         "Homebrew downloads is kept: You excluded this location in Settings."},
        {{"--yes", "--recommended", "--root", "gone"},
         "the folder gone can't be used: No such file or directory."},
        {{"--yes", "--bogus", "--recommended"},
         "there is no option \"--bogus\". See tidewright --help."},
    };
    for (const Case& each : cases) {
        const ProcessOutput output = runWithoutTrace(each.arguments);
        EXPECT_EQ(output.errorOutput, "tidewright: " + each.sentence + "\n");
        EXPECT_EQ(output.output, "");
        EXPECT_EQ(output.exitCode, 2) << each.sentence;
    }
}

TEST_F(CleanCommand, RefusesWithoutATerminalBeforeItScans) {
    // A scan would not come to an end.
    m_home.tool(".volta/bin/xcrun", "exec sleep 600");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--recommended"}, {"--recommended", "--json"}}) {
        const ProcessOutput output = runWithoutTrace(arguments);
        EXPECT_EQ(output.exitCode, 3);
        EXPECT_EQ(output.output, "");
        EXPECT_EQ(output.errorOutput,
                  "tidewright: nothing is cleaned without a confirmation, and there is no terminal "
                  "to ask on. Add --yes to confirm, or --dry-run to see what would be cleaned.\n");
    }
}

TEST_F(CleanCommand, AsksAndTakesYesInAnyCase) {
    for (const char* answer : {"y", "Y", "yes", "YES", " Yes "}) {
        const TempHome home;
        const URL log = home.allocatedFile(appLog, 2 * megabyte);
        const auto run = runProgramInTerminal(
            home.url(), {"clean", "--recommended"}, 80,
            {{"Clean 1 item and free 2 MB? [y/N] ", answer + std::string("\n")}});
        EXPECT_EQ(run.exitCode, 0) << run.output;
        EXPECT_THAT(run.output, HasSubstr("cleaned"));
        EXPECT_FALSE(std::filesystem::exists(log.path())) << answer;
    }
}

TEST_F(CleanCommand, AnyOtherAnswerCleansNothing) {
    for (const char* answer : {"\n", "n\n", "no\n", "ye\n", "yess\n", "y n\n", "1\n", "\x04"}) {
        const auto run = runInTerminal({"--recommended"}, {{"? [y/N] ", answer}});
        EXPECT_EQ(run.exitCode, 3) << answer;
        EXPECT_THAT(run.output, EndsWith("\nNothing was cleaned.\r\n"));
        EXPECT_THAT(run.output, Not(HasSubstr("Freed")));
    }
    EXPECT_TRUE(has("Library/Caches/Homebrew/bottle") && has(appLog));
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(CleanCommand, WhatWasTypedBeforeTheQuestionIsNoAnswer) {
    // The scan ends after the typing.
    m_home.tool(".volta/bin/xcrun", fmt::format("while [ ! -e '{}' ]; do sleep 0.05; done",
                                                m_home.path("typed").path()));
    const auto run = runInTerminal(
        {"--recommended"},
        {{"Finding your projects", "y\n", [&] { m_home.file("typed"); }}, {"? [y/N] ", "\n"}});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_TRUE(has(appLog));
}

TEST_F(CleanCommand, CtrlCAtTheQuestionCleansNothing) {
    const auto run = runInTerminal({"--recommended"}, {{"? [y/N] ", test::ctrlC}});
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_THAT(run.output, EndsWith("\nNothing was cleaned.\r\n"));
    EXPECT_TRUE(has(appLog));
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(CleanCommand, CtrlCInTheScanCleansNothing) {
    m_home.tool(".volta/bin/xcrun", "exec sleep 60");
    const auto run =
        runInTerminal({"--recommended", "--yes"}, {{"Finding your projects", test::ctrlC}});
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_THAT(run.output, HasSubstr("The scan was stopped. Nothing was changed."));
    EXPECT_TRUE(has(appLog));
}

// Cleaning

TEST_F(CleanCommand, CleansWhatIsRecommendedAndNothingElse) {
    installHomebrew();
    const ProcessOutput output = run({"--recommended", "--yes"});
    EXPECT_EQ(output.exitCode, 0) << output.output << output.errorOutput;
    EXPECT_EQ(output.errorOutput, "");
    EXPECT_THAT(output.output,
                AllOf(StartsWith("Review cleanup\n\nRun clean command: 3 MB in 1 item\n"),
                      HasSubstr("    brew cleanup --prune=all\n"),
                      HasSubstr("\ncleaned  3 MB  Homebrew downloads\n"),
                      HasSubstr("\ncleaned  2 MB  App logs\n"), HasSubstr("\nFreed "),
                      HasSubstr(" now available."), Not(HasSubstr("\x1b"))));
    EXPECT_TRUE(has("brew-ran"));
    EXPECT_FALSE(has("Library/Caches/Homebrew/bottle"));
    EXPECT_FALSE(has(appLog));
    EXPECT_TRUE(has(trashed) && has(homebrew));

    const std::vector<ParsedJson> lines = logged();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0]["event"], "start");
    EXPECT_EQ(lines[0]["items"], "2");
    EXPECT_EQ(lines[1]["id"], homebrewId());
    EXPECT_EQ(lines[1]["command"], "brew cleanup --prune=all");
    EXPECT_EQ(lines[2]["result"], "cleaned");
    EXPECT_EQ(lines[3]["event"], "finish");
    EXPECT_THAT(
        output.output,
        HasSubstr("\nAudit log:\n" + m_home.path(".local/state/Tidewright/Logs/clean-").path()));
}

TEST_F(CleanCommand, ADryRunShowsTheSameReviewAndTouchesNothing) {
    installHomebrew();
    const ProcessOutput dry = runWithoutTrace({"--recommended", "--dry-run"});
    EXPECT_EQ(dry.exitCode, 0);
    EXPECT_EQ(dry.errorOutput, "");
    EXPECT_THAT(dry.output, EndsWith("Path check\n"
                                     "  allowed  Homebrew downloads\n"
                                     "  allowed  App logs\n"
                                     "\n"
                                     "2 of 2 items would be cleaned. Nothing was touched.\n"));
    const std::string review = dry.output.substr(0, dry.output.find("Path check"));
    EXPECT_THAT(run({"--recommended", "--yes", "--dry-run"}).output, StartsWith(review));
    EXPECT_TRUE(has(appLog));
    EXPECT_THAT(run({"--recommended", "--yes"}).output, StartsWith(review));
    EXPECT_FALSE(has(appLog));
}

TEST_F(CleanCommand, CleansTheItemsThatAreNamed) {
    addPersonalThings();
    const std::vector<std::string> arguments{
        "--id", downloadId(),
        "--id", "system.trash:trash",
        "--id", "project.nodeModules:" + m_home.path("work/site").path() + ":node_modules"};
    std::vector<std::string> dry = arguments;
    dry.emplace_back("--dry-run");
    EXPECT_EQ(run(dry).exitCode, 0);
    EXPECT_TRUE(has(download) && has(trashed) && has(packages));

    std::vector<std::string> real = arguments;
    real.emplace_back("--yes");
    const ProcessOutput output = run(real);
    EXPECT_EQ(output.exitCode, 0) << output.output << output.errorOutput;
    EXPECT_THAT(
        output.output,
        AllOf(HasSubstr("\n3 items are personal data, devices or project files. Check them "
                        "below.\n"),
              HasSubstr(m_home.path(packages).path() + "\n"),
              HasSubstr("\ntrashed  11 MB  Old.dmg"),
              HasSubstr("now available. 11 MB moved to the Trash; empty it to free that space "
                        "too.")));
    EXPECT_FALSE(has(download));
    EXPECT_FALSE(has(trashed));
    EXPECT_FALSE(has(packages));
    EXPECT_TRUE(has(appLog) && has("Library/Caches/Homebrew/bottle") &&
                has("work/site/package.json"));
}

TEST_F(CleanCommand, PrintsTheSummaryAsJson) {
    installHomebrew();
    const ProcessOutput output = run({"--recommended", "--yes", "--json"});
    EXPECT_EQ(output.exitCode, 0);
    EXPECT_EQ(output.errorOutput, "");
    const auto summary = parseJson(output.output).value_or(ParsedJson::object());
    std::vector<std::string> keys;
    for (const auto& [key, value] : summary.items())
        keys.push_back(key);
    EXPECT_THAT(keys, testing::UnorderedElementsAre("outcomes", "diskBefore", "diskAfter",
                                                    "verification", "logFile", "date"));
    ASSERT_THAT(summary["outcomes"], SizeIs(2));
    EXPECT_EQ(summary["outcomes"][0]["itemID"], homebrewId());
    EXPECT_EQ(summary["outcomes"][0]["title"], "Homebrew downloads");
    EXPECT_EQ(summary["outcomes"][0]["status"], ParsedJson::parse(R"({"cleaned":{}})"));
    EXPECT_GE(summary["outcomes"][0]["bytes"], 3 * megabyte);
    EXPECT_EQ(summary["verification"], ParsedJson::array());
    EXPECT_THAT(summary["logFile"].get<std::string>(),
                StartsWith(m_home.path(".local/state/Tidewright/Logs/clean-").path()));
}

TEST_F(CleanCommand, WithJsonTheReviewAndTheQuestionGoToStandardError) {
    installHomebrew();
    const auto run = runInTerminal({"--recommended", "--json"}, {{"? [y/N] ", "y\n"}});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("Review cleanup"));
    const std::size_t document = run.output.rfind("\r\x1b[K{");
    ASSERT_NE(document, std::string::npos);
    EXPECT_TRUE(parseJson(run.output.substr(document + 4)));
    EXPECT_THAT(run.output.substr(0, document), Not(HasSubstr("cleaned\x1b[0m")));
}

TEST_F(CleanCommand, WithoutATerminalItIsAskedOnNothingIsShown) {
    // What is typed could not be an answer to what nobody sees.
    const auto run =
        runProcess({URL("/usr/bin/script"),
                    {"-qec", fmt::format("'{}' clean --recommended 2>errors", TIDEWRIGHT_PROGRAM),
                     "/dev/null"},
                    test::environmentOf(m_home.url()),
                    m_home.url(),
                    std::chrono::seconds(60)},
                   CancelToken());
    ASSERT_TRUE(run);
    EXPECT_EQ(run->exitCode, 3);
    EXPECT_TRUE(has(appLog));
}

TEST_F(CleanCommand, PrintsVerdictsOfADryRunAsJson) {
    const ProcessOutput output = runWithoutTrace({"--id", logId(), "--dry-run", "--json"});
    EXPECT_EQ(output.exitCode, 0);
    EXPECT_EQ(
        parseJson(output.output),
        (ParsedJson{{"items", {{{"id", logId()}, {"title", "App logs"}, {"allowed", true}}}}}));
}

TEST_F(CleanCommand, NothingToCleanIsWell) {
    const TempHome empty;
    struct Case {
        std::vector<std::string> arguments;
        std::string output;
    };
    const std::vector<Case> cases{
        {{"--yes"}, "There is nothing to clean.\n"},
        {{"--dry-run"}, "There is nothing to clean.\n"},
        {{"--dry-run", "--json"}, "{\n  \"items\": []\n}\n"},
    };
    for (const Case& each : cases) {
        std::vector<std::string> arguments{"clean", "--recommended"};
        arguments.insert(arguments.end(), each.arguments.begin(), each.arguments.end());
        const ProcessOutput output = runProgram(empty.url(), arguments);
        EXPECT_EQ(output.exitCode, 0);
        EXPECT_EQ(output.output, each.output);
        EXPECT_EQ(output.errorOutput, "");
    }
    const ProcessOutput json =
        runProgram(empty.url(), {"clean", "--recommended", "--yes", "--json"});
    EXPECT_EQ(json.exitCode, 0);
    const auto summary = parseJson(json.output).value_or(ParsedJson::object());
    EXPECT_EQ(summary["outcomes"], ParsedJson::array());
    EXPECT_EQ(summary["diskBefore"], summary["diskAfter"]);
    EXPECT_GT(summary["diskAfter"]["totalBytes"], 0);
    EXPECT_FALSE(summary.contains("logFile"));
    EXPECT_TRUE(std::filesystem::is_empty(empty.url().path()));
}

// What does not go well

TEST_F(CleanCommand, AFailedItemIsToldAndStopsNoOther) {
    installHomebrew("echo 'the tap is dry' >&2; exit 7");
    const ProcessOutput output = run({"--recommended", "--yes"});
    EXPECT_EQ(output.exitCode, 1);
    EXPECT_THAT(output.output,
                AllOf(HasSubstr("\nfailed   3 MB  Homebrew downloads\n"),
                      HasSubstr("\ncleaned  2 MB  App logs\n"),
                      HasSubstr("\nNot cleaned\n"
                                "    3 MB  Homebrew downloads\n"
                                "          Failed: `brew cleanup --prune=all` exited with 7. the "
                                "tap is dry\n")));
    EXPECT_FALSE(has(appLog));
    EXPECT_EQ(logged()[1]["result"], "failed");
}

TEST_F(CleanCommand, AMissingToolsPathsAreCheckedAndRemoved) {
    EXPECT_EQ(run({"--id", homebrewId(), "--yes"}).exitCode, 0);
    EXPECT_FALSE(has(homebrew));
}

TEST_F(CleanCommand, WhatThePolicyRefusesIsSkippedAndADryRunSaysSo) {
    // The whole library lies elsewhere.
    const TempHome elsewhere;
    std::filesystem::rename(m_home.path("Library").path(), elsewhere.path("Library").path());
    m_home.link("Library", elsewhere.path("Library").path());
    EXPECT_TRUE(has(homebrew)); // a link that is followed for the first time shows that
    const std::string outside = elsewhere.outline();
    const std::string sentence =
        m_home.path(homebrew).path() + " resolves to a location outside the allowed folders.";

    const ProcessOutput dry = runWithoutTrace({"--id", homebrewId(), "--dry-run"});
    EXPECT_EQ(dry.exitCode, 1);
    EXPECT_THAT(dry.output, EndsWith("  refused  Homebrew downloads\n           " + sentence +
                                     "\n\n0 of 1 item would be cleaned. Nothing was touched.\n"));
    const ProcessOutput json = runWithoutTrace({"--id", homebrewId(), "--dry-run", "--json"});
    EXPECT_EQ(json.exitCode, 1);
    EXPECT_EQ(parseJson(json.output), (ParsedJson{{"items",
                                                   {{{"id", homebrewId()},
                                                     {"title", "Homebrew downloads"},
                                                     {"allowed", false},
                                                     {"violation", "symlinkEscapes"},
                                                     {"sentence", sentence}}}}}));
    const ProcessOutput real = run({"--id", homebrewId(), "--yes"});
    EXPECT_EQ(real.exitCode, 1);
    EXPECT_THAT(real.output, AllOf(HasSubstr("\nskipped  3 MB  Homebrew downloads\n"),
                                   HasSubstr("\n          Skipped: " + sentence + "\n")));
    EXPECT_EQ(elsewhere.outline(), outside);

    // A tool takes no path, and is let to do its work.
    installHomebrew();
    EXPECT_EQ(run({"--id", homebrewId(), "--dry-run"}).exitCode, 0);
}

TEST_F(CleanCommand, AFailedToolchainCheckGivesStatus1) {
    m_home.allocatedFile("Library/Android/sdk/platform-tools/systrace", 4096);
    const ProcessOutput output = run({"--id", logId(), "--yes"});
    EXPECT_EQ(output.exitCode, 1);
    EXPECT_THAT(output.output, HasSubstr("\nToolchain check\n"
                                         "  failed  adb  Missing: needed by Android tooling\n"));
    EXPECT_FALSE(has(appLog));
}

TEST_F(CleanCommand, CleansWithoutAnAuditLogWhereNoneCanBeMade) {
    m_home.file(".local/state");
    const ProcessOutput output = run({"--id", logId(), "--yes"});
    EXPECT_EQ(output.exitCode, 0);
    EXPECT_THAT(output.output, EndsWith("\n\nNo audit log could be written.\n"));
    EXPECT_FALSE(has(appLog));
}

TEST_F(CleanCommand, CtrlCLetsTheItemUnderWayEndAndBeginsNoOther) {
    installHomebrew(fmt::format("while [ ! -e '{}' ]; do sleep 0.05; done; sleep 0.5",
                                m_home.path("go").path()));
    const auto run = runInTerminal(
        {"--recommended", "--yes"},
        {{"Cleaning 1 of 2: Homebrew downloads", test::ctrlC, [&] { m_home.file("go"); }}});
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_THAT(run.output,
                AllOf(HasSubstr("3 MB  Homebrew downloads"), HasSubstr("Freed "),
                      HasSubstr("The cleaning was stopped; 1 of 2 items were not begun.")));
    EXPECT_FALSE(has("Library/Caches/Homebrew/bottle"));
    EXPECT_TRUE(has(appLog));
    const std::vector<ParsedJson> lines = logged();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1]["id"], homebrewId());
    EXPECT_EQ(lines[2]["event"], "finish");
}

TEST_F(CleanCommand, NothingIsCleanedWhenTheReviewCannotBeShown) {
    const ProcessOutput full = runInShell("exec \"$0\" clean --recommended --yes >/dev/full");
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_EQ(full.errorOutput,
              "tidewright: the result could not be written: No space left on device.\n");
    const ProcessOutput unread = runInShell(
        "mkfifo pipe; : <pipe & exec 5>pipe; wait; exec \"$0\" clean --recommended --yes >&5");
    EXPECT_EQ(unread.exitCode, 1);
    EXPECT_EQ(unread.errorOutput, "tidewright: the result could not be written: Broken pipe.\n");
    EXPECT_TRUE(has(appLog) && has("Library/Caches/Homebrew/bottle"));
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(CleanCommand, AReaderThatGoesAwayDoesNotStopTheCleaning) {
    installHomebrew("sleep 0.5");
    const ProcessOutput output = runInShell(
        "mkfifo pipe; head -n 1 <pipe >/dev/null & exec \"$0\" clean --recommended --yes >pipe");
    EXPECT_EQ(output.exitCode, 1);
    EXPECT_FALSE(has(appLog));
    EXPECT_EQ(logged().back()["event"], "finish");
}

TEST_F(CleanCommand, ADocumentThatCannotBeWrittenIsAFailure) {
    const ProcessOutput output =
        runInShell("exec \"$0\" clean --recommended --yes --json >/dev/full");
    EXPECT_EQ(output.exitCode, 1);
    EXPECT_FALSE(has(appLog));
    EXPECT_EQ(logged().back()["event"], "finish");
}

// How it looks

TEST_F(CleanCommand, FitsTheTerminalAndClearsItsLiveLine) {
    installHomebrew();
    const auto run = runInTerminal({"--recommended", "--yes"}, {});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("\r\x1b[KCleaning 1 of 2: Homebrew downloads\r\x1b[K"));
    EXPECT_THAT(run.output, HasSubstr("\x1b[32mcleaned\x1b[0m"));
    std::string text = run.output.substr(run.output.find("Review"));
    text.resize(text.rfind("Audit log:"));
    for (std::string line : nonEmptyLines(text)) {
        for (const char* escape : {"\x1b[0m", "\x1b[1m", "\x1b[2m", "\x1b[32m", "\x1b[33m"})
            line = removing(escape, line);
        line =
            line.substr(line.rfind("\x1b[K") == std::string::npos ? 0 : line.rfind("\x1b[K") + 3);
        EXPECT_LE(displayWidth(line), 80U) << line;
    }
}

TEST_F(CleanCommand, HasNoColourWhereItIsDeclined) {
    const ProcessOutput output = runInShell(
        "NO_COLOR=1 exec script -qec \"'$0' clean --recommended --dry-run\" /dev/null </dev/null");
    EXPECT_THAT(output.output, HasSubstr("Review cleanup"));
    EXPECT_THAT(output.output, Not(HasSubstr("\x1b[1m")));
    EXPECT_THAT(output.output, Not(HasSubstr("\x1b[3")));
}

TEST_F(CleanCommand, NamesCannotMoveTheCursor) {
    const std::string name = "Downloads/evil\x1b[2J\n\xff.dmg";
    m_home.allocatedFile(name, 12 * megabyte);
    m_home.setModified(name, currentDate() - std::chrono::days(100));
    const std::string id = "system.oldDownloads:" + repairedUTF8(m_home.path(name).path());
    const ProcessOutput output = run({"--id", id, "--yes"});
    EXPECT_EQ(output.exitCode, 0) << output.errorOutput;
    EXPECT_THAT(output.output, HasSubstr("trashed  12 MB  evil\uFFFD[2J\uFFFD\uFFFD.dmg"));
    EXPECT_THAT(output.output, Not(HasSubstr("\x1b")));
    EXPECT_FALSE(has(name));
}

TEST_F(CleanCommand, NoToolOfTheMachineRunsInASampleHome) {
    const TempHome machine;
    machine.tool("brew", fmt::format("touch '{}'", m_home.path("foreign-brew-ran").path()));
    const std::string search = fmt::format("PATH='{}':$PATH ", machine.url().path());
    const ProcessOutput output =
        runInShell(search + "exec \"$0\" clean --recommended --yes </dev/null");
    EXPECT_EQ(output.exitCode, 0);
    EXPECT_FALSE(has("foreign-brew-ran"));
    EXPECT_FALSE(has(homebrew)); // removed instead

    // Elsewhere it is the one to run.
    std::filesystem::remove(m_home.path(".sample-home/about.txt").path());
    m_home.allocatedFile(std::string(homebrew) + "/bottle", 3 * megabyte);
    runInShell(search + fmt::format("exec \"$0\" clean --id '{}' --yes", homebrewId()));
    EXPECT_TRUE(has("foreign-brew-ran"));
}

} // namespace
} // namespace tidewright
