#include "core/cleaning/AuditLog.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/support/Json.h"
#include "core/support/Text.h"
#include "tests/support/ForkedAnswer.h"
#include "tests/support/RuleTesting.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <random>

namespace tidewright {

namespace {

using test::asOrdinaryUser;
using test::InBerlin;
using test::TempHome;

using Line = std::map<std::string, std::string>;
using Status = CleanOutcome::Status;

const Date start = parseISO8601("2026-03-01T09:30:00Z").value();

std::string contents(const URL& url) { return readFile(url, 1'000'000'000).value_or("unreadable"); }

/// The text with each time of writing taken out, after a look at whether it is the present one.
std::string withoutTimes(std::string text, Date earliest) {
    constexpr std::string_view key = R"("time":")";
    constexpr std::size_t length = std::string_view("2026-03-01T09:30:00Z").size();
    const std::string first = iso8601Text(earliest);
    const std::string last = iso8601Text(currentDate());
    for (std::size_t at = text.find(key); at != std::string::npos; at = text.find(key, at)) {
        at += key.size();
        const std::string time = text.substr(at, length);
        EXPECT_TRUE(first <= time && time <= last) << time;
        text.erase(at, length);
    }
    return text;
}

class AuditLogTest : public testing::Test {
protected:
    std::string text(const AuditLog& log) const {
        return withoutTimes(contents(log.fileURL().value_or(URL())), m_begin);
    }
    /// The one line of a log of its own.
    std::string lineOf(const Line& line) const {
        AuditLog log(home.path("logs"), start);
        log.write(line);
        return text(log);
    }
    std::string lineOf(const ScanItem& item, const Status& status) const {
        AuditLog log(home.path("logs"), start);
        log.record(item, {item.id, item.title, status, 1234});
        return text(log);
    }

    InBerlin zone;
    TempHome home;

private:
    Date m_begin = currentDate();
};

ScanItem itemOf(std::vector<URL> urls, CleanMethod method) {
    return ScanItem::make({.ruleID = "js.npm",
                           .title = "npm cache",
                           .urls = std::move(urls),
                           .method = std::move(method)});
}

// The file

TEST_F(AuditLogTest, FileIsNamedByTheUsersClock) {
    const AuditLog winter(home.path("logs"), start);
    EXPECT_EQ(winter.fileURL(), home.path("logs/clean-2026-03-01T10-30-00.jsonl"));
    EXPECT_EQ(contents(winter.fileURL().value()), "");
    const AuditLog summer(home.path("logs"), parseISO8601("2026-07-31T22:00:59Z").value());
    EXPECT_EQ(summer.fileURL(), home.path("logs/clean-2026-08-01T00-00-59.jsonl"));
}

TEST_F(AuditLogTest, MissingFoldersAreMade) {
    const AuditLog log(home.path("a/b/c"), start);
    EXPECT_EQ(log.fileURL(), home.path("a/b/c/clean-2026-03-01T10-30-00.jsonl"));
    EXPECT_EQ(contents(log.fileURL().value()), "");
}

TEST_F(AuditLogTest, AnotherOfTheSameSecondBeginsTheFileAnew) {
    {
        AuditLog first(home.path("logs"), start);
        for (int i = 0; i < 10; ++i)
            first.write({{"event", "first"}});
    }
    AuditLog second(home.path("logs"), start + std::chrono::milliseconds(999));
    second.write({{"event", "second"}});
    EXPECT_EQ(second.fileURL(), home.path("logs/clean-2026-03-01T10-30-00.jsonl"));
    EXPECT_EQ(text(second), R"({"event":"second","time":""})"
                            "\n");
}

TEST_F(AuditLogTest, LogsOfOtherSecondsStay) {
    const URL other = home.file("logs/clean-2026-03-01T10-29-59.jsonl", "whole");
    AuditLog log(home.path("logs"), start);
    log.write({{"event", "start"}});
    EXPECT_EQ(contents(other), "whole");
}

TEST_F(AuditLogTest, LinkPlantedAtItsPathLeadsNowhere) {
    home.file("canary", "whole");
    home.link("logs/clean-2026-03-01T10-30-00.jsonl", "../canary");
    EXPECT_EQ(lineOf({{"event", "start"}}), R"({"event":"start","time":""})"
                                            "\n");
    EXPECT_EQ(contents(home.path("canary")), "whole");
}

TEST_F(AuditLogTest, WithoutAFileNothingIsWritten) {
    home.file("logs", "whole");
    AuditLog log(home.path("logs"), start);
    EXPECT_EQ(log.fileURL(), std::nullopt);
    log.write({{"event", "start"}});
    log.record(itemOf({}, CleanMethod::remove()), {});
    EXPECT_EQ(log.fileURL(), std::nullopt);
    EXPECT_EQ(contents(home.path("logs")), "whole");
    EXPECT_EQ(readDirectory(home.url())->size(), 1U);
}

TEST_F(AuditLogTest, AnOrdinaryUserGetsNoFileInAFolderThatMayNotBeWrittenTo) {
    home.setMode("", 0755);
    home.folder("logs");
    home.setMode("logs", 0555);
    const std::string answer = asOrdinaryUser([&]() -> std::string {
        AuditLog log(home.path("logs"), start);
        log.write({{"event", "start"}});
        return log.fileURL() ? "a file" : "none";
    });
    EXPECT_EQ(answer, "none");
}

TEST_F(AuditLogTest, LineThatDoesNotFitIsLeftOutAndTheNextIsWritten) {
    const auto limited = [] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{100, RLIM_INFINITY};
        return setrlimit(RLIMIT_FSIZE, &limit) == 0;
    };
    const auto answer = test::forkedAnswer(limited, [&] {
        AuditLog log(home.path("logs"), start);
        log.write({{"event", "start"}});
        log.write({{"event", std::string(100, 'x')}});
        log.write({{"event", "finish"}});
        return text(log);
    });
    EXPECT_EQ(answer, R"({"event":"start","time":""})"
                      "\n"
                      R"({"event":"finish","time":""})"
                      "\n");
}

// Lines

TEST_F(AuditLogTest, LinesOfTheWholeCleanup) {
    EXPECT_EQ(lineOf({{"items", "3"}, {"event", "start"}, {"available", "250000000000"}}),
              R"({"available":"250000000000","event":"start","items":"3","time":""})"
              "\n");
    EXPECT_EQ(lineOf({{"gain", "-5"}, {"event", "finish"}, {"available", "249999999995"}}),
              R"({"available":"249999999995","event":"finish","gain":"-5","time":""})"
              "\n");
    EXPECT_EQ(lineOf({{"event", "verify-failed"},
                      {"detail", "Missing: needed by app and shop"},
                      {"check", "NDK 26.1.10909125"}}),
              R"({"check":"NDK 26.1.10909125","detail":"Missing: needed by app and shop",)"
              R"("event":"verify-failed","time":""})"
              "\n");
}

struct ItemCase {
    std::string name;
    CleanMethod method;
    Status status;
    std::string before; ///< what stands before "event"
    std::string after;  ///< what stands after "paths"
};

void PrintTo(const ItemCase& each, std::ostream* stream) { *stream << each.name; }

class AuditLogItem : public AuditLogTest, public testing::WithParamInterface<ItemCase> {};

TEST_P(AuditLogItem, IsOneLine) {
    const ScanItem item = itemOf({URL("/home/a b/one"), URL("/two")}, GetParam().method);
    EXPECT_EQ(lineOf(item, GetParam().status),
              R"({"bytes":"1234",)" + GetParam().before +
                  R"("event":"item","id":"js.npm:\/home\/a b\/one","method":")" +
                  std::string(GetParam().method.label()) +
                  R"(","paths":"\/home\/a b\/one|\/two",)" + GetParam().after +
                  R"(,"time":""})"
                  "\n");
}

const CleanMethod npm = CleanMethod::command({"npm", {"cache", "/a b"}, URL("/elsewhere"), true});
const std::string npmKey = R"("command":"npm cache '\/a b'",)";
const std::string skippedKeys = R"("reason":"Xcode is running.","result":"skipped")";
const std::string failedKeys = R"("reason":"`npm` exited with 1. ","result":"failed")";
const std::string cleanedKey = R"("result":"cleaned")";
const std::string trashedKey = R"("result":"trashed")";
const Status skipped = Status::skipped("Xcode is running.");
const Status failed = Status::failed("`npm` exited with 1. ");

const ItemCase itemCases[] = {
    {"RemoveSkipped", CleanMethod::remove(), skipped, "", skippedKeys},
    {"RemoveFailed", CleanMethod::remove(), failed, "", failedKeys},
    {"RemoveCleaned", CleanMethod::remove(), Status::cleaned(), "", cleanedKey},
    {"RemoveTrashed", CleanMethod::remove(), Status::movedToTrash(), "", trashedKey},
    {"TrashSkipped", CleanMethod::trash(), skipped, "", skippedKeys},
    {"TrashFailed", CleanMethod::trash(), failed, "", failedKeys},
    {"TrashCleaned", CleanMethod::trash(), Status::cleaned(), "", cleanedKey},
    {"TrashTrashed", CleanMethod::trash(), Status::movedToTrash(), "", trashedKey},
    {"CommandSkipped", npm, skipped, npmKey, skippedKeys},
    {"CommandFailed", npm, failed, npmKey, failedKeys},
    {"CommandCleaned", npm, Status::cleaned(), npmKey, cleanedKey},
    {"CommandTrashed", npm, Status::movedToTrash(), npmKey, trashedKey},
    {"ManualSkipped", CleanMethod::manual("text"), skipped, "", skippedKeys},
    {"ManualFailed", CleanMethod::manual("text"), failed, "", failedKeys},
    {"ManualCleaned", CleanMethod::manual("text"), Status::cleaned(), "", cleanedKey},
    {"ManualTrashed", CleanMethod::manual("text"), Status::movedToTrash(), "", trashedKey},
    {"EmptyReason", CleanMethod::remove(), Status::failed(""), "",
     R"("reason":"","result":"failed")"},
};

INSTANTIATE_TEST_SUITE_P(All, AuditLogItem, testing::ValuesIn(itemCases), [](const auto& each) {
    return each.param.name;
});

TEST_F(AuditLogTest, WholeLineOfARemovedItem) {
    EXPECT_EQ(lineOf(itemOf({URL("/a")}, CleanMethod::remove()), Status::cleaned()),
              R"({"bytes":"1234","event":"item","id":"js.npm:\/a","method":"Delete permanently",)"
              R"("paths":"\/a","result":"cleaned","time":""})"
              "\n");
}

TEST_F(AuditLogTest, BytesAreTheOutcomesInDecimal) {
    AuditLog log(home.path("logs"), start);
    ScanItem item = itemOf({}, CleanMethod::remove());
    item.sizeBytes = 5;
    for (const Int64 bytes : {Int64{0}, Int64{-1}, std::numeric_limits<Int64>::max()})
        log.record(item, {"other id", "other title", Status::cleaned(), bytes});
    const std::string rest =
        R"(","event":"item","id":"js.npm:npm cache","method":"Delete permanently","paths":"",)"
        R"("result":"cleaned","time":""})"
        "\n";
    EXPECT_EQ(text(log), R"({"bytes":"0)" + rest + R"({"bytes":"-1)" + rest +
                             R"({"bytes":"9223372036854775807)" + rest);
}

TEST_F(AuditLogTest, PathsStandAsTheyAre) {
    struct Case {
        std::vector<URL> urls;
        std::string paths;
    };
    const Case cases[] = {
        {{}, ""},
        {{URL("/a")}, R"(\/a)"},
        {{URL("/a|b"), URL("/c|")}, R"(\/a|b|\/c|)"},
        {{URL("/a\nb")}, R"(\/a\nb)"},
        {{URL("/a\\b\"c'")}, R"(\/a\\b\"c')"},
        {{URL("/a\\/b")}, R"(\/a\\\/b)"},
        {{URL("//a//"), URL("/a/../b/./")}, R"(\/\/a\/\/|\/a\/..\/b\/.\/)"},
        {{URL("/é漢😀")}, R"(\/é漢😀)"},
        {{URL("/e\u0301")}, "\\/e\u0301"},
        {{URL("/caf\xE9/\xFF")}, "\\/caf\uFFFD\\/\uFFFD"},
        {{URL("/\x01\x1F\x7F\b\f\r\t")}, "\\/\\u0001\\u001f\x7F\\b\\f\\r\\t"},
        {{URL("/\u2028\u202E")}, "\\/\u2028\u202E"},
        {{URL(std::string("/a\0b", 4))}, R"(\/a\u0000b)"},
    };
    for (const Case& each : cases) {
        ScanItem item = itemOf(each.urls, CleanMethod::trash());
        item.id = "id";
        EXPECT_EQ(lineOf(item, Status::movedToTrash()),
                  R"({"bytes":"1234","event":"item","id":"id","method":"Move to Trash","paths":")" +
                      each.paths +
                      R"(","result":"trashed","time":""})"
                      "\n");
    }
}

TEST_F(AuditLogTest, ReasonsCommandsAndIdsAreEscapedLikePaths) {
    ScanItem item = itemOf({}, CleanMethod::command({"/opt/x", {"\"a\"\n"}, std::nullopt, false}));
    item.id = "system.logs:/ü\\\xFF";
    EXPECT_EQ(lineOf(item, Status::failed("no\n\t\"way\" /\xC3")),
              "{\"bytes\":\"1234\",\"command\":\"\\/opt\\/x \\\"a\\\"\\n\",\"event\":\"item\","
              "\"id\":\"system.logs:\\/ü\\\\\uFFFD\",\"method\":\"Run clean command\","
              "\"paths\":\"\",\"reason\":\"no\\n\\t\\\"way\\\" \\/\uFFFD\",\"result\":\"failed\","
              "\"time\":\"\"}\n");
}

TEST_F(AuditLogTest, TimeIsThatOfWritingWhateverTheLineSays) {
    AuditLog log(home.path("logs"), start);
    log.write({{"time", "yesterday"}});
    log.write({});
    const std::string written = contents(log.fileURL().value());
    EXPECT_EQ(written.size(), 2 * std::string_view("{\"time\":\"2026-03-01T09:30:00Z\"}\n").size());
    EXPECT_EQ(text(log), "{\"time\":\"\"}\n{\"time\":\"\"}\n");
}

TEST_F(AuditLogTest, HundredThousandPathsAreOneLine) {
    std::vector<URL> urls;
    std::string paths;
    for (int i = 0; i < 100'000; ++i) {
        urls.emplace_back(fmt::format("/home/user/Library/Caches/{}", i));
        paths += fmt::format(R"({}\/home\/user\/Library\/Caches\/{})", i == 0 ? "" : "|", i);
    }
    ScanItem item = itemOf(std::move(urls), CleanMethod::remove());
    item.id = "id";
    EXPECT_TRUE(lineOf(item, Status::cleaned()) ==
                R"({"bytes":"1234","event":"item","id":"id","method":"Delete permanently",)"
                R"("paths":")" +
                    paths +
                    R"(","result":"cleaned","time":""})"
                    "\n");
}

TEST_F(AuditLogTest, AnyBytesMakeOneLineThatCanBeReadBack) {
    const std::uint32_t seed = std::random_device()();
    SCOPED_TRACE(fmt::format("the seed is {}", seed));
    std::mt19937 random(seed);
    AuditLog log(home.path("logs"), start);
    std::vector<Line> lines;
    for (int i = 0; i < 500; ++i) {
        Line line;
        for (const char* key : {"event", "id", "paths", "reason"}) {
            std::string value(random() % 40, '\0');
            std::ranges::generate(value, [&] { return static_cast<char>(random() % 256); });
            line[key] = value;
        }
        log.write(line);
        lines.push_back(std::move(line));
    }
    const std::vector<std::string> written = nonEmptyLines(contents(log.fileURL().value()));
    ASSERT_EQ(written.size(), lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto read = parseJson(written[i]);
        ASSERT_TRUE(read) << written[i];
        ASSERT_EQ(read->size(), 5U);
        for (const auto& [key, value] : lines[i])
            EXPECT_EQ(read->at(key).get<std::string>(), repairedUTF8(value));
    }
}

// A whole log

TEST_F(AuditLogTest, CleanupWithoutItemsHasAStartAFinishAndWhatDidNotPass) {
    AuditLog log(home.path("logs"), start);
    log.write({{"event", "start"}, {"items", "0"}, {"available", "7"}});
    log.write({{"event", "finish"}, {"available", "7"}, {"gain", "0"}});
    log.write({{"event", "verify-failed"}, {"check", "adb"}, {"detail", "Missing"}});
    EXPECT_EQ(text(log), R"({"available":"7","event":"start","items":"0","time":""})"
                         "\n"
                         R"({"available":"7","event":"finish","gain":"0","time":""})"
                         "\n"
                         R"({"check":"adb","detail":"Missing","event":"verify-failed","time":""})"
                         "\n");
}

} // namespace

} // namespace tidewright
