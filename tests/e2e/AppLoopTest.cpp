// The whole loop in a sample home, as the window goes through it: scan, look at what is selected,
// change that, review, clean, see the report change, find it in the history, scan again.

#include "core/platform/StandardFolders.h"
#include "core/probes/Tools.h"
#include "core/scan/RuleCatalog.h"
#include "tests/support/app/EventLoop.h"
#include "tests/support/app/SampleState.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace tidewright::test {

namespace {

using testing::SizeIs;

class AppLoop : public testing::Test {
protected:
    SampleState m_state;
    AppModel& m_model = m_state.model;

    void scan() {
        m_model.scan();
        ASSERT_TRUE(m_model.isScanning());
        ASSERT_TRUE(becomesTrue([this] { return !m_model.isScanning(); }));
        ASSERT_NE(m_model.report(), nullptr);
    }

    void clean() {
        m_model.startCleaning();
        ASSERT_TRUE(becomesTrue(
            [this] { return m_model.session()->phase() == CleaningSession::Phase::finished; }));
    }

    const ScanItem* itemWhere(const std::function<bool(const ScanItem&)>& holds) const {
        const auto& items = m_model.report()->items;
        const auto found = std::ranges::find_if(items, holds);
        return found == items.end() ? nullptr : &*found;
    }
};

TEST_F(AppLoop, EndsWithWhatWasPickedGoneAndAllElseThere) {
    scan();
    const Int64 recommended = m_model.selectedBytes();
    EXPECT_GT(m_model.selectedItems().size(), 30U);
    Int64 reclaimable = 0;
    for (const Category category : allCases<Category>())
        reclaimable += m_model.reclaimable(category);
    EXPECT_GE(reclaimable, recommended);

    const ScanItem unwanted = *itemWhere([](const ScanItem& item) {
        return item.decision == Decision::clean && AppModel::maySelect(item) && !item.urls.empty();
    });
    const ScanItem wanted = *itemWhere([](const ScanItem& item) {
        return item.decision == Decision::ask && AppModel::maySelect(item) && !item.isProjectItem &&
               std::holds_alternative<CleanMethod::Trash>(item.method.choice);
    });
    m_model.setSelected(unwanted, false);
    m_model.setSelected(wanted, true);
    EXPECT_EQ(m_model.selectedBytes(), recommended - unwanted.sizeBytes + wanted.sizeBytes);

    const std::vector<ScanItem> selected = m_model.selectedItems();
    const auto before = m_model.report();
    m_model.reviewSelection();
    CleaningSession& session = *m_model.session();
    EXPECT_EQ(session.totalBytes(), m_model.selectedBytes());
    EXPECT_GE(session.trashBytes(), wanted.sizeBytes);
    clean();

    ASSERT_THAT(session.summary()->outcomes, SizeIs(selected.size()));
    for (const CleanOutcome& outcome : session.summary()->outcomes)
        EXPECT_TRUE(outcome.status.isSuccess())
            << outcome.title << ": " << outcome.status.reason().value_or("");
    EXPECT_EQ(session.completedCount(), selected.size());
    EXPECT_THAT(m_model.report()->items, SizeIs(before->items.size() - selected.size()));
    EXPECT_EQ(m_model.selectedItems().size(), 0U);
    EXPECT_FALSE(fileExists(wanted.urls.front()));
    EXPECT_TRUE(fileExists(unwanted.urls.front()));

    ASSERT_THAT(m_model.history().entries(), SizeIs(1));
    const HistoryEntry& entry = m_model.history().entries().front();
    EXPECT_EQ(entry.itemCount, static_cast<Int64>(selected.size()));
    EXPECT_EQ(entry.failures, 0);
    EXPECT_EQ(entry.estimatedFreed, session.summary()->estimatedFreed());
    EXPECT_EQ(entry.movedToTrash, session.trashBytes());
    ASSERT_TRUE(entry.logFile);
    EXPECT_TRUE(fileExists(*entry.logFile));
    EXPECT_EQ(HistoryStore(userDataDirectory(m_state.home).appending("Tidewright")).entries(),
              m_model.history().entries());

    m_model.closeSession();
    scan();
    for (const ScanItem& item : selected)
        EXPECT_EQ(itemWhere([&](const ScanItem& each) { return each.id == item.id; }), nullptr)
            << item.id;
    EXPECT_NE(itemWhere([&](const ScanItem& each) { return each.id == unwanted.id; }), nullptr);
}

TEST_F(AppLoop, AnInsightLeadsToItsItems) {
    m_model.settings().setCriticalSpaceGB(1'000'000); // no disk has so much
    scan();
    const Insight before = m_model.report()->insights.front();
    ASSERT_EQ(before.id, "space.critical");
    EXPECT_EQ(before.estimatedGain, m_model.report()->recommendedBytes());
    const std::vector<ScanItem> recommended = m_model.selectedItems();
    m_model.perform(before);
    ASSERT_NE(m_model.session(), nullptr);
    EXPECT_THAT(m_model.session()->items(), SizeIs(recommended.size()));
    clean();
    const Insight after = m_model.report()->insights.front();
    EXPECT_EQ(after.id, "space.critical");
    EXPECT_EQ(after.estimatedGain, m_model.report()->recommendedBytes());
    EXPECT_LT(after.estimatedGain, before.estimatedGain);
}

TEST_F(AppLoop, ASavedExclusionProtectsWhatIsInIt) {
    scan();
    const ScanItem item = *itemWhere([](const ScanItem& each) {
        return each.decision == Decision::clean &&
               std::holds_alternative<CleanMethod::Remove>(each.method.choice);
    });
    m_model.settings().setExclusions({item.urls.front()});
    // Without a scan in between, the last check of every path sees it.
    m_model.review({item.id});
    clean();
    EXPECT_FALSE(m_model.session()->summary()->outcomes.front().status.isSuccess());
    EXPECT_TRUE(fileExists(item.urls.front()));
    scan();
    const ScanItem* const again =
        itemWhere([&](const ScanItem& each) { return each.id == item.id; });
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->decision, Decision::keep);
    EXPECT_FALSE(m_model.isSelected(item.id));
}

TEST_F(AppLoop, ACancelledScanCanBeRepeated) {
    m_model.scan();
    m_model.cancelScan();
    EXPECT_FALSE(m_model.isScanning());
    ASSERT_TRUE(becomesTrue([this] { return m_state.workers.isIdle(); }));
    EXPECT_EQ(m_model.report(), nullptr);
    scan();
    EXPECT_GT(m_model.report()->items.size(), 30U);
}

} // namespace

} // namespace tidewright::test
