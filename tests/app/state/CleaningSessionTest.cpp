#include "app/state/CleaningSession.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "tests/support/TempHome.h"
#include "tests/support/app/EventLoop.h"

#include <QSignalSpy>
#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::becomesTrue;
using test::TempHome;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Phase = CleaningSession::Phase;
using ItemState = CleaningSession::ItemState;
using Status = CleanOutcome::Status;

const ItemState pending{ItemState::Pending{}};
const ItemState running{ItemState::Running{}};
const ItemState cleaned{ItemState::Done{Status::cleaned()}};

class CleaningSessionTest : public testing::Test {
protected:
    TempHome m_home;
    std::optional<Workers> m_workers{std::in_place};
    int m_finished = 0;

    Cleaner cleaner() const {
        ToolLocator locator;
        locator.searchPath = {m_home.path("tools").path(), "/usr/bin", "/bin"};
        return {.policy = PathPolicy(m_home.url(), m_home.path("tmp"), {}, {}),
                .runner = ShellRunner{locator},
                .logDirectory = m_home.path("logs"),
                .needed = {},
                .home = m_home.url()};
    }

    ScanItem item(const std::string& title, Int64 bytes, CleanMethod method) const {
        ScanItem made = ScanItem::make({.ruleID = "test.rule",
                                        .title = title,
                                        .urls = {m_home.path(".cache/" + title)},
                                        .category = Category::system,
                                        .decision = Decision::clean,
                                        .method = std::move(method),
                                        .idSuffix = title});
        made.sizeBytes = bytes;
        return made;
    }

    ScanItem removed(const std::string& title, Int64 bytes = 1) const {
        m_home.file(".cache/" + title, "x");
        return item(title, bytes, CleanMethod::remove());
    }

    /// Its tool says that it runs by making a file, and ends when another file is there.
    ScanItem waiting(const std::string& title, Int64 bytes) const {
        m_home.tool("tools/" + title, "touch \"" + m_home.path(title + ".runs").path() + "\"; " +
                                          test::shellWaitFor(m_home.path(title + ".go")));
        return item(title, bytes, CleanMethod::command({title, {}, std::nullopt, false}));
    }

    bool becomesRunning(const std::string& title) const {
        return becomesTrue([&] { return fileExists(m_home.path(title + ".runs")); });
    }
    void letGo(const std::string& title) const { m_home.file(title + ".go"); }

    void run(CleaningSession& session) {
        session.run(cleaner(), *m_workers, [this](const CleanSummary&) { ++m_finished; });
    }

    /// Whether a cleanup has done its last steps.
    bool logHasEnded() const {
        const auto logs = readDirectory(m_home.path("logs"));
        if (!logs || logs->empty())
            return false;
        const auto text = readText(m_home.path("logs").appending(logs->front().name));
        return text && text->find(R"("event":"finish")") != std::string::npos;
    }

    static std::vector<std::string> titles(const std::vector<ScanItem>& items) {
        std::vector<std::string> titles;
        for (const ScanItem& each : items)
            titles.push_back(each.title);
        return titles;
    }
};

TEST_F(CleaningSessionTest, ANewSessionIsUnderReview) {
    const CleaningSession session({removed("a"), removed("b")});
    EXPECT_EQ(session.phase(), Phase::review);
    EXPECT_EQ(session.completedCount(), 0U);
    EXPECT_EQ(session.summary(), std::nullopt);
    for (const ScanItem& each : session.items())
        EXPECT_EQ(session.state(each.id), pending);
    EXPECT_NE(session.id(), CleaningSession({}).id());
}

TEST_F(CleaningSessionTest, TheLargestStandsFirstAndEqualOnesKeepTheirOrder) {
    const CleaningSession session(
        {removed("a", 2), removed("b", 3), removed("c", 2), removed("d", 5), removed("e", 2)});
    EXPECT_THAT(titles(session.items()), ElementsAre("d", "b", "a", "c", "e"));
}

TEST_F(CleaningSessionTest, WhatIsGoneForGoodAndWhatGoesToTheTrashAreAll) {
    const CleaningSession session({item("a", 1, CleanMethod::remove()),
                                   item("b", 20, CleanMethod::trash()),
                                   item("c", 300, CleanMethod::command({"c", {}, {}, false})),
                                   item("d", 4000, CleanMethod::trash())});
    EXPECT_EQ(session.permanentBytes(), 301);
    EXPECT_EQ(session.trashBytes(), 4020);
    EXPECT_EQ(session.totalBytes(), 4321);
}

TEST_F(CleaningSessionTest, RiskyItemsAndThoseOfProjectsNeedAttention) {
    const auto with = [&](const char* title, Int64 bytes, Risk risk, bool isProjectItem) {
        ScanItem made = item(title, bytes, CleanMethod::remove());
        made.risk = risk;
        made.isProjectItem = isProjectItem;
        return made;
    };
    const CleaningSession session(
        {with("safe", 1, Risk::safe, false), with("safe in project", 2, Risk::safe, true),
         with("low", 3, Risk::low, false), with("low in project", 4, Risk::low, true),
         with("check", 5, Risk::check, false), with("leave", 6, Risk::leave, false)});
    EXPECT_THAT(titles(session.needsAttention()),
                ElementsAre("leave", "check", "low in project", "safe in project"));
}

TEST_F(CleaningSessionTest, TwoItemsWithOneIdEndTheProgram) {
    EXPECT_DEATH(CleaningSession({removed("a"), removed("a")}),
                 "Duplicate values for key: 'test.rule:a'");
}

TEST_F(CleaningSessionTest, SumsThatBytesCannotHoldEndTheProgram) {
    const CleaningSession session(
        {removed("a", std::numeric_limits<Int64>::max()), removed("b", 1)});
    EXPECT_DEATH((void)session.totalBytes(), "sizes add up");
}

TEST_F(CleaningSessionTest, ItTellsWhatBecomesOfEachItem) {
    CleaningSession session({removed("a"), waiting("b", 5)});
    QSignalSpy phases(&session, &CleaningSession::phaseChanged);
    QSignalSpy counts(&session, &CleaningSession::completedCountChanged);
    run(session);
    EXPECT_EQ(session.phase(), Phase::cleaning);
    EXPECT_EQ(phases.count(), 1);
    ASSERT_TRUE(becomesTrue([&] { return session.state("test.rule:b") == running; }));
    EXPECT_EQ(session.state("test.rule:a"), pending) << "tools run before all others";
    letGo("b");
    ASSERT_TRUE(becomesTrue([&] { return session.phase() == Phase::finished; }));
    EXPECT_EQ(session.state("test.rule:a"), cleaned);
    EXPECT_EQ(session.state("test.rule:b"), cleaned);
    EXPECT_EQ(session.completedCount(), 2U);
    EXPECT_EQ(counts.count(), 2);
    EXPECT_EQ(phases.count(), 2);
    EXPECT_EQ(m_finished, 1);
    EXPECT_THAT(session.summary()->outcomes, SizeIs(2));
    EXPECT_FALSE(fileExists(m_home.path(".cache/a")));
}

TEST_F(CleaningSessionTest, ASecondRunChangesNothing) {
    CleaningSession session({waiting("a", 1)});
    run(session);
    ASSERT_TRUE(becomesRunning("a"));
    run(session);
    EXPECT_EQ(session.phase(), Phase::cleaning);
    letGo("a");
    ASSERT_TRUE(becomesTrue([&] { return session.phase() == Phase::finished; }));
    run(session);
    EXPECT_EQ(session.phase(), Phase::finished);
    EXPECT_EQ(m_finished, 1);
}

TEST_F(CleaningSessionTest, StopEndsTheListeningAndTheCleaner) {
    CleaningSession session({removed("first", 1), waiting("tool", 2)});
    run(session);
    ASSERT_TRUE(becomesTrue([&] { return session.state("test.rule:tool") == running; }));
    session.stop();
    letGo("tool");
    ASSERT_TRUE(becomesTrue([&] { return logHasEnded(); }));
    test::runEventLoopOnce();
    EXPECT_EQ(session.phase(), Phase::cleaning);
    EXPECT_EQ(session.state("test.rule:tool"), running);
    EXPECT_EQ(session.state("test.rule:first"), pending);
    EXPECT_EQ(session.completedCount(), 0U);
    EXPECT_EQ(m_finished, 0);
    EXPECT_TRUE(fileExists(m_home.path(".cache/first"))) << "nothing further begins";
}

TEST_F(CleaningSessionTest, StopBeforeAndAfterTheCleaningDoesNothing) {
    CleaningSession session({removed("a")});
    session.stop();
    run(session);
    ASSERT_TRUE(becomesTrue([&] { return session.phase() == Phase::finished; }));
    session.stop();
    EXPECT_EQ(session.phase(), Phase::finished);
    EXPECT_EQ(m_finished, 1);
}

TEST_F(CleaningSessionTest, WindingUpBeginsNothingFurtherAndTellsTheSummary) {
    CleaningSession session({removed("first", 1), waiting("tool", 2)});
    run(session);
    ASSERT_TRUE(becomesTrue([&] { return session.state("test.rule:tool") == running; }));
    session.windUp();
    letGo("tool");
    ASSERT_TRUE(becomesTrue([&] { return session.phase() == Phase::finished; }));
    EXPECT_EQ(session.state("test.rule:tool"), cleaned);
    EXPECT_EQ(session.state("test.rule:first"), pending);
    EXPECT_THAT(session.summary()->outcomes, SizeIs(1));
    EXPECT_EQ(m_finished, 1);
    EXPECT_TRUE(fileExists(m_home.path(".cache/first")));
}

TEST_F(CleaningSessionTest, OneThatIsDestroyedWhileItCleansEndsAfterTheItemUnderWay) {
    auto session = std::make_unique<CleaningSession>(
        std::vector<ScanItem>{removed("first", 1), waiting("tool", 2)});
    run(*session);
    ASSERT_TRUE(becomesRunning("tool"));
    session.reset();
    letGo("tool");
    m_workers.reset();
    EXPECT_TRUE(logHasEnded());
    EXPECT_TRUE(fileExists(m_home.path(".cache/first")));
    EXPECT_EQ(m_finished, 0);
}

TEST_F(CleaningSessionTest, NothingToCleanIsFinishedAsWell) {
    CleaningSession session({});
    run(session);
    ASSERT_TRUE(becomesTrue([&] { return session.phase() == Phase::finished; }));
    EXPECT_THAT(session.summary()->outcomes, IsEmpty());
    EXPECT_EQ(m_finished, 1);
}

} // namespace
} // namespace tidewright
