#include "cli/ReportText.h"

#include "core/support/Text.h"

#include <gmock/gmock.h>

#include <sstream>

namespace tidewright {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

ScanItem item(Category category,
              const std::string& group,
              const std::string& title,
              Int64 bytes,
              Decision decision,
              const std::string& reason) {
    return ScanItem::make({.ruleID = "test.rule",
                           .group = group,
                           .title = title,
                           .sizeSource = SizeSource::known(bytes),
                           .category = category,
                           .decision = decision,
                           .reason = reason});
}

ScanReport report() {
    ScanReport report;
    report.items = {
        item(Category::xcode, "DerivedData", "MyApp", 2'340'000'000, Decision::clean,
             "Xcode builds it again."),
        item(Category::system, "Browser caches", "Firefox", 12'000, Decision::keep,
             "Firefox is open. Quit it to clean its cache."),
        item(Category::system, "Trash", "Trash (1 items)", 1'500'000, Decision::ask,
             "Files you already deleted still take space until the Trash is emptied."),
    };
    report.disk = {500 * gigabyte, 80 * gigabyte};
    return report;
}

Terminal terminalOfWidth(std::size_t columns) { return {true, false, columns}; }

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

TEST(ReportText, IsPlainAndOneLineAnItemWhenPiped) {
    EXPECT_EQ(reportText(report(), Terminal{}),
              "Xcode & iOS: 2.34 GB in 1 item\n"
              "  DerivedData\n"
              "    2.34 GB  clean  MyApp            Xcode builds it again.\n"
              "\n"
              "System: 1.5 MB in 2 items\n"
              "  Browser caches\n"
              "      12 KB  keep   Firefox          Firefox is open. Quit it to clean its cache.\n"
              "  Trash\n"
              "     1.5 MB  ask    Trash (1 items)  Files you already deleted still take space "
              "until the Trash is emptied.\n"
              "\n"
              "80 GB of 500 GB are free on this disk.\n"
              "2.34 GB can be freed: 2.34 GB recommended, 1.5 MB your call.\n");
}

TEST(ReportText, WrapsReasonsUnderThemselvesIn80Columns) {
    EXPECT_THAT(reportText(report(), terminalOfWidth(80)),
                HasSubstr("     1.5 MB  ask    Trash (1 items)  Files you already deleted still "
                          "take space\n"
                          "                                     until the Trash is emptied.\n"));
}

TEST(ReportText, PutsReasonsBelowTitlesInNarrowTerminals) {
    EXPECT_THAT(reportText(report(), terminalOfWidth(50)),
                HasSubstr("     1.5 MB  ask    Trash (1 items)\n"
                          "                    Files you already deleted\n"
                          "                    still take space until the\n"
                          "                    Trash is emptied.\n"));
}

TEST(ReportText, NeverExceedsTheTerminal) {
    ScanReport wide = report();
    wide.items[0].title = std::string(300, 'x') + "\u6f22\u5b57\u6f22\u5b57 end";
    wide.items[0].group = std::string(200, 'g');
    wide.items[1].reason = "A " + std::string(250, 'y') + " word.";
    wide.insights = {Insight{"id",
                             Insight::Severity::tip,
                             "cpu",
                             std::string(150, 't'),
                             "Message " + std::string(120, 'm'),
                             0,
                             {},
                             {}}};
    for (std::size_t columns = 40; columns <= 220; ++columns)
        for (const std::string& line : linesOf(reportText(wide, terminalOfWidth(columns))))
            ASSERT_LE(displayWidth(line), columns) << line;
}

TEST(ReportText, TellsItemsOfOneTitleApartByTheirVersion) {
    ScanReport versions;
    versions.items = {
        item(Category::android, "NDK versions", "NDK", megabyte, Decision::keep, "Needed."),
        item(Category::xcode, "Simulator runtimes", "iOS 18.2", megabyte, Decision::keep,
             "Needed."),
    };
    versions.items[0].version = "26.1.10909125";
    versions.items[1].version = "18.2";
    const std::string text = reportText(versions, Terminal{});
    EXPECT_THAT(text, HasSubstr("keep   NDK 26.1.10909125  Needed.\n"));
    EXPECT_THAT(text, HasSubstr("keep   iOS 18.2           Needed.\n"));
}

TEST(ReportText, InsightsComeFirst) {
    ScanReport with = report();
    with.insights = {Insight{"space.low",
                             Insight::Severity::warning,
                             "cpu",
                             "Space is low.",
                             "There is little left.",
                             0,
                             {},
                             {}}};
    EXPECT_TRUE(reportText(with, Terminal{})
                    .starts_with("Space is low.\n  There is little left.\n\nXcode & iOS"));
}

TEST(ReportText, ColoursOnlyWhereTheTerminalHasColour) {
    EXPECT_THAT(reportText(report(), Terminal{true, true, 80}), HasSubstr("\x1b[32mclean\x1b[0m"));
    EXPECT_THAT(reportText(report(), terminalOfWidth(80)), Not(HasSubstr("\x1b")));
}

TEST(ReportText, NamesCannotMoveTheCursorOrBreakLines) {
    ScanReport hostile = report();
    hostile.items[2].title = "a\x1b[2Jb\nc\rd\u202Ee";
    const std::string text = reportText(hostile, Terminal{});
    EXPECT_THAT(text, Not(HasSubstr("\x1b")));
    EXPECT_THAT(text, HasSubstr("a\uFFFD[2Jb\uFFFDc\uFFFDd\uFFFDe"));
    EXPECT_EQ(linesOf(text).size(), linesOf(reportText(report(), Terminal{})).size());
}

struct Ending {
    std::vector<Decision> decisions;
    std::string line;
};

TEST(ReportText, EndsWithWhatCanBeFreed) {
    const std::vector<Ending> endings{
        {{}, "Nothing to clean up was found.\n"},
        {{Decision::keep, Decision::info}, "Nothing can be freed now; the reasons stand above.\n"},
        {{Decision::clean}, "5 MB can be freed, all of it recommended.\n"},
        {{Decision::ask}, "5 MB can be freed, all of it your call.\n"},
        {{Decision::clean, Decision::clean, Decision::ask, Decision::keep},
         "15 MB can be freed: 10 MB recommended, 5 MB your call.\n"},
    };
    for (const Ending& ending : endings) {
        ScanReport report;
        for (const Decision decision : ending.decisions)
            report.items.push_back(
                item(Category::system, "Logs", "App logs", 5 * megabyte, decision, "Logs."));
        EXPECT_THAT(reportText(report, Terminal{}), EndsWith(ending.line));
    }
}

TEST(ReportText, LeavesOutADiskThatCouldNotBeRead) {
    EXPECT_EQ(reportText(ScanReport{}, Terminal{}), "Nothing to clean up was found.\n");
}

} // namespace
} // namespace tidewright
