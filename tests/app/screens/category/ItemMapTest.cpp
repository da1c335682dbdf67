// The map of a category's items on the real screen, in a window that no one sees.
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
using testing::UnorderedElementsAre;

const QUrl mainFile(QStringLiteral("qrc:/qt/qml/Tidewright/Screens/shell/Main.qml"));

constexpr QSize smallest{900, 600};
constexpr QSize usual{1180, 760};
constexpr QSize roomy{1180, 900};

ScanItem item(const std::string& title, Int64 sizeBytes, Decision decision = Decision::clean) {
    ScanItem made = testItem(Category::android, title, sizeBytes);
    made.title = title;
    made.decision = decision;
    return made;
}

ScanReport smallReport() {
    ScanReport report;
    report.items = {item("Pixel", 5'000'000'000), item("Tablet", 9'000'000'000, Decision::keep),
                    item("NDK", 2'700'000'000), item("Ninja", 1'000'000'000, Decision::ask),
                    item("Empty", 0)};
    report.items[2].version = "25.1";
    report.items[2].reason = "No project uses it.";
    return report;
}

class ItemMapTest : public testing::Test {
protected:
    ItemMapTest() {
        QAccessible::setActive(true);
        registerStateTypes();
    }

    void show(const ScanReport& report, QSize size) {
        m_state.scanned(report);
        m_state.model->setDestinationName(QStringLiteral("android"));
        ASSERT_TRUE(m_scene.load(mainFile, size,
                                 {{QStringLiteral("models"), QVariant::fromValue(&m_models)}}));
        polished();
    }
    void polished() {
        (void)m_scene.picture();
        QmlScene::settle();
    }

    QQuickItem* page() { return m_scene.window().property("page").value<QQuickItem*>(); }
    ItemListModel& items() { return *page()->property("items").value<ItemListModel*>(); }
    bool isSelected(int row) {
        return items().index(row, 0).data(items().roleNames().key("selected")).toBool();
    }
    QQuickItem* map() { return m_scene.named("Map of Android"); }
    bool hasMap() { return m_scene.hasNamed("Map of Android"); }
    bool hasTable() { return m_scene.hasNamed("Android") && m_scene.hasNamed("Status"); }

    /// What a reader finds in the map.
    std::vector<std::string> said() {
        std::vector<std::string> said;
        QAccessibleInterface* list = QmlScene::accessible(map());
        for (int i = 0; list != nullptr && i < list->childCount(); ++i)
            if (list->child(i)->role() == QAccessible::ListItem)
                said.push_back(list->child(i)->text(QAccessible::Name).toStdString());
        return said;
    }
    /// A point of the map, in parts of its width and height.
    QPoint at(double x, double y) {
        const QQuickItem* found = map();
        if (found == nullptr)
            return {};
        return found->mapToScene({found->width() * x, found->height() * y}).toPoint();
    }

    ScopedVariable m_motion{"TIDEWRIGHT_REDUCE_MOTION", "1"};
    std::vector<std::string> m_revealed;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.reveal = [this](const std::vector<URL>& urls) {
            for (const URL& url : urls)
                m_revealed.push_back(url.path());
        };
    }};
    ScreenModels m_models{*m_state.model};
    QmlScene m_scene;
};

// --- Where it is

TEST_F(ItemMapTest, SmallWindowsShowItWhenAskedAndInPlaceOfTheTable) {
    show(smallReport(), usual);
    for (const QSize size : {usual, smallest}) {
        m_scene.window().resize(size);
        polished();
        EXPECT_TRUE(!hasMap() && hasTable());
        m_scene.click(m_scene.named("Map"));
        EXPECT_TRUE(hasMap() && !hasTable());
        EXPECT_TRUE(QmlScene::accessible(m_scene.named("Map"))->state().checked);
        m_scene.pressByReader(m_scene.named("Map"));
        EXPECT_TRUE(!hasMap() && hasTable());
    }
}

TEST_F(ItemMapTest, WindowWithRoomShowsItAboveTheTable) {
    show(smallReport(), roomy);
    EXPECT_TRUE(hasMap() && hasTable());
    EXPECT_EQ(map()->height(), Theme::mapHeight);
    EXPECT_LT(map()->mapToScene({0, map()->height()}).y(),
              m_scene.named("Status")->mapToScene({}).y());
    m_scene.click(m_scene.named("Map"));
    EXPECT_TRUE(!hasMap() && hasTable());
}

TEST_F(ItemMapTest, ItIsOffInSmallWindowsUntilTheUserChooses) {
    show(smallReport(), usual);
    EXPECT_FALSE(hasMap());
    m_scene.window().resize(QSize(960, 900)); // high, but narrow
    polished();
    EXPECT_FALSE(hasMap());
    m_scene.window().resize(roomy);
    polished();
    EXPECT_TRUE(hasMap());
    m_scene.click(m_scene.named("Map"));
    m_scene.click(m_scene.named("Map"));
    m_scene.window().resize(smallest);
    polished();
    EXPECT_TRUE(hasMap()) << "it was asked for";
}

TEST_F(ItemMapTest, ChoiceHoldsForEachCategory) {
    ScanReport report = smallReport();
    report.items.push_back(testItem(Category::xcode, "x"));
    show(report, usual);
    m_scene.click(m_scene.named("Map"));
    m_state.model->setDestinationName(QStringLiteral("xcode"));
    EXPECT_TRUE(QmlScene::wait([&] { return m_scene.hasNamed("Map of Xcode & iOS"); }));
    m_state.model->setDestinationName(QStringLiteral("javascript")); // nothing was found there
    EXPECT_TRUE(QmlScene::wait([&] { return m_scene.hasNamed("Nothing here"); }));
    EXPECT_FALSE(m_scene.named("Map")->isEnabled());
}

TEST_F(ItemMapTest, ToolbarFitsInTheSmallestWindow) {
    show(smallReport(), smallest);
    double end = 0;
    for (const char* const name :
         {"All", "Filter items", "Map", "Inspector", "Scan", "Review & Clean 7.7 GB"}) {
        const QQuickItem* tool = m_scene.named(name);
        const QRectF place = tool->mapRectToScene(QRectF({}, tool->size()));
        EXPECT_GE(place.left(), end) << name;
        end = place.right();
    }
    EXPECT_LE(end, smallest.width() - 24);
}

TEST_F(ItemMapTest, LightAndDarkDiffer) {
    show(smallReport(), roomy);
    const QImage light = m_scene.picture(map());
    m_scene.theme().setSystemLook({true, {}, true});
    polished();
    const QImage dark = m_scene.picture(map());
    EXPECT_GT(light.pixelColor(60, 120).lightness(), 150);
    EXPECT_LT(dark.pixelColor(60, 120).lightness(), 100);
}

// --- One selection

TEST_F(ItemMapTest, RowIsCurrentInTableMapAndInspector) {
    show(smallReport(), roomy);
    m_scene.clickAt(at(0.05, 0.9));
    EXPECT_EQ(items().focusedRow(), 1);
    EXPECT_TRUE(m_scene.hasNamed("Locations (1)"));
    items().setFocusedRow(2);
    QmlScene::settle();
    EXPECT_EQ(map()->property("currentRow"), 2);
    EXPECT_EQ(QmlScene::accessible(map())->text(QAccessible::Description),
              QStringLiteral("NDK 25.1, 2.7 GB, Recommended"));
    items().setFocusedRow(4); // which has no place
    map()->forceActiveFocus();
    m_scene.press(Qt::Key_Right);
    EXPECT_EQ(items().focusedRow(), 1);
}

TEST_F(ItemMapTest, TicksAreThoseOfTheTable) {
    show(smallReport(), roomy);
    map()->forceActiveFocus(Qt::TabFocusReason);
    items().setFocusedRow(3);
    EXPECT_FALSE(isSelected(3));
    m_scene.press(Qt::Key_Space);
    EXPECT_TRUE(isSelected(3));
    EXPECT_TRUE(m_scene.hasNamed("Selected 8.7 GB"));
    const QImage ticked = m_scene.picture(map());
    m_scene.click(m_scene.named("Clean Ninja"));
    EXPECT_FALSE(isSelected(3));
    EXPECT_NE(m_scene.picture(map()), ticked);
    items().setFocusedRow(1); // kept
    m_scene.press(Qt::Key_Space);
    EXPECT_FALSE(isSelected(1));
}

TEST_F(ItemMapTest, ReaderTicksAndPicks) {
    show(smallReport(), usual);
    m_models.showMap(true);
    polished();
    EXPECT_THAT(said(),
                UnorderedElementsAre("Tablet, 9 GB, Kept", "Pixel, 5 GB, Recommended",
                                     "NDK 25.1, 2.7 GB, Recommended", "Ninja, 1 GB, Optional"));
    QQuickItem* ndk = m_scene.named("NDK 25.1, 2.7 GB, Recommended");
    EXPECT_EQ(QmlScene::accessible(ndk)->text(QAccessible::Description),
              QStringLiteral("No project uses it."));
    m_scene.act(ndk, QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(isSelected(2));
    m_scene.pressByReader(ndk);
    EXPECT_EQ(items().focusedRow(), 2);
    QQuickItem* tablet = m_scene.named("Tablet, 9 GB, Kept");
    EXPECT_FALSE(QmlScene::accessible(tablet)->state().checkable);
    m_scene.act(tablet, QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(isSelected(1));
}

// --- Details and menu

TEST_F(ItemMapTest, DetailsAreShownByReturnAndDoubleClick) {
    show(smallReport(), smallest);
    m_scene.click(m_scene.named("Map"));
    EXPECT_FALSE(m_scene.hasNamed("Details"));
    QTest::mouseDClick(&m_scene.window(), Qt::LeftButton, {}, at(0.05, 0.5));
    EXPECT_TRUE(QmlScene::wait([&] { return m_scene.hasNamed("Details"); }));
    m_scene.press(Qt::Key_Return);
    EXPECT_TRUE(QmlScene::wait([&] { return !m_scene.hasNamed("Details"); }));
    m_scene.press(Qt::Key_Return);
    EXPECT_TRUE(QmlScene::wait([&] { return m_scene.hasNamed("Details"); }));
    m_scene.window().resize(usual);
    polished();
    EXPECT_TRUE(m_scene.hasNamed("Details"));
    QTest::mouseDClick(&m_scene.window(), Qt::LeftButton, {}, at(0.05, 0.5));
    QmlScene::settle();
    EXPECT_TRUE(m_scene.hasNamed("Details")) << "a second double click does not hide them";
}

TEST_F(ItemMapTest, MenuIsThatOfTheTable) {
    ScanReport report = smallReport();
    report.items[0].urls = {m_state.home.file("Pixel")};
    show(report, usual);
    m_models.showMap(true);
    polished();
    map()->forceActiveFocus();
    items().setFocusedRow(0);
    m_scene.press(Qt::Key_Menu);
    EXPECT_TRUE(m_scene.hasNamed("Deselect"));
    m_scene.click(m_scene.named("Deselect"));
    EXPECT_FALSE(isSelected(0));
    EXPECT_TRUE(QmlScene::wait(
        [&] { return !m_scene.hasNamed("Reveal in Finder") || !m_scene.hasNamed("Deselect"); }));
    EXPECT_TRUE(map()->hasActiveFocus());
    m_scene.clickAt(at(0.05, 0.5), Qt::RightButton); // the kept one
    EXPECT_EQ(items().focusedRow(), 1);
    EXPECT_FALSE(m_scene.hasNamed("Select for Cleaning"));
    m_scene.press(Qt::Key_Escape);
    items().setFocusedRow(0);
    m_scene.press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(m_scene.hasNamed("Select for Cleaning"));
    m_scene.press(Qt::Key_Down);
    m_scene.press(Qt::Key_Return);
    EXPECT_THAT(m_revealed, ElementsAre(report.items[0].urls.front().path()));
}

// --- The rows of the table, and no others

TEST_F(ItemMapTest, FilterAndSearchApply) {
    show(smallReport(), usual);
    m_models.showMap(true);
    m_scene.click(m_scene.named("Can Clean"));
    polished();
    EXPECT_EQ(said().size(), 3U);
    items().setFilter(ItemListModel::Filter::kept);
    polished();
    EXPECT_THAT(said(), ElementsAre("Tablet, 9 GB, Kept"));
    items().setFilter(ItemListModel::Filter::all);
    map()->forceActiveFocus();
    items().setSearch(QStringLiteral("project"));
    polished();
    EXPECT_THAT(said(), ElementsAre("NDK 25.1, 2.7 GB, Recommended"));
    items().setSearch(QStringLiteral("zzz"));
    polished();
    EXPECT_THAT(said(), IsEmpty());
    EXPECT_TRUE(m_scene.hasNamed("No items match this filter."));
    m_scene.press(Qt::Key_Escape);
    EXPECT_EQ(items().search(), QString());
    polished();
    EXPECT_EQ(said().size(), 4U);
}

TEST_F(ItemMapTest, CleanedItemGoes) {
    show(smallReport(), roomy);
    items().setFocusedRow(0);
    ScanReport cleaned = smallReport();
    cleaned.items.erase(cleaned.items.begin());
    m_state.scanned(cleaned);
    polished();
    EXPECT_EQ(said().size(), 3U);
    EXPECT_EQ(items().focusedRow(), -1);
    EXPECT_TRUE(m_scene.hasNamed("No selection"));
}

TEST_F(ItemMapTest, SaysThatNothingTakesUpSpace) {
    ScanReport report;
    report.items = {item("Empty", 0)};
    show(report, usual);
    m_models.showMap(true);
    polished();
    EXPECT_TRUE(m_scene.hasNamed("Nothing in this list takes up space."));
    EXPECT_THAT(said(), IsEmpty());
}

TEST_F(ItemMapTest, TenThousandRowsAreToldByAFewElements) {
    ScanReport report;
    for (int i = 0; i < 10'000; ++i)
        report.items.push_back(item(fmt::format("Item {}", i), 100'000'000'000 / (1 + i)));
    show(report, roomy);
    EXPECT_EQ(said().size(), 40U);
    map()->forceActiveFocus();
    m_scene.press(Qt::Key_End);
    EXPECT_EQ(items().focusedRow(), 9'999);
    EXPECT_EQ(QmlScene::accessible(m_scene.window().activeFocusItem())->text(QAccessible::Name),
              QStringLiteral("Item 9999, 10 MB, Recommended"));
}

TEST_F(ItemMapTest, TabLeadsFromTheMapToTheTable) {
    show(smallReport(), roomy);
    map()->forceActiveFocus(Qt::TabFocusReason);
    m_scene.press(Qt::Key_Right);
    m_scene.press(Qt::Key_Tab);
    EXPECT_FALSE(map()->hasActiveFocus());
    for (int i = 0; i < 4; ++i)
        m_scene.press(Qt::Key_Tab);
    EXPECT_FALSE(map()->hasActiveFocus());
    EXPECT_EQ(items().focusedRow(), 1);
}

} // namespace
} // namespace tidewright::test
