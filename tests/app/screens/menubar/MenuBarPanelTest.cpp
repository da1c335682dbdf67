// The real panel in a window that no one sees, on a model whose scans find what the test has
// prepared.
#include "app/controls/MovingItem.h"
#include "app/screens/AppWindows.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/app/EventLoop.h"
#include "tests/support/app/StateTesting.h"
#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace tidewright::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const QUrl panelFile(QStringLiteral("qrc:/qt/qml/Tidewright/Screens/menubar/MenuBarPanel.qml"));

Insight insight(const std::string& id, Insight::Destination destination) {
    Insight made;
    made.id = id;
    made.severity = Insight::Severity::warning;
    made.symbolName = "trash";
    made.title = "Title of " + id;
    made.message = "Message of " + id;
    made.action = Insight::Action::open(destination);
    return made;
}

ScanReport reportOf(std::vector<ScanItem> items, std::vector<Insight> insights = {}) {
    ScanReport report;
    report.items = std::move(items);
    report.insights = std::move(insights);
    return report;
}

class MenuBarPanelTest : public testing::Test {
protected:
    MenuBarPanelTest() {
        QAccessible::setActive(true);
        registerStateTypes();
        m_state.prepared = std::make_shared<const ScanReport>();
    }

    AppModel& model() { return *m_state.model; }
    QQuickWindow& window() { return m_scene.window(); }

    void show() {
        ASSERT_TRUE(m_scene.load(panelFile, {},
                                 {{QStringLiteral("models"), QVariant::fromValue(&m_models)}}));
        ASSERT_TRUE(QmlScene::wait([this] { return window().isActive(); }));
        const auto note = [this](const char* asked) {
            m_asked.push_back(std::string(asked) + (window().isVisible() ? " beside" : "") +
                              (model().session() == nullptr ? "" : " late") +
                              (model().destination() == Destination::overview() ? "" : " late"));
        };
        Shell* const shell = m_models.shell();
        QObject::connect(shell, &Shell::openMainWindow, [note] { note("main"); });
        QObject::connect(shell, &Shell::openSettings, [note] { note("settings"); });
        QObject::connect(shell, &Shell::showAbout, [note] { note("about"); });
        QObject::connect(shell, &Shell::quit, [note] { note("quit"); });
    }
    void showAgain() {
        window().show();
        window().requestActivate();
        ASSERT_TRUE(QmlScene::wait([this] { return window().isActive(); }));
        QmlScene::settle(); // QML hears of it later
    }
    void measure() {
        bool isDone = false;
        model().monitor().refresh([&isDone] { isDone = true; });
        ASSERT_TRUE(becomesTrue([&isDone] { return isDone; }));
        QmlScene::settle();
    }
    /// When all is laid out, which happens where a picture is drawn.
    int height() {
        for (int i = 0; i < 3; ++i)
            (void)m_scene.picture();
        return window().height();
    }
    bool has(const char* name) { return m_scene.hasNamed(name); }
    bool isHidden() {
        return QmlScene::wait([this] { return !window().isVisible(); });
    }
    std::string focused() {
        QAccessibleInterface* const known = QmlScene::accessible(window().activeFocusItem());
        return known == nullptr ? "" : known->text(QAccessible::Name).toStdString();
    }
    /// Moves there by Tab. False, and a failure of the test, where Tab does not lead there.
    bool tabTo(const char* name) {
        for (int i = 0; i < 20; ++i) {
            if (focused() == name)
                return true;
            m_scene.press(Qt::Key_Tab);
        }
        ADD_FAILURE() << "Tab does not reach \"" << name << "\".";
        return false;
    }
    /// In one of the ways there are: by mouse, key or reader.
    void use(const char* name, int way) {
        if (way == 0)
            m_scene.click(m_scene.named(name));
        else if (way == 1 && tabTo(name))
            m_scene.press(Qt::Key_Return);
        else if (way == 2)
            m_scene.pressByReader(m_scene.named(name));
        QmlScene::settle();
    }

    static constexpr int ways = 3;

    ScopedVariable m_motion{"TIDEWRIGHT_REDUCE_MOTION", "1"};
    std::optional<DiskSpace> m_disk = DiskSpace{500 * gigabyte, 125 * gigabyte};
    std::optional<Int64> m_trash;
    std::atomic<bool> m_holdsScan = false;
    Date m_now = currentDate();
    std::vector<std::string> m_asked; ///< of the shell
    TestState m_state{[this](AppEnvironment& environment) {
        environment.monitorSystem.readDisk = [this]() -> Result<DiskSpace, SystemError> {
            if (!m_disk)
                return Failure(SystemError{});
            return *m_disk;
        };
        environment.monitorSystem.readTrashSize = [this](const CancelToken&) { return m_trash; };
        environment.monitorSystem.now = [this] { return m_now; };
        environment.scan = [this, scan = environment.scan](const DiskScanner& scanner,
                                                           const DiskScanner::Progress& progress,
                                                           const CancelToken& cancel) {
            while (m_holdsScan && !cancel.isCancelled())
                std::this_thread::sleep_for(1ms);
            return scan(scanner, progress, cancel);
        };
    }};
    ScreenModels m_models{model(), [this] { return m_now; }};
    QmlScene m_scene;
};

// What it shows

TEST_F(MenuBarPanelTest, IsMadeHidden) {
    AppWindows windows(m_models);
    QQuickWindow& panel = windows.panel();
    EXPECT_FALSE(panel.isVisible());
    EXPECT_FALSE(m_models.menuBar()->isWatched());
    EXPECT_EQ(panel.title().toStdString(), "Tidewright");
    for (const Qt::WindowType flag : {Qt::Tool, Qt::FramelessWindowHint, Qt::WindowStaysOnTopHint})
        EXPECT_EQ(panel.flags() & flag, flag);
    EXPECT_GT(panel.height(), 100) << "who places it knows its size";
}

TEST_F(MenuBarPanelTest, AnUnknownDiskIsADashWithoutABar) {
    show();
    EXPECT_TRUE(has("–"));
    EXPECT_TRUE(has("available · Healthy"));
    EXPECT_TRUE(has("Disk 0 percent full, Healthy"));
    EXPECT_EQ(m_scene.root().property("width").toInt(),
              Theme::panelWidth + 2 * m_scene.root().property("margin").toInt());
    for (QQuickItem* const item : m_scene.shownItems())
        EXPECT_FALSE(item->inherits("tidewright::CapacityBarPicture"));
    for (const char* const name :
         {"Scan Now", "Open Tidewright", "About Tidewright", "Settings…", "Quit Tidewright"})
        EXPECT_TRUE(has(name)) << name;
}

TEST_F(MenuBarPanelTest, AKnownDiskHasABarAndATime) {
    m_trash = 6'200'000'000;
    show();
    measure();
    EXPECT_TRUE(has("125 GB"));
    EXPECT_TRUE(has("available · Healthy"));
    EXPECT_TRUE(has("Disk 75 percent full, Healthy"));
    EXPECT_TRUE(has("375 GB used of 500 GB Zero KB selected to free"));
    EXPECT_TRUE(has("Checked now"));
    EXPECT_TRUE(has("Trash holds 6.2 GB"));
    m_trash = 0;
    m_disk.reset();
    measure();
    EXPECT_TRUE(has("–"));
    EXPECT_FALSE(has("Checked now")) << "it goes with the bar";
    EXPECT_FALSE(has("Trash holds 6.2 GB"));
}

TEST_F(MenuBarPanelTest, TheOrderIsThatOfItsImportance) {
    m_trash = 6'200'000'000;
    m_state.scanned(
        reportOf({testItem(Category::system, "a")}, {insight("a", Insight::Destination::apps)}));
    show();
    measure();
    double last = -1;
    for (const char* const name :
         {"125 GB", "available · Healthy", "375 GB used of 500 GB 2 MB selected to free",
          "Checked now", "Trash holds 6.2 GB", "Title of a", "Review 2 MB", "About Tidewright"}) {
        QQuickItem* const item = m_scene.named(name);
        ASSERT_NE(item, nullptr);
        const double y = item->mapToScene(QPointF()).y();
        EXPECT_GT(y, last) << name;
        last = y;
    }
}

TEST_F(MenuBarPanelTest, TheRowsAreTheFirstThreeInsights) {
    const auto apps = Insight::Destination::apps;
    show();
    m_state.scanned(reportOf({}));
    measure();
    const int lowest = height();
    m_state.scanned(reportOf({}, {insight("healthy", apps)}));
    QmlScene::settle();
    EXPECT_FALSE(has("Title of healthy"));
    EXPECT_EQ(height(), lowest) << "nor is there a divider";
    m_state.scanned(reportOf({}, {insight("a", apps), insight("healthy", apps), insight("b", apps),
                                  insight("c", apps), insight("d", apps)}));
    EXPECT_GT(height(), lowest);
    for (const char* const name : {"Title of a", "Title of b", "Title of c"}) {
        ASSERT_TRUE(has(name)) << name;
        QAccessibleInterface* const row = QmlScene::accessible(m_scene.named(name));
        EXPECT_EQ(row->role(), QAccessible::Button);
        EXPECT_NE(row->text(QAccessible::Description), QString());
    }
    EXPECT_FALSE(has("Title of healthy"));
    EXPECT_FALSE(has("Title of d"));
    m_state.scanned(reportOf({}));
    EXPECT_EQ(height(), lowest);
}

TEST_F(MenuBarPanelTest, AgreesWithTheModelWhileItIsOpen) {
    show();
    measure();
    model().settings().setLowSpaceGB(200);
    QmlScene::settle();
    EXPECT_TRUE(has("available · Low space"));
    EXPECT_TRUE(has("Disk 75 percent full, Low space"));
    model().settings().setCriticalSpaceGB(150);
    QmlScene::settle();
    EXPECT_TRUE(has("available · Almost full"));
    m_now += 5min;
    EXPECT_TRUE(QmlScene::wait([this] { return has("Checked 5 minutes ago"); }));
    const ScanItem item = testItem(Category::system, "a", 0);
    m_state.scanned(reportOf({item}));
    QmlScene::settle();
    EXPECT_TRUE(has("Review Zero KB"));
    model().setSelected(item, false);
    QmlScene::settle();
    EXPECT_TRUE(has("Scan Now"));
}

TEST_F(MenuBarPanelTest, IsPaintedInLightAndDarkRoundAndSquare) {
    m_trash = 1'000'000;
    m_state.scanned(
        reportOf({testItem(Category::system, "a")}, {insight("a", Insight::Destination::apps)}));
    show();
    measure();
    for (const bool isComposed : {true, false}) {
        m_scene.root().setProperty("isComposed", isComposed);
        const int margin = m_scene.root().property("margin").toInt();
        EXPECT_EQ(margin > 0, isComposed);
        for (const bool isDark : {true, false}) {
            m_scene.theme().setSystemLook({isDark, {}, true});
            QmlScene::settle();
            const QImage picture = m_scene.picture();
            const QPoint corner(margin + 3, margin + 3);
            const QPoint inside(margin + 30, margin + 5);
            EXPECT_EQ(picture.pixelColor(inside), m_scene.theme().window());
            EXPECT_EQ(picture.pixelColor(corner) == m_scene.theme().window(), !isComposed);
        }
    }
}

// What can be done

TEST_F(MenuBarPanelTest, TheMainWindowIsOpened) {
    show();
    for (int way = 0; way < ways; ++way) {
        use("Open Tidewright", way);
        EXPECT_THAT(std::exchange(m_asked, {}), ElementsAre("main")) << way;
        EXPECT_TRUE(isHidden());
        showAgain();
    }
}

TEST_F(MenuBarPanelTest, OtherPlacesAreOpened) {
    show();
    const std::pair<const char*, const char*> places[] = {{"About Tidewright", "about"},
                                                          {"Settings…", "settings"}};
    for (const auto& [name, place] : places)
        for (int way = 0; way < ways; ++way) {
            use(name, way);
            EXPECT_THAT(std::exchange(m_asked, {}), ElementsAre(place)) << way;
            EXPECT_TRUE(isHidden());
            showAgain();
        }
}

TEST_F(MenuBarPanelTest, TheProgramIsQuit) {
    show();
    for (int way = 0; way < ways; ++way) {
        use("Quit Tidewright", way);
        EXPECT_THAT(std::exchange(m_asked, {}), ElementsAre("quit beside")) << way;
    }
}

TEST_F(MenuBarPanelTest, AnInsightIsFollowedInTheMainWindow) {
    const auto apps = Insight::Destination::apps;
    m_state.scanned(reportOf({}, {insight("healthy", apps), insight("a", apps),
                                  insight("b", Insight::Destination::android)}));
    show();
    for (int way = 0; way < ways; ++way) {
        model().setDestination(Destination::overview());
        use("Title of b", way);
        EXPECT_THAT(std::exchange(m_asked, {}), ElementsAre("main")) << way;
        EXPECT_EQ(model().destination(), Destination::category(Category::android)) << way;
        EXPECT_TRUE(isHidden());
        showAgain();
    }
}

TEST_F(MenuBarPanelTest, TheSelectionIsReviewedInTheMainWindow) {
    const ScanItem item = testItem(Category::system, "a", 6 * gigabyte);
    m_state.scanned(reportOf({item}));
    show();
    for (int way = 0; way < ways; ++way) {
        use("Review 6 GB", way);
        EXPECT_THAT(std::exchange(m_asked, {}), ElementsAre("main")) << way;
        ASSERT_NE(model().session(), nullptr) << way;
        EXPECT_THAT(model().session()->items(), ElementsAre(item));
        EXPECT_TRUE(isHidden());
        model().closeSession();
        showAgain();
    }
}

TEST_F(MenuBarPanelTest, AScanIsStartedAndWatched) {
    show();
    for (int way = 0; way < ways; ++way) {
        m_holdsScan = true;
        use("Scan Now", way);
        EXPECT_TRUE(model().isScanning()) << way;
        EXPECT_TRUE(has("Scanning…"));
        EXPECT_FALSE(has("Scan Now"));
        EXPECT_TRUE(window().isVisible());
        EXPECT_EQ(focused(), "Open Tidewright") << "what had the keyboard is gone";
        m_holdsScan = false;
        ASSERT_TRUE(QmlScene::wait([this] { return has("Scan Now"); }));
    }
    EXPECT_THAT(m_asked, IsEmpty());
}

TEST_F(MenuBarPanelTest, TheKeyboardBeginsAtTheNextStep) {
    show();
    EXPECT_EQ(focused(), "Scan Now");
    tabTo("Quit Tidewright");
    m_scene.press(Qt::Key_Escape);
    ASSERT_TRUE(isHidden());
    m_state.scanned(reportOf({testItem(Category::system, "a")}));
    showAgain();
    EXPECT_EQ(focused(), "Review 2 MB");
    m_scene.press(Qt::Key_Escape);
    ASSERT_TRUE(isHidden());
    m_holdsScan = true;
    model().scan();
    showAgain();
    EXPECT_EQ(focused(), "Open Tidewright");
    m_holdsScan = false;
}

TEST_F(MenuBarPanelTest, TabGoesThroughEverything) {
    m_state.scanned(
        reportOf({testItem(Category::system, "a")}, {insight("a", Insight::Destination::apps),
                                                     insight("b", Insight::Destination::apps)}));
    show();
    std::vector<std::string> reached;
    for (int i = 0; i < 7; ++i) {
        reached.push_back(focused());
        m_scene.press(Qt::Key_Tab);
    }
    EXPECT_THAT(reached, ElementsAre("Review 2 MB", "Open Tidewright", "About Tidewright",
                                     "Settings…", "Quit Tidewright", "Title of a", "Title of b"));
    EXPECT_EQ(focused(), "Review 2 MB");
}

// How it goes

TEST_F(MenuBarPanelTest, EscapeClosesIt) {
    show();
    for (const char* const name : {"Scan Now", "Quit Tidewright"}) {
        tabTo(name);
        m_scene.press(Qt::Key_Escape);
        EXPECT_TRUE(isHidden()) << name;
        showAgain();
    }
}

TEST_F(MenuBarPanelTest, IsClosedWhenItIsLeft) {
    show();
    QWindow other;
    other.show();
    other.requestActivate();
    EXPECT_TRUE(isHidden());
}

TEST_F(MenuBarPanelTest, APressBesideItClosesIt) {
    show();
    const int margin = m_scene.root().property("margin").toInt();
    ASSERT_GT(margin, 10);
    m_scene.clickAt({margin + 6, margin + 6});
    EXPECT_TRUE(window().isVisible());
    m_scene.clickAt({margin / 2, margin / 2});
    EXPECT_TRUE(isHidden());
}

class MovingMenuBarPanelTest : public MenuBarPanelTest {
protected:
    ScopedVariable m_moves{"TIDEWRIGHT_REDUCE_MOTION", "0"};
};

TEST_F(MovingMenuBarPanelTest, NothingMovesWhileItIsHidden) {
    m_holdsScan = true;
    model().scan();
    show();
    measure();
    std::vector<MovingItem*> moving;
    for (QQuickItem* const item : m_scene.shownItems())
        if (auto* const found = qobject_cast<MovingItem*>(item))
            moving.push_back(found);
    ASSERT_EQ(moving.size(), 2U) << "the orb and the sign of a scan";
    EXPECT_TRUE(QmlScene::wait(
        [&] { return std::ranges::all_of(moving, [](auto* item) { return item->isMoving(); }); }));
    EXPECT_TRUE(m_models.menuBar()->isWatched());
    window().hide();
    EXPECT_TRUE(QmlScene::wait(
        [&] { return std::ranges::none_of(moving, [](auto* item) { return item->isMoving(); }); }));
    EXPECT_FALSE(m_models.menuBar()->isWatched());
    m_holdsScan = false;
}

} // namespace
} // namespace tidewright::test
