// The real screen in a window that no one sees, on a model whose scans find what the test has
// prepared.
#include "app/screens/AppWindows.h"
#include "tests/support/app/StateTesting.h"
#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <QTest>
#include <fmt/format.h>
#include <gmock/gmock.h>

namespace tidewright::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

/// The screen below a bar with its tools.
constexpr auto sceneText = R"(
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Rectangle {
    required property ScreenModels models

    color: Theme.window

    CategoryView {
        id: view

        objectName: "view"
        y: 46
        width: parent.width
        height: parent.height - y
        focus: true
        models: parent.models
        category: "android"
    }
    Loader {
        objectName: "tools"
        x: parent.width - width - 24
        y: 8
        sourceComponent: view.tools
    }
}
)";

constexpr QSize wide{960, 700};
constexpr QSize narrow{640, 600};

ScanItem item(const std::string& title, const std::string& group, Int64 sizeBytes) {
    ScanItem made = testItem(Category::android, title, sizeBytes);
    made.group = group;
    made.title = title;
    return made;
}

/// Four rows in two groups, each decision but one.
ScanReport smallReport() {
    ScanReport report;
    report.items = {
        item("Pixel", "Emulators", 5'000'000'000), item("Tablet", "Emulators", 9'000'000'000),
        item("NDK", "NDK versions", 2'700'000'000), item("Ninja", "NDK versions", 1'000'000'000)};
    report.items[1].decision = Decision::keep;
    report.items[1].reason = "Emulator Tablet is running.";
    report.items[1].inUseBy = "Emulator Tablet";
    report.items[2].version = "25.1.8937393";
    report.items[2].reason = "No project uses it.";
    report.items[3].decision = Decision::ask;
    return report;
}

class CategoryViewTest : public testing::Test {
protected:
    CategoryViewTest() {
        qputenv("TIDEWRIGHT_REDUCE_MOTION", "1");
        QAccessible::setActive(true);
        registerStateTypes();
    }
    ~CategoryViewTest() override { qunsetenv("TIDEWRIGHT_REDUCE_MOTION"); }

    void show(const ScanReport& report, QSize size = wide) {
        m_state.scanned(report);
        show(size);
    }

    void show(QSize size = wide) {
        ASSERT_TRUE(m_scene.load(sceneText, size,
                                 {{QStringLiteral("models"), QVariant::fromValue(&m_models)}}));
    }

    ItemListModel& items() {
        return *m_scene.item("view")->property("items").value<ItemListModel*>();
    }

    bool isSelected(int row) { return items().index(row, 0).data(roleOf("selected")).toBool(); }
    int roleOf(const char* name) { return items().roleNames().key(name); }

    /// The titles of the rows in the model's order.
    std::vector<std::string> titles() {
        std::vector<std::string> titles;
        for (int row = 0; row < items().count(); ++row)
            titles.push_back(items().index(row, 0).data(roleOf("title")).toString().toStdString());
        return titles;
    }

    /// What is called so by a reader and is of this role, from top to bottom.
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

    /// The row that shows the item of this title.
    QQuickItem* rowOf(const std::string& title) {
        for (QQuickItem* each : shown(QAccessible::ListItem))
            if (each->property("title").toString().toStdString() == title)
                return each;
        ADD_FAILURE() << "No row of " << title;
        return nullptr;
    }

    TestState m_state{[this](AppEnvironment& environment) {
        environment.reveal = [this](const std::vector<URL>& urls) {
            for (const URL& url : urls)
                m_revealed.push_back(url.path());
        };
    }};
    std::vector<std::string> m_revealed;
    ScreenModels m_models{*m_state.model};
    QmlScene m_scene;
};

// --- Rows

TEST_F(CategoryViewTest, RowsStandUnderTheHeadingsOfTheirGroups) {
    show(smallReport());
    EXPECT_THAT(names(QAccessible::Heading),
                ElementsAre("Emulators", "NDK versions", "No selection"));
    EXPECT_THAT(names(QAccessible::ListItem),
                ElementsAre("Pixel, 5 GB, Recommended. Nothing needs it.",
                            "Tablet, 9 GB, Kept. Emulator Tablet is running. In use by Emulator "
                            "Tablet",
                            "NDK 25.1.8937393, 2.7 GB, Recommended. No project uses it.",
                            "Ninja, 1 GB, Optional. Nothing needs it."));
    const std::vector<QQuickItem*> lists = shown(QAccessible::List);
    ASSERT_EQ(lists.size(), 1U);
    EXPECT_TRUE(m_scene.hasNamed("Android"));
}

TEST_F(CategoryViewTest, HeaderShowsTheFigures) {
    show(smallReport());
    EXPECT_TRUE(m_scene.hasNamed("SDK packages, emulators, Gradle and Android Studio leftovers."));
    EXPECT_TRUE(m_scene.hasNamed("Selected 7.7 GB"));
    EXPECT_TRUE(m_scene.hasNamed("Optional 1 GB"));
    EXPECT_TRUE(m_scene.hasNamed("Kept 9 GB"));
}

TEST_F(CategoryViewTest, ClickFocusesTheRowAndShowsItsDetails) {
    show(smallReport());
    EXPECT_TRUE(m_scene.hasNamed("No selection"));
    m_scene.click(rowOf("NDK"));
    EXPECT_EQ(items().focusedRow(), 2);
    EXPECT_FALSE(m_scene.hasNamed("No selection"));
    EXPECT_TRUE(m_scene.hasNamed("Low risk") || m_scene.hasNamed("Safe"));
    const auto state = QmlScene::accessible(rowOf("NDK"))->state();
    EXPECT_TRUE(state.selected && state.focused);
    EXPECT_FALSE(QmlScene::accessible(rowOf("Pixel"))->state().selected);
    m_scene.doubleClick(rowOf("NDK"));
    EXPECT_EQ(items().focusedRow(), 2);
    EXPECT_TRUE(isSelected(2));
}

TEST_F(CategoryViewTest, ReaderFocusesARow) {
    show(smallReport());
    m_scene.pressByReader(rowOf("Ninja"));
    EXPECT_EQ(items().focusedRow(), 3);
}

// --- Ticks

TEST_F(CategoryViewTest, BoxIsTickedByMouseAndReader) {
    show(smallReport());
    m_scene.click(m_scene.named("Clean Ninja"));
    EXPECT_TRUE(isSelected(3));
    EXPECT_EQ(items().focusedRow(), -1);
    m_scene.act(m_scene.named("Clean Ninja"), QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(isSelected(3));
    m_scene.pressByReader(m_scene.named("Clean Pixel"));
    EXPECT_FALSE(isSelected(0));
    EXPECT_TRUE(m_scene.hasNamed("Selected 2.7 GB"));
}

TEST_F(CategoryViewTest, SpaceTicksTheFocusedRow) {
    show(smallReport());
    m_scene.click(rowOf("Ninja"));
    m_scene.press(Qt::Key_Space);
    EXPECT_TRUE(isSelected(3));
    m_scene.press(Qt::Key_Space);
    EXPECT_FALSE(isSelected(3));
    m_scene.click(m_scene.named("Clean Pixel")); // the keyboard stays with the row
    m_scene.press(Qt::Key_Space);
    EXPECT_TRUE(isSelected(3));
}

TEST_F(CategoryViewTest, ItemThatIsKeptOrCleanedByHandCannotBeTicked) {
    ScanReport report = smallReport();
    report.items[0].decision = Decision::ask;
    report.items[0].method = CleanMethod::manual("Open the program and empty its cache.");
    show(report);
    for (const auto& [title, row] : {std::pair{"Pixel", 0}, {"Tablet", 1}}) {
        QQuickItem* box = m_scene.named(fmt::format("Clean {}", title).c_str());
        ASSERT_NE(box, nullptr);
        EXPECT_FALSE(box->isEnabled()) << title;
        m_scene.pressByReader(box);
        EXPECT_FALSE(isSelected(row)) << title;
        m_scene.click(rowOf(title), Qt::RightButton);
        EXPECT_THAT(names(QAccessible::MenuItem), ElementsAre("Reveal in Finder")) << title;
        m_scene.press(Qt::Key_Escape);
        m_scene.press(Qt::Key_Space);
        EXPECT_FALSE(isSelected(row)) << title;
    }
    m_scene.click(rowOf("Pixel"));
    EXPECT_TRUE(m_scene.hasNamed("Manual\nOpen the program and empty its cache."));
}

// --- The keyboard

TEST_F(CategoryViewTest, KeysMoveTheFocus) {
    show(smallReport());
    m_scene.item("view")->forceActiveFocus();
    const std::vector<std::pair<Qt::Key, int>> steps{
        {Qt::Key_Down, 0},     {Qt::Key_Down, 1},  {Qt::Key_Down, 2}, {Qt::Key_Up, 1},
        {Qt::Key_End, 3},      {Qt::Key_Down, 3},  {Qt::Key_Home, 0}, {Qt::Key_Up, 0},
        {Qt::Key_PageDown, 3}, {Qt::Key_PageUp, 0}};
    for (const auto& [key, row] : steps) {
        m_scene.press(key);
        EXPECT_EQ(items().focusedRow(), row);
        const auto rows = shown(QAccessible::ListItem);
        EXPECT_TRUE(rows[static_cast<std::size_t>(row)]->hasActiveFocus());
    }
}

TEST_F(CategoryViewTest, TypingFindsARow) {
    show(smallReport());
    m_scene.item("view")->forceActiveFocus();
    m_scene.type("n");
    EXPECT_EQ(items().focusedRow(), 2);
    m_scene.type("i");
    EXPECT_EQ(items().focusedRow(), 3);
    m_scene.type("x"); // nothing begins so
    EXPECT_EQ(items().focusedRow(), 3);
}

TEST_F(CategoryViewTest, SpaceIsPartOfWhatIsTyped) {
    ScanReport report = smallReport();
    report.items[3].title = "NDK side";
    show(report);
    m_scene.item("view")->forceActiveFocus();
    m_scene.type("ndk ");
    EXPECT_EQ(items().focusedRow(), 3);
    EXPECT_FALSE(isSelected(3));
    const QQuickItem* table = shown(QAccessible::List).front()->parentItem();
    EXPECT_EQ(table->property("typed").toString(), QStringLiteral("ndk "));
    EXPECT_TRUE(QmlScene::wait([&] { return table->property("typed").toString().isEmpty(); }));
    m_scene.press(Qt::Key_Space);
    EXPECT_TRUE(isSelected(3));
}

TEST_F(CategoryViewTest, ReturnShowsAndHidesTheInspector) {
    show(smallReport());
    m_scene.click(rowOf("NDK"));
    EXPECT_TRUE(m_scene.hasNamed("Details"));
    m_scene.press(Qt::Key_Return);
    EXPECT_FALSE(m_scene.hasNamed("Details"));
    m_scene.press(Qt::Key_Return);
    EXPECT_TRUE(m_scene.hasNamed("Details"));
}

// --- Columns

TEST_F(CategoryViewTest, HeadingSortsUpDownAndNotAtAll) {
    show(smallReport());
    const auto expectOrders = [&](const std::function<void()>& press, const std::string& how) {
        press();
        EXPECT_THAT(titles(), ElementsAre("Ninja", "NDK", "Pixel", "Tablet")) << how;
        EXPECT_THAT(names(QAccessible::Heading), ElementsAre("No selection")) << how;
        EXPECT_EQ(QmlScene::accessible(m_scene.named("Size"))
                      ->text(QAccessible::Description)
                      .toStdString(),
                  "Sorted ascending");
        press();
        EXPECT_THAT(titles(), ElementsAre("Tablet", "Pixel", "NDK", "Ninja")) << how;
        press();
        EXPECT_THAT(titles(), ElementsAre("Pixel", "Tablet", "NDK", "Ninja")) << how;
        EXPECT_THAT(names(QAccessible::Heading),
                    ElementsAre("Emulators", "NDK versions", "No selection"))
            << how;
    };
    expectOrders([&] { m_scene.click(m_scene.named("Size")); }, "mouse");
    expectOrders([&] { m_scene.pressByReader(m_scene.named("Size")); }, "reader");
    expectOrders(
        [&] {
            m_scene.named("Size")->forceActiveFocus(Qt::TabFocusReason);
            m_scene.press(Qt::Key_Return);
        },
        "return");
    expectOrders([&] { m_scene.press(Qt::Key_Space); }, "space");
}

TEST_F(CategoryViewTest, ColumnsKeepTheirLimits) {
    show(smallReport());
    struct Case {
        const char* heading;
        double usual;
        double least;
        double most;
    };
    const auto drag = [&](QQuickItem* heading, int by) {
        // The border is in the middle of the gap before the heading.
        const QPoint from = heading->mapToScene({-5, heading->height() / 2}).toPoint();
        QTest::mousePress(&m_scene.window(), Qt::LeftButton, {}, from);
        QTest::mouseMove(&m_scene.window(), from + QPoint(by / 2, 0));
        QTest::mouseMove(&m_scene.window(), from + QPoint(by, 0));
        QTest::mouseRelease(&m_scene.window(), Qt::LeftButton, {}, from + QPoint(by, 0));
    };
    for (const auto& [name, usual, least, most] :
         {Case{"Size", 85, 70, 110}, Case{"Status", 115, 100, 130}}) {
        QQuickItem* heading = m_scene.named(name);
        EXPECT_EQ(heading->width(), usual) << name;
        drag(heading, -10);
        EXPECT_EQ(heading->width(), usual + 10) << name;
        drag(heading, -200);
        EXPECT_EQ(heading->width(), most) << name;
        drag(heading, 200);
        EXPECT_EQ(heading->width(), least) << name;
        heading->forceActiveFocus(Qt::TabFocusReason);
        m_scene.press(Qt::Key_Left);
        EXPECT_EQ(heading->width(), least + 5) << name;
        m_scene.press(Qt::Key_Right);
        m_scene.press(Qt::Key_Right);
        EXPECT_EQ(heading->width(), least) << name;
    }
    EXPECT_EQ(items().sortColumn(), -1); // none of it was a click
    for (int width = 620; width <= 960; width += 20) {
        m_scene.window().resize(width, 600);
        m_scene.root().setProperty("width", width);
        EXPECT_GE(m_scene.named("Item")->width(), 180) << width;
        const QQuickItem* badge = m_scene.named("Status");
        const QQuickItem* list = shown(QAccessible::List).front();
        EXPECT_LE(badge->x() + badge->width(), list->width()) << width;
    }
}

// --- Filter and search

TEST_F(CategoryViewTest, PickerFilters) {
    show(smallReport());
    m_scene.pressByReader(m_scene.named("Can Clean"));
    EXPECT_THAT(titles(), ElementsAre("Pixel", "NDK", "Ninja"));
    m_scene.click(m_scene.named("Can Clean")); // again does nothing
    QQuickItem* pickedKept = nullptr;
    for (QQuickItem* each : shown(QAccessible::RadioButton))
        if (QmlScene::accessible(each)->text(QAccessible::Name) == QLatin1String("Kept"))
            pickedKept = each;
    m_scene.click(pickedKept);
    EXPECT_THAT(titles(), ElementsAre("Tablet"));
    m_scene.click(m_scene.named("All"));
    EXPECT_EQ(titles().size(), 4U);
}

TEST_F(CategoryViewTest, SearchFindsAWordOfTheReason) {
    show(smallReport());
    QMetaObject::invokeMethod(m_scene.item("view"), "focusFilter");
    EXPECT_TRUE(m_scene.named("Filter items")->hasActiveFocus());
    m_scene.type("PROJECT");
    EXPECT_THAT(titles(), ElementsAre("NDK"));
    m_scene.press(Qt::Key_Down); // into the table
    m_scene.press(Qt::Key_Down);
    EXPECT_EQ(items().focusedRow(), 0);
    m_scene.press(Qt::Key_Escape);
    EXPECT_EQ(titles().size(), 4U);
    EXPECT_EQ(items().focusedRow(), 2); // it follows its item
    EXPECT_EQ(m_scene.named("Filter items")->property("text").toString(), QString());
}

TEST_F(CategoryViewTest, NothingThatPassesIsSaidInPlaceOfTheRows) {
    show(smallReport());
    items().setSearch(QStringLiteral("xyz"));
    QmlScene::settle();
    EXPECT_TRUE(m_scene.hasNamed("No items match this filter."));
    EXPECT_TRUE(m_scene.hasNamed("Selected 7.7 GB"));
    EXPECT_THAT(shown(QAccessible::ListItem), IsEmpty());
    items().setSearch({});
    QmlScene::settle();
    EXPECT_FALSE(m_scene.hasNamed("No items match this filter."));
    EXPECT_EQ(shown(QAccessible::ListItem).size(), 4U);
}

// --- Nothing to show

TEST_F(CategoryViewTest, SaysThatNothingWasScanned) {
    show();
    EXPECT_TRUE(m_scene.hasNamed("Not scanned yet"));
    EXPECT_TRUE(m_scene.hasNamed("Scan your Mac to see Android items."));
    EXPECT_FALSE(m_scene.hasNamed("Kept 0 bytes") || m_scene.hasNamed("Item"));
    EXPECT_FALSE(m_scene.hasNamed("Details"));
    m_state.prepared = std::make_shared<const ScanReport>(smallReport());
    m_scene.pressByReader(m_scene.named("Scan My Mac"));
    EXPECT_TRUE(QmlScene::wait([&] { return m_scene.hasNamed("Clean NDK"); }));
    EXPECT_FALSE(m_scene.hasNamed("Not scanned yet"));
}

TEST_F(CategoryViewTest, SaysThatNothingWasFound) {
    show(ScanReport());
    EXPECT_TRUE(m_scene.hasNamed("Nothing here"));
    EXPECT_TRUE(m_scene.hasNamed("No Android items were found."));
    EXPECT_TRUE(m_scene.hasNamed("SDK packages, emulators, Gradle and Android Studio leftovers."));
    EXPECT_FALSE(m_scene.hasNamed("Item"));
}

// --- The inspector

TEST_F(CategoryViewTest, InspectorSaysEverything) {
    ScanReport report = smallReport();
    ScanItem& item = report.items[1];
    item.version = "2.0";
    item.urls = {m_state.home.file("Tablet")};
    item.lastUsed = currentDate() - std::chrono::hours(24 * 3);
    item.method = CleanMethod::command({"avdmanager", {"delete", "avd"}, {}});
    show(report);
    m_scene.click(rowOf("Tablet"));
    for (const char* each :
         {"Tablet", "2.0", "9 GB", "Kept", "Safe", "In use by Emulator Tablet", "Why",
          "Emulator Tablet is running.", "What it is", "A test's item.", "After cleaning",
          "It is made again.", "How it's cleaned", "avdmanager delete avd", "Last used",
          "Locations (1)", item.urls.front().path().c_str()})
        EXPECT_TRUE(m_scene.hasNamed(each)) << each;
    m_scene.pressByReader(m_scene.named("Reveal in Finder"));
    EXPECT_THAT(m_revealed, ElementsAre(item.urls.front().path()));
}

TEST_F(CategoryViewTest, InspectorShowsSixOfSevenPaths) {
    ScanReport report = smallReport();
    report.items[0].urls.clear();
    for (int i = 1; i <= 7; ++i)
        report.items[0].urls.emplace_back(fmt::format("/home/test/{}", i));
    show(report);
    m_scene.click(rowOf("Pixel"));
    EXPECT_TRUE(m_scene.hasNamed("Locations (7)"));
    EXPECT_TRUE(m_scene.hasNamed("/home/test/6"));
    EXPECT_FALSE(m_scene.hasNamed("/home/test/7"));
    EXPECT_TRUE(m_scene.hasNamed("and 1 more"));
}

TEST_F(CategoryViewTest, InspectorFallsBackWhenItsItemIsNoLongerShown) {
    show(smallReport());
    m_scene.click(rowOf("NDK"));
    items().setFilter(ItemListModel::Filter::kept);
    QmlScene::settle();
    EXPECT_TRUE(m_scene.hasNamed("No selection"));
    items().setFilter(ItemListModel::Filter::all);
    QmlScene::settle();
    EXPECT_TRUE(m_scene.hasNamed("Locations (1)"));
    ScanReport cleaned = smallReport();
    cleaned.items.erase(cleaned.items.begin() + 2);
    m_state.scanned(cleaned);
    EXPECT_TRUE(QmlScene::wait([&] { return names(QAccessible::ListItem).size() == 3; }));
    EXPECT_TRUE(m_scene.hasNamed("No selection"));
    m_state.scanned(smallReport()); // the row that has gone may be used again
    EXPECT_TRUE(QmlScene::wait([&] { return names(QAccessible::ListItem).size() == 4; }));
    for (QQuickItem* row : shown(QAccessible::ListItem))
        EXPECT_EQ(row->opacity(), 1);
}

TEST_F(CategoryViewTest, RowsThatGoMoveTheOthersToTheirPlaces) {
    qunsetenv("TIDEWRIGHT_REDUCE_MOTION");
    show(smallReport());
    m_scene.theme().setSystemLook({.isDark = false, .accent = {}, .reducesMotion = false});
    const auto placeOf = [&](const std::string& title) { return rowOf(title)->mapToScene({}).y(); };
    const double before = placeOf("Ninja");
    ScanReport cleaned = smallReport();
    cleaned.items.erase(cleaned.items.begin());
    m_state.scanned(cleaned);
    EXPECT_TRUE(QmlScene::wait([&] {
        const double now = placeOf("Ninja");
        return names(QAccessible::ListItem).size() == 3 && now < before;
    }));
    m_state.scanned(smallReport()); // the row that has gone may be used again
    EXPECT_TRUE(QmlScene::wait([&] { return names(QAccessible::ListItem).size() == 4; }));
    for (QQuickItem* row : shown(QAccessible::ListItem))
        EXPECT_EQ(row->opacity(), 1);
    EXPECT_TRUE(QmlScene::wait([&] { return placeOf("Ninja") == before; }));
}

TEST_F(CategoryViewTest, InspectorTextIsCopiedByKeyboard) {
    show(smallReport());
    m_scene.click(rowOf("NDK"));
    QQuickItem* path = m_scene.named("/home/test/NDK");
    for (int i = 0; i < 20 && !path->hasActiveFocus(); ++i)
        m_scene.press(Qt::Key_Tab);
    ASSERT_TRUE(path->hasActiveFocus());
    m_scene.press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(path->property("selectedText").toString(), QStringLiteral("/home/test/NDK"));
    m_scene.press(Qt::Key_X);
    EXPECT_EQ(path->property("text").toString(), QStringLiteral("/home/test/NDK"));
}

TEST_F(CategoryViewTest, NarrowWindowShowsTheInspectorWhenAskedFor) {
    show(smallReport(), narrow);
    EXPECT_FALSE(m_scene.hasNamed("Details"));
    m_scene.click(m_scene.named("Inspector"));
    EXPECT_TRUE(m_scene.hasNamed("Details"));
    EXPECT_EQ(shown(QAccessible::List).front()->width(), narrow.width()); // it lies over the table
    m_scene.item("view")->forceActiveFocus();
    m_scene.press(Qt::Key_Escape);
    EXPECT_FALSE(m_scene.hasNamed("Details"));
}

// --- The menu

TEST_F(CategoryViewTest, MenuSelectsAndReveals) {
    ScanReport report = smallReport();
    report.items[0].urls = {m_state.home.file("Pixel")};
    show(report);
    const auto choose = [&](const char* entry) {
        EXPECT_THAT(
            names(QAccessible::MenuItem),
            ElementsAre("Reveal in Finder", isSelected(0) ? "Deselect" : "Select for Cleaning"));
        m_scene.click(m_scene.named(entry));
        EXPECT_TRUE(QmlScene::wait([&] { return names(QAccessible::MenuItem).empty(); }));
    };
    m_scene.click(rowOf("Pixel"), Qt::RightButton);
    EXPECT_EQ(items().focusedRow(), 0);
    choose("Deselect");
    EXPECT_FALSE(isSelected(0));
    m_scene.press(Qt::Key_Menu);
    choose("Select for Cleaning");
    EXPECT_TRUE(isSelected(0));
    m_scene.press(Qt::Key_F10, Qt::ShiftModifier);
    m_scene.press(Qt::Key_Down);
    m_scene.press(Qt::Key_Return);
    EXPECT_THAT(m_revealed, ElementsAre(report.items[0].urls.front().path()));
}

// --- Many rows

TEST_F(CategoryViewTest, TenThousandRowsAreScrolledWithFewDelegates) {
    ScanReport report;
    for (int i = 0; i < 10'000; ++i)
        report.items.push_back(
            item(fmt::format("Item {}", i), fmt::format("Group {}", i / 10), 10'000'000'000 - i));
    show(report);
    m_scene.item("view")->forceActiveFocus();
    const auto delegates = [&] {
        const auto shown = m_scene.shownItems();
        return std::ranges::count_if(
            shown, [](const QQuickItem* each) { return each->property("selectable").isValid(); });
    };
    QQuickItem* list = shown(QAccessible::List).front();
    for (int i = 0; i < 40; ++i) {
        m_scene.press(Qt::Key_PageDown);
        m_scene.scroll(list, i % 2 == 0 ? -20 : 5);
        EXPECT_LT(delegates(), 60);
    }
    m_scene.press(Qt::Key_End);
    EXPECT_EQ(items().focusedRow(), 9'999);
    EXPECT_LT(delegates(), 60);
    m_scene.click(m_scene.named("Size"));
    m_scene.press(Qt::Key_Home);
    EXPECT_EQ(titles().front(), "Item 9999");
    EXPECT_LT(delegates(), 60);
}

TEST_F(CategoryViewTest, RowsThatWaitToBeUsedAgainTickNothing) {
    ScanReport report;
    for (int i = 0; i < 200; ++i)
        report.items.push_back(item(fmt::format("Item {}", i), "Group", 1'000'000'000));
    show(report);
    m_scene.item("view")->forceActiveFocus();
    for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Home})
        m_scene.press(key);
    const QQuickItem* rows = rowOf("Item 0")->parentItem();
    int waiting = 0;
    for (QQuickItem* row : rows->childItems()) {
        if (row->isVisible() || !row->property("selectable").isValid())
            continue;
        ++waiting;
        for (QQuickItem* part : row->childItems())
            if (auto* known = QmlScene::accessible(part);
                known != nullptr && known->role() == QAccessible::CheckBox)
                known->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QmlScene::accessible(row)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
    }
    EXPECT_GT(waiting, 0);
    EXPECT_EQ(items().selected().bytes, 200'000'000'000);
    EXPECT_EQ(items().focusedRow(), 0);
}

} // namespace
} // namespace tidewright::test
