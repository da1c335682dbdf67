// What scripts and people rely on, whatever the command: statuses, streams, documents, and what the
// saved settings change. The program is run as they run it.

#include "core/support/Json.h"
#include "core/support/Text.h"
#include "tests/support/Program.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

namespace tidewright::test {

namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using Words = std::vector<std::string>;

constexpr const char* cache = "Library/Caches/Homebrew";
constexpr const char* bottle = "Library/Caches/Homebrew/bottle";
constexpr const char* logs = "Library/Logs/Foo";
constexpr const char* notes = "Documents/notes.txt";

class Contract : public testing::Test {
protected:
    Contract() {
        m_home.file(".sample-home/about.txt"); // keeps the tools of this machine out
        m_home.file(notes, "mine");
        m_home.file("code/site/package.json", R"({"name":"site"})");
        m_home.file("old/shop/package.json", R"({"name":"shop"})");
        addClutter();
        installHomebrew();
    }

    void addClutter() const {
        m_home.allocatedFile(bottle, 3 * megabyte);
        m_home.allocatedFile(std::string(logs) + "/foo.log", 2 * megabyte);
    }

    std::string cacheId() const { return "system.homebrew:" + m_home.path(cache).path(); }
    std::string logsId() const { return "system.logs:" + m_home.path(logs).path(); }

    /// A stand-in for the package manager, which cleans as the real one.
    void installHomebrew() const {
        m_home.tool(".volta/bin/brew", fmt::format("rm -rf '{}'/*", m_home.path(cache).path()));
    }

    bool has(std::string_view path) const {
        return std::filesystem::exists(m_home.path(path).path());
    }

    ProcessOutput run(const Words& words) const { return runProgram(m_home.url(), words); }

    /// The document that a command prints; it must succeed without another word.
    ParsedJson document(Words words) const {
        words.emplace_back("--json");
        const ProcessOutput output = run(words);
        EXPECT_EQ(output.exitCode, 0) << fmt::format("{}", words);
        EXPECT_EQ(output.errorOutput, "");
        return parseJson(output.output).value_or(ParsedJson());
    }

    /// Runs a script in which "$0" is the program and "$@" are the words.
    ProcessOutput shell(const std::string& script, const Words& words = {}) const {
        Words arguments{"-c", script, TIDEWRIGHT_PROGRAM};
        arguments.insert(arguments.end(), words.begin(), words.end());
        const auto output = runProcess({URL("/bin/sh"), arguments, environmentOf(m_home.url()),
                                        m_home.url(), std::chrono::seconds(60)},
                                       CancelToken());
        EXPECT_TRUE(output) << script << fmt::format(" {}", words);
        return output.value_or(ProcessOutput{});
    }

    /// The decision on the item of the cache.
    std::string decision(const Words& more = {}) const {
        Words words{"explain", cacheId()};
        words.insert(words.end(), more.begin(), more.end());
        return document(words).value("decision", "");
    }

    /// The names of the projects in a document.
    static Words names(const ParsedJson& projects) {
        Words result;
        for (const ParsedJson& project : projects)
            result.push_back(project.value("name", ""));
        return result;
    }

    /// The audit logs, each as its events.
    std::vector<Words> audits() const {
        std::vector<Words> result;
        const std::filesystem::path folder = m_home.path(".local/state/Tidewright/Logs").path();
        if (!std::filesystem::exists(folder))
            return result;
        for (const auto& file : std::filesystem::directory_iterator(folder)) {
            std::ifstream stream(file.path());
            Words& events = result.emplace_back();
            for (std::string line; std::getline(stream, line);)
                events.push_back(
                    parseJson(line).value_or(ParsedJson::object()).value("event", line));
        }
        return result;
    }

    /// Every command with all that it needs to be done; none of these changes anything.
    std::vector<Words> harmless() const {
        return {{"scan"},
                {"explain", cacheId()},
                {"clean", "--recommended", "--dry-run"},
                {"check", ".cache"},
                {"projects"},
                {"rules"},
                {"status"},
                {"history"},
                {"settings"}};
    }

    TempHome m_home;
};

// Streams and statuses

TEST_F(Contract, EveryCommandIsDoneWithoutAnotherWord) {
    for (const Words& words : harmless()) {
        const ProcessOutput output = run(words);
        EXPECT_EQ(output.exitCode, 0) << words.front();
        EXPECT_EQ(output.errorOutput, "") << words.front();
        EXPECT_THAT(output.output, AllOf(Not(IsEmpty()), EndsWith("\n"), Not(HasSubstr("\x1b"))));
    }
}

TEST_F(Contract, EveryCommandPrintsOneDocumentAndNothingElse) {
    for (Words words : harmless()) {
        words.insert(words.begin() + 1, "--json");
        const ProcessOutput output = run(words);
        EXPECT_EQ(output.exitCode, 0) << words.front();
        EXPECT_EQ(output.errorOutput, "") << words.front();
        EXPECT_TRUE(parseJson(output.output)) << words.front() << output.output;
        EXPECT_THAT(output.output, EndsWith("\n"));
    }
}

TEST_F(Contract, AResultThatCannotBeWrittenIsStatus1) {
    std::vector<Words> commands = harmless();
    commands.push_back({"--help"});
    commands.push_back({"clean", "--help"});
    commands.push_back({"--version"});
    for (const Words& words : commands) {
        for (const char* option : {"", "--json"}) {
            if (*option != '\0' && words.front().starts_with('-'))
                continue;
            const std::string end = fmt::format(" {} >/dev/full", option);
            const ProcessOutput output = shell("exec \"$0\" \"$@\"" + end, words);
            EXPECT_EQ(output.exitCode, 1) << fmt::format("{}", words) << option;
            EXPECT_EQ(output.errorOutput,
                      "tidewright: the result could not be written: No space left on device.\n");
        }
    }
}

TEST_F(Contract, AClosedStandardOutputIsStatus1) {
    for (const Words& words : harmless()) {
        const ProcessOutput output = shell("exec \"$0\" \"$@\" >&-", words);
        EXPECT_EQ(output.exitCode, 1) << words.front();
        EXPECT_EQ(output.errorOutput,
                  "tidewright: the result could not be written: Bad file descriptor.\n");
    }
}

TEST_F(Contract, ClosedStandardInputAndErrorMakeNoDifference) {
    for (const Words& words : harmless()) {
        if (words.front() == "status" || words.front() == "scan")
            continue; // free space may change meanwhile
        const ProcessOutput output = shell("exec \"$0\" \"$@\" <&- 2>&-", words);
        EXPECT_EQ(output.exitCode, 0) << words.front();
        EXPECT_EQ(output.output, run(words).output);
    }
    EXPECT_EQ(shell("exec \"$0\" scan --bogus 2>&-").exitCode, 2);
    EXPECT_EQ(shell("exec \"$0\" clean --recommended <&- 2>&-").exitCode, 3);
    EXPECT_TRUE(has(bottle));
}

TEST_F(Contract, AClosedStreamLetsNothingIntoAnotherFile) {
    // Whatever is opened first must not become the standard output or error of the program.
    const ProcessOutput silent = shell("exec \"$0\" clean --recommended --yes >&- 2>&- <&-");
    EXPECT_EQ(silent.exitCode, 1);
    EXPECT_TRUE(has(bottle)); // nobody has read the review
    EXPECT_THAT(audits(), IsEmpty());

    const ProcessOutput cleaned =
        shell("exec \"$0\" clean --recommended --yes --json >&- 2>&- <&-");
    EXPECT_EQ(cleaned.exitCode, 1);
    EXPECT_FALSE(has(bottle));
    EXPECT_THAT(audits(), ElementsAre(ElementsAre("start", "item", "item", "finish")));
    EXPECT_THAT(document({"history"}), SizeIs(1));
}

TEST_F(Contract, AReaderThatIsGoneEndsItQuietly) {
    shell("mkfifo pipe");
    for (const Words& words : harmless()) {
        const ProcessOutput output =
            shell(": <pipe & exec 5>pipe; wait; exec \"$0\" \"$@\" >&5", words);
        if (words.front() == "clean") { // it must not end in the middle of something
            EXPECT_EQ(output.exitCode, 1);
            EXPECT_EQ(output.errorOutput,
                      "tidewright: the result could not be written: Broken pipe.\n");
            continue;
        }
        EXPECT_EQ(output.exitCode, SIGPIPE) << words.front();
        EXPECT_EQ(output.errorOutput, "") << words.front();
    }
}

TEST_F(Contract, NothingIsColouredWhereItIsDeclined) {
    for (const Words& words : harmless()) {
        const std::string line =
            fmt::format("'{}' '{}'", TIDEWRIGHT_PROGRAM, fmt::join(words, "' '"));
        const auto shown = [&](const std::string& environment) {
            return shell(environment + " exec script -qec \"$1\" /dev/null </dev/null", {line})
                .output;
        };
        const auto isColoured = [](const std::string& text) {
            for (std::size_t at = 0; (at = text.find("\x1b[", at)) != std::string::npos; ++at)
                if (text[text.find_first_not_of("0123456789;", at + 2)] == 'm')
                    return true;
            return false;
        };
        EXPECT_FALSE(isColoured(shown("NO_COLOR=1"))) << words.front();
        EXPECT_FALSE(isColoured(shown("TERM=dumb"))) << words.front();
        if (words.front() == "scan" || words.front() == "explain" || words.front() == "check") {
            EXPECT_TRUE(isColoured(shown(""))) << words.front();
            EXPECT_TRUE(isColoured(shown("NO_COLOR="))) << words.front();
        }
    }
}

TEST_F(Contract, WrongUsageIsStatus2AndChangesNothing) {
    for (Words words : harmless()) {
        words.emplace_back("--bogus");
        const ProcessOutput output = run(words);
        EXPECT_EQ(output.exitCode, 2) << words.front();
        EXPECT_EQ(output.output, "");
        EXPECT_EQ(output.errorOutput,
                  "tidewright: there is no option \"--bogus\". See tidewright --help.\n");
    }
    const std::string before = m_home.outline();
    const std::vector<Words> wrong{
        {"explain", "nope"},
        {"clean", "--yes", "--id", "nope"},
        {"scan", "--root", "gone"},
        {"explain", cacheId(), "--root", "gone"},
        {"clean", "--yes", "--recommended", "--root", notes},
        {"projects", "--root", "gone"},
        {"settings", "nope"},
        {"settings", "nope", "1"},
        {"settings", "projectRoots", "--add", "gone"},
        {"check", ""},
        {"history", "extra"},
    };
    for (const Words& words : wrong) {
        const ProcessOutput output = run(words);
        EXPECT_EQ(output.exitCode, 2) << fmt::format("{}", words);
        EXPECT_EQ(output.output, "");
        EXPECT_THAT(output.errorOutput, testing::StartsWith("tidewright: "));
    }
    EXPECT_EQ(m_home.outline(), before);
}

TEST_F(Contract, ItEndsWithTheUsersWishToStop) {
    m_home.tool(".volta/bin/xcrun", "exec sleep 60");
    const TerminalRun explained = runProgramInTerminal(m_home.url(), {"explain", cacheId()}, 80,
                                                       {{"Finding your projects", ctrlC}});
    EXPECT_EQ(explained.exitCode, 130);
    EXPECT_THAT(explained.output, HasSubstr("The scan was stopped. Nothing was changed."));
}

#ifdef __linux__
TEST_F(Contract, TheSearchAndTheMeasurementEndWithTheUsersWishToStop) {
    constexpr int folders = 1500;
    for (int i = 0; i < folders; ++i) {
        m_home.folder(fmt::format("deep/{}/{}", i % 50, i));
        m_home.file(fmt::format(".local/share/Trash/files/{}/{}", i % 50, i));
        m_home.file(fmt::format(".Trash/{}/{}", i % 50, i));
    }
    // The signal comes as soon as it is watched for; where the end was quicker, it is tried again.
    const char* const script = R"(
        for try in $(seq 100); do
            "$0" "$@" >/dev/null 2>errors &
            # Until it is the program and no longer the shell; it may end, and be gone, at any time.
            while [ -e /proc/$! ] && ! grep -sq '^Name:.tidewright$' /proc/$!/status; do :; done
            while [ -e /proc/$! ] &&
                ! grep -sq -e '^SigCgt:.*[2367abef]$' -e '^State:.*Z' /proc/$!/status; do :; done
            kill -INT $!
            wait $!
            status=$?
            [ $status = 0 ] || break
        done
        cat errors
        exit $status)";
    const std::string sentence = "The search for projects was stopped.\n";
    for (const Words& words : {Words{"projects"}, {"check", ".cache"}, {"status"}}) {
        const ProcessOutput stopped = shell(script, words);
        EXPECT_EQ(stopped.exitCode, 130) << words.front();
        EXPECT_EQ(stopped.output, words.front() == "status" ? "" : sentence);
    }
}
#endif

// Two at once

/// Two runs of the program that have both begun before either goes on.
class TwoAtOnce : public Contract {
protected:
    TwoAtOnce() { waitIn("xcrun", "exit 1"); }

    /// Makes a tool that waits until both runs have called it.
    void waitIn(const std::string& tool, const std::string& then) const {
        const std::string meeting = m_home.folder("meeting-" + tool).path();
        m_home.tool(".volta/bin/" + tool,
                    fmt::format("touch '{0}'/$PPID; tries=0\n"
                                "while [ $(ls '{0}' | wc -l) -lt 2 ] && [ $tries -lt 500 ]; do\n"
                                "    tries=$((tries + 1)); sleep 0.02\n"
                                "done\n"
                                "{1}",
                                meeting, then));
    }

    std::array<ProcessOutput, 2> runBoth(const Words& one, const Words& other) const {
        std::array<ProcessOutput, 2> outputs;
        std::thread second([&] { outputs[1] = run(other); });
        outputs[0] = run(one);
        second.join();
        const std::filesystem::directory_iterator met(m_home.path("meeting-xcrun").path());
        EXPECT_EQ(std::distance(begin(met), end(met)), 2);
        return outputs;
    }
};

TEST_F(TwoAtOnce, ScansFindTheSame) {
    const auto outputs = runBoth({"scan", "--json"}, {"scan", "--json"});
    for (const ProcessOutput& output : outputs) {
        EXPECT_EQ(output.exitCode, 0);
        EXPECT_EQ(output.errorOutput, "");
    }
    const auto items = [](const ProcessOutput& output) {
        return parseJson(output.output).value_or(ParsedJson::object())["items"];
    };
    EXPECT_THAT(items(outputs[0]), SizeIs(2));
    EXPECT_EQ(items(outputs[0]), items(outputs[1]));
}

TEST_F(TwoAtOnce, CleanupsOfDifferentThingsBothSucceedAndStandInTheHistory) {
    const auto outputs =
        runBoth({"clean", "--yes", "--id", cacheId()}, {"clean", "--yes", "--id", logsId()});
    for (const ProcessOutput& output : outputs) {
        EXPECT_EQ(output.exitCode, 0) << output.output << output.errorOutput;
        EXPECT_EQ(output.errorOutput, "");
    }
    EXPECT_FALSE(has(bottle) || has(std::string(logs) + "/foo.log"));
    EXPECT_TRUE(has(notes) && has("code/site/package.json"));
    EXPECT_THAT(document({"history"}), SizeIs(2));
}

TEST_F(TwoAtOnce, CleanupsOfTheSameThingsLoseNothingElseAndStandInTheHistory) {
    constexpr int folders = 40;
    for (int i = 0; i < folders; ++i)
        for (int file = 0; file < 25; ++file)
            m_home.file(fmt::format("{}/{}/{}.log", logs, i, file), "text");
    waitIn("brew", fmt::format("rm -rf '{}'/*", m_home.path(cache).path()));
    const Words words{"clean", "--yes", "--json", "--recommended"};
    for (const ProcessOutput& output : runBoth(words, words)) {
        EXPECT_THAT(output.exitCode, AnyOf(0, 1));
        EXPECT_EQ(output.errorOutput, "");
        const ParsedJson summary = parseJson(output.output).value_or(ParsedJson::object());
        EXPECT_THAT(summary["outcomes"], SizeIs(2));
        bool isAllWell = true;
        for (const ParsedJson& outcome : summary["outcomes"])
            isAllWell = isAllWell && outcome["status"].contains("cleaned");
        EXPECT_EQ(output.exitCode == 0, isAllWell) << output.output;
    }
    EXPECT_FALSE(has(bottle) || has(std::string(logs) + "/0"));
    EXPECT_TRUE(has(cache) && has(notes) && has("code/site/package.json"));
    EXPECT_THAT(document({"history"}), SizeIs(2));
}

// History, exclusions and roots

TEST_F(Contract, ACleanupStandsInTheHistoryAndNothingElseDoes) {
    for (const Words& words : harmless())
        run(words);
    run({"clean", "--recommended"}); // refused
    EXPECT_EQ(document({"history"}), ParsedJson::array());

    const ParsedJson summary = document({"clean", "--recommended", "--yes"});
    const ParsedJson history = document({"history"});
    ASSERT_THAT(history, SizeIs(1));
    EXPECT_EQ(history[0]["logFile"], summary["logFile"]);
    EXPECT_EQ(history[0]["date"], summary["date"]);
    EXPECT_EQ(history[0]["itemCount"], 2);
    EXPECT_EQ(history[0]["failures"], 0);
    EXPECT_GE(history[0]["estimatedFreed"], 5 * megabyte);
    EXPECT_TRUE(std::filesystem::exists(history[0]["logFile"].get<std::string>()));

    addClutter();
    m_home.tool(".volta/bin/brew", "exit 7");
    EXPECT_EQ(run({"clean", "--recommended", "--yes"}).exitCode, 1);
    const ParsedJson later = document({"history"});
    ASSERT_THAT(later, SizeIs(2));
    EXPECT_EQ(later[0], history[0]);
    EXPECT_EQ(later[1]["itemCount"], 1);
    EXPECT_EQ(later[1]["failures"], 1);
    EXPECT_THAT(run({"history"}).output, HasSubstr(" in 2 cleanups\n"));

    EXPECT_EQ(
        document({"clean", "--recommended", "--exclude", m_home.url().path(), "--yes"})["outcomes"],
        ParsedJson::array());
    EXPECT_THAT(document({"history"}), SizeIs(2)); // nothing was cleaned
}

TEST_F(Contract, ExcludedPlacesAreLeftAloneByEveryCommand) {
    EXPECT_EQ(decision(), "clean");
    EXPECT_EQ(decision({"--exclude", cache}), "keep");
    EXPECT_EQ(decision({"--exclude", "code"}), "clean");

    run({"settings", "exclusions", "--add", cache});
    EXPECT_EQ(decision(), "keep");
    EXPECT_EQ(decision({"--exclude", "code"}), "keep"); // on top of the saved ones
    Words kept;
    const ParsedJson report = document({"scan"});
    for (const ParsedJson& item : report["items"])
        if (item["decision"] == "keep")
            kept.push_back(item["id"]);
    EXPECT_THAT(kept, ElementsAre(cacheId()));
    const ProcessOutput refused = run({"check", "--json", bottle});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(parseJson(refused.output).value_or(ParsedJson())[0]["violation"], "protectedPath");
    EXPECT_EQ(run({"clean", "--yes", "--id", cacheId()}).exitCode, 2);
    EXPECT_EQ(run({"clean", "--yes", "--recommended", "--exclude", logs}).output,
              "There is nothing to clean.\n");
    EXPECT_TRUE(has(bottle) && has(logs));
    EXPECT_EQ(run({"clean", "--yes", "--recommended"}).exitCode, 0);
    EXPECT_TRUE(has(bottle));
    EXPECT_FALSE(has(std::string(logs) + "/foo.log"));
    // What held for one run was not saved.
    EXPECT_EQ(run({"settings", "exclusions"}).output, m_home.path(cache).path() + "\n");

    run({"settings", "exclusions", "--remove", cache});
    EXPECT_EQ(decision(), "clean");
    EXPECT_EQ(run({"check", bottle}).exitCode, 0);
}

TEST_F(Contract, ProjectsAreLookedForBelowTheRoots) {
    EXPECT_THAT(names(document({"projects"})), UnorderedElementsAre("site", "shop"));
    EXPECT_THAT(names(document({"projects", "--root", "old"})), ElementsAre("shop"));

    run({"settings", "projectRoots", "--add", "code"});
    EXPECT_THAT(names(document({"projects"})), ElementsAre("site"));
    EXPECT_THAT(names(document({"scan"})["projects"]), ElementsAre("site"));
    EXPECT_THAT(names(document({"projects", "--root", "old"})), ElementsAre("shop"));
    EXPECT_THAT(names(document({"scan", "--root", "old"})["projects"]), ElementsAre("shop"));
    EXPECT_THAT(names(document({"projects", "--root", "old", "--root", "code"})),
                UnorderedElementsAre("site", "shop"));
    // What lies in a project that is known has to be meant.
    EXPECT_EQ(run({"check", "code/site/dist"}).exitCode, 1);
    EXPECT_EQ(run({"check", "code/site/dist", "--project-item"}).exitCode, 0);
    EXPECT_EQ(run({"settings", "projectRoots"}).output, m_home.path("code").path() + "\n");
}

TEST_F(Contract, ARelativePathIsTakenFromTheCurrentFolder) {
    m_home.file("old/here/file");
    const auto inOld = [&](const Words& words) {
        return shell("cd old && exec \"$0\" \"$@\"", words).output;
    };
    EXPECT_EQ(inOld({"check", "here/../x", "./y"}),
              fmt::format("allowed  {0}/x\nallowed  {0}/y\n", m_home.path("old").path()));
    inOld({"settings", "exclusions", "--add", "../code/./site"});
    EXPECT_EQ(run({"settings", "exclusions"}).output, m_home.path("code/site").path() + "\n");
    EXPECT_THAT(inOld({"projects", "--root", "."}),
                AllOf(HasSubstr("shop"), Not(HasSubstr("site"))));
    EXPECT_THAT(inOld({"explain", cacheId(), "--exclude", "../Library"}),
                HasSubstr("keep: it stays"));
    EXPECT_THAT(inOld({"explain", cacheId(), "--exclude", "Library"}), HasSubstr("recommended"));
}

} // namespace

} // namespace tidewright::test
