#include "app/state/ScreenModels.h"

#include "tests/support/app/StateTesting.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

class ScreenModelsTest : public testing::Test {
protected:
    const Date m_now = Date(1'772'366'400s);
    test::TestState m_state;
    ScreenModels m_models{*m_state.model, [this] { return m_now; }};
};

TEST_F(ScreenModelsTest, EachIsFoundByItsName) {
    const std::vector<std::pair<const char*, QObject*>> models = {
        {"app", m_state.model.get()},      {"overview", m_models.overview()},
        {"sidebar", m_models.sidebar()},   {"categories", m_models.categories()},
        {"insights", m_models.insights()}, {"topInsights", m_models.topInsights()},
        {"projects", m_models.projects()}, {"session", m_models.session()},
        {"menuBar", m_models.menuBar()},
    };
    for (const auto& [name, model] : models) {
        ASSERT_NE(model, nullptr) << name;
        EXPECT_EQ(m_models.property(name).value<QObject*>(), model) << name;
        const QMetaObject& meta = *m_models.metaObject();
        EXPECT_TRUE(meta.property(meta.indexOfProperty(name)).isConstant()) << name;
    }
}

TEST_F(ScreenModelsTest, FourInsightsAreTheMostOnTop) {
    ScanReport report;
    report.insights.resize(5);
    for (std::size_t i = 0; i < report.insights.size(); ++i)
        report.insights[i].id = std::to_string(i);
    m_state.scanned(report);
    EXPECT_EQ(m_models.insights()->count(), 5);
    EXPECT_EQ(m_models.topInsights()->count(), 4);
    EXPECT_TRUE(m_models.topInsights()->hasMore());
    report.insights.pop_back();
    m_state.scanned(report);
    EXPECT_FALSE(m_models.topInsights()->hasMore());
}

TEST_F(ScreenModelsTest, ItemsAreANewListForWhoAsks) {
    ScanItem item = test::testItem(Category::xcode, "a");
    item.lastUsed = m_now - 3min;
    ScanReport report;
    report.items = {item};
    m_state.scanned(report);
    std::unique_ptr<ItemListModel> items;
    ItemListModel* called = nullptr;
    // As QML does.
    QMetaObject::invokeMethod(&m_models, "items", Q_RETURN_ARG(tidewright::ItemListModel*, called),
                              Q_ARG(QString, QStringLiteral("xcode")));
    items.reset(called);
    ASSERT_NE(items, nullptr);
    EXPECT_EQ(items->parent(), nullptr);
    EXPECT_EQ(items->count(), 1);
    items->setFocusedRow(0);
    EXPECT_EQ(items->focused(), ItemDetails::of(item, true, m_now));
    const std::unique_ptr<ItemListModel> other(m_models.items(QStringLiteral("xcode")));
    EXPECT_NE(other, items);
    for (const char* unknown : {"", "overview", "Xcode"})
        EXPECT_EQ(m_models.items(QString::fromUtf8(unknown)), nullptr) << unknown;
}

TEST_F(ScreenModelsTest, MapIsShownWhereThereIsRoomUntilTheUserChooses) {
    int told = 0;
    QObject::connect(&m_models, &ScreenModels::mapShownChanged, &m_models, [&] { ++told; });
    EXPECT_TRUE(m_models.mapShownInRoom());
    EXPECT_FALSE(m_models.mapShownInTightness());
    for (const bool isShown : {true, false, true}) {
        QMetaObject::invokeMethod(&m_models, "showMap", Q_ARG(bool, isShown)); // as QML does
        EXPECT_EQ(m_models.mapShownInRoom(), isShown);
        EXPECT_EQ(m_models.mapShownInTightness(), isShown);
    }
    EXPECT_EQ(told, 3);
    m_models.showMap(true);
    EXPECT_EQ(told, 3);
}

} // namespace
} // namespace tidewright
