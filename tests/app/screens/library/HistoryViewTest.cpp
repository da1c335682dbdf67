// The real screen in a window that no one sees, on a history of the test's.
#include "app/screens/AppWindows.h"
#include "core/model/Coding.h"
#include "core/platform/FileReplacement.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/app/StateTesting.h"
#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gmock/gmock.h>

#include <ranges>

namespace tidewright::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::Ge;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr auto sceneText = R"(
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Rectangle {
    required property ScreenModels models

    color: Theme.window

    HistoryView {
        objectName: "view"
        anchors.fill: parent
        focus: true
        models: parent.models
    }
}
)";

// Of what the window's sidebar and toolbar leave in windows of 900, 1180 and 1600.
constexpr QSize small{680, 550};
constexpr QSize usual{960, 710};
constexpr QSize large{1380, 1250};

constexpr Date now(std::chrono::seconds(1'700'000'000));
constexpr std::chrono::hours day(24);

class HistoryViewTest : public testing::Test {
protected:
    /// With these entries in the history's file.
    explicit HistoryViewTest(std::vector<HistoryEntry> entries = {})
        : m_entries(std::move(entries)) {
        QAccessible::setActive(true);
        registerStateTypes();
    }

    /// A cleanup of so many days ago that freed so much with three items.
    void record(int days, Int64 bytes, int failures = 0, std::optional<URL> log = std::nullopt) {
        CleanSummary summary;
        summary.date = now - day * days;
        for (int i = 0; i < 3; ++i)
            summary.outcomes.push_back(
                {"a", "A", CleanOutcome::Status::cleaned(), i == 0 ? bytes : 0});
        for (int i = 0; i < failures; ++i)
            summary.outcomes.push_back({"b", "B", CleanOutcome::Status::failed("no"), 1});
        summary.logFile = std::move(log);
        m_state.model->history().record(summary);
    }
    void show(QSize size = usual) {
        ASSERT_TRUE(m_scene.load(sceneText, size,
                                 {{QStringLiteral("models"), QVariant::fromValue(&m_models)}}));
    }
    /// Five cleanups, ten days apart, the older the smaller.
    void showFive() {
        for (int i = 0; i < 5; ++i)
            record(40 - 10 * i, (i + 1) * gigabyte);
        show();
    }

    void resize(QSize size) {
        m_scene.window().resize(size);
        m_scene.root().setProperty("width", size.width());
        m_scene.root().setProperty("height", size.height());
        QmlScene::settle();
    }

    HistoryListModel& history() { return *m_models.history(); }

    std::vector<QQuickItem*> shown(QAccessible::Role role) {
        std::vector<QQuickItem*> found;
        for (QQuickItem* each : m_scene.shownItems())
            if (const auto* known = QmlScene::accessible(each); known && known->role() == role)
                found.push_back(each);
        return found;
    }
    static std::string nameOf(QQuickItem* item) {
        return QmlScene::accessible(item)->text(QAccessible::Name).toStdString();
    }
    /// From left to right.
    std::vector<QQuickItem*> bars() {
        auto bars = shown(QAccessible::Graphic);
        std::ranges::stable_sort(bars, {}, [](QQuickItem* each) { return each->x(); });
        return bars;
    }
    /// From top to bottom.
    std::vector<QQuickItem*> rows() {
        auto rows = shown(QAccessible::ListItem);
        std::ranges::sort(rows, {}, [](QQuickItem* each) { return each->mapToScene({}).y(); });
        return rows;
    }
    std::vector<std::string> marked() {
        std::vector<std::string> marked;
        for (QQuickItem* each : rows())
            if (each->property("marked").toBool())
                marked.push_back(nameOf(each));
        return marked;
    }
    /// What the tip says, empty where there is none.
    std::string tipText() {
        for (QQuickItem* each : m_scene.shownItems())
            if (each->inherits("QQuickItem") && each->property("topColor").isValid() &&
                each->property("freedText").isValid())
                return each->property("freedText").toString().toStdString();
        return {};
    }

    ScopedVariable m_motion{"TIDEWRIGHT_REDUCE_MOTION", "1"};
    std::vector<URL> m_revealed;
    std::vector<HistoryEntry> m_entries;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.reveal = [this](const std::vector<URL>& urls) { m_revealed = urls; };
        if (m_entries.empty())
            return;
        constexpr CodingStyle style{CodingStyle::Locations::fileURL,
                                    CodingStyle::Dates::secondsSince2001};
        EXPECT_TRUE(makeFolder(environment.historyDirectory));
        EXPECT_TRUE(replaceFile(environment.historyDirectory.appending("history.json"),
                                jsonText(encode(m_entries, style), JsonLayout::compact)));
    }};
    ScreenModels m_models{*m_state.model, [] { return now; }};
    QmlScene m_scene;
};

TEST_F(HistoryViewTest, WithoutCleanupsItSaysSo) {
    show();
    EXPECT_TRUE(m_scene.hasNamed("No cleanups yet"));
    EXPECT_TRUE(m_scene.hasNamed(
        "Each cleanup is recorded here with an audit log of every path and command."));
    EXPECT_THAT(shown(QAccessible::List), IsEmpty());
    record(0, gigabyte);
    EXPECT_TRUE(QmlScene::wait([this] { return rows().size() == 1; }));
    EXPECT_FALSE(m_scene.hasNamed("No cleanups yet"));
}

TEST_F(HistoryViewTest, OneCleanupHasNoChart) {
    record(0, 2'500'000'000);
    show();
    EXPECT_TRUE(m_scene.hasNamed("2.5 GB freed across 1 cleanups"));
    EXPECT_THAT(shown(QAccessible::Chart), IsEmpty());
    EXPECT_THAT(bars(), IsEmpty());
    EXPECT_FALSE(m_scene.hasText("Freed (GB)"));
    record(0, gigabyte);
    EXPECT_TRUE(QmlScene::wait([this] { return bars().size() == 2; }));
    EXPECT_TRUE(m_scene.hasNamed("3.5 GB freed across 2 cleanups"));
}

TEST_F(HistoryViewTest, TheNewestStandsFirstWithWhatFailed) {
    record(3, gigabyte);
    record(1, 2 * gigabyte, 2);
    show();
    ASSERT_EQ(rows().size(), 2U);
    EXPECT_THAT(nameOf(rows()[0]), EndsWith(", 2 GB, 3 items cleaned, 2 failed"));
    EXPECT_THAT(nameOf(rows()[1]),
                AllOf(EndsWith(", 1 GB, 3 items cleaned"), Not(HasSubstr("failed"))));
    EXPECT_THAT(nameOf(rows()[1]), HasSubstr("Nov 11, 2023"));
    EXPECT_TRUE(m_scene.hasText("3 items cleaned"));
    EXPECT_TRUE(m_scene.hasText("3 items cleaned, 2 failed"));
}

// The log

TEST_F(HistoryViewTest, TheLogIsShownInEveryWay) {
    const URL log = m_state.home.file("log", "x");
    record(3, gigabyte);
    record(1, gigabyte, 0, log);
    show();
    const auto expectRevealed = [&](const char* how) {
        EXPECT_THAT(m_revealed, ElementsAre(log)) << how;
        m_revealed.clear();
    };
    ASSERT_EQ(std::ranges::count(shown(QAccessible::Button) | std::views::transform(nameOf),
                                 "Show audit log"),
              1);
    m_scene.click(m_scene.named("Show audit log"));
    expectRevealed("button");
    m_scene.pressByReader(m_scene.named("Show audit log"));
    expectRevealed("reader");
    m_scene.click(rows()[0]);
    m_scene.press(Qt::Key_Return);
    expectRevealed("return");
    const auto choose = [&] {
        ASSERT_EQ(shown(QAccessible::MenuItem).size(), 1U);
        EXPECT_EQ(nameOf(shown(QAccessible::MenuItem)[0]), "Show audit log");
        m_scene.click(shown(QAccessible::MenuItem)[0]);
        EXPECT_TRUE(QmlScene::wait([&] { return shown(QAccessible::MenuItem).empty(); }));
    };
    m_scene.click(rows()[0], Qt::RightButton);
    choose();
    expectRevealed("menu");
    m_scene.press(Qt::Key_Menu);
    choose();
    expectRevealed("menu key");
    // The other one has none.
    m_scene.click(rows()[1], Qt::RightButton);
    m_scene.press(Qt::Key_Menu);
    m_scene.press(Qt::Key_Return);
    EXPECT_THAT(shown(QAccessible::MenuItem), IsEmpty());
    EXPECT_THAT(m_revealed, IsEmpty());
}

// The chart

TEST_F(HistoryViewTest, EachCleanupHasABarByDay) {
    showFive();
    const auto found = bars();
    ASSERT_EQ(found.size(), 5U);
    QQuickItem* const chart = shown(QAccessible::Chart).at(0);
    EXPECT_EQ(chart->height(), 200);
    EXPECT_TRUE(m_scene.hasText("Freed (GB)"));
    EXPECT_TRUE(m_scene.hasText("Date"));
    const auto reversed = rows();
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(nameOf(found[i]), nameOf(reversed[4 - i]));
        EXPECT_NEAR(found[i]->height(), found[4]->height() * static_cast<double>(i + 1) / 5, 1.5);
        EXPECT_GE(found[i]->mapToItem(chart, QPointF()).x(), 0);
        EXPECT_LE(found[i]->mapToItem(chart, QPointF(found[i]->width(), 0)).x(), chart->width());
    }
    EXPECT_NEAR(found[4]->x() - found[0]->x(), 4 * (found[1]->x() - found[0]->x()), 3);
}

TEST_F(HistoryViewTest, BarsOfOneDayStandOnEachOther) {
    record(3, gigabyte);
    record(3, 2 * gigabyte);
    show();
    const auto found = bars();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]->x(), found[1]->x());
    const auto lower = nameOf(found[0]) == nameOf(rows()[1]) ? found[0] : found[1];
    const auto upper = lower == found[0] ? found[1] : found[0];
    EXPECT_EQ(upper->y() + upper->height(), lower->y());
    EXPECT_NEAR(upper->height(), 2 * lower->height(), 2);
}

TEST_F(HistoryViewTest, CleanupsThatFreedNothingAreSeenToo) {
    record(3, 0);
    record(1, 0);
    show();
    for (const QQuickItem* bar : bars())
        EXPECT_GE(bar->height(), 2);
    EXPECT_TRUE(m_scene.hasNamed("Zero KB freed across 2 cleanups"));
}

TEST_F(HistoryViewTest, HoverShowsTheCleanupAndItsRow) {
    showFive();
    EXPECT_EQ(tipText(), "");
    m_scene.moveTo(bars()[2]);
    EXPECT_TRUE(QmlScene::wait([this] { return tipText() == "3 GB"; }));
    EXPECT_THAT(marked(), ElementsAre(nameOf(rows()[2])));
    EXPECT_EQ(history().focusedRow(), -1);
    m_scene.moveTo(bars()[4]);
    EXPECT_TRUE(QmlScene::wait([this] { return tipText() == "5 GB"; }));
    m_scene.moveTo(rows()[4]);
    EXPECT_TRUE(QmlScene::wait([this] { return tipText().empty(); }));
    EXPECT_THAT(marked(), IsEmpty());
}

TEST_F(HistoryViewTest, TheTipStaysInTheWindow) {
    showFive();
    for (const QSize size : {small, usual, large}) {
        resize(size);
        for (QQuickItem* bar : bars()) {
            m_scene.moveTo(bar);
            ASSERT_TRUE(QmlScene::wait(
                [&] { return tipText() == bar->property("freedText").toString().toStdString(); }));
            for (QQuickItem* each : m_scene.shownItems()) {
                if (!each->property("topColor").isValid() || !each->property("freedText").isValid())
                    continue;
                EXPECT_GE(each->mapToScene({}).x(), 0);
                EXPECT_LE(each->mapToScene({each->width(), 0}).x(), size.width());
                const QRectF tip = each->mapRectToScene(each->boundingRect());
                EXPECT_FALSE(tip.intersects(bar->mapRectToScene(bar->boundingRect())));
            }
        }
    }
}

TEST_F(HistoryViewTest, KeysGoFromBarToBar) {
    showFive();
    shown(QAccessible::Chart).at(0)->forceActiveFocus(Qt::TabFocusReason);
    const std::vector<std::pair<Qt::Key, int>> steps{
        {Qt::Key_unknown, 0}, {Qt::Key_Left, 1}, {Qt::Key_Left, 2}, {Qt::Key_Right, 1},
        {Qt::Key_Home, 4},    {Qt::Key_Left, 4}, {Qt::Key_End, 0},  {Qt::Key_Right, 0}};
    for (const auto& [key, row] : steps) {
        if (key != Qt::Key_unknown)
            m_scene.press(key);
        EXPECT_EQ(history().focusedRow(), row);
        QQuickItem* const focused = m_scene.window().activeFocusItem();
        ASSERT_NE(focused, nullptr);
        EXPECT_EQ(nameOf(focused), nameOf(rows()[static_cast<std::size_t>(row)]));
        EXPECT_EQ(QmlScene::accessible(focused)->role(), QAccessible::Graphic);
        EXPECT_EQ(tipText(), focused->property("freedText").toString().toStdString());
    }
    m_scene.press(Qt::Key_Tab);
    EXPECT_EQ(tipText(), "");
    EXPECT_EQ(nameOf(m_scene.window().activeFocusItem()), nameOf(rows()[0]));
    m_scene.press(Qt::Key_Down);
    EXPECT_EQ(history().focusedRow(), 1);
    m_scene.press(Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(QmlScene::accessible(m_scene.window().activeFocusItem())->role(),
              QAccessible::Graphic);
    EXPECT_EQ(nameOf(m_scene.window().activeFocusItem()), nameOf(rows()[1]));
}

TEST_F(HistoryViewTest, AClickedBarFocusesItsRow) {
    for (int i = 0; i < 60; ++i)
        record(60 - i, gigabyte);
    show(small);
    QQuickItem* const oldest = bars()[0];
    m_scene.click(oldest);
    EXPECT_EQ(history().focusedRow(), 59);
    EXPECT_TRUE(oldest->hasActiveFocus());
    EXPECT_EQ(nameOf(rows().back()), nameOf(oldest)); // it was scrolled to
    EXPECT_TRUE(rows().back()->property("focused").toBool());
    m_scene.pressByReader(bars()[59]);
    EXPECT_EQ(history().focusedRow(), 0);
}

TEST_F(HistoryViewTest, TheFocusedBarStaysWhenACleanupIsAdded) {
    showFive();
    m_scene.click(bars()[2]);
    const std::string name = nameOf(bars()[2]);
    record(0, 20 * gigabyte);
    EXPECT_TRUE(QmlScene::wait([this] { return bars().size() == 6; }));
    EXPECT_EQ(history().focusedRow(), 3);
    EXPECT_EQ(nameOf(m_scene.window().activeFocusItem()), name);
}

TEST_F(HistoryViewTest, LabelsNeverOverlap) {
    for (const int span : {1, 9, 30, 100, 400, 2'000}) {
        record(span, gigabyte);
        if (!m_scene.hasItem("view")) {
            record(0, 2 * gigabyte);
            show();
        }
        for (const QSize size : {QSize(460, 550), small, usual, large}) {
            resize(size);
            QQuickItem* const chart = shown(QAccessible::Chart).at(0);
            std::vector<QRectF> labels;
            for (QQuickItem* each : m_scene.shownItems())
                if (each->property("lineCount").isValid() && chart->isAncestorOf(each))
                    labels.push_back(each->mapRectToItem(chart, each->boundingRect()));
            EXPECT_THAT(labels.size(), Ge(6U));
            for (const QRectF& label : labels) {
                EXPECT_GE(label.left(), 0) << span;
                EXPECT_LE(label.right(), chart->width()) << span;
                EXPECT_GE(label.top(), 0) << span;
                EXPECT_LE(label.bottom(), chart->height() + 1) << span;
                for (const QRectF& other : labels)
                    if (&other != &label) {
                        EXPECT_FALSE(label.intersects(other)) << span << " " << size.width();
                    }
            }
        }
    }
}

TEST_F(HistoryViewTest, EverySizeAndModeIsDrawnWithoutAWord) {
    showFive();
    for (const QSize size : {small, usual, large})
        for (const bool isDark : {false, true}) {
            resize(size);
            m_scene.theme().setSystemLook({isDark, {}, true});
            QmlScene::settle();
            EXPECT_FALSE(m_scene.picture().isNull());
            const QQuickItem* const list = shown(QAccessible::List).at(0);
            EXPECT_EQ(list->mapToScene({0, list->height()}).y(), size.height());
            EXPECT_GE(list->height(), 150);
        }
}

class LongHistoryViewTest : public HistoryViewTest {
protected:
    LongHistoryViewTest() : HistoryViewTest(thousand()) {}

    static std::vector<HistoryEntry> thousand() {
        std::vector<HistoryEntry> entries(1'000);
        for (int i = 0; i < 1'000; ++i) {
            HistoryEntry& each = entries[static_cast<std::size_t>(i)];
            each.id = std::to_string(i);
            each.date = now - day * (1'000 - i);
            each.estimatedFreed = (i % 30 + 1) * gigabyte;
        }
        return entries;
    }
};

TEST_F(LongHistoryViewTest, AThousandCleanupsAreShownWithFewRows) {
    show(small);
    EXPECT_EQ(bars().size(), 1'000U);
    EXPECT_LT(rows().size(), 30U);
    shown(QAccessible::Chart).at(0)->forceActiveFocus(Qt::TabFocusReason);
    m_scene.press(Qt::Key_Home);
    EXPECT_EQ(history().focusedRow(), 999);
    EXPECT_LT(rows().size(), 30U);
    EXPECT_EQ(nameOf(rows().back()), nameOf(m_scene.window().activeFocusItem()));
    for (const QSize size : {usual, small, large}) {
        resize(size);
        for (const QQuickItem* bar : {bars().front(), bars().back()}) {
            EXPECT_GE(bar->x(), 0);
            EXPECT_LE(bar->x() + bar->width(), bar->parentItem()->width());
        }
    }
}

} // namespace
} // namespace tidewright::test
