#include "app/state/ItemListModel.h"

#include "core/support/Collation.h"
#include "tests/support/app/EventLoop.h"
#include "tests/support/app/ModelWatch.h"
#include "tests/support/app/StateTesting.h"

#include <QSignalSpy>
#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace tidewright {
namespace {

using test::columnOf;
using test::ModelWatch;
using test::shownBy;
using test::testItem;
using test::TestState;
using testing::ElementsAre;
using testing::IsEmpty;
using Filter = ItemListModel::Filter;
using Column = ItemListModel::Column;

constexpr Category category = Category::javascript;

class ItemListModelTest : public testing::Test {
protected:
    std::vector<std::vector<URL>> m_revealed;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.reveal = [this](const std::vector<URL>& urls) { m_revealed.push_back(urls); };
    }};

    AppModel& app() { return *m_state.model; }

    void scanned(std::vector<ScanItem> items) {
        ScanReport report;
        report.items = std::move(items);
        m_state.scanned(std::move(report));
    }

    /// Whether exactly these items of the report are selected.
    bool isSelection(const std::vector<std::string>& titles) {
        std::vector<std::string> selected;
        for (const ScanItem& item : app().report()->items)
            if (app().isSelected(item.id))
                selected.push_back(item.title);
        return selected == titles;
    }
};

ScanItem item(const std::string& title, Decision decision = Decision::clean, Int64 bytes = 10) {
    ScanItem item = testItem(category, title, bytes);
    item.title = title;
    item.decision = decision;
    return item;
}

void sortBy(ItemListModel& model, Column column, Qt::SortOrder order = Qt::AscendingOrder) {
    model.sort(static_cast<int>(column), order);
}

std::vector<std::string> titlesOf(const ItemListModel& model) { return columnOf(model, "title"); }

/// What stands in place of the rows: title, symbol and message.
std::vector<std::string> emptyTextOf(const RowModel& model) {
    return {model.empty().title.toStdString(), model.empty().symbolName.toStdString(),
            model.empty().message.toStdString()};
}

TEST_F(ItemListModelTest, WithoutItemsItSaysWhy) {
    ItemListModel model(app(), Category::xcode);
    ModelWatch watch(model);
    EXPECT_THAT(emptyTextOf(model), ElementsAre("Not scanned yet", "hammer",
                                                "Scan your Mac to see Xcode & iOS items."));
    scanned({item("a")});
    EXPECT_THAT(emptyTextOf(model), ElementsAre("Nothing here", "checkmark.circle",
                                                "No Xcode & iOS items were found."));
    scanned({testItem(Category::xcode, "x")});
    EXPECT_THAT(emptyTextOf(model), ElementsAre("", "", ""));
    model.setFilter(Filter::kept);
    EXPECT_THAT(emptyTextOf(model), ElementsAre("", "", "No items match this filter."));
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(ItemListModelTest, ItShowsTheItemsOfItsCategoryInReportOrder) {
    scanned({testItem(Category::android, "x"), item("b"), item("a"),
             testItem(Category::system, "y"), item("c")});
    const ItemListModel model(app(), category);
    EXPECT_THAT(titlesOf(model), ElementsAre("b", "a", "c"));
    EXPECT_EQ(model.total(), 3);
}

TEST_F(ItemListModelTest, ARowShowsEverythingThatIsSaidOfItsItem) {
    using namespace std::chrono_literals;
    ScanItem each = item("Cache", Decision::ask, 1'500'000);
    each.id = "id:\xff";
    each.version = "1.2";
    each.group = "Caches";
    each.risk = Risk::check;
    each.inUseBy = "Editor";
    each.lastUsed = Date(1'700'000'000s);
    each.urls = {URL("/1"), URL("/2"), URL("/3"), URL("/4"), URL("/5"), URL("/6"), URL("/7")};
    each.method = CleanMethod::command({"npm", {"cache", "a b"}, std::nullopt, false});
    ScanItem bare = item("Bare", Decision::keep);
    bare.urls.clear();
    bare.method = CleanMethod::manual("Do it yourself.");
    scanned({each, bare});
    const ItemListModel model(app(), category);
    const std::vector<std::pair<const char*, std::vector<std::string>>> expected{
        {"itemID", {"id:\xff", bare.id}},
        {"title", {"Cache", "Bare"}},
        {"version", {"1.2", ""}},
        {"group", {"Caches", "Group"}},
        {"sizeBytes", {"1500000", "10"}},
        {"sizeText", {"1.5 MB", "10 bytes"}},
        {"decision", {"ask", "keep"}},
        {"decisionTitle", {"Optional", "Kept"}},
        {"decisionSymbol", {"questionmark.circle.fill", "lock.fill"}},
        {"risk", {"check", "safe"}},
        {"riskTitle", {"Review", "Safe"}},
        {"reason", {"Nothing needs it.", "Nothing needs it."}},
        {"whatItIs", {"A test's item.", "A test's item."}},
        {"afterEffect", {"It is made again.", "It is made again."}},
        {"methodLabel", {"Run clean command", "Manual"}},
        {"howItIsCleaned", {"npm cache 'a b'", "Manual"}},
        {"manualInstructions", {"", "Do it yourself."}},
        {"inUse", {"In use by Editor", ""}},
        {"lastUsed", {"1700000000", ""}},
        {"locationsTitle", {"Locations (7)", "Locations (0)"}},
        {"locations", {"/1|/2|/3|/4|/5|/6", ""}},
        {"moreLocations", {"and 1 more", ""}},
        {"selected", {"false", "false"}},
        {"selectable", {"true", "false"}},
    };
    EXPECT_EQ(expected.size(), static_cast<std::size_t>(model.roleNames().size()));
    for (const auto& [role, texts] : expected)
        EXPECT_EQ(columnOf(model, role), texts) << role;
}

TEST_F(ItemListModelTest, EachDecisionAndMethodHasItsWords) {
    scanned({item("a", Decision::clean), item("d", Decision::info)});
    const ItemListModel model(app(), category);
    EXPECT_THAT(columnOf(model, "decisionTitle"), ElementsAre("Recommended", "For review"));
    EXPECT_THAT(columnOf(model, "decisionSymbol"),
                ElementsAre("checkmark.circle.fill", "info.circle.fill"));
    EXPECT_THAT(columnOf(model, "howItIsCleaned"),
                ElementsAre("Delete permanently", "Delete permanently"));
    ScanItem trashed = item("t");
    trashed.method = CleanMethod::trash();
    scanned({trashed});
    EXPECT_THAT(columnOf(model, "howItIsCleaned"), ElementsAre("Move to Trash"));
}

TEST_F(ItemListModelTest, ColumnsHaveTitles) {
    const ItemListModel model(app(), category);
    std::vector<std::string> titles;
    for (int column = 0; column < model.columnCount(); ++column)
        titles.push_back(
            model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().toStdString());
    EXPECT_THAT(titles, ElementsAre("", "Item", "Size", "Status"));
}

TEST_F(ItemListModelTest, TheFilterGoesByWhetherTheDecisionAllowsCleaning) {
    scanned({item("a", Decision::clean), item("b", Decision::ask), item("c", Decision::keep),
             item("d", Decision::info)});
    ItemListModel model(app(), category);
    ModelWatch watch(model);
    model.setFilter(Filter::cleanable);
    EXPECT_THAT(titlesOf(model), ElementsAre("a", "b"));
    model.setFilter(Filter::kept);
    EXPECT_THAT(titlesOf(model), ElementsAre("c", "d"));
    model.setFilter(Filter::kept);
    EXPECT_THAT(watch.told(), ElementsAre("reset", "reset"));
    model.setFilter(Filter::all);
    EXPECT_THAT(titlesOf(model), ElementsAre("a", "b", "c", "d"));
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(ItemListModelTest, TheSearchFindsTextsInWhateverCase) {
    ScanItem each = item("Straße CAFÉ");
    each.group = "Gruppe";
    each.version = "2.0-RC";
    each.reason = "Not used by Projekt.";
    each.whatItIs = "Unsearched";
    ScanItem decomposed = item("cafe\xcc\x81 two");
    scanned({each, decomposed});
    ItemListModel model(app(), category);
    const std::vector<std::pair<const char*, int>> searches{
        {"", 2},         {"stra", 1},    {"STRASSE", 1},   {"café", 2},     {"CAFE\xcc\x81", 2},
        {"cafe", 0},     {"gRUPPE", 1},  {"2.0-rc", 1},    {"projekt.", 1}, {"USED", 1},
        {"searched", 0}, {"grup pe", 0}, {"gruppe2.0", 0}, {" two", 1},
    };
    for (const auto& [search, found] : searches) {
        model.setSearch(QString::fromUtf8(search));
        EXPECT_EQ(model.count(), found) << search;
    }
}

TEST_F(ItemListModelTest, TheSearchKnowsTheLettersOfTheUsersLanguage) {
    scanned({item("ISPARTA"), item("istanbul")});
    ItemListModel english(app(), category);
    english.setSearch(QStringLiteral("is"));
    EXPECT_THAT(titlesOf(english), ElementsAre("ISPARTA", "istanbul"));
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Turkish));
    ItemListModel turkish(app(), category);
    turkish.setSearch(QStringLiteral("is"));
    EXPECT_THAT(titlesOf(turkish), ElementsAre("istanbul"));
    turkish.setSearch(QString::fromUtf8("\xc4\xb1s")); // a dotless i
    EXPECT_THAT(titlesOf(turkish), ElementsAre("ISPARTA"));
    QLocale::setDefault(before);
}

TEST_F(ItemListModelTest, ATextThatIsNotUTF8IsFoundByItsOtherLetters) {
    scanned({item("Bad\xff\xfename")});
    ItemListModel model(app(), category);
    model.setSearch(QStringLiteral("NAME"));
    EXPECT_EQ(model.count(), 1);
}

TEST_F(ItemListModelTest, ColumnsSortAndEqualsKeepTheOrderOfTheReport) {
    scanned({item("Item 10", Decision::keep, 5), item("item 9", Decision::clean, 7),
             item("Item 9", Decision::ask, 5), item("Item 2", Decision::clean, 1)});
    ItemListModel model(app(), category);
    ModelWatch watch(model);
    const QPersistentModelIndex ten(model.index(0, 0));
    sortBy(model, Column::item);
    EXPECT_THAT(titlesOf(model), ElementsAre("Item 2", "item 9", "Item 9", "Item 10"));
    EXPECT_EQ(ten.row(), 3);
    sortBy(model, Column::size);
    EXPECT_THAT(titlesOf(model), ElementsAre("Item 2", "Item 10", "Item 9", "item 9"));
    sortBy(model, Column::size, Qt::DescendingOrder);
    EXPECT_THAT(titlesOf(model), ElementsAre("item 9", "Item 10", "Item 9", "Item 2"));
    sortBy(model, Column::status);
    EXPECT_THAT(titlesOf(model), ElementsAre("item 9", "Item 2", "Item 9", "Item 10"));
    EXPECT_THAT(watch.told(), ElementsAre("reordered", "reordered", "reordered", "reordered"));
    model.setFilter(Filter::cleanable);
    EXPECT_THAT(titlesOf(model), ElementsAre("item 9", "Item 2", "Item 9"));
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(ItemListModelTest, ClicksOnATitleSortUpAndDownAndNotAtAll) {
    scanned({item("b"), item("a")});
    ItemListModel model(app(), category);
    ModelWatch watch(model);
    const int byItem = static_cast<int>(Column::item);
    model.cycleSort(byItem);
    EXPECT_THAT(titlesOf(model), ElementsAre("a", "b"));
    EXPECT_EQ(model.sortColumn(), byItem);
    model.cycleSort(byItem);
    EXPECT_THAT(titlesOf(model), ElementsAre("b", "a"));
    EXPECT_EQ(model.sortOrder(), Qt::DescendingOrder);
    model.cycleSort(byItem);
    EXPECT_EQ(model.sortColumn(), -1);
    EXPECT_THAT(titlesOf(model), ElementsAre("b", "a"));
    model.cycleSort(static_cast<int>(Column::selected)); // nothing to sort by
    EXPECT_EQ(model.sortColumn(), -1);
    model.cycleSort(99);
    EXPECT_EQ(model.sortColumn(), -1);
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(ItemListModelTest, ARowIsSelectedByItsNumber) {
    ScanItem one = item("one", Decision::ask);
    ScanItem two = item("two", Decision::ask);
    one.id = "same\xff"; // shown, the two are the same
    two.id = "same\xfe";
    ScanItem other = testItem(Category::android, "other");
    other.decision = Decision::ask;
    scanned({other, one, two});
    ItemListModel model(app(), category);
    ModelWatch watch(model);
    model.setSelected(1, true);
    EXPECT_TRUE(isSelection({"two"}));
    EXPECT_THAT(watch.told(), ElementsAre("changed 1-1 selected"));
    EXPECT_EQ(model.selected().bytes, 10);
    model.setSelected(1, true);
    EXPECT_THAT(watch.told(), IsEmpty());
    model.setSelected(1, false);
    EXPECT_TRUE(isSelection({}));
    EXPECT_EQ(model.selected().bytes, 0);
    model.setSelected(-1, true);
    model.setSelected(2, true);
    EXPECT_TRUE(isSelection({}));
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(ItemListModelTest, WhatMayNotBeSelectedIsNot) {
    ScanItem manual = item("manual");
    manual.method = CleanMethod::manual("By hand.");
    scanned({manual, item("kept", Decision::keep), item("known", Decision::info)});
    ItemListModel model(app(), category);
    EXPECT_TRUE(isSelection({"manual"})) << "every item to clean starts so";
    EXPECT_TRUE(shownBy(model, 0, "selected").toBool());
    for (int row = 0; row < 3; ++row) {
        model.setSelected(row, row != 0);
        EXPECT_FALSE(shownBy(model, row, "selectable").toBool());
    }
    EXPECT_TRUE(isSelection({"manual"}));
}

TEST_F(ItemListModelTest, ASelectionElsewhereIsToldOfInRanges) {
    scanned({item("a", Decision::ask), item("b", Decision::ask), item("c"),
             item("d", Decision::ask), testItem(Category::system, "x")});
    ItemListModel model(app(), category);
    ItemListModel other(app(), Category::system);
    ModelWatch watch(model);
    ModelWatch otherWatch(other);
    const auto& items = app().report()->items;
    app().review({items[0].id, items[1].id, items[3].id});
    EXPECT_THAT(watch.told(), ElementsAre("changed 0-1 selected", "changed 3-3 selected"));
    EXPECT_EQ(model.selected().bytes, 40);
    model.setSelected(0, false);
    app().setSelected(items[4], false);
    EXPECT_THAT(watch.told(), ElementsAre("changed 0-0 selected"));
    EXPECT_THAT(otherWatch.told(), ElementsAre("changed 0-0 selected"));
    EXPECT_EQ(watch.complaint() + otherWatch.complaint(), "");
}

TEST_F(ItemListModelTest, ASelectionMadeByWhoHearsOfAnotherIsNotMissed) {
    scanned({item("a", Decision::ask), item("b", Decision::ask), item("c", Decision::ask)});
    // One hears before the model does and one after.
    const auto select = [this](std::size_t position) {
        app().setSelected(app().report()->items[position], true);
    };
    const QObject context;
    QObject::connect(&app(), &AppModel::selectionChanged, &context, [&] { select(1); });
    ItemListModel model(app(), category);
    ModelWatch watch(model);
    QObject::connect(&app(), &AppModel::selectionChanged, &context, [&] { select(2); });
    model.setSelected(0, true);
    EXPECT_THAT(columnOf(model, "selected"), ElementsAre("true", "true", "true"));
    EXPECT_EQ(model.selected().bytes, 30);
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(ItemListModelTest, FiguresAreOfTheCategoryAndOfTheRows) {
    ScanItem manual = item("manual", Decision::clean, 1'000);
    manual.method = CleanMethod::manual("By hand.");
    scanned({item("a", Decision::clean, 1), item("b", Decision::ask, 20),
             item("c", Decision::keep, 300), manual, item("d", Decision::info, 50'000),
             testItem(Category::system, "x", 7)});
    ItemListModel model(app(), category);
    EXPECT_EQ(model.selected().bytes, app().reclaimable(category));
    EXPECT_EQ(model.selected().bytes, 1'001);
    EXPECT_EQ(model.optional().bytes, 20);
    EXPECT_EQ(model.kept().bytes, 300);
    EXPECT_EQ(model.kept().text(), QString::fromStdString(formattedBytes(300)));
    EXPECT_EQ(model.shown().bytes, 51'321);
    model.setFilter(Filter::kept);
    EXPECT_EQ(model.shown().bytes, 50'300);
    EXPECT_EQ(model.kept().bytes, 300);
}

TEST_F(ItemListModelTest, WhatWasCleanedGoesRowByRow) {
    std::vector<ScanItem> items;
    for (const std::string name : {"a", "b", "c", "d", "e"}) {
        items.push_back(item(name, name == "c" ? Decision::ask : Decision::clean));
        items.back().urls = {m_state.home.file(".cache/" + name, "x")};
    }
    items[4].urls = {URL("/usr/bin")}; // refused by the policy, so it stays
    scanned(items);
    ItemListModel model(app(), category);
    model.setFocusedRow(2);
    ModelWatch watch(model);
    app().reviewSelection();
    app().startCleaning();
    ASSERT_TRUE(test::becomesTrue(
        [&] { return app().session()->phase() == CleaningSession::Phase::finished; }));
    EXPECT_THAT(titlesOf(model), ElementsAre("c", "e"));
    EXPECT_THAT(watch.told(), ElementsAre("removed 3-3", "removed 0-1"));
    EXPECT_EQ(model.focusedRow(), 0);
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(ItemListModelTest, TheFocusFollowsItsItem) {
    scanned({item("a"), item("b", Decision::keep), item("c")});
    ItemListModel model(app(), category);
    ModelWatch watch(model);
    EXPECT_EQ(model.focusedRow(), -1);
    model.setFocusedRow(2);
    EXPECT_EQ(model.focusedRow(), 2);
    model.setFilter(Filter::cleanable);
    EXPECT_EQ(model.focusedRow(), 1);
    model.setFilter(Filter::kept);
    EXPECT_EQ(model.focusedRow(), -1);
    model.setFilter(Filter::all);
    sortBy(model, Column::item, Qt::DescendingOrder);
    EXPECT_EQ(model.focusedRow(), 0);
    model.sort(-1);
    scanned({item("c"), item("z"), item("y")});
    EXPECT_EQ(model.focusedRow(), 0);
    scanned({item("z"), item("y")});
    EXPECT_EQ(model.focusedRow(), -1);
    model.setFocusedRow(1);
    model.setFocusedRow(7);
    EXPECT_EQ(model.focusedRow(), -1);
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(ItemListModelTest, ItSaysWhatItsCategoryIs) {
    const ItemListModel model(app(), Category::xcode);
    EXPECT_EQ(model.title().toStdString(), "Xcode & iOS");
    EXPECT_EQ(model.symbolName().toStdString(), "hammer");
    EXPECT_EQ(model.description().toStdString(),
              "DerivedData, simulators, runtimes and CocoaPods.");
}

TEST_F(ItemListModelTest, DetailsAreThoseOfTheFocusedItem) {
    using namespace std::chrono_literals;
    ScanItem one = item("one", Decision::ask);
    one.lastUsed = Date(1'700'000'000s);
    scanned({one, item("two", Decision::keep)});
    Date now = *one.lastUsed + 5min;
    ItemListModel model(app(), category, [&now] { return now; });
    ModelWatch watch(model);
    const QSignalSpy changes(&model, &ItemListModel::focusedChanged);
    EXPECT_EQ(model.focused(), ItemDetails());
    model.setFocusedRow(0);
    EXPECT_EQ(model.focused(), ItemDetails::of(one, false, now));
    EXPECT_EQ(changes.count(), 1);
    now += 1h; // nobody tells of the time, so what was said stays until something else changes
    EXPECT_EQ(watch.complaint(), "");
    model.setSelected(0, true);
    EXPECT_EQ(model.focused(), ItemDetails::of(one, true, now));
    EXPECT_EQ(changes.count(), 2);
    app().setSelected(one, false);
    EXPECT_FALSE(model.focused().selected);
    EXPECT_EQ(changes.count(), 3);
    sortBy(model, Column::item, Qt::DescendingOrder);
    EXPECT_EQ(changes.count(), 3) << "the same item at another place";
    model.setFilter(Filter::kept);
    EXPECT_EQ(model.focused(), ItemDetails()) << "it is not shown";
    model.setFilter(Filter::all);
    EXPECT_TRUE(model.focused().isPresent);
    one.reason = "Another reason.";
    scanned({one});
    EXPECT_EQ(model.focused().sections.front().text.toStdString(), "Another reason.");
    scanned({item("two", Decision::keep)});
    EXPECT_EQ(model.focused(), ItemDetails()) << "it is gone";
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(ItemListModelTest, TheNextRowIsFoundByTheBeginningOfItsTitle) {
    scanned({item("npm cache"), item("Node 20"), item("yarn", Decision::keep), item("nodemon"),
             item("\xc3\x89mile")});
    ItemListModel model(app(), category);
    struct Case {
        const char* text;
        int after;
        int expected;
    };
    constexpr Case cases[] = {
        {"n", -1, 0}, {"n", 0, 1},   {"N", 1, 3},          {"n", 3, 0},
        {"n", 4, 0},  {"no", -1, 1}, {"NODE", 1, 3},       {"node ", 3, 1},
        {"y", 2, 2},  {"", 0, -1},   {"cache", -1, -1},    {"npm cachegroup", -1, -1},
        {"n", 99, 0}, {"n", -99, 0}, {"E\xcc\x81m", 0, 4}, {"x", 0, -1},
    };
    for (const Case& each : cases)
        EXPECT_EQ(model.rowStartingWith(QString::fromUtf8(each.text), each.after), each.expected)
            << each.text << " after " << each.after;
    sortBy(model, Column::item);
    EXPECT_EQ(model.rowStartingWith(QStringLiteral("y"), -1), 4);
    model.setFilter(Filter::cleanable);
    EXPECT_EQ(model.rowStartingWith(QStringLiteral("y"), -1), -1);
    scanned({});
    EXPECT_EQ(model.rowStartingWith(QStringLiteral("n"), -1), -1);
    scanned({item("new"), item("newer")});
    EXPECT_EQ(model.rowStartingWith(QStringLiteral("newe"), -1), 1);
}

TEST_F(ItemListModelTest, ARowIsShownInTheFileManager) {
    ScanItem each = item("a");
    each.urls = {m_state.home.file("bytes\xff"), m_state.home.path("gone")};
    scanned({each});
    ItemListModel model(app(), category);
    model.reveal(0);
    model.reveal(1);
    EXPECT_THAT(m_revealed, ElementsAre(ElementsAre(each.urls[0])));
}

TEST_F(ItemListModelTest, ItOutlivesTheAppModel) {
    scanned({item("b"), item("a", Decision::keep)});
    ItemListModel model(app(), category);
    ModelWatch watch(model);
    m_state.model.reset();
    m_state.prepared.reset();
    EXPECT_THAT(titlesOf(model), ElementsAre("b", "a"));
    EXPECT_TRUE(shownBy(model, 0, "selected").toBool());
    model.setSelected(0, false);
    model.reveal(0);
    EXPECT_TRUE(shownBy(model, 0, "selected").toBool());
    sortBy(model, Column::item);
    model.setSearch(QStringLiteral("A"));
    EXPECT_THAT(titlesOf(model), ElementsAre("a"));
    model.setFilter(Filter::kept);
    model.setFocusedRow(0);
    EXPECT_EQ(model.focusedRow(), 0);
    EXPECT_EQ(watch.complaint(), "");
}

/// Plain recomputation of what the model must show.
class Oracle {
public:
    Filter filter = Filter::all;
    QString search;
    int sortColumn = -1;
    Qt::SortOrder sortOrder = Qt::AscendingOrder;

    std::vector<ScanItem> rows(const ScanReport& report) const {
        std::vector<ScanItem> items = report.itemsIn(category);
        std::erase_if(items, [&](const ScanItem& item) { return !isShown(item); });
        if (sortColumn > 0)
            std::ranges::stable_sort(items, [&](const ScanItem& a, const ScanItem& b) {
                return sortOrder == Qt::AscendingOrder ? compare(a, b) < 0 : compare(b, a) < 0;
            });
        return items;
    }

private:
    bool isShown(const ScanItem& item) const {
        if (filter == Filter::cleanable && !isSelectable(item.decision))
            return false;
        if (filter == Filter::kept && isSelectable(item.decision))
            return false;
        const auto has = [&](const std::string& text) {
            return QString::fromStdString(text).contains(search, Qt::CaseInsensitive);
        };
        return has(item.title) || has(item.group) || has(item.version.value_or("")) ||
               has(item.reason);
    }
    int compare(const ScanItem& a, const ScanItem& b) const {
        if (sortColumn == static_cast<int>(Column::item))
            return standardCompare(a.title, b.title);
        if (sortColumn == static_cast<int>(Column::size))
            return a.sizeBytes < b.sizeBytes ? -1 : a.sizeBytes > b.sizeBytes ? 1 : 0;
        return static_cast<int>(a.decision) - static_cast<int>(b.decision);
    }
};

/// Random reports, selections, filters, searches and orders.
class RandomEdits {
public:
    RandomEdits(TestState& state, ItemListModel& model) : m_state(state), m_model(model) {}

    void edit() {
        const auto kind = below(100);
        if (kind < 2)
            return rescan(randomReport());
        if (kind < 4)
            return rescan(shortened(m_state.prepared ? *m_state.prepared : ScanReport()));
        if (kind < 35)
            return m_model.setSelected(static_cast<int>(below(50)) - 2, below(2) == 0);
        if (kind < 50)
            return selectElsewhere();
        if (kind < 65)
            return m_model.setFilter(oracle.filter = static_cast<Filter>(below(3)));
        if (kind < 80)
            return m_model.setSearch(oracle.search = searches[below(searches.size())]);
        if (kind < 90)
            return m_model.setFocusedRow(static_cast<int>(below(40)) - 2);
        sort();
    }

    Oracle oracle;

private:
    const std::vector<QString> searches{
        {},
        QStringLiteral("a"),
        QStringLiteral("ITEM 1"),
        QStringLiteral("group 2"),
        QString::fromUtf8("caf\xc3\x89"),
        QStringLiteral("nowhere"),
        QStringLiteral("3.0"),
    };

    std::size_t below(std::size_t limit) { return m_random() % limit; }

    ScanReport randomReport() {
        ScanReport report;
        const std::size_t size = below(10) == 0 ? 0 : below(50);
        for (std::size_t i = 0; i < size; ++i)
            if (below(3) > 0)
                report.items.push_back(randomItem(i));
        return report;
    }
    ScanItem randomItem(std::size_t number) {
        ScanItem item = testItem(below(4) == 0 ? Category::system : category,
                                 std::to_string(number), static_cast<Int64>(below(10)));
        item.id += number % 2 == 0 ? "\xff" : "\xfe";
        item.title += below(5) == 0 ? " caf\xc3\xa9" : "";
        item.group = "Group " + std::to_string(below(4));
        item.decision = static_cast<Decision>(below(4));
        if (below(3) == 0)
            item.version = "3.0";
        if (below(6) == 0)
            item.method = CleanMethod::manual("By hand.");
        return item;
    }
    ScanReport shortened(ScanReport report) {
        std::erase_if(report.items, [&](const ScanItem&) { return below(5) == 0; });
        return report;
    }
    void rescan(ScanReport report) { m_state.scanned(std::move(report)); }

    void selectElsewhere() {
        if (!m_state.prepared || m_state.prepared->items.empty())
            return;
        const auto& items = m_state.model->report()->items;
        if (below(2) == 0)
            return m_state.model->setSelected(items[below(items.size())], below(2) == 0);
        m_state.model->review({items[below(items.size())].id, items[below(items.size())].id});
    }
    void sort() {
        oracle.sortColumn = static_cast<int>(below(5)) - 1;
        oracle.sortOrder = below(2) == 0 ? Qt::AscendingOrder : Qt::DescendingOrder;
        m_model.sort(oracle.sortColumn, oracle.sortOrder);
    }

    TestState& m_state;
    ItemListModel& m_model;
    std::mt19937 m_random{11};
};

TEST_F(ItemListModelTest, TenThousandEditsLeadWherePlainRecomputationDoes) {
    ItemListModel model(app(), category);
    using Role = ItemListModel::Role;
    ModelWatch watch(model, {static_cast<int>(Role::itemID), static_cast<int>(Role::sizeBytes),
                             static_cast<int>(Role::decision), static_cast<int>(Role::selected)});
    RandomEdits edits(m_state, model);
    for (int i = 0; i < 10'000; ++i) {
        SCOPED_TRACE(i);
        edits.edit();
        ASSERT_EQ(watch.complaint(), "");
        const ScanReport report = app().report() ? *app().report() : ScanReport();
        const std::vector<ScanItem> rows = edits.oracle.rows(report);
        ASSERT_EQ(model.count(), static_cast<int>(rows.size()));
        Int64 shown = 0;
        for (int row = 0; row < model.count(); ++row) {
            const ScanItem& expected = rows[static_cast<std::size_t>(row)];
            ASSERT_EQ(shownBy(model, row, "itemID").toByteArray().toStdString(), expected.id);
            ASSERT_EQ(shownBy(model, row, "selected").toBool(), app().isSelected(expected.id));
            shown += expected.sizeBytes;
        }
        ASSERT_EQ(model.shown().bytes, shown);
        ASSERT_EQ(model.selected().bytes, app().reclaimable(category));
    }
}

} // namespace
} // namespace tidewright
