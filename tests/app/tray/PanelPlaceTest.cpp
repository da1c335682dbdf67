#include "app/tray/PanelPlace.h"

#include <QPoint>
#include <QSize>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

struct Case {
    const char* name;
    QRect item;
    QSize panel;
    QRect room;
    QPoint expected;
};

const QRect screen(0, 0, 1000, 800);
const QRect belowABar(0, 30, 1000, 770);
const QSize panel(320, 400);

class PanelPlaceTest : public testing::TestWithParam<Case> {};

TEST_P(PanelPlaceTest, StandsAtItsItemWithinTheRoom) {
    const Case& given = GetParam();
    const QPoint place = panelPlace(given.item, given.panel, given.room);
    EXPECT_EQ(place.x(), given.expected.x());
    EXPECT_EQ(place.y(), given.expected.y());
}

INSTANTIATE_TEST_SUITE_P(
    Places,
    PanelPlaceTest,
    testing::Values(
        Case{"below an item above", {500, 0, 20, 30}, panel, belowABar, {350, 36}},
        Case{"above an item below", {500, 770, 20, 30}, panel, {0, 0, 1000, 770}, {350, 364}},
        Case{"at the right edge", {980, 0, 20, 30}, panel, belowABar, {674, 36}},
        Case{"at the left edge", {0, 0, 20, 30}, panel, belowABar, {6, 36}},
        Case{"by the pointer", {QPoint(500, 790), QSize(1, 1)}, panel, screen, {341, 384}},
        Case{"in the middle", {500, 300, 20, 20}, panel, screen, {350, 326}},
        Case{"too large", {500, 0, 20, 30}, {2000, 2000}, belowABar, {6, 36}},
        Case{"on a second screen", {1500, 0, 20, 30}, panel, {1000, 30, 1000, 770}, {1350, 36}},
        Case{"on a screen to the left",
             {-500, 0, 20, 30},
             panel,
             {-1000, 30, 1000, 770},
             {-650, 36}}),
    [](const testing::TestParamInfo<Case>& each) {
        std::string name;
        for (const char* c = each.param.name; *c != '\0'; ++c)
            name += *c == ' ' ? '_' : *c;
        return name;
    });

} // namespace
} // namespace tidewright
