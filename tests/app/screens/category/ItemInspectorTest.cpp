// Everything that is said of an item, beside its row.
#include "tests/app/screens/category/CategoryScreen.h"

#include <fmt/format.h>

namespace tidewright::test {
namespace {

using testing::ElementsAre;

class ItemInspectorTest : public CategoryScreen {};

TEST_F(ItemInspectorTest, InspectorSaysEverything) {
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

TEST_F(ItemInspectorTest, InspectorShowsSixOfSevenPaths) {
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

TEST_F(ItemInspectorTest, InspectorFallsBackWhenItsItemIsNoLongerShown) {
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

TEST_F(ItemInspectorTest, InspectorTextIsCopiedByKeyboard) {
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

} // namespace
} // namespace tidewright::test
