// The real screen in a window that no one sees.
#include "app/screens/AppWindows.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/app/StateTesting.h"
#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gmock/gmock.h>

namespace tidewright::test {
namespace {

using testing::ElementsAre;

constexpr auto sceneText = R"(
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Rectangle {
    required property ScreenModels models

    color: Theme.window

    InsightsView {
        anchors.fill: parent
        focus: true
        models: parent.models
    }
}
)";

Insight insight(const std::string& id, Insight::Severity severity) {
    Insight made;
    made.id = id;
    made.severity = severity;
    made.symbolName = "trash";
    made.title = "Insight " + id;
    made.message = "Something was noticed.";
    return made;
}

class InsightsViewTest : public testing::Test {
protected:
    InsightsViewTest() {
        QAccessible::setActive(true);
        registerStateTypes();
    }

    void show(QSize size = {960, 710}) {
        ASSERT_TRUE(m_scene.load(sceneText, size,
                                 {{QStringLiteral("models"), QVariant::fromValue(&m_models)}}));
    }
    void show(const ScanReport& report) {
        m_state.scanned(report);
        show();
    }
    std::vector<QQuickItem*> cards() {
        std::vector<QQuickItem*> cards;
        for (QQuickItem* each : m_scene.shownItems())
            if (each->property("severityColor").isValid())
                cards.push_back(each);
        return cards;
    }
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (QQuickItem* each : cards())
            names.push_back(QmlScene::accessible(each)->text(QAccessible::Name).toStdString());
        return names;
    }

    ScopedVariable m_motion{"TIDEWRIGHT_REDUCE_MOTION", "1"};
    TestState m_state;
    ScreenModels m_models{*m_state.model};
    QmlScene m_scene;
};

TEST_F(InsightsViewTest, BeforeAScanItAsksForOne) {
    show();
    EXPECT_TRUE(m_scene.hasNamed("Not scanned yet"));
    EXPECT_TRUE(m_scene.hasNamed("Scan your Mac to see what needs attention."));
    ScanReport report;
    report.insights = {insight("1", Insight::Severity::notice)};
    m_state.prepared = std::make_shared<const ScanReport>(report);
    m_scene.click(m_scene.named("Scan My Mac"));
    EXPECT_TRUE(QmlScene::wait([this] { return cards().size() == 1; }));
    EXPECT_FALSE(m_scene.hasNamed("Not scanned yet"));
}

TEST_F(InsightsViewTest, EveryInsightHasACardInTheOrderOfTheReport) {
    using Severity = Insight::Severity;
    ScanReport report;
    report.insights = {insight("1", Severity::critical), insight("2", Severity::warning),
                       insight("3", Severity::notice), insight("4", Severity::tip),
                       insight("5", Severity::tip)};
    report.insights[1].estimatedGain = 2'000'000'000;
    show(report);
    EXPECT_THAT(names(), ElementsAre("Insight 1, Something was noticed.",
                                     "Insight 2, Something was noticed., 2 GB",
                                     "Insight 3, Something was noticed.",
                                     "Insight 4, Something was noticed.",
                                     "Insight 5, Something was noticed."));
    const std::vector<QQuickItem*> shown = cards();
    const Theme& theme = m_scene.theme();
    const std::vector<QColor> colors{theme.red(), theme.orange(), theme.accent(), theme.teal(),
                                     theme.teal()};
    for (std::size_t i = 0; i < shown.size(); ++i) {
        EXPECT_EQ(shown[i]->property("severityColor").value<QColor>(), colors[i]) << i;
        EXPECT_FALSE(shown[i]->property("isCompact").toBool());
        if (i > 0) {
            EXPECT_EQ(shown[i]->y(), shown[i - 1]->y() + shown[i - 1]->height() + 14);
        }
    }
}

TEST_F(InsightsViewTest, TheButtonDoesWhatTheInsightProposes) {
    ScanReport report;
    report.insights = {insight("1", Insight::Severity::notice),
                       insight("2", Insight::Severity::notice)};
    report.insights[0].actionTitle = "Nothing to do"; // without an action
    report.insights[1].actionTitle = "Show projects";
    report.insights[1].action = Insight::Action::open(Insight::Destination::projects);
    show(report);
    EXPECT_FALSE(m_scene.hasNamed("Nothing to do"));
    m_scene.click(m_scene.named("Show projects"));
    EXPECT_EQ(m_state.model->destination(), Destination::category(Category::projects));
}

TEST_F(InsightsViewTest, EverySizeAndModeIsDrawnWithoutAWord) {
    ScanReport report;
    for (int i = 0; i < 20; ++i)
        report.insights.push_back(insight(std::to_string(i), Insight::Severity::warning));
    report.insights.front().message = std::string(600, 'x') + " " + std::string(300, 'y');
    show(report);
    for (const QSize size : {QSize(680, 550), QSize(960, 710), QSize(1380, 1250)})
        for (const bool isDark : {false, true}) {
            m_scene.window().resize(size);
            m_scene.root().setProperty("width", size.width());
            m_scene.root().setProperty("height", size.height());
            m_scene.theme().setSystemLook({isDark, {}, true});
            QmlScene::settle();
            EXPECT_FALSE(m_scene.picture().isNull());
            for (const QQuickItem* card : cards()) {
                EXPECT_GE(card->mapToScene({}).x(), 24);
                EXPECT_LE(card->mapToScene({card->width(), 0}).x(), size.width() - 24);
            }
        }
}

} // namespace
} // namespace tidewright::test
