#include "tests/support/gui/QmlScene.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

/// A hundred rows of 30 in a window of 300, in sections of ten with headings of 24.
class ListAreaTest : public testing::Test {
protected:
    void SetUp() override {
        m_scene.theme().setSystemLook({false, {}, true});
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            ListArea {
                id: list
                focus: true
                model: ListModel { id: rows }
                section.property: "group"
                section.delegate: Words { required property string section; text: section; height: 24 }
                delegate: Words {
                    required property string name
                    objectName: name
                    width: list.width; height: 30
                    text: name
                }
                Component.onCompleted: {
                    for (let row = 0; row < 100; ++row)
                        rows.append({ name: "row " + row, group: "group " + Math.floor(row / 10) })
                    currentIndex = 0
                }
                function removeSecond() { rows.remove(1) }
            })",
                                 {200, 300}));
        m_list = qobject_cast<QQuickItem*>(&m_scene.root());
    }
    int row() { return m_list->property("currentIndex").toInt(); }
    bool isInView(const char* name) {
        if (!m_scene.hasItem(name))
            return false;
        const QRectF place =
            m_scene.item(name)->mapRectToScene(QRectF({}, m_scene.item(name)->size()));
        return QRectF(0, 0, 200, 300).contains(place);
    }

    test::QmlScene m_scene;
    QQuickItem* m_list = nullptr;
};

TEST_F(ListAreaTest, KeysMoveTheCurrentRowAndKeepItInView) {
    m_scene.press(Qt::Key_Down);
    EXPECT_EQ(row(), 1);
    m_scene.press(Qt::Key_Up);
    EXPECT_EQ(row(), 0);
    m_scene.press(Qt::Key_End);
    EXPECT_EQ(row(), 99);
    EXPECT_TRUE(test::QmlScene::wait([&] { return isInView("row 99"); }));
    m_scene.press(Qt::Key_Home);
    EXPECT_EQ(row(), 0);
    EXPECT_TRUE(test::QmlScene::wait([&] { return isInView("row 0"); }));
}

TEST_F(ListAreaTest, PagesAreAboutAsLongAsTheList) {
    int before = row();
    while (row() < 99) {
        m_scene.press(Qt::Key_PageDown);
        ASSERT_GT(row(), before);
        EXPECT_TRUE(row() == 99 || (row() - before >= 6 && row() - before <= 10)) << before;
        before = row();
        ASSERT_TRUE(test::QmlScene::wait(
            [&] { return isInView(("row " + std::to_string(row())).c_str()); }));
    }
    while (row() > 0) {
        m_scene.press(Qt::Key_PageUp);
        ASSERT_LT(row(), before);
        EXPECT_TRUE(row() == 0 || (before - row() >= 6 && before - row() <= 10)) << before;
        before = row();
    }
}

TEST_F(ListAreaTest, KeysAreForOthersWhereItDoesNotNavigate) {
    m_list->setProperty("keyNavigationEnabled", false);
    for (const Qt::Key key : {Qt::Key_End, Qt::Key_PageDown, Qt::Key_Down})
        m_scene.press(key);
    EXPECT_EQ(row(), 0);
}

TEST_F(ListAreaTest, WheelScrollsIt) {
    m_scene.scroll(m_list, -1);
    EXPECT_EQ(m_list->property("contentY").toDouble() - m_list->property("originY").toDouble(),
              22.0 * QGuiApplication::styleHints()->wheelScrollLines());
    EXPECT_EQ(row(), 0);
    m_scene.scroll(m_list, 10);
    EXPECT_EQ(m_list->property("contentY").toDouble(), m_list->property("originY").toDouble());
}

TEST_F(ListAreaTest, RowsMoveToTheirPlaces) {
    m_scene.theme().setSystemLook({false, {}, false});
    QQuickItem* third = m_scene.item("row 2");
    const double before = third->y();
    QMetaObject::invokeMethod(m_list, "removeSecond");
    test::QmlScene::settle();
    EXPECT_GT(third->y(), before - 30) << "it is on its way";
    EXPECT_TRUE(test::QmlScene::wait([&] { return third->y() == before - 30; }));
}

TEST_F(ListAreaTest, RowsAreInTheirPlacesAtOnceWhereMotionIsReduced) {
    QQuickItem* third = m_scene.item("row 2");
    const double before = third->y();
    QMetaObject::invokeMethod(m_list, "removeSecond");
    EXPECT_TRUE(test::QmlScene::wait([&] { return third->y() == before - 30; }));
}

} // namespace
} // namespace tidewright
