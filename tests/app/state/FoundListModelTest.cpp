#include "app/state/FoundListModel.h"

#include "app/state/LargeFileListModel.h"
#include "tests/support/app/ModelWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using test::columnOf;
using test::ModelWatch;
using test::TestState;
using testing::ElementsAre;
using testing::IsEmpty;
using Column = FoundListModel::Column;

constexpr Date now(1'700'000'000s);

/// Changed so many days ago.
LargeFile file(const std::string& name, std::optional<int> days, Int64 bytes = gigabyte) {
    LargeFile file{.url = URL("/home/test/" + name), .sizeBytes = bytes, .modified = std::nullopt};
    if (days)
        file.modified = now - 24h * *days;
    return file;
}

class FoundListModelTest : public testing::Test {
protected:
    TestState m_state;
    LargeFileListModel m_files{*m_state.model, [] { return now; }};
    FoundListModel& m_model = m_files;
    ModelWatch m_watch{m_model};

    void scanned(std::vector<LargeFile> files) {
        ScanReport report;
        report.largeFiles = std::move(files);
        m_state.scanned(std::move(report));
    }
    std::vector<std::string> names() const { return columnOf(m_model, "name"); }
    std::vector<std::string> sorted(Column column, Qt::SortOrder order) {
        m_model.sort(static_cast<int>(column), order);
        return names();
    }
};

TEST_F(FoundListModelTest, NamesSortAsPeopleExpect) {
    scanned({file("file 10", 1), file("zebra", 1), file("Élan", 1), file("file 9", 1),
             file("Apple", 1), file("emu", 1)});
    EXPECT_THAT(sorted(Column::name, Qt::AscendingOrder),
                ElementsAre("Apple", "Élan", "emu", "file 9", "file 10", "zebra"));
    EXPECT_THAT(sorted(Column::name, Qt::DescendingOrder),
                ElementsAre("zebra", "file 10", "file 9", "emu", "Élan", "Apple"));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(FoundListModelTest, UnknownDatesComeLastInEitherDirection) {
    scanned({file("unknown", std::nullopt), file("new", 1), file("old", 300),
             file("also unknown", std::nullopt), file("newer", 0)});
    EXPECT_THAT(sorted(Column::date, Qt::AscendingOrder),
                ElementsAre("old", "new", "newer", "unknown", "also unknown"));
    EXPECT_THAT(sorted(Column::date, Qt::DescendingOrder),
                ElementsAre("newer", "new", "old", "unknown", "also unknown"));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(FoundListModelTest, EqualsStayInTheOrderOfTheReport) {
    scanned({file("b", 1, 5), file("a", 1, 5), file("c", 1, 7), file("d", 1, 5)});
    EXPECT_THAT(sorted(Column::size, Qt::AscendingOrder), ElementsAre("b", "a", "d", "c"));
    EXPECT_THAT(sorted(Column::size, Qt::DescendingOrder), ElementsAre("c", "b", "a", "d"));
}

TEST_F(FoundListModelTest, AClickSortsUpDownAndNotAtAll) {
    scanned({file("b", 1, 2), file("a", 2, 1), file("c", 3, 3)});
    m_watch.told();
    const int size = static_cast<int>(Column::size);
    m_model.cycleSort(size);
    EXPECT_THAT(names(), ElementsAre("a", "b", "c"));
    EXPECT_EQ(m_model.sortColumn(), size);
    EXPECT_EQ(m_model.sortOrder(), Qt::AscendingOrder);
    m_model.cycleSort(size);
    EXPECT_THAT(names(), ElementsAre("c", "b", "a"));
    EXPECT_EQ(m_model.sortOrder(), Qt::DescendingOrder);
    m_model.cycleSort(size);
    EXPECT_THAT(names(), ElementsAre("b", "a", "c"));
    EXPECT_EQ(m_model.sortColumn(), -1);
    m_model.cycleSort(size);
    m_model.cycleSort(static_cast<int>(Column::name)); // another begins anew
    EXPECT_THAT(names(), ElementsAre("a", "b", "c"));
    EXPECT_THAT(m_watch.told(), ElementsAre("reordered", "reordered", "reordered", "reordered"));
    m_model.sort(7);
    EXPECT_EQ(m_model.sortColumn(), -1);
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(FoundListModelTest, ANewReportStandsInTheOrderThatWasAskedFor) {
    m_model.sort(static_cast<int>(Column::size), Qt::DescendingOrder);
    scanned({file("a", 1, 1), file("b", 1, 2)});
    EXPECT_THAT(names(), ElementsAre("b", "a"));
    scanned({file("c", 1, 3), file("a", 1, 1), file("b", 1, 2)});
    EXPECT_THAT(names(), ElementsAre("c", "b", "a"));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(FoundListModelTest, TheFocusFollowsItsFile) {
    scanned({file("b", 1, 2), file("a", 2, 1), file("c", 3, 3)});
    EXPECT_EQ(m_model.focusedRow(), -1);
    m_model.setFocusedRow(0);
    m_model.sort(static_cast<int>(Column::name));
    EXPECT_EQ(m_model.focusedRow(), 1);
    scanned({file("0", 1, 1), file("c", 3, 3), file("b", 1, 9)});
    EXPECT_EQ(m_model.focusedRow(), 1);
    m_model.sort(-1);
    EXPECT_EQ(m_model.focusedRow(), 2);
    scanned({file("a", 1, 1), file("c", 3, 3)});
    EXPECT_EQ(m_model.focusedRow(), -1);
    m_model.setFocusedRow(1);
    m_model.setFocusedRow(9);
    EXPECT_EQ(m_model.focusedRow(), -1);
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(FoundListModelTest, ARowIsFoundByTheBeginningOfItsName) {
    scanned({file("Disk.img", 1), file("movie.mov", 1), file("disk 2.img", 1), file("Éclair", 1)});
    const auto found = [&](const char* text, int after) {
        return m_model.rowStartingWith(QString::fromUtf8(text), after);
    };
    EXPECT_EQ(found("DISK", -1), 0);
    EXPECT_EQ(found("disk", 0), 2);
    EXPECT_EQ(found("disk", 2), 0);
    EXPECT_EQ(found("é", -1), 3);
    EXPECT_EQ(found("img", -1), -1);
    EXPECT_EQ(found("", -1), -1);
    scanned({file("movie.mov", 1)}); // what was folded before is forgotten
    EXPECT_EQ(found("movie", -1), 0);
    EXPECT_EQ(found("disk", -1), -1);
}

TEST_F(FoundListModelTest, AnEmptyTableCanBeSortedAndFocused) {
    m_model.cycleSort(1);
    m_model.setFocusedRow(0);
    EXPECT_EQ(m_model.focusedRow(), -1);
    EXPECT_EQ(m_model.rowStartingWith(QStringLiteral("a"), -1), -1);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(m_watch.complaint(), "");
}

} // namespace
} // namespace tidewright
