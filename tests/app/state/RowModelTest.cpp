#include "app/state/RowModel.h"

#include "app/state/LargeFileListModel.h"
#include "tests/support/app/ModelWatch.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace tidewright {
namespace {

using test::columnOf;
using test::ModelWatch;
using testing::ElementsAre;
using testing::IsEmpty;

using Files = std::vector<LargeFile>;

/// Shows files as it is told to.
class FileModel : public RecordModel<LargeFile> {
public:
    FileModel() : RecordModel(QMetaEnum::fromType<LargeFileListModel::Role>(), {}, nullptr) {}

    void show(Files files) {
        const auto records = std::make_shared<const Files>(std::move(files));
        RecordModel::show(records, allOf(records));
    }
    void show(Files files, Rows rows) {
        RecordModel::show(std::make_shared<const Files>(std::move(files)), std::move(rows));
    }
    using RowModel::reorder;
    using RowModel::reset;

protected:
    QVariant value(std::size_t position, int role) const override {
        const LargeFile& file = (*records())[position];
        return role == static_cast<int>(LargeFileListModel::Role::sizeBytes)
                   ? QVariant::fromValue<qint64>(file.sizeBytes)
                   : shownText(file.url.path());
    }
    std::string_view key(const LargeFile& file) const override { return file.url.path(); }
};

Files files(std::string_view names) {
    Files files;
    for (const char name : names)
        files.push_back({URL(std::string(1, name)), 1, std::nullopt});
    return files;
}

TEST(RowModel, WhatHasOnlyGoneOrOnlyComeIsToldAsSuch) {
    struct Case {
        std::string before;
        std::string after;
        std::vector<std::string> told;
    };
    const std::vector<Case> cases{
        {"", "", {}},
        {"abc", "abc", {}},
        {"abcdef", "abf", {"removed 2-4"}},
        {"abcdef", "ce", {"removed 5-5", "removed 3-3", "removed 0-1"}},
        {"abc", "", {"removed 0-2"}},
        {"", "abc", {"inserted 0-2"}},
        {"bd", "abcde", {"inserted 0-0", "inserted 2-2", "inserted 4-4"}},
        {"abc", "acb", {"reset"}},
        {"abc", "abd", {"reset"}},
        {"a", "b", {"reset"}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.before + " to " + each.after);
        FileModel model;
        model.show(files(each.before));
        ModelWatch watch(model);
        model.show(files(each.after));
        EXPECT_EQ(watch.told(), each.told);
        EXPECT_EQ(watch.complaint(), "");
        EXPECT_EQ(model.count(), static_cast<int>(each.after.size()));
    }
}

TEST(RowModel, RowsThatStayTellWhatTheyShowNow) {
    FileModel model;
    model.show(files("abcdef"));
    ModelWatch watch(model);
    Files next = files("abdef");
    next[1].sizeBytes = 2;
    next[2].sizeBytes = 3;
    next[4].sizeBytes = 4;
    model.show(next);
    EXPECT_THAT(watch.told(), ElementsAre("removed 2-2", "changed 1-2", "changed 4-4"));
    EXPECT_EQ(watch.complaint(), "");
    next.push_back(files("g").front());
    next[0].sizeBytes = 5;
    model.show(next);
    EXPECT_THAT(watch.told(), ElementsAre("changed 0-0", "inserted 5-5"));
    EXPECT_EQ(watch.complaint(), "");
}

TEST(RowModel, EarlierRecordsAreThereWhileRowsGo) {
    FileModel model;
    model.show(files("abc"));
    std::vector<std::string> seen;
    QObject::connect(&model, &FileModel::rowsAboutToBeRemoved, &model,
                     [&] { seen = columnOf(model, "path"); });
    QObject::connect(&model, &FileModel::rowsRemoved, &model, [&] {
        for (const std::string& each : columnOf(model, "path"))
            seen.push_back(each);
    });
    model.show(files("ac"));
    EXPECT_THAT(seen, ElementsAre("a", "b", "c", "a", "c"));
}

TEST(RowModel, InAnotherOrderIndexesGoWithTheirRows) {
    FileModel model;
    model.show(files("abc"));
    const QPersistentModelIndex b(model.index(1, 0));
    ModelWatch watch(model);
    model.reorder({1, 2, 0});
    EXPECT_THAT(columnOf(model, "path"), ElementsAre("b", "c", "a"));
    EXPECT_EQ(b.row(), 0);
    EXPECT_THAT(watch.told(), ElementsAre("reordered"));
    model.reorder({1, 2, 0});
    model.reset({1, 2, 0});
    EXPECT_THAT(watch.told(), IsEmpty());
    model.reset({2});
    EXPECT_THAT(watch.told(), ElementsAre("reset"));
    EXPECT_EQ(watch.complaint(), "");
}

TEST(RowModel, WhatIsNoRowShowsNothing) {
    FileModel model;
    model.show(files("a"));
    EXPECT_FALSE(model.data({}, Qt::UserRole).isValid());
    EXPECT_FALSE(model.data(model.index(0, 0), Qt::DisplayRole).isValid());
    EXPECT_FALSE(model.index(1, 0).isValid());
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 0);
    EXPECT_EQ(model.columnCount(model.index(0, 0)), 0);
    EXPECT_FALSE(model.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
}

TEST(RowModel, WhateverChangesAViewThatGoesBySignalsShowsIt) {
    std::mt19937 random(7);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    FileModel model;
    ModelWatch watch(model);
    Files current;
    for (int i = 0; i < 10'000; ++i) {
        Files next = current;
        const auto kind = below(8);
        if (kind < 3) // some go
            std::erase_if(next, [&](const LargeFile&) { return below(3) == 0; });
        if (kind >= 3 && kind < 6) // some come
            for (std::size_t n = below(4); n > 0 && next.size() < 26; --n) {
                const std::string name(1, static_cast<char>('a' + below(26)));
                if (std::ranges::none_of(next, [&](const auto& f) { return f.url.path() == name; }))
                    next.insert(next.begin() + static_cast<long>(below(next.size() + 1)),
                                {URL(name), 1, std::nullopt});
            }
        if (kind == 6)
            std::ranges::shuffle(next, random);
        for (LargeFile& file : next)
            if (below(5) == 0)
                file.sizeBytes = static_cast<Int64>(below(3));
        model.show(next);
        current = next;
        ASSERT_EQ(watch.complaint(), "") << "after change " << i;
        ASSERT_EQ(model.count(), static_cast<int>(next.size()));
        for (int row = 0; row < model.count(); ++row)
            ASSERT_EQ(columnOf(model, "path")[static_cast<std::size_t>(row)],
                      next[static_cast<std::size_t>(row)].url.path());
    }
}

TEST(RowModel, DatesAreMillisecondsOfLocalTime) {
    using namespace std::chrono_literals;
    EXPECT_FALSE(shownDate(std::nullopt).isValid());
    EXPECT_EQ(shownDate(Date(1'500us)).toMSecsSinceEpoch(), 1);
    EXPECT_EQ(shownDate(Date(-1us)).toMSecsSinceEpoch(), -1);
    EXPECT_EQ(shownDate(Date(0us)).timeSpec(), Qt::LocalTime);
}

TEST(RowModel, TextsThatAreNotUTF8AreShown) {
    EXPECT_EQ(shownText("a\xff"), QString::fromUtf8("a\xef\xbf\xbd"));
    EXPECT_EQ(ByteCount{0}.text(), QStringLiteral("Zero KB"));
}

} // namespace
} // namespace tidewright
