#include "app/controls/TreemapPicture.h"

#include "tests/support/gui/QmlScene.h"

#include <QPainter>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <gmock/gmock.h>

namespace tidewright::test {
namespace {

enum Role { size = Qt::UserRole, sizeText, name, kind, reason, ticked, tickable };

const QColor cleanGround(Qt::green);
const QColor cleanTicked(Qt::darkGreen);
const QColor otherGround(Qt::yellow);
const QColor restGround(Qt::gray);
const QColor hoverGround(Qt::white);

constexpr auto sceneText = R"(
import QtQuick
import Tidewright.Controls

Item {
    TreemapPicture {
        objectName: "picture"
        width: 400
        height: 200
    }
}
)";

/// 400 by 200 pixels in a window that no one sees.
class TreemapPictureTest : public testing::Test {
protected:
    TreemapPictureTest() {
        m_model.setItemRoleNames({{size, "sizeBytes"},
                                  {sizeText, "sizeText"},
                                  {name, "name"},
                                  {kind, "decision"},
                                  {reason, "reason"},
                                  {ticked, "selected"},
                                  {tickable, "selectable"}});
        if (!m_scene.load(sceneText, {420, 200}))
            return;
        m_picture = qobject_cast<TreemapPicture*>(m_scene.item("picture"));
        const QVariantMap grounds{{QStringLiteral("clean"), cleanGround}, {QString(), otherGround}};
        const QVariantMap tickedGrounds{{QStringLiteral("clean"), cleanTicked}};
        for (const auto& [property, value] :
             std::initializer_list<std::pair<const char*, QVariant>>{
                 {"nameRoles", QStringList{QStringLiteral("name")}},
                 {"keyRole", QStringLiteral("name")},
                 {"kindRole", QStringLiteral("decision")},
                 {"kindTitleRole", QStringLiteral("decision")},
                 {"noteRole", QStringLiteral("reason")},
                 {"tickedRole", QStringLiteral("selected")},
                 {"tickableRole", QStringLiteral("selectable")},
                 {"grounds", grounds},
                 {"tickedGrounds", tickedGrounds},
                 {"restColor", restGround},
                 {"hoverColor", hoverGround}})
            m_picture->setProperty(property, value);
    }

    void add(const char* title,
             qint64 bytes,
             const char* decision = "clean",
             bool isTicked = false) {
        auto* item = new QStandardItem;
        item->setData(bytes, size);
        item->setData(QStringLiteral("%1 B").arg(bytes), sizeText);
        item->setData(QString::fromUtf8(title), name);
        item->setData(QString::fromUtf8(decision), kind);
        item->setData(QStringLiteral("Why not"), reason);
        item->setData(isTicked, ticked);
        item->setData(true, tickable);
        m_model.appendRow(item);
    }
    void show() {
        m_picture->setModel(&m_model);
        polished();
        movePointer(410, 100); // beside it
    }
    void movePointer(int x, int y) {
        QTest::mouseMove(&m_scene.window(), {x + 1, y});
        QTest::mouseMove(&m_scene.window(), {x, y});
        QmlScene::settle();
    }
    /// Waits for the changes of the model to be taken over.
    void polished() {
        (void)m_scene.picture();
        QmlScene::settle();
    }
    QColor colorAt(int x, int y) { return m_scene.picture().pixelColor(x, y); }

    QmlScene m_scene;
    QStandardItemModel m_model;
    TreemapPicture* m_picture = nullptr;
};

// --- Places

TEST_F(TreemapPictureTest, EachRowIsAsLargeAsItsPart) {
    add("a", 100);
    add("b", 300, "keep");
    show();
    EXPECT_EQ(m_picture->count(), 2);
    const QRectF large = m_picture->placeOf(1);
    const QRectF small = m_picture->placeOf(0);
    EXPECT_NEAR(large.width() * large.height(), 3 * small.width() * small.height(), 1e-6);
    EXPECT_EQ(m_picture->rowAt(10, 100), 1);
    EXPECT_EQ(m_picture->rowAt(390, 100), 0);
    EXPECT_EQ(m_picture->rowAt(401, 100), -1);
    EXPECT_EQ(colorAt(10, 190), otherGround);
    EXPECT_EQ(colorAt(390, 190), cleanGround);
    const auto border = static_cast<int>(std::lround(large.right()));
    for (const int x : {border - 1, border})
        EXPECT_EQ(colorAt(x, 100), m_scene.theme().window()) << "the gap";
    for (const int x : {border - 2, border + 1})
        EXPECT_NE(colorAt(x, 100), m_scene.theme().window());
}

TEST_F(TreemapPictureTest, RowsWithoutBytesHaveNoPlace) {
    add("nothing", 0);
    show();
    EXPECT_TRUE(m_picture->isBlank());
    EXPECT_EQ(m_picture->count(), 1);
    EXPECT_EQ(m_picture->largestRow(), -1);
    EXPECT_EQ(m_picture->rowAt(5, 5), -1);
    EXPECT_EQ(m_picture->rowBeyond(Qt::LeftEdge), -1);
    m_picture->setCurrentRow(0);
    EXPECT_TRUE(m_picture->currentPlace().isNull());
    add("something", 7);
    polished();
    EXPECT_FALSE(m_picture->isBlank());
    EXPECT_EQ(m_picture->rowBeyond(Qt::LeftEdge), 1);
}

TEST_F(TreemapPictureTest, ThinRowsAreOneArea) {
    add("large", 1'000'000);
    for (int i = 0; i < 300; ++i)
        add("small", 70);
    show();
    const QImage image = m_scene.picture();
    EXPECT_EQ(image.pixelColor(396, 198), restGround);
    EXPECT_EQ(image.pixelColor(397, 20), restGround);
    m_picture->setCurrentRow(300);
    const QRectF marked = m_picture->currentPlace();
    EXPECT_GE(marked.width(), 10);
    EXPECT_GE(marked.height(), 10);
    EXPECT_TRUE(m_picture->boundingRect().contains(marked));
    EXPECT_EQ(m_picture->smallestRow(), 300);
    EXPECT_EQ(m_picture->spokenCount(), 1);
    EXPECT_EQ(m_picture->spokenRow(0), 0);
    EXPECT_EQ(m_picture->spokenRow(1), -1);
}

TEST_F(TreemapPictureTest, RolesThatTheModelDoesNotHaveShowNothing) {
    for (const char* const role : {"kindRole", "kindTitleRole", "noteRole", "tickedRole"})
        m_picture->setProperty(role, QString());
    m_picture->setProperty("tickableRole", QStringLiteral("nowhere"));
    add("a", 100, "clean", true);
    show();
    EXPECT_EQ(colorAt(10, 190), otherGround);
    EXPECT_EQ(m_picture->spokenName(0), QStringLiteral("a, 100 B"));
    EXPECT_EQ(m_picture->tip(0), QStringLiteral("a\n100 B"));
    EXPECT_FALSE(m_picture->isTickable(0));
    EXPECT_FALSE(m_picture->isTicked(0));
}

TEST_F(TreemapPictureTest, SaysNameSizeKindAndNote) {
    add("a", 100);
    show();
    EXPECT_EQ(m_picture->spokenName(0), QStringLiteral("a, 100 B, clean"));
    EXPECT_EQ(m_picture->tip(0), QString::fromUtf8("a\n100 B · clean\nWhy not"));
    EXPECT_EQ(m_picture->note(0), QStringLiteral("Why not"));
    for (const int row : {-1, 1})
        EXPECT_TRUE(m_picture->spokenName(row).isEmpty() && m_picture->tip(row).isEmpty());
}

// --- Changes

TEST_F(TreemapPictureTest, ManyChangesAreTakenOverAtOnce) {
    show();
    const int revision = m_picture->revision();
    for (int i = 0; i < 50; ++i)
        add("row", 100 + i);
    m_model.removeRow(0);
    m_model.item(0)->setData(qint64{5000}, size);
    EXPECT_EQ(m_picture->count(), 0);
    polished();
    EXPECT_EQ(m_picture->count(), 49);
    EXPECT_EQ(m_picture->largestRow(), 0);
    EXPECT_EQ(m_picture->revision(), revision + 1);
}

TEST_F(TreemapPictureTest, UserFindsItUpToDate) {
    add("a", 100);
    show();
    m_model.clear();
    EXPECT_EQ(m_picture->rowAt(10, 10), -1);
    add("b", 5);
    add("c", 50);
    EXPECT_EQ(m_picture->largestRow(), 1);
    EXPECT_EQ(m_picture->rowAt(10, 10), 1);
}

TEST_F(TreemapPictureTest, TickChangesOneToneAndNoPlace) {
    add("a", 100);
    add("b", 100);
    show();
    QSignalSpy moved(m_picture, &TreemapPicture::placesMoved);
    EXPECT_EQ(colorAt(10, 190), cleanGround);
    m_model.item(0)->setData(true, ticked);
    EXPECT_TRUE(m_picture->isTicked(0));
    EXPECT_EQ(colorAt(10, 190), cleanTicked);
    EXPECT_EQ(colorAt(390, 190), cleanGround);
    m_model.item(1)->setData(true, ticked); // between a change of size and its layout
    m_picture->setWidth(300);
    polished();
    EXPECT_EQ(colorAt(290, 190), cleanTicked);
    EXPECT_EQ(moved.size(), 1);
}

TEST_F(TreemapPictureTest, ModelMayGo) {
    auto model = std::make_unique<QStandardItemModel>();
    m_picture->setModel(model.get());
    model->appendRow(new QStandardItem);
    polished();
    EXPECT_EQ(m_picture->count(), 1);
    model.reset();
    EXPECT_TRUE(m_picture->spokenName(0).isEmpty());
    polished();
    EXPECT_EQ(m_picture->count(), 0);
}

TEST_F(TreemapPictureTest, IdleItIsNotDrawn) {
    add("a", 100);
    add("b", 50);
    show();
    int frames = 0;
    QObject::connect(
        &m_scene.window(), &QQuickWindow::afterRendering, m_picture, [&] { ++frames; },
        Qt::DirectConnection);
    QmlScene::wait([] { return false; }, 100);
    const int before = frames;
    QmlScene::wait([] { return false; }, 200);
    EXPECT_EQ(frames, before);
    m_model.item(0)->setData(true, ticked);
    EXPECT_TRUE(QmlScene::wait([&] { return frames > before; }));
}

// --- Movement

TEST_F(TreemapPictureTest, PlacesMoveFromWhereTheyWere) {
    add("gone", 100);
    add("b", 100);
    add("c", 50);
    show();
    QSignalSpy asked(m_picture, &TreemapPicture::moveAsked);
    m_picture->setCurrentRow(1);
    const QRectF before = m_picture->currentPlace();
    m_model.removeRow(0);
    m_picture->setCurrentRow(0);
    polished();
    ASSERT_EQ(asked.size(), 1);
    const QRectF after = m_picture->currentPlace();
    EXPECT_NE(after, before);
    m_picture->setShare(0);
    EXPECT_EQ(m_picture->currentPlace(), before);
    m_picture->setShare(0.5);
    EXPECT_GT(m_picture->currentPlace().width(), before.width());
    EXPECT_LT(m_picture->currentPlace().width(), after.width());
    m_picture->setShare(1);
    EXPECT_EQ(m_picture->currentPlace(), after);
}

TEST_F(TreemapPictureTest, AnotherSizeOrFirstRowsAreThereAtOnce) {
    add("a", 100);
    add("b", 100);
    QSignalSpy asked(m_picture, &TreemapPicture::moveAsked);
    show();
    m_picture->setSize({300, 100});
    polished();
    m_model.item(0)->setData(QStringLiteral("Another reason"), reason);
    polished();
    EXPECT_TRUE(asked.isEmpty());
}

// --- The pointer

TEST_F(TreemapPictureTest, HoverLightensARow) {
    add("a", 100);
    add("b", 100);
    show();
    movePointer(10, 100);
    EXPECT_EQ(m_picture->hoveredRow(), 0);
    EXPECT_EQ(colorAt(10, 190), hoverGround);
    EXPECT_EQ(colorAt(390, 190), cleanGround);
    movePointer(390, 100);
    EXPECT_EQ(m_picture->hoveredRow(), 1);
    EXPECT_EQ(colorAt(10, 190), cleanGround);
    EXPECT_EQ(colorAt(390, 190), hoverGround);
    m_model.clear();
    polished();
    EXPECT_EQ(m_picture->hoveredRow(), -1);
}

// --- Many

TEST_F(TreemapPictureTest, OfTenThousandRowsTheLargestAreSpoken) {
    for (int i = 0; i < 10'000; ++i)
        add("row", 1 + 1'000'000 / (1 + i));
    show();
    EXPECT_EQ(m_picture->count(), 10'000);
    ASSERT_EQ(m_picture->spokenCount(), 40);
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(m_picture->spokenRow(i), i);
}

} // namespace
} // namespace tidewright::test
