// The real window, on no screen: driven by mouse and keyboard on a model whose scans find what the
// test has prepared, and once through the whole loop in a sample home.
#include "app/screens/AppWindows.h"

#include "tests/support/ScopedVariable.h"
#include "tests/support/Shell.h"
#include "tests/support/app/EventLoop.h"
#include "tests/support/app/SampleState.h"
#include "tests/support/app/StateTesting.h"
#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <QRegularExpression>
#include <QSignalSpy>
#include <gmock/gmock.h>

#include <atomic>
#include <set>

namespace tidewright::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

const QUrl mainFile(QStringLiteral("qrc:/qt/qml/Tidewright/Screens/shell/Main.qml"));

ScanItem item(Category category, const std::string& key, Decision decision = Decision::clean) {
    ScanItem made = testItem(category, key);
    made.title = "Item " + key;
    made.decision = decision;
    return made;
}

Insight insight(int number, Insight::Severity severity = Insight::Severity::notice) {
    Insight made;
    made.id = "test." + std::to_string(number);
    made.severity = severity;
    made.symbolName = "trash";
    made.title = "Insight " + std::to_string(number);
    made.message = "Something was noticed.";
    return made;
}

constexpr Date now(std::chrono::seconds(1'700'000'000));

AppUsage neverUsedApp() {
    AppUsage app;
    app.name = "Atlas";
    app.url = URL("/Applications/Atlas.app");
    app.sizeBytes = 3'000'000;
    return app;
}

LargeFile largeFile() {
    LargeFile file;
    file.url = URL("/home/test/big.iso");
    file.sizeBytes = 2'000'000'000;
    file.modified = now - std::chrono::hours(48);
    return file;
}

class WindowTest : public testing::Test {
protected:
    WindowTest() {
        QAccessible::setActive(true);
        registerStateTypes();
    }

    AppModel& model() { return *m_state.model; }

    void show(QSize size = {}) {
        m_models = std::make_unique<ScreenModels>(model(), [] { return now; });
        ASSERT_TRUE(m_scene.load(
            mainFile, size, {{QStringLiteral("models"), QVariant::fromValue(m_models.get())}}));
        m_scene.window().requestActivate();
        ASSERT_TRUE(QmlScene::wait([this] { return m_scene.window().isActive(); }));
        QmlScene::settle();
    }
    void click(const char* name) {
        QQuickItem* const found = m_scene.named(name);
        ASSERT_NE(found, nullptr) << name;
        m_scene.click(found);
        QmlScene::settle();
    }
    bool has(const char* name) { return m_scene.hasNamed(name); }
    bool comes(const char* name) {
        return QmlScene::wait([&] { return m_scene.hasNamed(name); });
    }
    bool goes(const char* name) {
        return QmlScene::wait([&] { return !m_scene.hasNamed(name); });
    }
    /// How many shown items have such a name.
    int countOf(const char* expression) const {
        const QRegularExpression fits(QString::fromUtf8(expression));
        int count = 0;
        for (QQuickItem* const shown : m_scene.shownItems()) {
            QAccessibleInterface* const interface = QmlScene::accessible(shown);
            if (interface != nullptr && fits.match(interface->text(QAccessible::Name)).hasMatch())
                ++count;
        }
        return count;
    }

    /// An item whose cleaning waits until the home has a file "go".
    ScanItem slowItem(const std::string& key) {
        m_state.home.tool("tools/slow", shellWaitFor(m_state.home.path("go")));
        ScanItem slow = item(Category::javascript, key);
        slow.sizeBytes = 9'000'000; // the first
        slow.method = CleanMethod::command({"slow", {}, std::nullopt, false});
        return slow;
    }
    ScanItem realItem(const std::string& key) {
        ScanItem real = item(Category::javascript, key);
        real.urls = {m_state.home.file(".cache/" + key, "x")};
        return real;
    }

    ScopedVariable m_motion{"TIDEWRIGHT_REDUCE_MOTION", "1"};
    std::atomic<bool> m_holdsScan = false;
    std::optional<std::string> m_scanFailure;
    bool m_hasAccess = true;
    std::vector<URL> m_revealed;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.protectsUserFiles = true;
        environment.reveal = [this](const std::vector<URL>& urls) { m_revealed = urls; };
        environment.runner.locator.searchPath = {environment.home.appending("tools").path(),
                                                 "/usr/bin", "/bin"};
        environment.hasFullDiskAccess = [this] { return m_hasAccess; };
        environment.scan = [this, scan = environment.scan](
                               const DiskScanner& scanner, const DiskScanner::Progress& progress,
                               const CancelToken& cancel) -> Result<ScanReport, ScanFailure> {
            if (m_scanFailure)
                return Failure(ScanFailure{*m_scanFailure});
            progress({.fraction = 0.5, .message = "Measuring"});
            while (m_holdsScan && !cancel.isCancelled())
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            if (cancel.isCancelled())
                return Failure(ScanFailure{});
            return scan(scanner, progress, cancel);
        };
    }};
    std::unique_ptr<ScreenModels> m_models;
    QmlScene m_scene;
};

// The overview

TEST_F(WindowTest, BeforeAScanItSaysWhatItDoes) {
    show();
    EXPECT_TRUE(has("How Tidewright decides"));
    EXPECT_TRUE(has("Step 1 Learns your projects"));
    EXPECT_TRUE(has("Scan My Mac"));
    EXPECT_TRUE(has("Disk 50 percent full, Healthy") || has("Disk 0 percent full, Healthy"));
    EXPECT_EQ(countOf("Selected to free"), 0);
    EXPECT_FALSE(has("Where the space is"));
    EXPECT_EQ(m_scene.window().title(), QStringLiteral("Tidewright"));
}

TEST_F(WindowTest, AScanShowsItsProgressAndCanBeCancelled) {
    show();
    m_holdsScan = true;
    click("Scan My Mac");
    ASSERT_TRUE(comes("Measuring"));
    EXPECT_TRUE(has("Reading only. Nothing changes on disk during a scan."));
    EXPECT_FALSE(has("How Tidewright decides"));
    click("Cancel");
    EXPECT_TRUE(comes("How Tidewright decides"));
}

TEST_F(WindowTest, ARescanKeepsWhatTheLastOneFound) {
    ScanReport report;
    report.items = {item(Category::android, "a")};
    report.insights = {insight(1)};
    m_state.scanned(report);
    show();
    m_holdsScan = true;
    m_scene.press(Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(comes("Measuring"));
    EXPECT_TRUE(has("What needs attention"));
    EXPECT_TRUE(has("Where the space is"));
    EXPECT_FALSE(m_scene.named("Scan Again")->isEnabled());
    EXPECT_FALSE(m_scene.named("Scan")->isEnabled());
    m_scene.press(Qt::Key_R, Qt::ControlModifier); // has no effect now
    m_holdsScan = false;
    EXPECT_TRUE(goes("Measuring"));
    EXPECT_TRUE(m_scene.named("Scan")->isEnabled());
}

TEST_F(WindowTest, AFailedScanSaysWhyAboveTheOldReport) {
    ScanReport report;
    report.items = {item(Category::android, "a")};
    m_state.scanned(report);
    show();
    m_scanFailure = "The home folder can't be read.";
    click("Scan");
    ASSERT_TRUE(comes("The home folder can't be read."));
    EXPECT_TRUE(has("Where the space is"));
    m_scanFailure.reset();
    click("Try Again");
    EXPECT_TRUE(goes("The home folder can't be read."));
}

TEST_F(WindowTest, FiveInsightsLeadToAllOfThem) {
    ScanReport report;
    report.insights = {insight(1), insight(2), insight(3), insight(4)};
    m_state.scanned(report);
    show();
    EXPECT_EQ(countOf("^Insight ., Something"), 4);
    EXPECT_FALSE(has("See All"));
    report.insights.push_back(insight(5));
    m_state.scanned(report);
    QmlScene::settle();
    EXPECT_EQ(countOf("^Insight ., Something"), 4);
    click("See All");
    EXPECT_TRUE(comes("Insight 5, Something was noticed."));
    EXPECT_EQ(model().destination(), Destination::insights());
}

TEST_F(WindowTest, ATileOpensItsCategory) {
    ScanReport report;
    report.items = {item(Category::xcode, "x")};
    m_state.scanned(report);
    show();
    click("Xcode & iOS, 2 MB, selected · Zero KB kept");
    EXPECT_EQ(model().destination(), Destination::category(Category::xcode));
    EXPECT_TRUE(comes("DerivedData, simulators, runtimes and CocoaPods."));
}

TEST_F(WindowTest, TheBannerGoesWhenAccessIsGranted) {
    m_hasAccess = false;
    model().checkFullDiskAccess();
    show();
    ASSERT_TRUE(has("Allow Full Disk Access"));
    click("I've Turned It On"); // it is not
    EXPECT_TRUE(has("Allow Full Disk Access"));
    m_hasAccess = true;
    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QmlScene::wait([this] { return !m_scene.window().isActive(); }));
    m_scene.window().requestActivate(); // the user is back from the settings
    EXPECT_TRUE(goes("Allow Full Disk Access"));
}

// Shell

TEST_F(WindowTest, EveryScreenIsShownWithoutAWord) {
    ScanReport report;
    for (const Category category : allCases<Category>())
        report.items.push_back(item(category, std::string(rawValue(category))));
    report.insights = {insight(1)};
    report.apps = {neverUsedApp()};
    report.largeFiles = {largeFile()};
    for (const bool isScanned : {false, true}) {
        if (isScanned)
            m_state.scanned(report);
        if (!m_models)
            show();
        for (const char* const name : {"insights", "android", "xcode", "javascript", "projects",
                                       "system", "apps", "history", "overview"}) {
            for (const QSize size : {QSize(900, 600), QSize(1180, 760), QSize(2560, 1440)}) {
                m_scene.window().resize(size);
                model().setDestinationName(QString::fromLatin1(name));
                QmlScene::settle();
            }
            for (const bool isDark : {true, false}) {
                m_scene.theme().setSystemLook({isDark, {}, true});
                QmlScene::settle();
            }
        }
    }
}

TEST_F(WindowTest, TheSidebarFollowsClicksAndKeys) {
    show();
    click("History");
    EXPECT_EQ(model().destination(), Destination::history());
    EXPECT_TRUE(comes("No cleanups yet"));
    m_scene.press(Qt::Key_Up);
    EXPECT_EQ(model().destination(), Destination::apps());
    m_scene.press(Qt::Key_Down);
    m_scene.press(Qt::Key_Down);
    EXPECT_EQ(model().destination(), Destination::history());
    EXPECT_TRUE(m_scene.pressByReader(m_scene.named("Insights")));
    EXPECT_EQ(model().destination(), Destination::insights());
}

TEST_F(WindowTest, TabGoesThroughEverything) {
    ScanReport report;
    report.items = {item(Category::android, "a")};
    report.insights = {insight(1)};
    report.insights.front().actionTitle = "Look at it";
    report.insights.front().action = Insight::Action::open(Insight::Destination::android);
    m_state.scanned(report);
    show();
    std::set<QString> reached;
    for (int i = 0; i < 30; ++i) {
        m_scene.press(Qt::Key_Tab);
        QQuickItem* const focused = m_scene.window().activeFocusItem();
        ASSERT_NE(focused, nullptr);
        if (QAccessibleInterface* const interface = QmlScene::accessible(focused))
            reached.insert(interface->text(QAccessible::Name));
    }
    for (const char* const name :
         {"Overview", "About Tidewright", "Scan", "Review & Clean 2 MB", "Scan Again", "Look at it",
          "Android, 2 MB, selected · Zero KB kept"})
        EXPECT_TRUE(reached.contains(QString::fromUtf8(name))) << name;
}

TEST_F(WindowTest, AProjectIsRevealedByTheKeyboard) {
    ScanReport report;
    for (const char* const name : {"first", "second"}) {
        Project project;
        project.name = name;
        project.kind = Project::Kind::flutter;
        project.url = m_state.home.folder(name);
        report.projects.push_back(std::move(project));
    }
    m_state.scanned(report);
    show();
    m_scene.item("projects")->forceActiveFocus(Qt::TabFocusReason);
    m_scene.press(Qt::Key_Right);
    m_scene.press(Qt::Key_Return);
    ASSERT_TRUE(comes("Reveal in Finder"));
    m_scene.press(Qt::Key_Down);
    m_scene.press(Qt::Key_Return);
    ASSERT_TRUE(QmlScene::wait([this] { return !m_revealed.empty(); }));
    EXPECT_EQ(m_revealed.front(), report.projects[1].url);
}

TEST_F(WindowTest, TheSettingsAreAskedForByButtonAndKey) {
    show();
    const QSignalSpy asked(m_models->shell(), &Shell::openSettings);
    click("Settings…");
    EXPECT_EQ(asked.count(), 1);
    m_scene.press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(asked.count(), 2);
}

TEST_F(WindowTest, TheToolbarFitsTheNarrowestWindowAlsoInAScan) {
    ScanReport report;
    report.items = {item(Category::android, "a")};
    report.items.front().sizeBytes = 413'340'000'000;
    m_state.scanned(report);
    show(QSize(900, 600));
    for (const char* const screen : {"android", "apps", "overview"}) {
        model().setDestinationName(QString::fromLatin1(screen));
        QmlScene::settle();
        for (const bool isScanning : {false, true}) {
            m_holdsScan = isScanning;
            if (isScanning)
                model().scan();
            QmlScene::settle();
            const QQuickItem* const review = m_scene.named("Review & Clean 413.34 GB");
            ASSERT_NE(review, nullptr);
            EXPECT_LE(review->mapToScene({review->width(), 0}).x(), 900) << screen << isScanning;
            const QQuickItem* const first =
                m_scene.hasNamed("Show") ? m_scene.named("Show") : m_scene.named("Scan");
            EXPECT_GE(first->mapToScene({}).x(), 220) << screen << isScanning;
            model().cancelScan();
        }
    }
    m_holdsScan = false;
}

TEST_F(WindowTest, ABadgeOfNothingIsNotShown) {
    ScanReport report;
    report.insights = {insight(1, Insight::Severity::tip)};
    m_state.scanned(report);
    show();
    EXPECT_TRUE(has("Insights"));
    report.insights.push_back(insight(2));
    m_state.scanned(report);
    QmlScene::settle();
    EXPECT_TRUE(has("Insights, 1"));
}

// Applications, files, history

TEST_F(WindowTest, ApplicationsAndFilesAreListedAndRevealed) {
    ScanReport report;
    report.apps = {neverUsedApp()};
    report.apps.front().url = m_state.home.folder("Applications/Atlas.app");
    report.largeFiles = {largeFile()};
    report.largeFiles.front().url = m_state.home.file("big.iso", "x");
    m_state.scanned(report);
    show();
    click("Apps & Files");
    ASSERT_TRUE(comes("Every app was opened in the last 90 days."));
    click("Show All Apps");
    ASSERT_TRUE(comes("Atlas, Never, 3 MB"));
    EXPECT_TRUE(m_scene.pressByReader(m_scene.named("Atlas, Never, 3 MB")));
    EXPECT_EQ(m_revealed, std::vector<URL>{report.apps.front().url});
    click("Large Files");
    ASSERT_TRUE(comes("big.iso, 2 days ago, 2 GB"));
    m_scene.doubleClick(m_scene.named("big.iso, 2 days ago, 2 GB"));
    EXPECT_EQ(m_revealed, std::vector<URL>{report.largeFiles.front().url});
}

TEST_F(WindowTest, ACleanupStandsInTheHistory) {
    ScanReport report;
    report.items = {realItem("a")};
    m_state.scanned(report);
    show();
    m_scene.press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(comes("Review cleanup"));
    m_scene.press(Qt::Key_Return);
    ASSERT_TRUE(comes("Done"));
    m_scene.press(Qt::Key_Return);
    ASSERT_TRUE(goes("Done"));
    click("History");
    ASSERT_TRUE(comes("Show audit log"));
    EXPECT_EQ(countOf(", 2 MB, 1 items cleaned$"), 1);
    click("Show audit log");
    ASSERT_THAT(m_revealed, SizeIs(1));
    EXPECT_EQ(m_revealed.front(), *model().history().entries().front().logFile);
}

TEST_F(WindowTest, AboutSaysWhoMadeIt) {
    show();
    click("About Tidewright");
    ASSERT_TRUE(comes("by VARNEL"));
    m_scene.press(Qt::Key_Escape);
    EXPECT_TRUE(goes("by VARNEL"));
}

// Review

TEST_F(WindowTest, AReviewIsLeftWithoutAnyEffect) {
    ScanReport report;
    report.items = {realItem("a"), realItem("b")};
    m_state.scanned(report);
    show();
    m_scene.press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(comes("Review cleanup"));
    EXPECT_TRUE(has("Every path is checked against Tidewright's safety rules again before it's "
                    "touched."));
    m_scene.press(Qt::Key_Escape);
    EXPECT_TRUE(goes("Review cleanup"));
    EXPECT_EQ(model().session(), nullptr);
    EXPECT_THAT(model().selectedItems(), SizeIs(2));
    m_scene.press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(comes("Review cleanup"));
    click("Cancel");
    EXPECT_TRUE(goes("Review cleanup"));
    EXPECT_TRUE(fileExists(report.items.front().urls.front()));
}

TEST_F(WindowTest, ReturnCleansAndReturnIsDone) {
    ScanReport report;
    report.items = {realItem("a")};
    m_state.scanned(report);
    show();
    m_scene.press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(comes("Review cleanup"));
    m_scene.press(Qt::Key_Return);
    ASSERT_TRUE(comes("Done"));
    EXPECT_FALSE(fileExists(report.items.front().urls.front()));
    m_scene.press(Qt::Key_Return);
    EXPECT_TRUE(goes("Done"));
    EXPECT_EQ(model().session(), nullptr);
    EXPECT_THAT(model().report()->items, IsEmpty());
}

TEST_F(WindowTest, OnlyTrashIsTwoFiguresAndOneSection) {
    ScanReport report;
    report.items = {realItem("a")};
    report.items.front().method = CleanMethod::trash();
    m_state.scanned(report);
    show();
    m_scene.press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(comes("Review cleanup"));
    EXPECT_TRUE(has("to free 2 MB"));
    EXPECT_TRUE(has("moved to Trash 2 MB"));
    EXPECT_EQ(countOf("deleted or cleaned by tools"), 0);
    EXPECT_TRUE(has("Move to Trash"));
    EXPECT_FALSE(has("Delete permanently"));
    EXPECT_EQ(countOf("1 items are personal data"), 0);
}

TEST_F(WindowTest, WhatIsAtRiskIsToldInTheReview) {
    ScanReport report;
    report.items = {realItem("a")};
    report.items.front().isProjectItem = true;
    m_state.scanned(report);
    model().setSelected(report.items.front(), true);
    show();
    m_scene.press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(comes("1 items are personal data, devices or project files. Check them below."));
}

TEST_F(WindowTest, ACleanupCanBeStoppedButNotLeft) {
    const ScanItem slow = slowItem("slow");
    const ScanItem next = realItem("next");
    ScanReport report;
    report.items = {slow, next};
    m_state.scanned(report);
    show();
    m_scene.press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(comes("Review cleanup"));
    click("Clean 11 MB");
    ASSERT_TRUE(comes("Stop"));
    EXPECT_TRUE(has("0 of 2 done"));
    m_scene.press(Qt::Key_Escape);
    m_scene.clickAt({5, 5});
    QmlScene::settle();
    EXPECT_TRUE(has("Stop"));
    click("Stop");
    m_state.home.file("go");
    ASSERT_TRUE(becomesTrue([this] { return m_state.workers.isIdle(); }));
    EXPECT_TRUE(fileExists(next.urls.front()));
    EXPECT_EQ(model().session()->phase(), CleaningSession::Phase::cleaning);
}

TEST_F(WindowTest, WhatWasNotCleanedIsSaid) {
    ScanReport report;
    report.items = {realItem("a"), realItem("b")};
    report.items[1].urls = {URL("/usr/bin")};
    m_state.scanned(report);
    show();
    m_scene.press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(comes("Review cleanup"));
    m_scene.press(Qt::Key_Return);
    ASSERT_TRUE(comes("Not cleaned"));
    EXPECT_EQ(countOf("^Item b, Not cleaned, 2 MB, Skipped: "), 1);
    EXPECT_TRUE(has("Show Audit Log"));
    EXPECT_FALSE(has("Toolchain check"));
}

// The whole loop

class WindowLoop : public testing::Test {
protected:
    WindowLoop() {
        QAccessible::setActive(true);
        registerStateTypes();
        EXPECT_TRUE(m_scene.load(mainFile, {},
                                 {{QStringLiteral("models"), QVariant::fromValue(&m_models)}}));
        m_scene.window().requestActivate();
    }

    void clickWhenThere(const char* name) {
        ASSERT_TRUE(becomesTrue([&] { return m_scene.hasNamed(name); })) << name;
        QmlScene::settle();
        m_scene.click(m_scene.named(name));
        QmlScene::settle();
    }

    ScopedVariable m_motion{"TIDEWRIGHT_REDUCE_MOTION", "1"};
    SampleState m_state;
    AppModel& m_model = m_state.model;
    ScreenModels m_models{m_model};
    QmlScene m_scene;
};

TEST_F(WindowLoop, IsClickedThroughFromTheFirstScanToTheHistory) {
    clickWhenThere("Scan My Mac");
    ASSERT_TRUE(becomesTrue([this] { return m_model.report() != nullptr; }));
    QmlScene::settle();
    const std::vector<ScanItem> selected = m_model.selectedItems();
    ASSERT_GT(selected.size(), 30U);
    const QByteArray review = m_models.overview()->reviewTitle().toUtf8();
    for (const char* const name : {"android", "xcode", "javascript", "projects", "system"}) {
        m_model.setDestinationName(QString::fromLatin1(name));
        QmlScene::settle();
    }
    clickWhenThere(review.constData());
    ASSERT_TRUE(becomesTrue([this] { return m_scene.hasNamed("Review cleanup"); }));
    clickWhenThere(m_models.session()->cleanTitle().toUtf8().constData());
    clickWhenThere("Done");
    EXPECT_EQ(m_model.session(), nullptr);
    ASSERT_THAT(m_model.history().entries(), SizeIs(1));
    EXPECT_EQ(m_model.history().entries().front().itemCount, static_cast<Int64>(selected.size()));
    EXPECT_THAT(m_model.selectedItems(), IsEmpty());
    EXPECT_FALSE(m_scene.named("Review & Clean Zero KB")->isEnabled());
    clickWhenThere("Scan");
    ASSERT_TRUE(becomesTrue([this] { return !m_model.isScanning(); }));
}

} // namespace
} // namespace tidewright::test
