// The screen around the table: figures, filter, search, what stands there where nothing does.
#include "tests/app/screens/category/CategoryScreen.h"

namespace tidewright::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CategoryViewTest : public CategoryScreen {};

TEST_F(CategoryViewTest, HeaderShowsTheFigures) {
    show(smallReport());
    EXPECT_TRUE(m_scene.hasNamed("SDK packages, emulators, Gradle and Android Studio leftovers."));
    EXPECT_TRUE(m_scene.hasNamed("Selected 7.7 GB"));
    EXPECT_TRUE(m_scene.hasNamed("Optional 1 GB"));
    EXPECT_TRUE(m_scene.hasNamed("Kept 9 GB"));
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

} // namespace
} // namespace tidewright::test
