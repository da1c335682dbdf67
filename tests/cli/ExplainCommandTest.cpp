#include "cli/ExplainCommand.h"

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
using testing::Not;

ScanItem item() {
    ScanItem item = ScanItem::make({.ruleID = "js.npm",
                                    .group = "npm",
                                    .title = "npm download cache",
                                    .urls = {URL("/home/ann/.npm/_cacache"), URL("/home/ann/x")},
                                    .sizeSource = SizeSource::known(2'340'000'000),
                                    .category = Category::javascript,
                                    .risk = Risk::low,
                                    .decision = Decision::clean,
                                    .reason = "Why so.",
                                    .whatItIs = "What so.",
                                    .afterEffect = "Then so.",
                                    .method = CleanMethod::remove()});
    item.version = "10";
    item.inUseBy = "npm";
    item.lastUsed = Date(std::chrono::days(1));
    return item;
}

TEST(ExplainCommand, TellsEverythingAboutAnItem) {
    EXPECT_EQ(explanationText(item(), Terminal{}), "npm download cache\n"
                                                   "Id          js.npm:/home/ann/.npm/_cacache\n"
                                                   "Group       JavaScript, npm\n"
                                                   "Version     10\n"
                                                   "Size        2.34 GB\n"
                                                   "Decision    clean: recommended\n"
                                                   "Risk        Low risk\n"
                                                   "Why         Why so.\n"
                                                   "In use by   npm\n"
                                                   "What it is  What so.\n"
                                                   "Afterwards  Then so.\n"
                                                   "How         Removes it.\n"
                                                   "Last used   1970-01-02T00:00:00Z\n"
                                                   "Where       /home/ann/.npm/_cacache\n"
                                                   "            /home/ann/x\n");
}

struct Method {
    CleanMethod method;
    std::string line;
};

TEST(ExplainCommand, SaysHowEachMethodCleans) {
    const std::vector<Method> methods{
        {CleanMethod::remove(), "Removes it."},
        {CleanMethod::trash(), "Moves it to the Trash."},
        {CleanMethod::manual("Run `it` yourself."), "Run `it` yourself."},
        {CleanMethod::command({"npm", {"cache", "clean"}, std::nullopt, false}),
         "Runs npm cache clean."},
        {CleanMethod::command({"npm", {"cache", "clean"}, std::nullopt, true}),
         "Runs npm cache clean; without that tool the files are removed."},
    };
    for (const Method& each : methods) {
        ScanItem with = item();
        with.method = each.method;
        EXPECT_THAT(explanationText(with, Terminal{}),
                    HasSubstr("How         " + each.line + "\n"));
    }
}

TEST(ExplainCommand, SaysWhatEachDecisionMeans) {
    const std::vector<std::pair<Decision, std::string>> decisions{
        {Decision::clean, "clean: recommended"},
        {Decision::ask, "ask: your call"},
        {Decision::keep, "keep: it stays"},
        {Decision::info, "info: shown for information only"},
    };
    for (const auto& [decision, words] : decisions) {
        ScanItem with = item();
        with.decision = decision;
        EXPECT_THAT(explanationText(with, Terminal{}), HasSubstr("Decision    " + words + "\n"));
    }
}

TEST(ExplainCommand, FitsTheTerminalAndLeavesNameTricksOut) {
    ScanItem hostile = item();
    hostile.title = "a\x1b[2Jb";
    hostile.urls = {URL("/home/" + std::string(200, 'x'))};
    for (std::size_t columns = 40; columns < 120; ++columns)
        for (const std::string& line :
             nonEmptyLines(explanationText(hostile, Terminal{true, false, columns})))
            ASSERT_LE(displayWidth(line), columns);
    EXPECT_THAT(explanationText(hostile, Terminal{}), Not(HasSubstr("\x1b")));
}

TEST(ExplainCommand, FindsAnItemByItsId) {
    const TempHome home;
    const URL log = home.allocatedFile("Library/Logs/Foo.log", 2 * megabyte);
    const std::string id = "system.logs:" + log.path();
    const ProcessOutput text = runProgram(home.url(), {"explain", id});
    EXPECT_EQ(text.exitCode, 0);
    EXPECT_THAT(text.output, testing::StartsWith("App logs\nId          " + id + "\n"));
    const ProcessOutput json = runProgram(home.url(), {"explain", id, "--json"});
    EXPECT_EQ(parseJson(json.output).value()["id"], id);
}

TEST(ExplainCommand, AnIdThatNoItemHasIsWrongUsage) {
    const TempHome home;
    const ProcessOutput run = runProgram(home.url(), {"explain", "system.logs:/nope"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errorOutput, "tidewright: no item has the id \"system.logs:/nope\"; tidewright "
                               "scan --json shows all ids.\n");
}

} // namespace
} // namespace tidewright
