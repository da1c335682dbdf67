#include "app/state/SettingsModel.h"
#include "tests/support/app/ModelWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

#include <limits>

namespace tidewright {
namespace {

using test::columnOf;
using test::ModelWatch;
using test::shownBy;
using test::TestState;
using testing::ElementsAre;
using testing::IsEmpty;

/// One row of the settings' tables, as told to the user.
struct Row {
    bool isOfDisk;
    int row;
    const char* property; ///< of the store
    const char* label;
    qint64 value;
    qint64 lowest;
    qint64 highest;
    qint64 step;
};

constexpr Row rows[] = {
    {true, 0, "lowSpaceGB", "Warn below 25 GB free", 25, 5, 200, 5},
    {true, 1, "criticalSpaceGB", "Critical below 10 GB free", 10, 1, 100, 1},
    {true, 2, "largeTrashGB", "Large Trash above 5 GB", 5, 1, 100, 1},
    {false, 0, "dormantProjectDays", "Projects are dormant after 60 days", 60, 14, 365, 7},
    {false, 1, "unusedAppDays", "Apps are unused after 90 days", 90, 30, 720, 15},
    {false, 2, "oldDownloadDays", "Downloads are old after 30 days", 30, 7, 365, 7},
};

class ThresholdListModelTest : public testing::TestWithParam<Row> {
protected:
    TestState m_state;
    SettingsModel m_settings{*m_state.model};
    ThresholdListModel& m_model =
        GetParam().isOfDisk ? *m_settings.diskThresholds() : *m_settings.ageThresholds();
    ModelWatch m_watch{m_model};
    const int m_row = GetParam().row;

    SettingsStore& store() { return m_state.model->settings(); }
    qint64 stored() { return store().property(GetParam().property).toLongLong(); }
    void put(qint64 value) { store().setProperty(GetParam().property, value); }
    QVariant shown(const char* role) { return shownBy(m_model, m_row, role); }

    void TearDown() override { EXPECT_EQ(m_watch.complaint(), ""); }
};

INSTANTIATE_TEST_SUITE_P(All,
                         ThresholdListModelTest,
                         testing::ValuesIn(rows),
                         [](const auto& each) { return std::string(each.param.property); });

TEST_P(ThresholdListModelTest, ShowsItsValueAndItsLimits) {
    ASSERT_EQ(m_model.count(), 3);
    EXPECT_EQ(shown("label").toString(), QString::fromLatin1(GetParam().label));
    EXPECT_EQ(shown("value").toLongLong(), GetParam().value);
    EXPECT_EQ(shown("lowest").toLongLong(), GetParam().lowest);
    EXPECT_EQ(shown("highest").toLongLong(), GetParam().highest);
    EXPECT_EQ(shown("step").toLongLong(), GetParam().step);
    EXPECT_TRUE(shown("canDecrease").toBool());
    EXPECT_TRUE(shown("canIncrease").toBool());
}

TEST_P(ThresholdListModelTest, AStepIsSeenInTheStoreAndInItsRowAlone) {
    m_model.increase(m_row);
    EXPECT_EQ(stored(), GetParam().value + GetParam().step);
    EXPECT_THAT(m_watch.told(),
                ElementsAre("changed " + std::to_string(m_row) + "-" + std::to_string(m_row)));
    EXPECT_TRUE(shown("label").toString().contains(QString::number(stored())));
    m_model.decrease(m_row);
    EXPECT_EQ(stored(), GetParam().value);
}

TEST_P(ThresholdListModelTest, StopsAtItsBounds) {
    for (int i = 0; i < 400; ++i)
        m_model.increase(m_row);
    EXPECT_EQ(stored(), GetParam().highest);
    EXPECT_FALSE(shown("canIncrease").toBool());
    EXPECT_TRUE(shown("canDecrease").toBool());
    m_model.decrease(m_row);
    EXPECT_EQ(stored(), GetParam().highest - GetParam().step);
    for (int i = 0; i < 400; ++i)
        m_model.decrease(m_row);
    EXPECT_EQ(stored(), GetParam().lowest);
    EXPECT_FALSE(shown("canDecrease").toBool());
    EXPECT_TRUE(shown("canIncrease").toBool());
    m_model.increase(m_row);
    EXPECT_EQ(stored(), GetParam().lowest + GetParam().step);
}

TEST_P(ThresholdListModelTest, FromBeyondItsBoundsTheFirstStepLeadsWithin) {
    constexpr qint64 farthest = std::numeric_limits<qint64>::max() / gigabyte;
    for (const qint64 above : {GetParam().highest + 1, farthest}) {
        put(above);
        EXPECT_EQ(shown("value").toLongLong(), above) << "shown as it stands";
        EXPECT_FALSE(shown("canIncrease").toBool());
        m_model.increase(m_row);
        EXPECT_EQ(stored(), above);
        m_model.decrease(m_row);
        EXPECT_EQ(stored(), std::min(GetParam().highest, above - GetParam().step));
    }
    for (const qint64 below : {GetParam().lowest - 1, -farthest}) {
        put(below);
        EXPECT_EQ(shown("value").toLongLong(), below);
        EXPECT_FALSE(shown("canDecrease").toBool());
        m_model.decrease(m_row);
        EXPECT_EQ(stored(), below);
        m_model.increase(m_row);
        EXPECT_EQ(stored(), std::max(GetParam().lowest, below + GetParam().step));
    }
}

TEST_P(ThresholdListModelTest, StepsGoFromWhereTheValueStands) {
    put(GetParam().lowest + GetParam().step + 1);
    m_model.increase(m_row);
    EXPECT_EQ(stored(), GetParam().lowest + 2 * GetParam().step + 1);
    put(GetParam().highest - GetParam().step + 1);
    m_model.increase(m_row);
    EXPECT_EQ(stored(), GetParam().highest) << "the last step is as long as there is room";
    put(GetParam().lowest + GetParam().step - 1);
    m_model.decrease(m_row);
    EXPECT_EQ(stored(), GetParam().lowest);
}

TEST_P(ThresholdListModelTest, AValueIsBroughtWithinTheBounds) {
    for (const auto& [asked, set] : {std::pair{GetParam().lowest + 1, GetParam().lowest + 1},
                                     {GetParam().lowest - 1, GetParam().lowest},
                                     {std::numeric_limits<qint64>::min(), GetParam().lowest},
                                     {std::numeric_limits<qint64>::max(), GetParam().highest}}) {
        m_model.setValue(m_row, asked);
        EXPECT_EQ(stored(), set);
    }
}

TEST_P(ThresholdListModelTest, RowsThatAreNoneChangeNothing) {
    const ScanSettings before = store().scanSettings();
    for (const int row : {-1, 3, 1000}) {
        m_model.increase(row);
        m_model.decrease(row);
        m_model.setValue(row, 50);
    }
    EXPECT_EQ(store().scanSettings(), before);
    EXPECT_THAT(m_watch.told(), IsEmpty());
}

TEST_P(ThresholdListModelTest, OutlivesTheModel) {
    m_state.model.reset();
    m_model.increase(m_row);
    m_model.decrease(m_row);
    m_model.setValue(m_row, 50);
    EXPECT_EQ(shown("value").toLongLong(), GetParam().value);
    EXPECT_THAT(m_watch.told(), IsEmpty());
}

} // namespace
} // namespace tidewright
