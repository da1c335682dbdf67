#include "tests/support/gui/QmlScene.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

namespace tidewright::test {
namespace {

TEST(QmlSceneTest, AWarningIsAFailure) {
    EXPECT_NONFATAL_FAILURE(
        {
            QmlScene scene;
            scene.load("import QtQuick; Item { width: nothing }");
        },
        "nothing is not defined");
}

TEST(QmlSceneTest, AWarningThatWasTakenIsNone) {
    QmlScene scene;
    ASSERT_TRUE(scene.load("import QtQuick; Item { width: nothing }"));
    EXPECT_THAT(scene.takeMessages(), testing::HasSubstr("nothing is not defined"));
    EXPECT_EQ(scene.takeMessages(), "");
}

TEST(QmlSceneTest, QmlThatCannotBeMadeIsAFailure) {
    QmlScene scene;
    EXPECT_NONFATAL_FAILURE(scene.load("import QtQuick; Nonsense {}"), "Nonsense is not a type");
    EXPECT_NONFATAL_FAILURE(scene.load("import QtQuick; QtObject {}"), "neither a window");
}

TEST(QmlSceneTest, WhatIsNotShownIsNotFound) {
    QmlScene scene;
    ASSERT_TRUE(scene.load(R"(
        import QtQuick
        Item {
            Item { objectName: "shown"; Accessible.role: Accessible.Button; Accessible.name: "Shown" }
            Item { objectName: "hidden"; visible: false }
        })",
                           {50, 50}));
    EXPECT_NE(scene.item("shown"), nullptr);
    EXPECT_EQ(scene.named("Shown"), scene.item("shown"));
    EXPECT_NONFATAL_FAILURE((void)scene.item("hidden"), "No item \"hidden\" is shown");
    EXPECT_NONFATAL_FAILURE((void)scene.named("Hidden"), "\"Hidden\" is shown");
}

TEST(QmlSceneTest, TakesPropertiesWindowsAndTypesOfModules) {
    QmlScene scene;
    ASSERT_TRUE(
        scene.load("import QtQuick; Window { width: 70; height: 40; required property int count }",
                   {}, {{QStringLiteral("count"), 3}}));
    EXPECT_EQ(scene.root().property("count").toInt(), 3);
    EXPECT_EQ(scene.window().size(), QSize(70, 40));
}

TEST(QmlSceneTest, TakesATypeOfAModule) {
    QmlScene scene;
    ASSERT_TRUE(scene.loadFromModule("Tidewright.Controls", "PushButton", {90, 30},
                                     {{QStringLiteral("text"), QStringLiteral("Scan")}}));
    EXPECT_TRUE(scene.hasNamed("Scan"));
}

} // namespace
} // namespace tidewright::test
