#include "app/state/AppModel.h"

#include "core/platform/FileProtection.h"
#include "core/platform/StandardFolders.h"
#include "tests/support/app/EventLoop.h"
#include "tests/support/app/PropertyWatch.h"
#include "tests/support/app/StateTesting.h"

#include <QSignalSpy>
#include <gmock/gmock.h>

#include <deque>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using test::becomesTrue;
using test::runEventLoopOnce;
using test::testItem;
using test::TestState;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

const ScanState idle{ScanState::Idle{}};
const ScanState ready{ScanState::Ready{}};

ScanState scanning(ScanProgress::Phase phase, double fraction, std::string message) {
    return {ScanState::Scanning{{phase, fraction, std::move(message)}}};
}

/// A scan that goes on when the test says so.
class SteppedScan {
public:
    using Outcome = Result<ScanReport, ScanFailure>;

    Outcome operator()(const DiskScanner::Progress& progress, const CancelToken& cancel) {
        std::unique_lock lock(m_mutex);
        ++m_begun;
        m_changed.notify_all();
        while (true) {
            m_changed.wait_for(lock, 1ms, [&] { return !m_steps.empty(); });
            if (m_steps.empty() && cancel.isCancelled() && m_obeys)
                return Failure(ScanFailure{});
            if (m_steps.empty())
                continue;
            const auto step = std::move(m_steps.front());
            m_steps.pop_front();
            if (const auto* report = std::get_if<ScanProgress>(&step))
                progress(*report);
            else
                return std::get<Outcome>(step);
        }
    }

    void report(ScanProgress progress) { add(std::move(progress)); }
    void end(Outcome outcome) { add(std::move(outcome)); }
    /// From now on it does not look at cancellations.
    void disobey() {
        const std::lock_guard lock(m_mutex);
        m_obeys = false;
    }
    int begun() {
        const std::lock_guard lock(m_mutex);
        return m_begun;
    }

private:
    void add(std::variant<ScanProgress, Outcome> step) {
        const std::lock_guard lock(m_mutex);
        m_steps.push_back(std::move(step));
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::variant<ScanProgress, Outcome>> m_steps;
    bool m_obeys = true;
    int m_begun = 0;
};

class AppModelTest : public testing::Test {
protected:
    SteppedScan m_scan;
    bool m_hasAccess = true;
    std::vector<std::vector<URL>> m_revealed;
    std::vector<std::string> m_opened;
    std::optional<DiskSpace> m_disk = DiskSpace{500 * gigabyte, 100 * gigabyte};
    int m_diskReadings = 0;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.hasFullDiskAccess = [this] { return m_hasAccess; };
        environment.reveal = [this](const std::vector<URL>& urls) { m_revealed.push_back(urls); };
        environment.openLocation = [this](const std::string& location) {
            m_opened.push_back(location);
        };
        environment.protectsUserFiles = true;
        environment.runner.locator.searchPath = {environment.home.appending("tools").path(),
                                                 "/usr/bin", "/bin"};
        environment.monitorSystem.readDisk = [this]() -> Result<DiskSpace, SystemError> {
            ++m_diskReadings;
            return *m_disk;
        };
    }};
    AppModel& m_model = *m_state.model;

    static ScanItem itemOf(Decision decision, const std::string& key, Int64 bytes = 2'000'000) {
        ScanItem item = testItem(Category::system, key, bytes);
        item.decision = decision;
        return item;
    }

    static ScanReport reportOf(std::vector<ScanItem> items) {
        ScanReport report;
        report.items = std::move(items);
        return report;
    }

    /// An item that can really be cleaned.
    ScanItem realItem(const std::string& name, Int64 bytes = 2'000'000) const {
        ScanItem item = itemOf(Decision::clean, name, bytes);
        item.urls = {m_state.home.file(".cache/" + name, "x")};
        return item;
    }

    std::vector<std::string> selectedIDs() const {
        std::vector<std::string> ids;
        for (const ScanItem& item : m_model.selectedItems())
            ids.push_back(item.id);
        return ids;
    }

    void cleanAll() {
        m_model.reviewSelection();
        ASSERT_NE(m_model.session(), nullptr);
        m_model.startCleaning();
        ASSERT_TRUE(becomesTrue(
            [this] { return m_model.session()->phase() == CleaningSession::Phase::finished; }));
    }
};

/// With scans that the test leads.
class AppModelScanTest : public AppModelTest {
protected:
    AppModelScanTest() {
        AppEnvironment environment = test::inertEnvironment(m_state.home.url());
        environment.scan = [this](const DiskScanner&, const DiskScanner::Progress& progress,
                                  const CancelToken& cancel) { return m_scan(progress, cancel); };
        environment.hasFullDiskAccess = [this] { return m_hasAccess; };
        m_state.model =
            std::make_unique<AppModel>(std::move(environment), m_state.defaults, m_state.workers);
    }

    AppModel& model() { return *m_state.model; }

    bool becomes(const ScanState& state) {
        return becomesTrue([&] { return model().scanState() == state; });
    }

    void find(ScanReport report) {
        model().scan();
        m_scan.end(std::move(report));
        ASSERT_TRUE(becomes(ready));
    }
};

TEST_F(AppModelTest, ItBeginsWithNothing) {
    EXPECT_EQ(m_model.destination(), Destination::overview());
    EXPECT_EQ(m_model.scanState(), idle);
    EXPECT_EQ(m_model.report(), nullptr);
    EXPECT_EQ(m_model.session(), nullptr);
    EXPECT_THAT(m_model.selection(), IsEmpty());
    EXPECT_THAT(m_model.selectedItems(), IsEmpty());
    EXPECT_EQ(m_model.selectedBytes(), 0);
    EXPECT_EQ(m_model.reclaimable(Category::system), 0);
    EXPECT_EQ(m_model.monitor().disk(), std::nullopt) << "somebody else starts it";
}

TEST_F(AppModelTest, WithoutAReportNothingIsReviewedOrCleaned) {
    m_model.reviewSelection();
    m_model.review({"a"});
    m_model.startCleaning();
    m_model.cancelScan();
    m_model.closeSession();
    EXPECT_EQ(m_model.session(), nullptr);
    EXPECT_EQ(m_model.scanState(), idle);
}

TEST_F(AppModelScanTest, AScanGoesThroughItsStates) {
    QSignalSpy states(&model(), &AppModel::scanStateChanged);
    model().scan();
    EXPECT_EQ(model().scanState(), scanning(ScanProgress::Phase::discovering, 0.0, "Starting…"));
    m_scan.report({ScanProgress::Phase::measuring, 0.5, "Measuring"});
    ASSERT_TRUE(becomes(scanning(ScanProgress::Phase::measuring, 0.5, "Measuring")));
    m_scan.end(reportOf({itemOf(Decision::clean, "a")}));
    ASSERT_TRUE(becomes(ready));
    ASSERT_NE(model().report(), nullptr);
    EXPECT_THAT(model().report()->items, SizeIs(1));
    EXPECT_EQ(states.count(), 3);
}

TEST_F(AppModelScanTest, AScanWhileScanningChangesNothing) {
    model().scan();
    m_scan.report({ScanProgress::Phase::measuring, 0.5, "Measuring"});
    ASSERT_TRUE(becomes(scanning(ScanProgress::Phase::measuring, 0.5, "Measuring")));
    model().scan();
    EXPECT_EQ(model().scanState(), scanning(ScanProgress::Phase::measuring, 0.5, "Measuring"));
    m_scan.end(ScanReport());
    ASSERT_TRUE(becomes(ready));
    EXPECT_EQ(m_scan.begun(), 1);
}

TEST_F(AppModelScanTest, WhatTheSystemPermitsIsAskedAnewForEachScan) {
    QSignalSpy changes(&model(), &AppModel::hasFullDiskAccessChanged);
    find(ScanReport());
    EXPECT_EQ(changes.count(), 0);
    m_hasAccess = false;
    EXPECT_TRUE(model().hasFullDiskAccess());
    find(ScanReport());
    EXPECT_FALSE(model().hasFullDiskAccess());
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(AppModelScanTest, CancellingTheFirstScanLeadsBackToNothing) {
    model().scan();
    model().cancelScan();
    EXPECT_EQ(model().scanState(), idle);
    m_state.workers.post([] {});
    runEventLoopOnce();
    EXPECT_EQ(model().scanState(), idle);
    EXPECT_EQ(model().report(), nullptr);
}

TEST_F(AppModelScanTest, CancellingARescanKeepsReportAndSelection) {
    find(reportOf({itemOf(Decision::clean, "a"), itemOf(Decision::ask, "b")}));
    const auto before = model().report();
    model().setSelected(before->items[1], true);
    const auto selection = model().selection();
    model().scan();
    model().cancelScan();
    EXPECT_EQ(model().scanState(), ready);
    EXPECT_EQ(model().report(), before);
    EXPECT_EQ(model().selection(), selection);
}

TEST_F(AppModelScanTest, ProgressAfterACancellationIsDropped) {
    m_scan.disobey();
    model().scan();
    model().cancelScan();
    m_scan.report({ScanProgress::Phase::measuring, 0.5, "Measuring"});
    m_scan.end(Failure(ScanFailure{}));
    for (int i = 0; i < 20; ++i) {
        runEventLoopOnce();
        EXPECT_EQ(model().scanState(), idle);
        std::this_thread::sleep_for(1ms);
    }
}

TEST_F(AppModelScanTest, AScanThatFailsSaysWhyAndKeepsTheReport) {
    find(reportOf({itemOf(Decision::clean, "a")}));
    const auto before = model().report();
    model().scan();
    m_scan.end(Failure(ScanFailure{"The disk has gone."}));
    ASSERT_TRUE(becomes({ScanState::Failed{"The disk has gone."}}));
    EXPECT_EQ(model().report(), before);
    model().cancelScan();
    EXPECT_EQ(model().scanState(), ready);
    find(ScanReport());
    EXPECT_NE(model().report(), before);
}

TEST_F(AppModelScanTest, AFailedFirstScanIsLeftByCancelling) {
    model().scan();
    m_scan.end(Failure(ScanFailure{"The disk has gone."}));
    ASSERT_TRUE(becomes({ScanState::Failed{"The disk has gone."}}));
    model().cancelScan();
    EXPECT_EQ(model().scanState(), idle);
}

TEST_F(AppModelScanTest, AModelThatGoesWhileItScansCancelsTheScan) {
    model().scan();
    ASSERT_TRUE(becomesTrue([this] { return m_scan.begun() == 1; }));
    m_scan.report({ScanProgress::Phase::measuring, 0.5, "Measuring"});
    m_state.model.reset();
    runEventLoopOnce();
}

TEST_F(AppModelTest, WhatIsRecommendedStartsSelected) {
    ScanItem manual = itemOf(Decision::clean, "manual", 400);
    manual.method = CleanMethod::manual("Do it yourself.");
    m_state.scanned(reportOf({itemOf(Decision::clean, "clean", 1), itemOf(Decision::ask, "ask", 20),
                              itemOf(Decision::keep, "keep", 3000),
                              itemOf(Decision::info, "info", 50'000), manual}));
    const auto& items = m_model.report()->items;
    EXPECT_THAT(m_model.selection(), UnorderedElementsAre(items[0].id, items[4].id));
    EXPECT_THAT(selectedIDs(), ElementsAre(items[0].id));
    EXPECT_EQ(m_model.selectedBytes(), 1);
    EXPECT_EQ(m_model.reclaimable(Category::system), 401) << "the manual one counts here";
    EXPECT_EQ(m_model.reclaimable(Category::android), 0);
}

TEST_F(AppModelTest, OnlyWhatMayBeCleanedCanBeSelected) {
    ScanItem manual = itemOf(Decision::clean, "manual", 400);
    manual.method = CleanMethod::manual("Do it yourself.");
    m_state.scanned(
        reportOf({itemOf(Decision::clean, "clean", 1), itemOf(Decision::ask, "ask", 20),
                  itemOf(Decision::keep, "keep"), itemOf(Decision::info, "info"), manual}));
    const auto items = m_model.report()->items;
    QSignalSpy changes(&m_model, &AppModel::selectionChanged);
    m_model.setSelected(items[1], true);
    EXPECT_EQ(m_model.selectedBytes(), 21);
    EXPECT_EQ(changes.count(), 1);
    m_model.setSelected(items[1], true);
    m_model.setSelected(items[2], true);
    m_model.setSelected(items[3], true);
    m_model.setSelected(items[4], false);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_THAT(m_model.selection(), UnorderedElementsAre(items[0].id, items[1].id, items[4].id));
    m_model.setSelected(items[0], false);
    EXPECT_EQ(m_model.selectedBytes(), 20);
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(AppModelTest, ANewReportDropsTheEarlierSelection) {
    m_state.scanned(reportOf({itemOf(Decision::clean, "a"), itemOf(Decision::ask, "b")}));
    m_model.setSelected(m_model.report()->items[0], false);
    m_model.setSelected(m_model.report()->items[1], true);
    m_state.scanned(reportOf(
        {itemOf(Decision::clean, "a"), itemOf(Decision::ask, "b"), itemOf(Decision::clean, "c")}));
    const auto& items = m_model.report()->items;
    EXPECT_THAT(m_model.selection(), UnorderedElementsAre(items[0].id, items[2].id));
}

TEST_F(AppModelTest, AfterAScanTheDiskIsMeasured) {
    m_state.scanned(ScanReport());
    ASSERT_TRUE(becomesTrue([this] { return m_model.monitor().lastChecked().has_value(); }));
    EXPECT_EQ(m_diskReadings, 1);
    EXPECT_EQ(m_model.monitor().disk(), m_disk);
}

TEST_F(AppModelTest, AReviewHoldsWhatIsSelected) {
    m_state.scanned(reportOf({itemOf(Decision::clean, "a"), itemOf(Decision::ask, "b"),
                              itemOf(Decision::clean, "c", 9'000'000)}));
    QSignalSpy sessions(&m_model, &AppModel::sessionChanged);
    m_model.reviewSelection();
    ASSERT_NE(m_model.session(), nullptr);
    EXPECT_THAT(m_model.session()->items(), SizeIs(2));
    EXPECT_EQ(m_model.session()->items()[0].title, "Item c");
    m_model.closeSession();
    EXPECT_EQ(m_model.session(), nullptr);
    EXPECT_EQ(sessions.count(), 2);
    m_model.closeSession();
    EXPECT_EQ(sessions.count(), 2);
}

TEST_F(AppModelTest, AReviewOfGivenItemsSelectsThemBesidesTheOthers) {
    m_state.scanned(reportOf({itemOf(Decision::clean, "a"), itemOf(Decision::ask, "b"),
                              itemOf(Decision::keep, "c"), itemOf(Decision::ask, "d")}));
    const auto items = m_model.report()->items;
    m_model.review({items[3].id, "unknown", items[2].id, items[1].id});
    ASSERT_NE(m_model.session(), nullptr);
    EXPECT_THAT(m_model.session()->items(), ElementsAre(items[1], items[3])) << "in report order";
    EXPECT_THAT(m_model.selection(), UnorderedElementsAre(items[0].id, items[1].id, items[3].id));
}

TEST_F(AppModelTest, AReviewOfNothingEligibleChangesNothing) {
    m_state.scanned(reportOf({itemOf(Decision::clean, "a"), itemOf(Decision::keep, "b")}));
    const auto items = m_model.report()->items;
    QSignalSpy sessions(&m_model, &AppModel::sessionChanged);
    QSignalSpy changes(&m_model, &AppModel::selectionChanged);
    m_model.review({items[1].id, "unknown"});
    m_model.review({});
    EXPECT_EQ(sessions.count() + changes.count(), 0);
}

TEST_F(AppModelTest, AnInsightIsPerformed) {
    m_state.scanned(reportOf({itemOf(Decision::ask, "a")}));
    Insight insight;
    m_model.perform(insight);
    EXPECT_EQ(m_model.session(), nullptr);
    EXPECT_EQ(m_model.destination(), Destination::overview());
    insight.action = Insight::Action::review({m_model.report()->items[0].id});
    m_model.perform(insight);
    EXPECT_NE(m_model.session(), nullptr);
    const std::pair<Insight::Destination, Destination> places[] = {
        {Insight::Destination::android, Destination::category(Category::android)},
        {Insight::Destination::xcode, Destination::category(Category::xcode)},
        {Insight::Destination::javascript, Destination::category(Category::javascript)},
        {Insight::Destination::system, Destination::category(Category::system)},
        {Insight::Destination::projects, Destination::category(Category::projects)},
        {Insight::Destination::apps, Destination::apps()},
    };
    for (const auto& [open, expected] : places) {
        insight.action = Insight::Action::open(open);
        m_model.perform(insight);
        EXPECT_EQ(m_model.destination(), expected);
    }
}

TEST_F(AppModelTest, ADestinationIsToldOnce) {
    QSignalSpy changes(&m_model, &AppModel::destinationChanged);
    m_model.setDestination(Destination::overview());
    m_model.setDestination(Destination::category(Category::xcode));
    m_model.setDestination(Destination::category(Category::xcode));
    m_model.setDestination(Destination::category(Category::system));
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(AppModelTest, ACleanupEditsTheReport) {
    const ScanItem cleaned = realItem("cleaned", 100);
    ScanItem failed = itemOf(Decision::clean, "failed");
    failed.method = CleanMethod::command({"no-such-tool", {}, std::nullopt, false});
    ScanItem skipped = itemOf(Decision::clean, "skipped");
    skipped.urls = {m_state.home.file(".ssh/mine")};
    const ScanItem other = itemOf(Decision::ask, "other");
    ScanReport report = reportOf({cleaned, failed, other, skipped});
    report.disk = {1000 * gigabyte, 1};
    report.avdNames = {"Pixel"};
    m_state.scanned(report);
    cleanAll();
    EXPECT_THAT(m_model.report()->items, ElementsAre(failed, other, skipped));
    EXPECT_THAT(m_model.selection(), UnorderedElementsAre(failed.id, skipped.id));
    EXPECT_EQ(m_model.report()->disk, m_model.session()->summary()->diskAfter);
    EXPECT_THAT(m_model.report()->avdNames, ElementsAre("Pixel"));
    EXPECT_TRUE(fileExists(m_state.home.path(".ssh/mine")));
    EXPECT_FALSE(fileExists(cleaned.urls.front()));
}

TEST_F(AppModelTest, AfterACleanupTheInsightsFollowFromTheRest) {
    ScanItem heaps = realItem("heaps", 900'000'000);
    heaps.ruleID = "ide.heapDumps";
    ScanReport report = reportOf({heaps});
    Insight old;
    old.id = "ide.leftovers";
    report.insights = {old};
    m_state.scanned(report);
    cleanAll();
    for (const Insight& insight : m_model.report()->insights)
        EXPECT_NE(insight.id, "ide.leftovers");
    EXPECT_FALSE(m_model.report()->insights.empty());
}

TEST_F(AppModelTest, ACleanupStandsInTheHistoryBeforeTheReportIsEdited) {
    m_state.scanned(reportOf({realItem("a", 100)}));
    std::size_t itemsWhenRecorded = 99;
    QObject::connect(&m_model.history(), &HistoryStore::entriesChanged, &m_model,
                     [&] { itemsWhenRecorded = m_model.report()->items.size(); });
    cleanAll();
    EXPECT_EQ(itemsWhenRecorded, 1U);
    ASSERT_THAT(m_model.history().entries(), SizeIs(1));
    EXPECT_EQ(m_model.history().entries()[0].itemCount, 1);
    EXPECT_EQ(m_model.history().entries()[0].estimatedFreed, 100);
}

TEST_F(AppModelTest, AfterACleanupTheDiskIsMeasuredAgainButNothingIsScanned) {
    m_state.scanned(reportOf({realItem("a")}));
    const auto before = m_diskReadings;
    QSignalSpy states(&m_model, &AppModel::scanStateChanged);
    cleanAll();
    EXPECT_EQ(m_diskReadings, before + 1);
    EXPECT_EQ(states.count(), 0);
}

TEST_F(AppModelTest, TheCleanupKeepsToProjectsAndExclusions) {
    ScanItem excluded = realItem("excluded/a");
    ScanItem ofProject = itemOf(Decision::clean, "project");
    ofProject.urls = {m_state.home.file(".cache/project/build/x")};
    m_model.settings().setExclusions({m_state.home.path(".cache/excluded")});
    ScanReport report = reportOf({excluded, ofProject});
    Project project;
    project.url = m_state.home.path(".cache/project");
    report.projects = {project};
    m_state.scanned(report);
    cleanAll();
    EXPECT_THAT(m_model.report()->items, SizeIs(2));
    EXPECT_TRUE(fileExists(excluded.urls.front()));
    EXPECT_TRUE(fileExists(ofProject.urls.front()));
}

TEST_F(AppModelTest, ASecondStartOfACleanupChangesNothing) {
    m_state.scanned(reportOf({realItem("a")}));
    cleanAll();
    m_model.startCleaning();
    EXPECT_THAT(m_model.history().entries(), SizeIs(1));
    EXPECT_EQ(m_model.session()->phase(), CleaningSession::Phase::finished);
}

TEST_F(AppModelTest, ACleanupGoesOnWhenAnotherReviewIsOpened) {
    ScanItem slow = itemOf(Decision::clean, "slow");
    m_state.home.tool("tools/slow", test::shellWaitFor(m_state.home.path("go")));
    slow.method = CleanMethod::command({"slow", {}, std::nullopt, false});
    const ScanItem other = itemOf(Decision::ask, "other");
    m_state.scanned(reportOf({slow, other}));
    m_model.reviewSelection();
    m_model.startCleaning();
    m_model.review({other.id});
    ASSERT_THAT(m_model.session()->items(), ElementsAre(other));
    m_state.home.file("go");
    ASSERT_TRUE(becomesTrue([this] { return m_model.history().entries().size() == 1; }));
    EXPECT_THAT(m_model.report()->items, ElementsAre(other));
    EXPECT_EQ(m_model.session()->phase(), CleaningSession::Phase::review);
}

TEST_F(AppModelTest, AModelThatGoesWhileItCleansEndsAfterTheItemUnderWay) {
    ScanItem slow = itemOf(Decision::clean, "slow");
    m_state.home.tool("tools/slow", "touch \"" + m_state.home.path("runs").path() +
                                        "\"; sleep 0.1; touch \"" +
                                        m_state.home.path("ended").path() + "\"");
    slow.method = CleanMethod::command({"slow", {}, std::nullopt, false});
    const ScanItem next = realItem("next");
    m_state.scanned(reportOf({slow, next}));
    m_model.reviewSelection();
    m_model.startCleaning();
    ASSERT_TRUE(becomesTrue([this] { return fileExists(m_state.home.path("runs")); }));
    m_state.model.reset();
    ASSERT_TRUE(becomesTrue([this] { return fileExists(m_state.home.path("ended")); }));
    EXPECT_TRUE(fileExists(next.urls.front()));
}

TEST_F(AppModelTest, LaunchArgumentsChooseTheScreen) {
    const std::pair<const char*, Destination> names[] = {
        {"xcode", Destination::category(Category::xcode)},
        {"overview", Destination::overview()},
        {"no such screen", Destination::overview()},
        {"", Destination::overview()},
        {"insights", Destination::insights()},
        {"apps", Destination::apps()},
        {"history", Destination::history()},
        {"projects", Destination::category(Category::projects)},
    };
    for (const auto& [name, expected] : names) {
        m_model.setDestination(Destination::overview());
        DefaultsStore launch(
            DefaultsStore::inFile(m_state.home.path("launch.conf")),
            argumentDefaults({QStringLiteral("-TWDestination"), QString::fromUtf8(name)}));
        m_model.applyLaunchArguments(launch);
        EXPECT_EQ(m_model.destination(), expected) << name;
        EXPECT_FALSE(m_model.isScanning());
    }
}

TEST_F(AppModelTest, AnUnknownScreenLeavesTheShownOne) {
    m_model.setDestination(Destination::apps());
    DefaultsStore launch(
        DefaultsStore::inFile(m_state.home.path("launch.conf")),
        argumentDefaults({QStringLiteral("-TWDestination"), QStringLiteral("overview")}));
    m_model.applyLaunchArguments(launch);
    EXPECT_EQ(m_model.destination(), Destination::apps());
}

TEST_F(AppModelTest, LaunchArgumentsCanStartAScanAfterTheScreenIsChosen) {
    m_state.prepared = std::make_shared<const ScanReport>();
    std::optional<Destination> whenScanning;
    QObject::connect(&m_model, &AppModel::scanStateChanged, &m_model, [&] {
        if (m_model.isScanning() && !whenScanning)
            whenScanning = m_model.destination();
    });
    DefaultsStore launch(
        DefaultsStore::inFile(m_state.home.path("launch.conf")),
        argumentDefaults({QStringLiteral("-TWDestination"), QStringLiteral("apps"),
                          QStringLiteral("-TWScanOnLaunch"), QStringLiteral("YES")}));
    m_model.applyLaunchArguments(launch);
    EXPECT_EQ(whenScanning, Destination::apps());
    ASSERT_TRUE(becomesTrue([this] { return m_model.scanState() == ready; }));
}

TEST_F(AppModelTest, OnlyWhatExistsIsRevealedInOrder) {
    const URL b = m_state.home.file("b");
    const URL a = m_state.home.folder("a");
    const URL dangling = m_state.home.link("dangling", "nowhere");
    m_model.reveal({b, m_state.home.path("gone"), dangling, a});
    m_model.reveal({m_state.home.path("gone")});
    EXPECT_THAT(m_revealed, ElementsAre(ElementsAre(b, a), IsEmpty()));
}

TEST_F(AppModelTest, AScanGoesByTheSettings) {
    m_model.settings().setExclusions({URL("/home/test/kept")});
    m_model.settings().setProjectRoots({URL("/home/test/code")});
    m_model.settings().setUnusedAppDays(7);
    const DiskScanner scanner = m_model.scanner();
    EXPECT_EQ(scanner.settings, m_model.settings().scanSettings());
    EXPECT_EQ(scanner.home, m_state.home.url());
}

TEST_F(AppModelTest, EachScreenHasAName) {
    const std::pair<const char*, Destination> names[] = {
        {"insights", Destination::insights()},
        {"overview", Destination::overview()},
        {"apps", Destination::apps()},
        {"history", Destination::history()},
        {"android", Destination::category(Category::android)},
        {"xcode", Destination::category(Category::xcode)},
        {"javascript", Destination::category(Category::javascript)},
        {"system", Destination::category(Category::system)},
        {"projects", Destination::category(Category::projects)},
    };
    test::PropertyWatch watch(m_model);
    for (const auto& [name, destination] : names) {
        m_model.setDestinationName(QString::fromUtf8(name));
        EXPECT_EQ(m_model.destination(), destination) << name;
        EXPECT_EQ(m_model.destinationName().toStdString(), name);
        EXPECT_THAT(watch.told(), ElementsAre("destinationChanged"));
        for (const char* unknown : {"", "category", "Overview", "elsewhere", name})
            m_model.setDestinationName(QString::fromUtf8(unknown));
        EXPECT_EQ(m_model.destination(), destination) << name;
        EXPECT_THAT(watch.told(), IsEmpty());
    }
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(AppModelTest, FullDiskAccessIsFoundOutWhenAsked) {
    test::PropertyWatch watch(m_model);
    EXPECT_FALSE(m_model.asksForFullDiskAccess());
    m_hasAccess = false;
    EXPECT_TRUE(m_model.hasFullDiskAccess());
    m_model.checkFullDiskAccess();
    m_model.checkFullDiskAccess();
    EXPECT_FALSE(m_model.hasFullDiskAccess());
    EXPECT_TRUE(m_model.asksForFullDiskAccess());
    EXPECT_THAT(watch.told(), ElementsAre("hasFullDiskAccessChanged"));
    m_hasAccess = true;
    m_model.checkFullDiskAccess();
    EXPECT_FALSE(m_model.asksForFullDiskAccess());
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(AppModelTest, WhereFilesAreNotProtectedNothingIsAskedFor) {
    AppEnvironment environment = test::inertEnvironment(m_state.home.url());
    environment.hasFullDiskAccess = [] { return false; };
    environment.protectsUserFiles = false;
    const AppModel model(std::move(environment), m_state.defaults, m_state.workers);
    EXPECT_FALSE(model.hasFullDiskAccess());
    EXPECT_FALSE(model.asksForFullDiskAccess());
}

TEST_F(AppModelTest, TheSettingsOfFullDiskAccessAreOpened) {
    m_model.openFullDiskAccessSettings();
    EXPECT_THAT(
        m_opened,
        ElementsAre("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"));
}

TEST_F(AppModelTest, ASelectionOfNoSizeIsOneToo) {
    EXPECT_FALSE(m_model.hasSelectedItems());
    ScanItem manual = itemOf(Decision::clean, "manual", 100);
    manual.method = CleanMethod::manual("By hand.");
    const ScanItem empty = itemOf(Decision::ask, "empty", 0);
    m_state.scanned(reportOf({manual, empty}));
    EXPECT_FALSE(m_model.hasSelectedItems());
    EXPECT_EQ(m_model.selectedBytes(), 0);
    EXPECT_EQ(m_model.reclaimable(Category::system), 100);
    m_model.setSelected(empty, true);
    EXPECT_TRUE(m_model.hasSelectedItems());
    m_model.setSelected(empty, false);
    EXPECT_FALSE(m_model.hasSelectedItems());
}

TEST_F(AppModelTest, SumsFollowTheReportAndTheSelection) {
    const ScanItem one = itemOf(Decision::clean, "one", 1);
    ScanItem two = itemOf(Decision::ask, "two", 20);
    two.category = Category::xcode;
    std::vector<Int64> whenTold; // as those hear who hear of it first
    QObject::connect(&m_model, &AppModel::selectionChanged, &m_model,
                     [&] { whenTold.push_back(m_model.selectedBytes()); });
    QObject::connect(&m_model, &AppModel::reportChanged, &m_model,
                     [&] { whenTold.push_back(m_model.selectedBytes()); });
    m_state.scanned(reportOf({one, two}));
    m_model.setSelected(two, true);
    EXPECT_EQ(m_model.reclaimable(Category::xcode), 20);
    m_state.scanned(reportOf({two}));
    EXPECT_EQ(m_model.reclaimable(Category::system), 0);
    m_model.review({two.id});
    EXPECT_THAT(whenTold, ElementsAre(0, 1, 21, 20, 0, 20));
}

TEST_F(AppModelTest, ACleanupIsStopped) {
    m_model.stopCleaning(); // there is none
    const std::string waits = test::shellWaitFor(m_state.home.path("go"));
    m_state.home.tool("tools/waiting", waits);
    ScanItem waiting = realItem("waiting", 9);
    waiting.method = CleanMethod::command({"waiting", {}, std::nullopt, false});
    m_state.scanned(reportOf({waiting, realItem("next", 1)}));
    m_model.reviewSelection();
    m_model.stopCleaning(); // it has not begun
    m_model.startCleaning();
    ASSERT_TRUE(becomesTrue([&] {
        return m_model.session()->state(waiting.id).choice.index() == 1; // it runs
    }));
    m_model.stopCleaning();
    m_state.home.file("go");
    ASSERT_TRUE(becomesTrue([&] { return m_state.workers.isIdle(); }));
    runEventLoopOnce();
    EXPECT_EQ(m_model.session()->phase(), CleaningSession::Phase::cleaning);
    EXPECT_THAT(m_model.history().entries(), IsEmpty());
    EXPECT_THAT(m_model.report()->items, SizeIs(2));
}

TEST_F(AppModelTest, TheEnvironmentOfAProcessIsThatOfItsUser) {
    const AppEnvironment environment = AppEnvironment::current();
    EXPECT_EQ(environment.home, homeDirectory());
    EXPECT_EQ(environment.historyDirectory,
              userDataDirectory(environment.home).appending("Tidewright"));
    EXPECT_EQ(environment.auditLogDirectory, auditLogDirectory(environment.home));
    EXPECT_THAT(environment.rules, SizeIs(40));
    EXPECT_EQ(environment.protectsUserFiles, protectsUserFiles());
}

} // namespace
} // namespace tidewright
