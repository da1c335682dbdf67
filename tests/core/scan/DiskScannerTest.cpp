#include "core/scan/DiskScanner.h"

#include "core/scan/RuleCatalog.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TempHome.h"
#include "tests/support/Threads.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <thread>

namespace tidewright {
namespace {

using test::TempHome;
using testing::ElementsAre;
using testing::IsEmpty;

ScanItem itemNamed(const std::string& key) {
    return ScanItem::make({.ruleID = "test.rule",
                           .group = "Group",
                           .title = key,
                           .sizeSource = SizeSource::known(5 * megabyte),
                           .category = Category::system,
                           .decision = Decision::clean,
                           .reason = "Because.",
                           .idSuffix = key});
}

ScanItem itemAt(const std::string& path) {
    ScanItem item = itemNamed(path);
    item.urls = {URL(path)};
    return item;
}

InUseSnapshot chromeRuns() {
    InUseSnapshot snapshot;
    snapshot.runningBundleIdentifiers = {"com.google.Chrome"};
    return snapshot;
}

CleanupRule ruleThatFinds(std::vector<ScanItem> items) {
    return {"test.rule", Category::system, "TestRule",
            [items = std::move(items)](const ScanContext&) { return items; }};
}

ScanSettings settings() {
    ScanSettings result;
    result.oldDownloadDays = 30;
    return result;
}

DiskScanner scannerOf(const TempHome& home, std::vector<CleanupRule> rules) {
    return {settings(), home.url(), std::move(rules), ShellRunner{ToolLocator(home.url(), {})}};
}

ScanReport scanned(const DiskScanner& scanner) {
    const auto report = scanner.scan([](const ScanProgress&) {}, CancelToken());
    EXPECT_TRUE(report.has_value());
    return report.value_or(ScanReport{});
}

std::vector<std::string> idsOf(const std::vector<ScanItem>& items) {
    std::vector<std::string> ids;
    for (const ScanItem& item : items)
        ids.push_back(item.id.substr(item.id.find(':') + 1));
    return ids;
}

/// A home with clutter of several kinds, big enough to be shown.
void clutter(const TempHome& home) {
    home.allocatedFile("Library/Caches/Homebrew/downloads/a.tar.gz", 3 * megabyte);
    home.allocatedFile("Library/Logs/Foo/foo.log", 2 * megabyte);
    home.allocatedFile("Library/Caches/Google/Chrome/data", 4 * megabyte);
    home.allocatedFile("Library/Caches/Firefox/data", 5 * megabyte);
    home.file(".Trash/old \xff.txt", "gone");
    home.allocatedFile(".Trash/big", 6 * megabyte);
    home.allocatedFile("Downloads/Thing.dmg", 20 * megabyte);
    home.setModified("Downloads/Thing.dmg", currentDate() - std::chrono::hours(24 * 90));
    home.link("Library/Logs/elsewhere", "/usr");
    home.file("Documents/letter.txt", "Dear Ann");
}

TEST(DiskScanner, LooksForProjectsInTheHomeFolderWithoutRoots) {
    const TempHome home;
    DiskScanner scanner = scannerOf(home, {});
    EXPECT_THAT(scanner.projectRoots(), ElementsAre(home.url()));
    scanner.settings.projectRoots = {URL("/a"), URL("/b")};
    EXPECT_THAT(scanner.projectRoots(), ElementsAre(URL("/a"), URL("/b")));
}

TEST(DiskScanner, CompletesWithoutRules) {
    const TempHome home;
    const ScanReport report = scanned(scannerOf(home, {}));
    EXPECT_THAT(report.items, IsEmpty());
    EXPECT_EQ(report.recommendedBytes(), 0);
    EXPECT_EQ(report.optionalBytes(), 0);
    EXPECT_GT(report.disk.totalBytes, 0);
    EXPECT_GT(report.duration, Duration(0));
}

TEST(DiskScanner, GivesEveryRuleTheSameContext) {
    const TempHome home;
    const Date before = currentDate();
    ScanContext seen;
    scanned(scannerOf(home, {{"test.rule", Category::system, "TestRule", [&](const ScanContext& c) {
                                  seen = c;
                                  return std::vector<ScanItem>{};
                              }}}));
    EXPECT_EQ(seen.home, home.url());
    EXPECT_EQ(seen.settings, settings());
    EXPECT_FALSE(seen.temporaryDirectory.path().empty());
    EXPECT_EQ(seen.android.avdHome, home.path(".android/avd"));
    EXPECT_GE(seen.now, before);
    EXPECT_LE(seen.now, currentDate());
    EXPECT_FALSE(seen.inUse.processCommandLines.empty()) << "this process runs";
}

TEST(DiskScanner, ReportsProgressThatOnlyRises) {
    const TempHome home;
    std::vector<ScanItem> items;
    for (int i = 0; i < 3; ++i) {
        const URL url = home.allocatedFile(fmt::format("f{}", i), 2 * megabyte);
        items.push_back(itemAt(url.path()));
        items.back().sizeSource = SizeSource::measure();
    }
    std::vector<ScanProgress> seen;
    const auto report = scannerOf(home, {ruleThatFinds(items)})
                            .scan([&](const ScanProgress& p) { seen.push_back(p); }, CancelToken());
    ASSERT_TRUE(report.has_value());
    EXPECT_TRUE(std::ranges::is_sorted(seen, {}, &ScanProgress::fraction));
    using Phase = ScanProgress::Phase;
    const std::vector<ScanProgress> expected{
        {Phase::discovering, 0.02, "Finding your projects…"},
        {Phase::applyingRules, 0.25, "Checking what your projects need…"},
        {Phase::measuring, 0.3, "Measuring sizes…"},
        {Phase::measuring, 0.3 + 0.6 / 3, "Measuring sizes… 1 of 3"},
        {Phase::measuring, 0.3 + 1.2 / 3, "Measuring sizes… 2 of 3"},
        {Phase::measuring, 0.3 + 1.8 / 3, "Measuring sizes… 3 of 3"},
        {Phase::finishing, 0.95, "Looking for anything unusual…"},
        {Phase::finishing, 1.0, "Done"},
    };
    ASSERT_EQ(seen.size(), expected.size());
    for (std::size_t i = 0; i < seen.size(); ++i) {
        EXPECT_EQ(seen[i].phase, expected[i].phase) << i;
        EXPECT_DOUBLE_EQ(seen[i].fraction, expected[i].fraction) << i;
        EXPECT_EQ(seen[i].message, expected[i].message) << i;
    }
}

TEST(DiskScanner, ReportsNoMeasuringStepsWithNothingToMeasure) {
    const TempHome home;
    std::vector<double> measuring;
    const auto report = scannerOf(home, {ruleThatFinds({itemNamed("known")})})
                            .scan(
                                [&](const ScanProgress& p) {
                                    if (p.phase == ScanProgress::Phase::measuring)
                                        measuring.push_back(p.fraction);
                                },
                                CancelToken());
    EXPECT_THAT(measuring, ElementsAre(0.3));
    EXPECT_EQ(report->items.size(), 1U);
}

TEST(DiskScanner, KeepsTheFirstOfTwoItemsWithOneId) {
    ScanItem first = itemNamed("same");
    first.title = "first";
    ScanItem second = itemNamed("same");
    second.title = "second";
    const auto kept = DiskScanner::filtered({first, second});
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept.front().title, "first");
}

TEST(DiskScanner, KeepsTheSecondOfTwoItemsWithOneIdWhenTheFirstIsTooSmall) {
    ScanItem small = itemNamed("same");
    small.sizeBytes = 1;
    ScanItem large = itemNamed("same");
    large.title = "large";
    const auto kept = DiskScanner::filtered({small, large});
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept.front().title, "large");
}

TEST(DiskScanner, HidesAnyItemBelowItsOwnThresholdWhateverItsDecision) {
    for (const Decision decision : allCases<Decision>()) {
        ScanItem exact = itemNamed("exact");
        exact.decision = decision;
        exact.sizeBytes = exact.hideBelowBytes = 7;
        ScanItem below = itemNamed("below");
        below.decision = decision;
        below.hideBelowBytes = 7;
        below.sizeBytes = 6;
        EXPECT_THAT(idsOf(DiskScanner::filtered({below, exact})), ElementsAre("exact"));
    }
}

struct Exclusion {
    std::string name;
    std::string url;
    std::string excluded;
    Decision decision;
    Decision expected;
};

class DiskScannerExclusions : public testing::TestWithParam<Exclusion> {};

TEST_P(DiskScannerExclusions, AreOnComponentBoundaries) {
    ScanItem item = itemAt(GetParam().url);
    item.decision = GetParam().decision;
    const auto result =
        DiskScanner::applyInUseAndExclusions({item}, {}, {URL(GetParam().excluded)});
    ASSERT_EQ(result.size(), 1U);
    EXPECT_EQ(result[0].decision, GetParam().expected);
    const bool changed = GetParam().decision != GetParam().expected;
    EXPECT_EQ(result[0].reason, changed ? "You excluded this location in Settings." : "Because.");
}

INSTANTIATE_TEST_SUITE_P(
    All,
    DiskScannerExclusions,
    testing::Values(Exclusion{"Itself", "/a/b", "/a/b", Decision::clean, Decision::keep},
                    Exclusion{"Inside", "/a/b/c", "/a/b", Decision::ask, Decision::keep},
                    Exclusion{"TrailingSlash", "/a/b/c", "/a/b/", Decision::clean, Decision::keep},
                    Exclusion{"DotsInTheExclusion", "/a/b", "/a/x/.././b", Decision::clean,
                              Decision::keep},
                    Exclusion{"LookAlike", "/a/bc", "/a/b", Decision::clean, Decision::clean},
                    Exclusion{"Parent", "/a", "/a/b", Decision::clean, Decision::clean},
                    Exclusion{"OtherCase", "/a/B", "/a/b", Decision::clean, Decision::clean},
                    Exclusion{"UrlAsItStands", "/a/./b", "/a/b", Decision::clean, Decision::clean},
                    Exclusion{"InfoStaysInfo", "/a/b", "/a/b", Decision::info, Decision::info},
                    Exclusion{"KeepStaysKept", "/a/b", "/a/b", Decision::keep, Decision::keep}),
    [](const auto& test) { return test.param.name; });

TEST(DiskScanner, AnExclusionLeavesInUseByAndDoesNotAskForTheOwner) {
    ScanItem item = itemAt("/a");
    item.inUseBy = "Something";
    item.owner = AppMatcher::chrome;
    const auto result = DiskScanner::applyInUseAndExclusions({item}, chromeRuns(), {URL("/a")});
    EXPECT_EQ(result[0].inUseBy, "Something");
    EXPECT_EQ(result[0].reason, "You excluded this location in Settings.");
}

TEST(DiskScanner, AnyUrlOfAnItemCanBeExcluded) {
    ScanItem item = itemAt("/a");
    item.urls.push_back(URL("/b/c"));
    EXPECT_EQ(DiskScanner::applyInUseAndExclusions({item}, {}, {URL("/x"), URL("/b")})[0].decision,
              Decision::keep);
}

TEST(DiskScanner, KeepsItemsOfRunningApplications) {
    ScanItem item = itemNamed("no urls");
    item.owner = AppMatcher::chrome;
    ScanItem other = itemNamed("other");
    other.owner = AppMatcher::brave;
    ScanItem info = itemNamed("info");
    info.owner = AppMatcher::chrome;
    info.decision = Decision::info;
    const auto result =
        DiskScanner::applyInUseAndExclusions({item, other, info}, chromeRuns(), {URL("/a")});
    EXPECT_EQ(result[0].decision, Decision::keep);
    EXPECT_EQ(result[0].reason,
              "Google Chrome is running. Quit it, then scan again to clean this.");
    EXPECT_EQ(result[0].inUseBy, "Google Chrome");
    EXPECT_EQ(result[1], other);
    EXPECT_EQ(result[2], info);
}

TEST(DiskScanner, MeasuresAKeptItemAndCountsItInNoTotal) {
    const TempHome home;
    ScanItem item = itemAt(home.allocatedFile("cache", 3 * megabyte).path());
    item.sizeSource = SizeSource::measure();
    item.sizeBytes = 0;
    DiskScanner scanner = scannerOf(home, {ruleThatFinds({item})});
    scanner.settings.exclusions = {home.url()};
    const ScanReport report = scanned(scanner);
    ASSERT_EQ(report.items.size(), 1U);
    EXPECT_EQ(report.items[0].decision, Decision::keep);
    EXPECT_GE(report.items[0].sizeBytes, 3 * megabyte);
    EXPECT_EQ(report.recommendedBytes() + report.optionalBytes(), 0);
}

TEST(DiskScanner, SortsByCategoryThenGroupThenSize) {
    const auto make = [](Category category, const std::string& group, Int64 size) {
        ScanItem item = itemNamed(fmt::format("{}-{}-{}", rawValue(category), group, size));
        item.category = category;
        item.group = group;
        item.sizeBytes = size;
        return item;
    };
    std::vector<ScanItem> items{
        make(Category::projects, "A", 1),   make(Category::system, "NDK 10", 5),
        make(Category::system, "NDK 9", 1), make(Category::system, "NDK 9", 7),
        make(Category::system, "ndk 1", 2), make(Category::android, "Z", 3),
    };
    DiskScanner::sortForReport(items);
    EXPECT_THAT(idsOf(items), ElementsAre("android-Z-3", "system-ndk 1-2", "system-NDK 9-7",
                                          "system-NDK 9-1", "system-NDK 10-5", "projects-A-1"));
}

TEST(DiskScanner, KeepsTheOrderOfItemsThatTie) {
    std::vector<ScanItem> items{itemNamed("b"), itemNamed("a"), itemNamed("c")};
    DiskScanner::sortForReport(items);
    EXPECT_THAT(idsOf(items), ElementsAre("b", "a", "c"));
}

TEST(DiskScanner, KeepsTheOrderOfGroupsThatCollateTheSameButAreSpelledDifferently) {
    // The same letter precomposed and with a combining mark.
    std::vector<ScanItem> items{itemNamed("1"), itemNamed("2"), itemNamed("3"), itemNamed("4")};
    items[0].group = items[1].group = "Caf\u00e9";
    items[2].group = items[3].group = "Cafe\u0301";
    items[1].sizeBytes = items[3].sizeBytes = 100 * megabyte;
    DiskScanner::sortForReport(items);
    EXPECT_THAT(idsOf(items), ElementsAre("2", "1", "4", "3"));
}

TEST(DiskScanner, LeavesTheHomeByteForByteAsItWas) {
    const TempHome home;
    clutter(home);
    home.snapshot(); // links were read once
    const std::string before = home.snapshot();
    EXPECT_FALSE(scanned(scannerOf(home, RuleCatalog::all())).items.empty());
    EXPECT_EQ(home.snapshot(), before);
}

TEST(DiskScanner, GivesTheSameReportTwice) {
    const TempHome home;
    clutter(home);
    const DiskScanner scanner = scannerOf(home, RuleCatalog::all());
    ScanReport first = scanned(scanner);
    const ScanReport second = scanned(scanner);
    EXPECT_GE(first.items.size(), 6U);
    first.scannedAt = second.scannedAt;
    first.duration = second.duration;
    first.disk = second.disk; // others use the disk meanwhile
    EXPECT_EQ(first, second);
}

TEST(DiskScanner, FindsNothingInAnEmptyHome) {
    const TempHome home;
    EXPECT_THAT(scanned(scannerOf(home, RuleCatalog::all())).items, IsEmpty());
}

TEST(DiskScanner, FailsWhenItIsCancelledBeforeItStarts) {
    const TempHome home;
    CancelSource source;
    source.cancel();
    const auto report =
        scannerOf(home, RuleCatalog::all()).scan([](const auto&) {}, source.token());
    EXPECT_EQ(report, Failure(ScanCancelled{}));
}

TEST(DiskScanner, FailsWhenItIsCancelledAlthoughMeasuringIsComplete) {
    const TempHome home;
    ScanItem item = itemAt(home.allocatedFile("cache", 3 * megabyte).path());
    item.sizeSource = SizeSource::measure();
    CancelSource source;
    const auto report = scannerOf(home, {ruleThatFinds({item})})
                            .scan(
                                [&](const ScanProgress& p) {
                                    if (p.message == "Measuring sizes… 1 of 1")
                                        source.cancel();
                                },
                                source.token());
    EXPECT_EQ(report, Failure(ScanCancelled{}));
}

// The checks of the sanitizers take their time.
constexpr auto cancelLimit = std::chrono::milliseconds(test::underSanitizer ? 2000 : 100);

TEST(DiskScanner, ReturnsSoonWhenCancelledInTheMiddleOfALargeTree) {
    const TempHome home;
    for (int folder = 0; folder < 200; ++folder)
        for (int file = 0; file < 1000; ++file)
            home.file(fmt::format("tree/{}/{}", folder, file));
    std::vector<ScanItem> items;
    for (int i = 0; i < 6; ++i) {
        items.push_back(itemNamed(fmt::format("walk {}", i)));
        items.back().urls = {home.path("tree")};
        items.back().sizeSource = SizeSource::measure();
    }
    const DiskScanner scanner = scannerOf(home, {ruleThatFinds(items)});
    const std::size_t threadsBefore = test::threadsAtRest();

    // The machine may be busy with something else: one quick return out of several shows it.
    using Clock = std::chrono::steady_clock;
    auto quickest = Clock::duration::max();
    for (int attempt = 0; attempt < 5 && quickest > cancelLimit; ++attempt) {
        CancelSource source;
        Clock::time_point cancelled;
        std::thread canceller;
        const auto report = scanner.scan(
            [&](const ScanProgress& p) {
                if (p.phase == ScanProgress::Phase::measuring && !canceller.joinable())
                    canceller = std::thread([&] {
                        std::this_thread::sleep_for(std::chrono::milliseconds(20));
                        cancelled = Clock::now();
                        source.cancel();
                    });
            },
            source.token());
        const auto returned = Clock::now();
        canceller.join();
        EXPECT_EQ(report, Failure(ScanCancelled{}));
        quickest = std::min(quickest, returned - cancelled);
    }
    EXPECT_LT(quickest, cancelLimit);
    EXPECT_TRUE(test::threadsFallTo(threadsBefore));
}

} // namespace
} // namespace tidewright
