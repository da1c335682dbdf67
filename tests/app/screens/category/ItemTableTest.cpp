// The rows of a category: their look, ticks, keys, columns and menu.
#include "tests/app/screens/category/CategoryScreen.h"

#include <fmt/format.h>

namespace tidewright::test {
namespace {

using testing::ElementsAre;

class ItemTableTest : public CategoryScreen {};

// --- Rows

TEST_F(ItemTableTest, RowsStandUnderTheHeadingsOfTheirGroups) {
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

TEST_F(ItemTableTest, ClickFocusesTheRowAndShowsItsDetails) {
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

TEST_F(ItemTableTest, ReaderFocusesARow) {
    show(smallReport());
    m_scene.pressByReader(rowOf("Ninja"));
    EXPECT_EQ(items().focusedRow(), 3);
}

// --- Ticks

TEST_F(ItemTableTest, BoxIsTickedByMouseAndReader) {
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

TEST_F(ItemTableTest, SpaceTicksTheFocusedRow) {
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

TEST_F(ItemTableTest, ItemThatIsKeptOrCleanedByHandCannotBeTicked) {
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

TEST_F(ItemTableTest, KeysMoveTheFocus) {
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

TEST_F(ItemTableTest, TypingFindsARow) {
    show(smallReport());
    m_scene.item("view")->forceActiveFocus();
    m_scene.type("n");
    EXPECT_EQ(items().focusedRow(), 2);
    m_scene.type("i");
    EXPECT_EQ(items().focusedRow(), 3);
    m_scene.type("x"); // nothing begins so
    EXPECT_EQ(items().focusedRow(), 3);
}

TEST_F(ItemTableTest, SpaceIsPartOfWhatIsTyped) {
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

TEST_F(ItemTableTest, ReturnShowsAndHidesTheInspector) {
    show(smallReport());
    m_scene.click(rowOf("NDK"));
    EXPECT_TRUE(m_scene.hasNamed("Details"));
    m_scene.press(Qt::Key_Return);
    EXPECT_FALSE(m_scene.hasNamed("Details"));
    m_scene.press(Qt::Key_Return);
    EXPECT_TRUE(m_scene.hasNamed("Details"));
}

// --- Columns

TEST_F(ItemTableTest, HeadingSortsUpDownAndNotAtAll) {
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

TEST_F(ItemTableTest, ColumnsKeepTheirLimits) {
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

TEST_F(ItemTableTest, RowsThatGoMoveTheOthersToTheirPlaces) {
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

// --- The menu

TEST_F(ItemTableTest, MenuSelectsAndReveals) {
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

TEST_F(ItemTableTest, TenThousandRowsAreScrolledWithFewDelegates) {
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

TEST_F(ItemTableTest, RowsThatWaitToBeUsedAgainTickNothing) {
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
