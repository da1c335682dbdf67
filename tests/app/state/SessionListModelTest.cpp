#include "app/state/SessionListModel.h"

#include "tests/support/app/EventLoop.h"
#include "tests/support/app/ModelWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <map>

namespace tidewright {
namespace {

using test::columnOf;
using test::ModelWatch;
using test::testItem;
using test::TestState;
using testing::Each;
using testing::ElementsAre;
using Phase = CleaningSession::Phase;

class SessionListModelTest : public testing::Test {
protected:
    std::vector<std::vector<URL>> m_revealed;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.reveal = [this](const std::vector<URL>& urls) { m_revealed.push_back(urls); };
        environment.runner.locator.searchPath = {environment.home.appending("tools").path(),
                                                 "/usr/bin", "/bin"};
    }};

    ~SessionListModelTest() override { letGo(); }

    /// Ends the tools that wait; a cleanup under way would never end.
    void letGo() const { m_state.home.file("go"); }

    AppModel& app() { return *m_state.model; }

    /// An item that is really there.
    ScanItem item(const std::string& title, Int64 bytes, CleanMethod method) const {
        ScanItem item = testItem(Category::system, title, bytes);
        item.title = title;
        item.urls = {m_state.home.file(".cache/" + title, "x")};
        item.method = std::move(method);
        return item;
    }
    ScanItem removed(const std::string& title, Int64 bytes) const {
        return item(title, bytes, CleanMethod::remove());
    }
    /// An item that the policy refuses.
    ScanItem refused(const std::string& title, Int64 bytes) const {
        ScanItem item = removed(title, bytes);
        item.urls = {URL("/usr/bin")};
        return item;
    }
    ScanItem commanded(const std::string& title, Int64 bytes, const std::string& body) const {
        m_state.home.tool("tools/" + title, body);
        return item(title, bytes, CleanMethod::command({title, {"a b"}, std::nullopt, false}));
    }

    void review(std::vector<ScanItem> items) {
        ScanReport report;
        report.items = std::move(items);
        m_state.scanned(std::move(report));
        app().reviewSelection();
        ASSERT_NE(app().session(), nullptr);
    }

    void clean() {
        app().startCleaning();
        ASSERT_TRUE(
            test::becomesTrue([this] { return app().session()->phase() == Phase::finished; }));
    }
};

TEST_F(SessionListModelTest, ItIsEmptyWithoutASession) {
    SessionListModel model(app());
    ModelWatch watch(model);
    EXPECT_EQ(model.count(), 0);
    EXPECT_EQ(model.progress(), 0);
    review({removed("a", 1)});
    EXPECT_EQ(model.count(), 1);
    app().closeSession();
    EXPECT_EQ(model.count(), 0);
    EXPECT_EQ(model.totalSize().bytes, 0);
    EXPECT_THAT(watch.told(), ElementsAre("reset", "removed 0-0"));
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(SessionListModelTest, UnderReviewItemsStandByMethodAndThenLargestFirst) {
    ScanItem personal = item("photos", 40, CleanMethod::trash());
    personal.risk = Risk::check;
    personal.version = "3";
    ScanItem project = removed("build", 2);
    project.isProjectItem = true;
    review({item("old", 4, CleanMethod::trash()), personal, removed("cache", 1), project,
            commanded("npm", 300, "true"), commanded("yarn", 3000, "true")});
    const SessionListModel model(app());
    EXPECT_EQ(model.phase(), Phase::review);
    EXPECT_THAT(columnOf(model, "title"),
                ElementsAre("yarn", "npm", "build", "cache", "photos", "old"));
    EXPECT_THAT(columnOf(model, "methodGroup"),
                ElementsAre("Run clean command", "Run clean command", "Delete permanently",
                            "Delete permanently", "Move to Trash", "Move to Trash"));
    EXPECT_THAT(columnOf(model, "detail"),
                ElementsAre("yarn 'a b'", "npm 'a b'", "It is made again.", "It is made again.",
                            "It is made again.", "It is made again."));
    EXPECT_THAT(columnOf(model, "attention"),
                ElementsAre("false", "false", "true", "false", "true", "false"));
    EXPECT_THAT(columnOf(model, "state"), Each(""));
    EXPECT_THAT(columnOf(model, "symbolName"),
                ElementsAre("sparkles", "sparkles", "sparkles", "sparkles", "trash", "trash"));
    EXPECT_THAT(columnOf(model, "tint"), Each("secondary"));
    EXPECT_THAT(columnOf(model, "version"), ElementsAre("", "", "", "", "3", ""));
    EXPECT_THAT(columnOf(model, "sizeText"),
                ElementsAre("3 KB", "300 bytes", "2 bytes", "1 byte", "40 bytes", "4 bytes"));
    EXPECT_EQ(model.totalSize().bytes, 3347);
    EXPECT_EQ(model.permanent().bytes, 3303);
    EXPECT_EQ(model.toTrash().bytes, 44);
    EXPECT_EQ(model.attentionCount(), 2);
    EXPECT_EQ(model.attentionText().toStdString(),
              "2 items are personal data, devices or project files. Check them below.");
}

TEST_F(SessionListModelTest, OnlyTrashItemsAreOneGroupAndTwoFigures) {
    review({item("a", 40, CleanMethod::trash()), item("b", 2, CleanMethod::trash())});
    const SessionListModel model(app());
    EXPECT_THAT(columnOf(model, "methodGroup"), Each("Move to Trash"));
    EXPECT_EQ(model.totalSize().bytes, 42);
    EXPECT_EQ(model.permanent().bytes, 0);
    EXPECT_EQ(model.toTrash().bytes, 42);
    EXPECT_EQ(model.cleanTitle().toStdString(), "Clean 42 bytes");
}

TEST_F(SessionListModelTest, TheFaceFollowsTheSession) {
    SessionListModel model(app());
    ModelWatch watch(model);
    std::vector<std::string> faces;
    QObject::connect(&model, &SessionListModel::faceChanged, &model, [&] {
        faces.push_back(model.face().toStdString());
        // What the face shows is there already.
        EXPECT_EQ(model.results().headline.isEmpty(), model.face() != QLatin1String("finished"));
    });
    EXPECT_EQ(model.face().toStdString(), "");
    review({removed("a", 1)});
    app().closeSession();
    app().reviewSelection();
    clean();
    app().closeSession();
    EXPECT_THAT(faces, ElementsAre("review", "", "review", "cleaning", "finished", ""));
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(SessionListModelTest, ItsResultsAreThoseOfTheCleanup) {
    review({removed("a", 5), refused("b", 4)});
    SessionListModel model(app());
    EXPECT_EQ(model.results(), CleanResults());
    clean();
    EXPECT_EQ(model.results(), CleanResults::of(*app().session()->summary()));
    EXPECT_FALSE(model.results().isComplete);
    app().closeSession();
    EXPECT_EQ(model.results(), CleanResults());
}

TEST_F(SessionListModelTest, TheAuditLogOfWhatIsFinishedIsShown) {
    SessionListModel model(app());
    model.showAuditLog();
    review({removed("a", 1)});
    model.showAuditLog();
    EXPECT_THAT(m_revealed, testing::IsEmpty());
    clean();
    model.showAuditLog();
    ASSERT_TRUE(app().session()->summary()->logFile);
    EXPECT_THAT(m_revealed, ElementsAre(ElementsAre(*app().session()->summary()->logFile)));
}

TEST_F(SessionListModelTest, WithoutAnAuditLogThereIsNoneToShow) {
    m_state.home.file("logs", "in the way of the folder");
    review({removed("a", 1)});
    SessionListModel model(app());
    clean();
    EXPECT_FALSE(model.results().hasLog);
    model.showAuditLog();
    EXPECT_THAT(m_revealed, testing::IsEmpty());
}

TEST_F(SessionListModelTest, NothingToCheckIsNotSpokenOf) {
    review({removed("a", 1)});
    const SessionListModel model(app());
    EXPECT_EQ(model.attentionCount(), 0);
    EXPECT_TRUE(model.attentionText().isEmpty());
}

TEST_F(SessionListModelTest, WhileItCleansEachRowSaysWhatHasBecomeOfIt) {
    setenv("XDG_DATA_HOME", m_state.home.path("data").path().c_str(), 1);
    const std::string waits = test::shellWaitFor(m_state.home.path("go"));
    review({removed("removed", 50), item("trashed", 40, CleanMethod::trash()),
            commanded("broken", 30, "exit 3"), refused("refused", 20),
            commanded("waiting", 10, waits)});
    SessionListModel model(app());
    ModelWatch watch(model);
    std::map<std::string, std::vector<std::string>> lastSeen; // by title
    QObject::connect(&model, &SessionListModel::dataChanged, &model, [&](const QModelIndex& index) {
        const auto show = [&](const char* role) {
            return columnOf(model, role)[static_cast<std::size_t>(index.row())];
        };
        lastSeen[show("title")] = {show("state"), show("symbolName"), show("tint"),
                                   show("attention"), show("detail")};
    });
    app().startCleaning();
    EXPECT_EQ(model.phase(), Phase::cleaning);
    EXPECT_THAT(columnOf(model, "title"),
                ElementsAre("removed", "trashed", "broken", "refused", "waiting"));
    EXPECT_THAT(columnOf(model, "state"), Each("pending"));
    EXPECT_THAT(columnOf(model, "symbolName"), Each("circle"));
    EXPECT_THAT(columnOf(model, "tint"), Each("secondary"));
    EXPECT_THAT(columnOf(model, "attention"), Each("false"));
    EXPECT_EQ(model.progressText().toStdString(), "0 of 5 done");

    ASSERT_TRUE(test::becomesTrue(
        [&] { return model.progress() == 0.2 && columnOf(model, "state").back() == "running"; }));
    EXPECT_EQ(model.progressText().toStdString(), "1 of 5 done");
    EXPECT_EQ(lastSeen["waiting"],
              (std::vector<std::string>{"running", "", "accent", "false", "waiting 'a b'"}));
    EXPECT_THAT(lastSeen["broken"], ElementsAre("failed", "xmark.circle.fill", "red", "true",
                                                testing::StartsWith("Failed: `broken")));
    EXPECT_EQ(watch.complaint(), "");

    letGo();
    ASSERT_TRUE(test::becomesTrue([&] { return model.phase() == Phase::finished; }));
    EXPECT_EQ(lastSeen["removed"],
              (std::vector<std::string>{"cleaned", "checkmark.circle.fill", "green", "false",
                                        "It is made again."}));
    EXPECT_EQ(lastSeen["trashed"],
              (std::vector<std::string>{"movedToTrash", "trash.circle.fill", "green", "false",
                                        "It is made again."}));
    EXPECT_THAT(lastSeen["refused"], ElementsAre("skipped", "minus.circle.fill", "orange", "true",
                                                 testing::StartsWith("Skipped: ")));
    EXPECT_EQ(model.progress(), 1);
    EXPECT_EQ(watch.complaint(), "");
    unsetenv("XDG_DATA_HOME");
}

TEST_F(SessionListModelTest, AfterwardsOnlyWhatWasNotCleanedIsLeft) {
    review({removed("a", 5), refused("b", 4), removed("c", 3), refused("d", 2)});
    SessionListModel model(app());
    ModelWatch watch(model);
    clean();
    EXPECT_EQ(model.phase(), Phase::finished);
    std::vector<std::string> titles;
    for (const CleanOutcome& outcome : app().session()->summary()->outcomes)
        if (!outcome.status.isSuccess())
            titles.push_back(outcome.title);
    EXPECT_THAT(titles, testing::SizeIs(2));
    EXPECT_EQ(columnOf(model, "title"), titles) << "in the order of the outcomes";
    EXPECT_THAT(columnOf(model, "state"), Each("skipped"));
    EXPECT_EQ(model.totalSize().bytes, 14) << "the figures are those of the whole";
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(SessionListModelTest, WhereAllWentWellNothingIsLeft) {
    review({removed("a", 5)});
    const SessionListModel model(app());
    clean();
    EXPECT_EQ(model.count(), 0);
}

TEST_F(SessionListModelTest, ASessionUnderWayIsTakenUpAsItStands) {
    review({removed("a", 5), refused("b", 4)});
    clean();
    const SessionListModel model(app());
    EXPECT_EQ(model.phase(), Phase::finished);
    EXPECT_THAT(columnOf(model, "title"), ElementsAre("b"));
    EXPECT_EQ(model.progress(), 1);
}

TEST_F(SessionListModelTest, AnotherSessionTakesThePlaceOfTheFirst) {
    review({removed("a", 5), refused("b", 4)});
    SessionListModel model(app());
    ModelWatch watch(model);
    clean();
    app().review({app().report()->items.front().id});
    EXPECT_EQ(model.phase(), Phase::review);
    EXPECT_THAT(columnOf(model, "state"), ElementsAre(""));
    EXPECT_EQ(model.progressText().toStdString(), "0 of 1 done");
    EXPECT_EQ(model.totalSize().bytes, 4);
    EXPECT_EQ(watch.complaint(), "");
}

TEST_F(SessionListModelTest, IdsNeedNotBeUTF8) {
    ScanItem one = refused("one", 2);
    ScanItem two = removed("two", 1);
    one.id = "same\xff";
    two.id = "same\xfe";
    review({one, two});
    SessionListModel model(app());
    clean();
    EXPECT_THAT(columnOf(model, "itemID"), ElementsAre("same\xff"));
}

TEST_F(SessionListModelTest, ItOutlivesTheAppModel) {
    review({removed("a", 5), refused("b", 4)});
    SessionListModel model(app());
    ModelWatch watch(model);
    m_state.model.reset();
    EXPECT_THAT(columnOf(model, "title"), ElementsAre("a", "b"));
    EXPECT_THAT(columnOf(model, "state"), Each(""));
    EXPECT_EQ(model.progressText().toStdString(), "0 of 2 done");
    EXPECT_EQ(watch.complaint(), "");
}

} // namespace
} // namespace tidewright
