#include "cli/CleanText.h"

#include "core/support/Text.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace tidewright {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr Terminal piped{};

Terminal terminalOfWidth(std::size_t columns) { return {true, false, columns}; }

ScanItem item(const std::string& title, Int64 bytes, CleanMethod method) {
    return ScanItem::make({.ruleID = "test",
                           .group = "Caches",
                           .title = title,
                           .urls = {URL("/home/ann/" + title)},
                           .sizeSource = SizeSource::known(bytes),
                           .risk = Risk::low,
                           .decision = Decision::clean,
                           .afterEffect = "It is made again.",
                           .method = std::move(method)});
}

CleanMethod npm() {
    return CleanMethod::command({"npm", {"cache", "clean", "a b"}, std::nullopt, true});
}

ScanItem personal(const std::string& title, Int64 bytes, CleanMethod method) {
    ScanItem result = item(title, bytes, std::move(method));
    result.risk = Risk::check;
    return result;
}

std::vector<ScanItem> allMethods() {
    ScanItem inProject = item("build", 2 * gigabyte, CleanMethod::remove());
    inProject.isProjectItem = true;
    inProject.group = "harbour";
    inProject.urls.emplace_back("/home/ann/harbour/android/build");
    ScanItem versioned = item("NDK", 300 * megabyte, CleanMethod::remove());
    versioned.version = "25.1";
    versioned.group = "NDK versions";
    return {personal("old.dmg", 3 * gigabyte, CleanMethod::trash()), inProject, versioned,
            item("npm cache", 40 * megabyte, npm())};
}

TEST(CleanText, ReviewGroupsByMethodAndMarksWhatNeedsAttention) {
    EXPECT_EQ(reviewText(allMethods(), piped),
              "Review cleanup\n"
              "2 items are personal data, devices or project files. Check them below.\n"
              "\n"
              "Run clean command: 40 MB in 1 item\n"
              "     40 MB  npm cache (Caches)\n"
              "            npm cache clean 'a b'\n"
              "\n"
              "Delete permanently: 2.3 GB in 2 items\n"
              "  !   2 GB  build (harbour)\n"
              "            It is made again.\n"
              "            /home/ann/build\n"
              "            /home/ann/harbour/android/build\n"
              "    300 MB  NDK 25.1\n"
              "            It is made again.\n"
              "\n"
              "Move to Trash: 3 GB in 1 item\n"
              "  !   3 GB  old.dmg (Caches)\n"
              "            It is made again.\n"
              "            /home/ann/old.dmg\n"
              "\n"
              "    5.34 GB  to free\n"
              "    2.34 GB  deleted or cleaned by tools\n"
              "       3 GB  moved to Trash\n"
              "Every path is checked against Tidewright's safety rules again before it's "
              "touched.\n");
}

TEST(CleanText, ReviewLeavesOutWhatThereIsNothingOf) {
    EXPECT_EQ(reviewText({item("old.zip", megabyte, CleanMethod::trash())}, piped),
              "Review cleanup\n"
              "\n"
              "Move to Trash: 1 MB in 1 item\n"
              "    1 MB  old.zip (Caches)\n"
              "          It is made again.\n"
              "\n"
              "    1 MB  to free\n"
              "    1 MB  moved to Trash\n"
              "Every path is checked against Tidewright's safety rules again before it's "
              "touched.\n");
    EXPECT_THAT(reviewText({item("x", megabyte, npm())}, piped), Not(HasSubstr("moved to Trash")));
}

TEST(CleanText, OneItemThatNeedsAttentionIsToldInTheSingular) {
    EXPECT_THAT(
        reviewText({personal("x", megabyte, CleanMethod::remove())}, piped),
        HasSubstr("\n1 item is personal data, a device or project files. Check it below.\n"));
}

TEST(CleanText, WhatNeedsAttentionIsRiskyOrInsideAProject) {
    for (const Risk risk : {Risk::safe, Risk::low, Risk::check, Risk::leave})
        for (const bool isProjectItem : {false, true}) {
            ScanItem each = item("x", megabyte, CleanMethod::remove());
            each.risk = risk;
            each.isProjectItem = isProjectItem;
            const bool marked = contains(reviewText({each}, piped), "  ! 1 MB  x");
            EXPECT_EQ(marked, isProjectItem || risk == Risk::check || risk == Risk::leave);
        }
}

TEST(CleanText, ManyLocationsAreShortened) {
    ScanItem trash = personal("Trash", megabyte, CleanMethod::remove());
    for (int number = 0; number < 20; ++number)
        trash.urls.emplace_back(fmt::format("/home/ann/.Trash/{}", number));
    const std::string text = reviewText({trash}, piped);
    EXPECT_THAT(text, HasSubstr("/home/ann/.Trash/6\n          and 13 more: tidewright explain "
                                "test:/home/ann/Trash\n"));
    EXPECT_THAT(text, Not(HasSubstr(".Trash/7\n")));
}

TEST(CleanText, ItemsOfOneTitleAreToldApartByTheirLocations) {
    ScanItem other = item("same", megabyte, CleanMethod::remove());
    other.urls = {URL("/home/ann/other")};
    const std::string text =
        reviewText({item("same", megabyte, CleanMethod::remove()), other}, piped);
    EXPECT_THAT(text, HasSubstr("/home/ann/same\n"));
    EXPECT_THAT(text, HasSubstr("/home/ann/other\n"));
}

TEST(CleanText, QuestionNamesNumberAndSize) {
    EXPECT_EQ(questionText(allMethods()), "Clean 4 items and free 5.34 GB? [y/N] ");
    EXPECT_EQ(questionText({item("x", megabyte, npm())}), "Clean 1 item and free 1 MB? [y/N] ");
}

TEST(CleanText, LiveLineNamesWhatRuns) {
    EXPECT_EQ(cleaningLine(2, 12, {"Title"}), "Cleaning 3 of 12: Title");
    EXPECT_EQ(cleaningLine(0, 2, {"a", "b\x1b"}), "Cleaning 1 of 2: a, b\uFFFD");
    EXPECT_EQ(cleaningLine(2, 2, {"a"}), "Cleaning 2 of 2: a");
}

CleanOutcome outcome(const ScanItem& item, CleanOutcome::Status status) {
    return {item.id, item.title, std::move(status), item.sizeBytes};
}

TEST(CleanText, AnOutcomeIsOneLine) {
    const std::vector<ScanItem> items = allMethods();
    using Status = CleanOutcome::Status;
    const std::vector<std::pair<Status, std::string>> lines{
        {Status::cleaned(), "cleaned  300 MB  NDK 25.1\n"},
        {Status::movedToTrash(), "trashed  300 MB  NDK 25.1\n"},
        {Status::skipped("why"), "skipped  300 MB  NDK 25.1\n"},
        {Status::failed("why"), "failed   300 MB  NDK 25.1\n"},
    };
    for (const auto& [status, line] : lines)
        EXPECT_EQ(outcomeLine(outcome(items[2], status), items, piped), line);
}

CleanSummary summary(Int64 before, Int64 after, std::vector<CleanOutcome> outcomes) {
    CleanSummary result;
    result.outcomes = std::move(outcomes);
    result.diskBefore = {500 * gigabyte, before};
    result.diskAfter = {500 * gigabyte, after};
    result.logFile = URL("/home/ann/log.jsonl");
    return result;
}

TEST(CleanText, ResultTellsTheMeasuredGain) {
    const std::vector<ScanItem> items = allMethods();
    EXPECT_EQ(resultText(summary(80 * gigabyte, 82 * gigabyte,
                                 {outcome(items[1], CleanOutcome::Status::cleaned())}),
                         items, piped),
              "\n"
              "Freed 2 GB\n"
              "Measured on your disk: 82 GB now available.\n"
              "\n"
              "Audit log:\n"
              "/home/ann/log.jsonl\n");
}

TEST(CleanText, ResultTellsOfTheTrashAndOfSpaceThatIsNotReportedYet) {
    const std::vector<ScanItem> items = allMethods();
    const CleanOutcome cleaned = outcome(items[1], CleanOutcome::Status::cleaned());
    const CleanOutcome trashed = outcome(items[0], CleanOutcome::Status::movedToTrash());
    constexpr const char* waiting = "macOS may take a moment to report all reclaimed space.";
    EXPECT_THAT(resultText(summary(90 * gigabyte, 80 * gigabyte, {cleaned, trashed}), items, piped),
                HasSubstr("\nFreed Zero KB\n"
                          "Measured on your disk: 80 GB now available. 3 GB moved to the Trash; "
                          "empty it to free that space too. macOS may take a moment to report all "
                          "reclaimed space.\n"));
    EXPECT_THAT(resultText(summary(80 * gigabyte, 81 * gigabyte - 1, {cleaned}), items, piped),
                HasSubstr(waiting));
    EXPECT_THAT(resultText(summary(80 * gigabyte, 81 * gigabyte, {cleaned}), items, piped),
                Not(HasSubstr(waiting)));
    EXPECT_THAT(resultText(summary(80 * gigabyte, 80 * gigabyte, {trashed}), items, piped),
                Not(HasSubstr(waiting)));
}

TEST(CleanText, ResultTellsWhatWasNotCleanedAndWhy) {
    const std::vector<ScanItem> items = allMethods();
    EXPECT_THAT(resultText(summary(0, 0,
                                   {outcome(items[2], CleanOutcome::Status::skipped("It runs.")),
                                    outcome(items[3], CleanOutcome::Status::cleaned()),
                                    outcome(items[1], CleanOutcome::Status::failed("No."))}),
                           items, piped),
                HasSubstr("\n"
                          "Not cleaned\n"
                          "    300 MB  NDK 25.1\n"
                          "            Skipped: It runs.\n"
                          "      2 GB  build (harbour)\n"
                          "            Failed: No.\n"
                          "\n"
                          "Audit log:\n"));
}

TEST(CleanText, ResultTellsOfEveryToolchainCheck) {
    CleanSummary checked = summary(0, 0, {});
    checked.verification = {{"NDK 26.1", true, "Present (harbour)"},
                            {"adb", false, "Missing: needed by Android tooling"}};
    checked.logFile = std::nullopt;
    EXPECT_THAT(resultText(checked, {}, piped),
                EndsWith("\n"
                         "Toolchain check\n"
                         "  passed  NDK 26.1  Present (harbour)\n"
                         "  failed  adb       Missing: needed by Android tooling\n"
                         "\n"
                         "No audit log could be written.\n"));
}

TEST(CleanText, VerdictsAreListedInOrderAndCounted) {
    const std::vector<ScanItem> items = allMethods();
    std::vector<ItemVerdict> verdicts;
    for (const ScanItem& each : items)
        verdicts.push_back({each.id, each.title, true, std::nullopt, std::nullopt});
    verdicts[0].allowed = false;
    verdicts[0].violation = PolicyViolation::Kind::protectedPath;
    verdicts[0].sentence = "/x is on the never-touch list.";
    EXPECT_EQ(verdictsText(verdicts, items, piped),
              "Path check\n"
              "  refused  old.dmg (Caches)\n"
              "           /x is on the never-touch list.\n"
              "  allowed  build (harbour)\n"
              "  allowed  NDK 25.1\n"
              "  allowed  npm cache (Caches)\n"
              "\n"
              "3 of 4 items would be cleaned. Nothing was touched.\n");
}

TEST(CleanText, NothingIsWiderThanTheTerminalOrCanMoveItsCursor) {
    std::vector<ScanItem> items = allMethods();
    const std::string hostile = "a\x1b[2J\r\n" + std::string(200, 'x') + "\u6f22\u5b57\u202e";
    for (ScanItem& each : items) {
        each.title = hostile;
        each.group = hostile + "group";
        each.afterEffect = hostile;
        each.risk = Risk::check;
        each.urls = {URL("/home/" + hostile)};
    }
    items[1].group = "short";
    CleanSummary result = summary(0, 0, {outcome(items[0], CleanOutcome::Status::failed(hostile))});
    result.verification = {{hostile, false, hostile}};
    result.logFile = std::nullopt;
    const std::vector<ItemVerdict> verdicts{
        {"x", hostile, false, PolicyViolation::Kind::protectedName, hostile}};
    for (std::size_t columns = 40; columns <= 120; ++columns) {
        const Terminal terminal = terminalOfWidth(columns);
        const std::string text =
            reviewText(items, terminal) + verdictsText(verdicts, items, terminal) +
            outcomeLine(result.outcomes[0], items, terminal) + resultText(result, items, terminal);
        for (const std::string& line : nonEmptyLines(text)) {
            ASSERT_LE(displayWidth(line), columns) << line;
            ASSERT_EQ(printable(line), line);
        }
    }
}

TEST(CleanText, ColoursOnlyWhereTheTerminalHasThem) {
    const Terminal coloured{true, true, 80};
    EXPECT_THAT(reviewText(allMethods(), coloured), StartsWith("\x1b[1mReview cleanup\x1b[0m\n"));
    EXPECT_THAT(reviewText(allMethods(), coloured), HasSubstr("\x1b[33m  ! \x1b[0m"));
    EXPECT_THAT(reviewText(allMethods(), terminalOfWidth(80)), Not(HasSubstr("\x1b")));
}

} // namespace
} // namespace tidewright
