#include "app/state/SettingsModel.h"
#include "tests/support/app/ModelWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::columnOf;
using test::ModelWatch;
using test::TestState;
using testing::ElementsAre;
using testing::IsEmpty;

class PathListModelTest : public testing::TestWithParam<bool> {
protected:
    std::vector<FolderQuestion> m_questions;
    FolderAnswer m_answer;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.pickFolders = [this](const FolderQuestion& question, FolderAnswer answer) {
            m_questions.push_back(question);
            m_answer = std::move(answer);
        };
    }};
    SettingsModel m_settings{*m_state.model};
    PathListModel& m_model = GetParam() ? *m_settings.projectRoots() : *m_settings.exclusions();
    ModelWatch m_watch{m_model};

    SettingsStore& store() { return m_state.model->settings(); }
    const std::vector<URL>& stored() {
        return GetParam() ? store().projectRoots() : store().exclusions();
    }
    const std::vector<URL>& others() {
        return GetParam() ? store().exclusions() : store().projectRoots();
    }
    void put(const std::vector<URL>& paths) {
        GetParam() ? store().setProjectRoots(paths) : store().setExclusions(paths);
        m_watch.told();
    }
    std::string emptyText() { return m_model.empty().message.toStdString(); }

    void TearDown() override {
        EXPECT_EQ(m_watch.complaint(), "");
        EXPECT_THAT(others(), IsEmpty());
    }
};

INSTANTIATE_TEST_SUITE_P(Each, PathListModelTest, testing::Bool(), [](const auto& each) {
    return each.param ? "Roots" : "Exclusions";
});

TEST_P(PathListModelTest, AnEmptyListSaysWhatThatMeans) {
    EXPECT_EQ(emptyText(), GetParam() ? "Your whole home folder" : "No exclusions");
    put({URL("/a")});
    EXPECT_EQ(emptyText(), "");
}

TEST_P(PathListModelTest, RowsShowTheirPaths) {
    put({URL("/home/me/b"), URL("/a \xff")});
    EXPECT_THAT(columnOf(m_model, "path"), ElementsAre("/home/me/b", "/a \uFFFD"));
    EXPECT_THAT(columnOf(m_model, "removeText"),
                ElementsAre("Remove /home/me/b", "Remove /a \uFFFD"));
}

TEST_P(PathListModelTest, FoldersAreAppendedUnlessTheyAreThere) {
    put({URL("/a")});
    m_model.add({URL("/c"), URL("/a"), URL("/b"), URL("/c"), URL("/\xff")});
    EXPECT_THAT(stored(), ElementsAre(URL("/a"), URL("/c"), URL("/b"), URL("/\xff")));
    EXPECT_THAT(m_watch.told(), ElementsAre("inserted 1-3"));
}

TEST_P(PathListModelTest, AFolderAlreadyListedChangesNothing) {
    put({URL("/a"), URL("/b")});
    m_model.add({URL("/b"), URL("/a")});
    m_model.add({});
    EXPECT_THAT(stored(), ElementsAre(URL("/a"), URL("/b")));
    EXPECT_THAT(m_watch.told(), IsEmpty());
}

TEST_P(PathListModelTest, WhatIsRemovedGoesAsARow) {
    put({URL("/a"), URL("/b"), URL("/c")});
    m_model.remove(1);
    EXPECT_THAT(stored(), ElementsAre(URL("/a"), URL("/c")));
    EXPECT_THAT(m_watch.told(), ElementsAre("removed 1-1"));
    for (const int row : {-1, 2, 1000})
        m_model.remove(row);
    EXPECT_THAT(m_watch.told(), IsEmpty());
}

TEST_P(PathListModelTest, APathThatIsListedTwiceGoesAltogether) {
    put({URL("/a"), URL("/b"), URL("/a")});
    m_model.remove(2);
    EXPECT_THAT(stored(), ElementsAre(URL("/b")));
}

TEST_P(PathListModelTest, WithoutItsLastRowItSaysAgainWhatThatMeans) {
    put({URL("/a")});
    m_model.remove(0);
    EXPECT_EQ(m_model.count(), 0);
    EXPECT_EQ(emptyText(), GetParam() ? "Your whole home folder" : "No exclusions");
}

TEST_P(PathListModelTest, PicksFromTheHomeFolderAndAddsWhatWasPicked) {
    m_model.setWindow([] { return Int64{42}; });
    m_model.pick();
    EXPECT_TRUE(m_model.isPicking());
    ASSERT_EQ(m_questions.size(), 1U);
    EXPECT_EQ(m_questions.front().title, "Add Folder");
    EXPECT_EQ(m_questions.front().start, m_state.home.url());
    EXPECT_EQ(m_questions.front().x11Window, 42);
    m_answer(std::vector{URL("/a"), URL("/b")});
    EXPECT_FALSE(m_model.isPicking());
    EXPECT_THAT(stored(), ElementsAre(URL("/a"), URL("/b")));
}

TEST_P(PathListModelTest, AsksOnlyOnceAtATime) {
    m_model.pick();
    m_model.pick();
    EXPECT_EQ(m_questions.size(), 1U);
    m_answer(std::vector<URL>());
    m_model.pick();
    EXPECT_EQ(m_questions.size(), 2U);
}

TEST_P(PathListModelTest, ACancelledQuestionChangesNothing) {
    int wanted = 0;
    QObject::connect(&m_model, &PathListModel::entryWanted, [&] { ++wanted; });
    put({URL("/a")});
    m_model.pick();
    m_answer(std::vector<URL>());
    EXPECT_THAT(stored(), ElementsAre(URL("/a")));
    EXPECT_EQ(wanted, 0);
}

TEST_P(PathListModelTest, WithoutADialogAPathIsTyped) {
    int wanted = 0;
    QObject::connect(&m_model, &PathListModel::entryWanted, [&] { ++wanted; });
    m_model.pick();
    m_answer(std::nullopt);
    EXPECT_EQ(wanted, 1);
    EXPECT_EQ(m_model.entry()->text(), QStringLiteral("~/"));
    m_state.home.folder("code");
    m_model.entry()->setText(QStringLiteral("~/cod"));
    EXPECT_FALSE(m_model.addEntry());
    EXPECT_THAT(stored(), IsEmpty());
    m_model.entry()->setText(QStringLiteral("~/code"));
    EXPECT_TRUE(m_model.addEntry());
    EXPECT_THAT(stored(), ElementsAre(m_state.home.path("code")));
}

TEST_P(PathListModelTest, AnAnswerAfterTheEndIsNotHeard) {
    auto settings = std::make_unique<SettingsModel>(*m_state.model);
    settings->projectRoots()->pick();
    settings.reset();
    m_answer(std::vector{URL("/a")});
    EXPECT_THAT(stored(), IsEmpty());
    m_model.pick();
    m_state.model.reset();
    m_answer(std::vector{URL("/a")});
    m_model.remove(0);
    m_model.pick();
    EXPECT_EQ(m_model.count(), 0);
    m_state.model = std::make_unique<AppModel>(test::inertEnvironment(m_state.home.url()),
                                               m_state.defaults, m_state.workers);
}

} // namespace
} // namespace tidewright
