// The real screen in a window that no one sees, on a model whose scans find what the test has
// prepared.
#include "app/screens/AppWindows.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/app/StateTesting.h"
#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <QTest>
#include <fmt/format.h>
#include <gmock/gmock.h>

namespace tidewright::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto sceneText = R"(
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Rectangle {
    required property ScreenModels models

    color: Theme.window

    AppsAndFilesView {
        objectName: "view"
        anchors.fill: parent
        focus: true
        models: parent.models
    }
}
)";

// Of what the window's sidebar and toolbar leave in windows of 900, 1180 and 1600.
constexpr QSize small{680, 550};
constexpr QSize usual{960, 710};
constexpr QSize large{1380, 1250};

constexpr Date now(std::chrono::seconds(1'700'000'000));
constexpr std::chrono::hours day(24);

class AppsAndFilesViewTest : public testing::Test {
protected:
    AppsAndFilesViewTest() {
        QAccessible::setActive(true);
        registerStateTypes();
    }

    AppUsage app(const std::string& name, std::optional<int> idleDays, Int64 bytes = gigabyte) {
        AppUsage app;
        app.url = m_state.home.folder("Applications/" + name + ".app");
        app.name = name;
        app.sizeBytes = bytes;
        if (idleDays)
            app.lastUsed = now - day * *idleDays;
        return app;
    }
    LargeFile file(const std::string& name, int days, Int64 bytes) {
        return {.url = m_state.home.file("Movies/" + name, "x"),
                .sizeBytes = bytes,
                .modified = now - day * days};
    }
    /// Three applications, two of which are unused, and two files.
    ScanReport smallReport() {
        ScanReport report;
        report.apps = {app("Editor", 0, 3 * gigabyte), app("Atlas", 400, gigabyte),
                       app("Blender", 100, 2 * gigabyte)};
        report.largeFiles = {file("film.mov", 2, 5 * gigabyte), file("disk.img", 30, 9 * gigabyte)};
        return report;
    }

    void show(const ScanReport& report, QSize size = usual) {
        m_state.scanned(report);
        show(size);
    }
    void show(QSize size = usual) {
        ASSERT_TRUE(m_scene.load(sceneText, size,
                                 {{QStringLiteral("models"), QVariant::fromValue(&m_models)}}));
    }
    void click(const char* name) {
        QQuickItem* const found = m_scene.named(name);
        ASSERT_NE(found, nullptr) << name;
        m_scene.click(found);
        QmlScene::settle();
    }
    void resize(QSize size) {
        m_scene.window().resize(size);
        m_scene.root().setProperty("width", size.width());
        m_scene.root().setProperty("height", size.height());
        QmlScene::settle();
    }
    bool has(const char* name) { return m_scene.hasNamed(name); }

    AppUsageListModel& apps() { return *m_models.appUsage(); }
    int roleOf(const char* name) { return apps().roleNames().key(name); }
    LargeFileListModel& files() { return *m_models.largeFiles(); }

    /// What readers know as this, from top to bottom.
    std::vector<QQuickItem*> shown(QAccessible::Role role) {
        std::vector<QQuickItem*> found;
        for (QQuickItem* each : m_scene.shownItems())
            if (const auto* known = QmlScene::accessible(each); known && known->role() == role)
                found.push_back(each);
        std::ranges::sort(found, {}, [](QQuickItem* each) { return each->mapToScene({}).y(); });
        return found;
    }
    std::vector<std::string> names(QAccessible::Role role) {
        std::vector<std::string> names;
        for (QQuickItem* each : shown(role))
            names.push_back(QmlScene::accessible(each)->text(QAccessible::Name).toStdString());
        return names;
    }
    std::vector<std::string> rows() { return names(QAccessible::ListItem); }
    /// Rows come and go with the next frame.
    bool become(const std::vector<std::string>& expected) {
        return QmlScene::wait([&] { return rows() == expected; });
    }
    QQuickItem* row(std::size_t index) { return shown(QAccessible::ListItem).at(index); }
    int delegates() {
        const auto shown = m_scene.shownItems();
        return static_cast<int>(std::ranges::count_if(
            shown, [](const QQuickItem* each) { return each->property("folder").isValid(); }));
    }

    ScopedVariable m_motion{"TIDEWRIGHT_REDUCE_MOTION", "1"};
    std::vector<std::string> m_revealed;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.reveal = [this](const std::vector<URL>& urls) {
            for (const URL& url : urls)
                m_revealed.push_back(url.lastPathComponent());
        };
    }};
    ScreenModels m_models{*m_state.model, [] { return now; }};
    QmlScene m_scene;
};

// Where there is nothing

TEST_F(AppsAndFilesViewTest, BeforeAScanItAsksForOne) {
    show();
    EXPECT_TRUE(has("Not scanned yet"));
    EXPECT_TRUE(has("Scan your Mac to see apps you haven't used lately."));
    EXPECT_FALSE(has("Show"));
    m_state.prepared = std::make_shared<const ScanReport>(smallReport());
    click("Scan My Mac");
    EXPECT_TRUE(QmlScene::wait([this] { return rows().size() == 2; }));
    EXPECT_FALSE(has("Not scanned yet"));
}

TEST_F(AppsAndFilesViewTest, WithoutRowsItSaysWhy) {
    ScanReport report;
    report.apps = {app("Editor", 0)};
    m_state.model->settings().setUnusedAppDays(45);
    show(report);
    EXPECT_TRUE(has("Every app was opened in the last 45 days."));
    EXPECT_THAT(names(QAccessible::Heading), IsEmpty());
    EXPECT_FALSE(has("Last opened"));
    click("Large Files");
    EXPECT_TRUE(has("No single file over 1 GB was found in your folders."));
    EXPECT_FALSE(has("Modified"));
}

// The tabs

TEST_F(AppsAndFilesViewTest, UnusedApplicationsAreListedWithANote) {
    show(smallReport());
    EXPECT_TRUE(has("Tidewright never removes apps. To uninstall one, quit it and drag it to the "
                    "Trash, or use its own uninstaller. Check the developer's instructions for "
                    "apps that install helpers."));
    EXPECT_THAT(rows(), ElementsAre("Atlas, last year, 1 GB", "Blender, 3 months ago, 2 GB"));
    for (const char* const heading : {"Name", "Last opened", "Size"})
        EXPECT_TRUE(has(heading)) << heading;
    EXPECT_TRUE(has("Show"));
    const auto* segment = QmlScene::accessible(m_scene.named("Unused Apps"));
    EXPECT_TRUE(segment->state().checked);
}

TEST_F(AppsAndFilesViewTest, AllApplicationsIncludeThoseUsedToday) {
    show(smallReport());
    EXPECT_EQ(rows().size(), 2U);
    QQuickItem* const toggle = shown(QAccessible::CheckBox).at(0);
    m_scene.click(toggle);
    EXPECT_TRUE(apps().showAll());
    EXPECT_TRUE(
        become({"Editor, now, 3 GB", "Atlas, last year, 1 GB", "Blender, 3 months ago, 2 GB"}));
    const std::vector<std::string> unused{"Atlas, last year, 1 GB", "Blender, 3 months ago, 2 GB"};
    m_scene.act(toggle, QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(become(unused));
    toggle->forceActiveFocus(Qt::TabFocusReason);
    m_scene.press(Qt::Key_Space);
    EXPECT_TRUE(apps().showAll());
    click("Show All Apps"); // the words beside it
    EXPECT_TRUE(become(unused));
}

TEST_F(AppsAndFilesViewTest, AnApplicationThatWasNeverOpenedSaysSo) {
    AppUsage added = app("Added", std::nullopt);
    added.addedOn = now - day * 200;
    ScanReport report;
    report.apps = {added, app("Unknown", std::nullopt)};
    show(report);
    EXPECT_THAT(rows(), ElementsAre("Added, Never (added 6 months ago), 1 GB"));
    click("Show All Apps");
    EXPECT_TRUE(become({"Added, Never (added 6 months ago), 1 GB", "Unknown, Never, 1 GB"}));
}

TEST_F(AppsAndFilesViewTest, LargeFilesAreListedWithANote) {
    show(smallReport());
    m_scene.pressByReader(m_scene.named("Large Files"));
    EXPECT_TRUE(has("Files over 1 GB in your folders. Review them yourself; Tidewright doesn't "
                    "clean personal files on its own."));
    EXPECT_THAT(rows(), ElementsAre("film.mov, 2 days ago, 5 GB", "disk.img, 4 weeks ago, 9 GB"));
    for (const char* const heading : {"File", "Modified", "Size"})
        EXPECT_TRUE(has(heading)) << heading;
    EXPECT_FALSE(has("Show All Apps"));
    EXPECT_TRUE(m_scene.hasText(m_state.home.path("Movies").path().c_str()));
    click("Unused Apps");
    EXPECT_EQ(rows().front(), "Atlas, last year, 1 GB");
}

TEST_F(AppsAndFilesViewTest, AFileWithoutADateIsNamedWithoutOne) {
    ScanReport report = smallReport();
    report.largeFiles.front().modified.reset();
    show(report);
    click("Large Files");
    EXPECT_EQ(rows().front(), "film.mov, 5 GB");
}

// Revealing

TEST_F(AppsAndFilesViewTest, ARowIsRevealedInEveryWay) {
    show(smallReport());
    const auto expectRevealed = [&](const char* how) {
        EXPECT_THAT(m_revealed, ElementsAre("Blender.app")) << how;
        m_revealed.clear();
    };
    m_scene.click(row(1));
    EXPECT_THAT(m_revealed, IsEmpty());
    EXPECT_EQ(apps().focusedRow(), 1);
    m_scene.doubleClick(row(1));
    expectRevealed("double click");
    m_scene.press(Qt::Key_Return);
    expectRevealed("return");
    m_scene.pressByReader(row(1));
    expectRevealed("reader");
    const auto choose = [&] {
        EXPECT_THAT(names(QAccessible::MenuItem), ElementsAre("Reveal in Finder"));
        click("Reveal in Finder");
        EXPECT_TRUE(QmlScene::wait([&] { return names(QAccessible::MenuItem).empty(); }));
    };
    apps().setFocusedRow(0);
    m_scene.click(row(1), Qt::RightButton);
    EXPECT_EQ(apps().focusedRow(), 1);
    choose();
    expectRevealed("menu");
    m_scene.press(Qt::Key_Menu);
    choose();
    expectRevealed("menu key");
    m_scene.press(Qt::Key_F10, Qt::ShiftModifier);
    m_scene.press(Qt::Key_Down);
    m_scene.press(Qt::Key_Return);
    expectRevealed("shift with F10");
    click("Large Files");
    m_scene.doubleClick(row(0));
    EXPECT_THAT(m_revealed, ElementsAre("film.mov"));
}

TEST_F(AppsAndFilesViewTest, AHeldReturnKeyRevealsOnce) {
    show(smallReport());
    m_scene.click(row(0));
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
    m_scene.press(Qt::Key_Return);
    QCoreApplication::sendEvent(&m_scene.window(), &held);
    EXPECT_THAT(m_revealed, ElementsAre("Atlas.app"));
}

TEST_F(AppsAndFilesViewTest, WithoutAFocusedRowNothingIsRevealed) {
    show(smallReport());
    m_scene.item("view")->forceActiveFocus();
    m_scene.press(Qt::Key_Return);
    m_scene.press(Qt::Key_Menu);
    EXPECT_THAT(m_revealed, IsEmpty());
    EXPECT_THAT(names(QAccessible::MenuItem), IsEmpty());
}

// The keyboard

TEST_F(AppsAndFilesViewTest, KeysMoveTheFocus) {
    ScanReport report = smallReport();
    report.apps.push_back(app("Canvas", 500));
    report.apps.push_back(app("Blueprint", 500));
    show(report);
    m_scene.item("view")->forceActiveFocus();
    const std::vector<std::pair<Qt::Key, int>> steps{
        {Qt::Key_Down, 0}, {Qt::Key_Down, 1},     {Qt::Key_Up, 0},
        {Qt::Key_End, 3},  {Qt::Key_Down, 3},     {Qt::Key_Home, 0},
        {Qt::Key_Up, 0},   {Qt::Key_PageDown, 3}, {Qt::Key_PageUp, 0}};
    for (const auto& [key, expected] : steps) {
        m_scene.press(key);
        EXPECT_EQ(apps().focusedRow(), expected);
        QQuickItem* const focused = row(static_cast<std::size_t>(expected));
        EXPECT_TRUE(focused->hasActiveFocus());
        EXPECT_TRUE(QmlScene::accessible(focused)->state().selected);
    }
    m_scene.type("bl");
    EXPECT_EQ(apps().focusedRow(), 1);
    m_scene.type("uep");
    EXPECT_EQ(apps().focusedRow(), 3);
}

TEST_F(AppsAndFilesViewTest, TabGoesThroughEverything) {
    show(smallReport());
    m_scene.named("Show")->forceActiveFocus(Qt::TabFocusReason);
    std::vector<std::string> reached;
    for (int i = 0; i < 5; ++i) {
        m_scene.press(Qt::Key_Tab);
        auto* const known = QmlScene::accessible(m_scene.window().activeFocusItem());
        reached.push_back(known ? known->text(QAccessible::Name).toStdString() : "");
    }
    EXPECT_THAT(reached,
                ElementsAre("Show All Apps", "Name", "Last opened", "Size", "Unused Apps"));
    m_scene.press(Qt::Key_Down);
    EXPECT_EQ(apps().focusedRow(), 0);
}

// Columns

TEST_F(AppsAndFilesViewTest, HeadingsSortUpDownAndNotAtAll) {
    show(smallReport());
    apps().setShowAll(true);
    ASSERT_TRUE(QmlScene::wait([this] { return rows().size() == 3; }));
    const std::vector<std::string> report{"Editor", "Atlas", "Blender"};
    const auto order = [&] {
        std::vector<std::string> names;
        for (const std::string& name : rows())
            names.push_back(name.substr(0, name.find(',')));
        return names;
    };
    struct Case {
        const char* heading;
        std::vector<std::string> ascending;
        std::vector<std::string> descending;
    };
    for (const auto& [heading, ascending, descending] :
         {Case{"Name", {"Atlas", "Blender", "Editor"}, {"Editor", "Blender", "Atlas"}},
          Case{"Last opened", {"Atlas", "Blender", "Editor"}, {"Editor", "Blender", "Atlas"}},
          Case{"Size", {"Atlas", "Blender", "Editor"}, {"Editor", "Blender", "Atlas"}}}) {
        EXPECT_EQ(order(), report);
        click(heading);
        EXPECT_EQ(order(), ascending) << heading;
        EXPECT_EQ(QmlScene::accessible(m_scene.named(heading))
                      ->text(QAccessible::Description)
                      .toStdString(),
                  "Sorted ascending");
        m_scene.pressByReader(m_scene.named(heading));
        EXPECT_EQ(order(), descending) << heading;
        m_scene.named(heading)->forceActiveFocus(Qt::TabFocusReason);
        m_scene.press(Qt::Key_Return);
    }
    EXPECT_EQ(order(), report);
    click("Size"); // each tab has its own order
    click("Large Files");
    EXPECT_EQ(rows().front(), "film.mov, 2 days ago, 5 GB");
}

TEST_F(AppsAndFilesViewTest, ColumnsKeepTheirLimits) {
    show(smallReport());
    struct Case {
        const char* heading;
        double ideal;
        double least;
    };
    const auto drag = [&](QQuickItem* heading, int by) {
        // The border is in the middle of the gap before the heading.
        const QPoint from = heading->mapToScene({-8, heading->height() / 2}).toPoint();
        QTest::mousePress(&m_scene.window(), Qt::LeftButton, {}, from);
        QTest::mouseMove(&m_scene.window(), from + QPoint(by / 2, 0));
        QTest::mouseMove(&m_scene.window(), from + QPoint(by, 0));
        QTest::mouseRelease(&m_scene.window(), Qt::LeftButton, {}, from + QPoint(by, 0));
    };
    for (const auto& [name, ideal, least] : {Case{"Last opened", 200, 140}, Case{"Size", 90, 70}}) {
        QQuickItem* const heading = m_scene.named(name);
        EXPECT_EQ(heading->width(), ideal) << name;
        drag(heading, -10);
        EXPECT_EQ(heading->width(), ideal + 10) << name;
        drag(heading, 100);
        EXPECT_EQ(heading->width(), least) << name;
        heading->forceActiveFocus(Qt::TabFocusReason);
        m_scene.press(Qt::Key_Left);
        EXPECT_EQ(heading->width(), least + 5) << name;
    }
    m_scene.named("Last opened")->forceActiveFocus(Qt::TabFocusReason);
    for (int i = 0; i < 150; ++i)
        m_scene.press(Qt::Key_Left);
    EXPECT_EQ(m_scene.named("Name")->width(), 180); // the name keeps its room
    EXPECT_EQ(apps().sortColumn(), -1);             // none of it was a click
    for (int width = 480; width <= 960; width += 40) {
        resize({width, 600});
        EXPECT_GE(m_scene.named("Name")->width(), 180) << width;
        EXPECT_GE(m_scene.named("Last opened")->width(), 140) << width;
        EXPECT_GE(m_scene.named("Size")->width(), 70) << width;
        const QQuickItem* const last = m_scene.named("Size");
        EXPECT_LE(last->x() + last->width(), width) << width;
    }
}

// Changes and many rows

TEST_F(AppsAndFilesViewTest, TheFocusFollowsItsApplication) {
    show(smallReport());
    m_scene.click(row(1));
    ScanReport next = smallReport();
    next.apps.insert(next.apps.begin(), app("Ancient", 900));
    m_state.scanned(next);
    EXPECT_TRUE(QmlScene::wait([&] { return rows().size() == 3; }));
    EXPECT_EQ(apps().focusedRow(), 2);
    EXPECT_TRUE(row(2)->hasActiveFocus());
    m_state.scanned(ScanReport());
    EXPECT_TRUE(QmlScene::wait([&] { return has("Every app was opened in the last 90 days."); }));
    m_state.scanned(smallReport());
    EXPECT_TRUE(QmlScene::wait([&] { return rows().size() == 2; }));
    EXPECT_EQ(apps().focusedRow(), -1);
}

TEST_F(AppsAndFilesViewTest, TenThousandRowsAreScrolledWithFewDelegates) {
    ScanReport report;
    const URL folder = m_state.home.folder("Movies");
    for (int i = 0; i < 10'000; ++i)
        report.largeFiles.push_back({.url = folder.appending(fmt::format("Film {}", i)),
                                     .sizeBytes = 90'000'000'000 - i,
                                     .modified = now - day * (i % 999)});
    show(report);
    click("Large Files");
    m_scene.item("view")->forceActiveFocus();
    QQuickItem* const list = shown(QAccessible::List).front();
    for (int i = 0; i < 40; ++i) {
        m_scene.press(Qt::Key_PageDown);
        m_scene.scroll(list, i % 2 == 0 ? -20 : 5);
        EXPECT_LT(delegates(), 60);
    }
    m_scene.press(Qt::Key_End);
    EXPECT_EQ(files().focusedRow(), 9'999);
    click("File");
    EXPECT_EQ(files().focusedRow(), 9'999); // "Film 9999"
    click("Size");
    EXPECT_EQ(files().focusedRow(), 0);
    EXPECT_TRUE(QmlScene::wait([&] { return row(0)->property("focused").toBool(); }));
    EXPECT_LT(delegates(), 60);
    // Rows that wait to be used again do nothing.
    int waiting = 0;
    for (QQuickItem* each : row(0)->parentItem()->childItems()) {
        if (each->isVisible() || !each->property("folder").isValid())
            continue;
        ++waiting;
        QmlScene::accessible(each)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
    }
    EXPECT_GT(waiting, 0);
    EXPECT_EQ(files().focusedRow(), 0);
}

TEST_F(AppsAndFilesViewTest, EverySizeAndModeIsDrawnWithoutAWord) {
    ScanReport report = smallReport();
    report.apps.front().name = std::string(300, 'W');
    report.largeFiles.front().url = URL("/" + std::string(200, 'x') + "/" + std::string(200, 'y'));
    show(report);
    click("Show All Apps");
    for (const char* const tab : {"Large Files", "Unused Apps"}) {
        click(tab);
        for (const QSize size : {small, usual, large})
            for (const bool isDark : {false, true}) {
                resize(size);
                m_scene.theme().setSystemLook({isDark, {}, true});
                QmlScene::settle();
                EXPECT_FALSE(m_scene.picture().isNull());
                const QQuickItem* const list = shown(QAccessible::List).back(); // below the map
                EXPECT_EQ(list->width(), size.width());
                EXPECT_EQ(list->mapToScene({0, list->height()}).y(), size.height());
            }
    }
}

TEST_F(AppsAndFilesViewTest, LargePageShowsAMapAboveTheTableWithTheSameFocus) {
    show(smallReport(), large);
    EXPECT_THAT(names(QAccessible::List), ElementsAre("Map of Unused Apps", "Unused Apps"));
    QQuickItem* const map = m_scene.named("Map of Unused Apps");
    // The larger of two stands on the left.
    m_scene.clickAt(map->mapToScene({map->width() * 0.1, map->height() / 2}).toPoint());
    QmlScene::settle();
    ASSERT_GE(apps().focusedRow(), 0);
    EXPECT_EQ(apps().index(apps().focusedRow(), 0).data(roleOf("name")).toString(),
              QStringLiteral("Blender"));
    m_scene.press(Qt::Key_Right);
    EXPECT_EQ(apps().index(apps().focusedRow(), 0).data(roleOf("name")).toString(),
              QStringLiteral("Atlas"));
    m_scene.press(Qt::Key_Return);
    EXPECT_THAT(m_revealed, ElementsAre("Atlas.app"));
    click("Large Files");
    EXPECT_THAT(names(QAccessible::List), ElementsAre("Map of Large Files", "Large Files"));
}

TEST_F(AppsAndFilesViewTest, SmallPageShowsTheMapInPlaceOfTheTableWhenAskedFor) {
    show(smallReport(), small);
    EXPECT_THAT(names(QAccessible::List), ElementsAre("Unused Apps"));
    m_models.showMap(true);
    QmlScene::settle();
    EXPECT_THAT(names(QAccessible::List), ElementsAre("Map of Unused Apps"));
    m_models.showMap(false);
    QmlScene::settle();
    EXPECT_THAT(names(QAccessible::List), ElementsAre("Unused Apps"));
}

} // namespace
} // namespace tidewright::test
