#include "app/state/CategoryListModel.h"

#include "tests/support/app/ModelWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::columnOf;
using test::ModelWatch;
using test::testItem;
using test::TestState;
using testing::Each;
using testing::ElementsAre;

class CategoryListModelTest : public testing::Test {
protected:
    TestState m_state;
    CategoryListModel m_model{*m_state.model};
    ModelWatch m_watch{m_model};

    AppModel& app() { return *m_state.model; }

    void scanned(std::vector<ScanItem> items) {
        ScanReport report;
        report.items = std::move(items);
        m_state.scanned(std::move(report));
    }
};

ScanItem item(Category category, Decision decision, Int64 bytes) {
    ScanItem item = testItem(category, std::string(rawValue(decision)), bytes);
    item.decision = decision;
    return item;
}

TEST_F(CategoryListModelTest, ThereIsATileForEachCategory) {
    EXPECT_THAT(columnOf(m_model, "category"),
                ElementsAre("android", "xcode", "javascript", "system", "projects"));
    EXPECT_THAT(columnOf(m_model, "title"),
                ElementsAre("Android", "Xcode & iOS", "JavaScript", "System", "Projects"));
    EXPECT_THAT(columnOf(m_model, "symbolName"),
                ElementsAre("cpu", "hammer", "curlybraces", "macwindow", "folder"));
    EXPECT_THAT(columnOf(m_model, "hint"),
                ElementsAre("Shows Android items", "Shows Xcode & iOS items",
                            "Shows JavaScript items", "Shows System items",
                            "Shows Projects items"));
    EXPECT_THAT(columnOf(m_model, "isTidy"), Each("true"));
    EXPECT_THAT(columnOf(m_model, "headline"), Each("All tidy"));
    EXPECT_THAT(columnOf(m_model, "caption"), Each("Zero KB kept on purpose"));
}

TEST_F(CategoryListModelTest, ATileTellsWhatIsSelectedAndWhatIsKept) {
    const ScanItem optional = item(Category::android, Decision::ask, 3'000);
    scanned({optional, item(Category::android, Decision::keep, 4'000),
             item(Category::android, Decision::info, 50'000),
             item(Category::xcode, Decision::clean, 2'000'000),
             item(Category::system, Decision::clean, 0)});
    EXPECT_THAT(columnOf(m_model, "headline"),
                ElementsAre("All tidy", "2 MB", "All tidy", "All tidy", "All tidy"));
    EXPECT_THAT(columnOf(m_model, "caption"),
                ElementsAre("4 KB kept on purpose", "selected · Zero KB kept",
                            "Zero KB kept on purpose", "Zero KB kept on purpose",
                            "Zero KB kept on purpose"));
    EXPECT_THAT(columnOf(m_model, "isTidy"), ElementsAre("true", "false", "true", "true", "true"));
    (void)m_watch.told();
    app().setSelected(optional, true);
    EXPECT_EQ(columnOf(m_model, "headline").front(), "3 KB");
    EXPECT_EQ(columnOf(m_model, "caption").front(), "selected · 4 KB kept");
    EXPECT_THAT(m_watch.told(), ElementsAre("changed 0-0"));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(CategoryListModelTest, ATileOpensItsCategory) {
    for (int row = 0; row < m_model.count(); ++row) {
        m_model.open(row);
        EXPECT_EQ(app().destinationName().toStdString(),
                  columnOf(m_model, "category")[static_cast<std::size_t>(row)]);
    }
    m_model.open(-1);
    m_model.open(5);
    EXPECT_EQ(app().destination(), Destination::category(Category::projects));
}

TEST_F(CategoryListModelTest, ItOutlivesTheAppModel) {
    scanned({item(Category::xcode, Decision::clean, 1)});
    m_state.model.reset();
    m_model.open(0);
    EXPECT_EQ(columnOf(m_model, "headline")[1], "1 byte");
    EXPECT_EQ(m_watch.complaint(), "");
}

} // namespace
} // namespace tidewright
