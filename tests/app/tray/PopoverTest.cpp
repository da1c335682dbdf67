#include "app/tray/Popover.h"

#include "tests/support/gui/QmlScene.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

namespace tidewright::test {
namespace {

constexpr QRect item(300, 0, 22, 22);

class PopoverTest : public testing::Test {
protected:
    PopoverTest() {
        m_window.setFlags(Qt::Tool | Qt::FramelessWindowHint);
        m_window.resize(200, 100);
    }

    QQuickWindow m_window;
    Popover m_popover{m_window};
};

TEST_F(PopoverTest, ComesAtTheItemAndGoesWithTheNextPress) {
    EXPECT_FALSE(m_window.isVisible());
    m_popover.toggle(item);
    EXPECT_TRUE(m_window.isVisible());
    EXPECT_EQ(m_window.x(), item.x() + (item.width() - m_window.width()) / 2);
    EXPECT_GT(m_window.y(), item.bottom());
    EXPECT_TRUE(QmlScene::wait([this] { return m_window.isActive(); }));
    m_popover.toggle(item);
    EXPECT_FALSE(m_window.isVisible());
}

TEST_F(PopoverTest, StaysAtTheItemWhenItsHeightChanges) {
    const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
    const QRect below(300, room.bottom() - 21, 22, 22);
    m_popover.toggle(below);
    const int bottom = m_window.y() + m_window.height();
    EXPECT_LT(bottom, below.top());
    m_window.setHeight(300);
    EXPECT_TRUE(QmlScene::wait([&] { return m_window.y() + m_window.height() == bottom; }))
        << m_window.y() << " + " << m_window.height() << " is not " << bottom;
}

TEST_F(PopoverTest, TheClickThatTookItsActivationDoesNotOpenItAgain) {
    constexpr qint64 surelySameClick = 200; // ms
    QObject::connect(&m_window, &QWindow::activeChanged, &m_window, [this] {
        if (!m_window.isActive())
            m_window.hide();
    });
    QQuickWindow other;
    other.show();
    for (int attempt = 0; attempt < 20; ++attempt) {
        m_popover.toggle(item);
        ASSERT_TRUE(QmlScene::wait([this] { return m_window.isActive(); }));
        QElapsedTimer sinceLeft;
        sinceLeft.start();
        other.requestActivate();
        ASSERT_TRUE(QmlScene::wait([this] { return !m_window.isVisible(); }));
        m_popover.toggle(item);
        const bool wasQuick = sinceLeft.elapsed() < surelySameClick;
        const bool isVisible = m_window.isVisible();
        m_window.hide();
        QTest::qWait(400);
        if (!wasQuick)
            continue; // the machine was too busy to tell
        EXPECT_FALSE(isVisible);
        m_popover.toggle(item); // a click of its own
        EXPECT_TRUE(m_window.isVisible());
        return;
    }
    FAIL() << "The machine was too busy.";
}

TEST_F(PopoverTest, APressRightAfterEscapeOpensIt) {
    m_popover.toggle(item);
    ASSERT_TRUE(QmlScene::wait([this] { return m_window.isActive(); }));
    m_window.hide(); // as Escape does
    m_popover.toggle(item);
    EXPECT_TRUE(m_window.isVisible());
}

} // namespace
} // namespace tidewright::test
