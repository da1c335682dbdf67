#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <QQmlContext>
#include <QStandardItemModel>
#include <QTest>
#include <gmock/gmock.h>

namespace tidewright::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

enum Role { size = Qt::UserRole, sizeText, name, selected, selectable };

constexpr auto sceneText = R"(
import QtQuick
import Tidewright.Controls

FocusScope {
    id: page

    property string log: ""

    focus: true

    Treemap {
        id: map

        objectName: "map"
        x: 20
        y: 20
        width: parent.width - 40
        height: parent.height - 80
        focus: true
        label: "Map of files"
        emptyText: "No files were found."
        model: rows
        nameRoles: ["name"]
        keyRole: "name"
        noteRole: "name"
        tickedRole: "selected"
        tickableRole: "selectable"
        onPicked: row => currentRow = row
        onTickAsked: (row, on) => page.log += "tick " + row + " " + on + ";"
        onOpened: (row, byPointer) => page.log += "open " + row + " " + byPointer + ";"
        onMenuAsked: (x, y) => page.log += "menu " + currentRow + ";"
    }
    PushButton {
        objectName: "after"
        y: parent.height - height
        text: "After"
    }
}
)";

/// A large row on the left, two smaller ones on the right, and one that has no bytes.
class TreemapTest : public testing::Test {
protected:
    TreemapTest() {
        QAccessible::setActive(true);
        m_rows.setItemRoleNames({{size, "sizeBytes"},
                                 {sizeText, "sizeText"},
                                 {name, "name"},
                                 {selected, "selected"},
                                 {selectable, "selectable"}});
        m_scene.engine().rootContext()->setContextProperty(QStringLiteral("rows"), &m_rows);
        m_scene.theme().setSystemLook({false, {}, true});
    }

    void add(const char* title, qint64 bytes, bool isSelectable = true) {
        auto* item = new QStandardItem;
        item->setData(bytes, size);
        item->setData(QStringLiteral("%1 B").arg(bytes), sizeText);
        item->setData(QString::fromUtf8(title), name);
        item->setData(false, selected);
        item->setData(isSelectable, selectable);
        m_rows.appendRow(item);
    }
    void addFour() {
        add("upper", 60);
        add("large", 100);
        add("lower", 40, false);
        add("nothing", 0);
    }
    void show() {
        ASSERT_TRUE(m_scene.load(sceneText, {440, 280}));
        polished();
    }
    void polished() {
        (void)m_scene.picture();
        QmlScene::settle();
    }

    int current() { return m_scene.item("map")->property("currentRow").toInt(); }
    std::string log() { return m_scene.root().property("log").toString().toStdString(); }

    /// What a reader finds in the list.
    std::vector<std::string> said() {
        std::vector<std::string> said;
        QAccessibleInterface* list = QmlScene::accessible(m_scene.item("map"));
        for (int i = 0; i < list->childCount(); ++i)
            if (list->child(i)->role() == QAccessible::ListItem)
                said.push_back(list->child(i)->text(QAccessible::Name).toStdString());
        return said;
    }
    QAccessibleInterface* focused() {
        return QmlScene::accessible(m_scene.window().activeFocusItem());
    }

    QStandardItemModel m_rows;
    QmlScene m_scene;
};

TEST_F(TreemapTest, ClickPicksDoubleClickOpensRightClickAsksForTheMenu) {
    addFour();
    show();
    m_scene.clickAt({60, 100});
    EXPECT_EQ(current(), 1);
    m_scene.clickAt({400, 60});
    EXPECT_EQ(current(), 0);
    m_scene.clickAt({5, 5}); // beside it
    EXPECT_EQ(current(), 0);
    EXPECT_EQ(log(), "");
    m_scene.clickAt({400, 180}, Qt::RightButton);
    EXPECT_EQ(current(), 2);
    EXPECT_EQ(log(), "menu 2;");
    QTest::mouseDClick(&m_scene.window(), Qt::LeftButton, {}, {60, 100});
    EXPECT_EQ(log(), "menu 2;open 1 true;");
}

TEST_F(TreemapTest, KeysMoveTickAndOpen) {
    addFour();
    show();
    EXPECT_EQ(current(), -1);
    m_scene.press(Qt::Key_Space); // there is nothing yet
    m_scene.press(Qt::Key_Return);
    m_scene.press(Qt::Key_Menu);
    EXPECT_EQ(log(), "");
    const std::vector<std::pair<Qt::Key, int>> steps{
        {Qt::Key_Right, 1}, {Qt::Key_Left, 1}, {Qt::Key_Right, 0},
        {Qt::Key_Down, 2},  {Qt::Key_Down, 2}, {Qt::Key_Up, 0},
        {Qt::Key_Left, 1},  {Qt::Key_End, 2},  {Qt::Key_Home, 1}};
    for (const auto& [key, row] : steps) {
        m_scene.press(key);
        EXPECT_EQ(current(), row);
    }
    m_scene.press(Qt::Key_Space);
    m_scene.press(Qt::Key_Return);
    m_scene.press(Qt::Key_Menu);
    m_scene.press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(log(), "tick 1 true;open 1 false;menu 1;menu 1;");
    m_scene.press(Qt::Key_End); // it can't be ticked
    m_scene.press(Qt::Key_Space);
    EXPECT_EQ(log(), "tick 1 true;open 1 false;menu 1;menu 1;");
    m_scene.press(Qt::Key_Tab);
    EXPECT_TRUE(m_scene.item("after")->hasActiveFocus());
    m_scene.press(Qt::Key_Tab);
    EXPECT_EQ(focused()->text(QAccessible::Name), QStringLiteral("lower, 40 B"));
}

TEST_F(TreemapTest, TickedRowIsAskedToBeNoLonger) {
    addFour();
    m_rows.item(1)->setData(true, selected);
    show();
    m_scene.press(Qt::Key_Home);
    m_scene.press(Qt::Key_Space);
    EXPECT_EQ(log(), "tick 1 false;");
}

TEST_F(TreemapTest, ReaderFindsEachRowOnce) {
    addFour();
    show();
    EXPECT_THAT(said(), UnorderedElementsAre("large, 100 B", "upper, 60 B", "lower, 40 B"));
    m_scene.press(Qt::Key_Home);
    EXPECT_THAT(said(), UnorderedElementsAre("large, 100 B", "upper, 60 B", "lower, 40 B"));
    QAccessibleInterface* list = QmlScene::accessible(m_scene.item("map"));
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->text(QAccessible::Name), QStringLiteral("Map of files"));
    EXPECT_EQ(list->text(QAccessible::Description), QStringLiteral("large, 100 B"));
}

TEST_F(TreemapTest, ReaderIsToldWhereTheKeyboardIs) {
    addFour();
    for (int i = 0; i < 40; ++i)
        add("tiny", 1);
    m_rows.item(1)->setData(qint64{1'000'000}, size);
    show();
    EXPECT_EQ(focused()->role(), QAccessible::List);
    for (const auto& [key, said] : std::initializer_list<std::pair<Qt::Key, const char*>>{
             {Qt::Key_Home, "large, 100 B"}, {Qt::Key_End, "tiny, 1 B"}}) {
        m_scene.press(key);
        EXPECT_EQ(focused()->role(), QAccessible::ListItem);
        EXPECT_EQ(focused()->text(QAccessible::Name), QString::fromUtf8(said));
        EXPECT_TRUE(focused()->state().selected && focused()->state().focused);
        EXPECT_FALSE(focused()->rect().isEmpty());
    }
    EXPECT_EQ(said().size(), 2U) << "the large one and the current one";
}

TEST_F(TreemapTest, ReaderPicksAndTicks) {
    addFour();
    show();
    m_scene.pressByReader(m_scene.named("lower, 40 B"));
    EXPECT_EQ(current(), 2);
    m_scene.act(m_scene.named("upper, 60 B"), QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(log(), "tick 0 true;");
    EXPECT_FALSE(QmlScene::accessible(m_scene.named("upper, 60 B"))->state().checked);
    m_rows.item(0)->setData(true, selected);
    EXPECT_TRUE(QmlScene::accessible(m_scene.named("upper, 60 B"))->state().checked);
    EXPECT_TRUE(QmlScene::accessible(m_scene.named("upper, 60 B"))->state().checkable);
    EXPECT_FALSE(QmlScene::accessible(m_scene.named("large, 100 B"))->state().checked);
}

TEST_F(TreemapTest, SaysWhyThereIsNothing) {
    show();
    EXPECT_TRUE(m_scene.hasNamed("No files were found."));
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Home, Qt::Key_End, Qt::Key_Space})
        m_scene.press(key);
    EXPECT_EQ(current(), -1);
    add("nothing", 0);
    polished();
    EXPECT_TRUE(m_scene.hasNamed("Nothing in this list takes up space."));
    m_rows.item(0)->setData(qint64{5}, size);
    polished();
    EXPECT_FALSE(m_scene.hasNamed("Nothing in this list takes up space."));
    EXPECT_THAT(said(), ElementsAre("nothing, 0 B"));
}

TEST_F(TreemapTest, RowsMayGoWhileOneIsCurrent) {
    addFour();
    show();
    m_scene.press(Qt::Key_End);
    m_rows.removeRow(2);
    m_rows.removeRow(0);
    polished();
    EXPECT_THAT(said(), ElementsAre("large, 100 B"));
    m_scene.press(Qt::Key_Space);
    m_scene.press(Qt::Key_Right);
    EXPECT_EQ(current(), 0);
    m_rows.clear();
    polished();
    EXPECT_THAT(said(), ElementsAre());
}

TEST_F(TreemapTest, CurrentAndFocusCanBeSeen) {
    addFour();
    show();
    const QImage none = m_scene.picture();
    m_scene.clickAt({60, 100});
    const QImage current = m_scene.picture();
    EXPECT_NE(current, none);
    m_scene.press(Qt::Key_Home);
    EXPECT_NE(m_scene.picture(), current) << "the ring";
}

TEST_F(TreemapTest, TipSaysWhatThePointerRestsOn) {
    addFour();
    show();
    QTest::mouseMove(&m_scene.window(), {61, 100});
    QTest::mouseMove(&m_scene.window(), {60, 100});
    EXPECT_TRUE(QmlScene::wait([&] { return m_scene.hasText("large\n100 B\nlarge"); }));
    QTest::mouseMove(&m_scene.window(), {400, 60});
    EXPECT_TRUE(QmlScene::wait([&] { return m_scene.hasText("upper\n60 B\nupper"); }));
    EXPECT_FALSE(m_scene.hasText("large\n100 B\nlarge"));
    QTest::mouseMove(&m_scene.window(), {2, 2});
    EXPECT_TRUE(QmlScene::wait([&] { return !m_scene.hasText("upper\n60 B\nupper"); }));
}

TEST_F(TreemapTest, PlacesMoveByASpring) {
    m_scene.theme().setSystemLook({false, {}, false});
    addFour();
    show();
    m_scene.press(Qt::Key_End);
    QQuickItem* focused = m_scene.window().activeFocusItem();
    const double before = focused->height();
    m_rows.removeRow(0);
    m_scene.item("map")->setProperty("currentRow", 1);
    polished();
    EXPECT_LT(focused->height(), 200);
    EXPECT_TRUE(QmlScene::wait([&] { return focused->height() == 200; }));
    EXPECT_GT(focused->height(), before);
}

} // namespace
} // namespace tidewright::test
