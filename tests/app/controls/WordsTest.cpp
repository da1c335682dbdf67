#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

TEST(WordsTest, AreShownAsTheyStand) {
    test::QmlScene scene;
    ASSERT_TRUE(scene.load(R"(
        import QtQuick
        import Tidewright.Controls
        Column {
            Words { objectName: "plain"; text: "old <b>name</b> &amp; more" }
            Words { objectName: "other"; text: "old name & more" }
        })",
                           {300, 60}));
    EXPECT_GT(scene.item("plain")->width(), scene.item("other")->width() * 1.3)
        << "what looks like a format is a part of the name";
}

TEST(WordsTest, AreSaidUnlessTheyAreDecorative) {
    test::QmlScene scene;
    ASSERT_TRUE(scene.load(R"(
        import QtQuick
        import Tidewright.Controls
        Item {
            Accessible.role: Accessible.Grouping
            Accessible.name: "group"
            Words { text: "Said" }
            Words { text: "Not said"; decorative: true }
            SizeText { size: "37.7 GB" }
            SectionTitle { width: 100; title: "Title"; subtitle: "Subtitle" }
            Figure { label: "to free"; size: "1.2 GB" }
            Badge { text: "Kept"; symbolName: "lock.fill" }
            CountBadge { text: "3" }
            Badge { text: "Silent"; decorative: true }
            Symbol { name: "trash" }
            Separator {}
            Spinner {}
            Spinner { label: "Cleaning NDK" }
        })",
                           {300, 60}));
    QAccessibleInterface* group = test::QmlScene::accessible(scene.named("group"));
    std::vector<std::pair<std::string, QAccessible::Role>> said;
    for (int index = 0; index < group->childCount(); ++index)
        said.emplace_back(group->child(index)->text(QAccessible::Name).toStdString(),
                          group->child(index)->role());
    const std::vector<std::pair<std::string, QAccessible::Role>> expected{
        {"Said", QAccessible::StaticText},
        {"37.7 GB", QAccessible::StaticText},
        {"Title", QAccessible::Heading},
        {"Subtitle", QAccessible::StaticText},
        {"to free 1.2 GB", QAccessible::StaticText},
        {"Kept", QAccessible::StaticText},
        {"3", QAccessible::StaticText},
        {"Cleaning NDK", QAccessible::Indicator},
    };
    EXPECT_EQ(said, expected);
}

} // namespace
} // namespace tidewright
