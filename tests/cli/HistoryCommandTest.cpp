#include "cli/HistoryCommand.h"

#include "core/support/Json.h"
#include "core/support/LocalTime.h"
#include "core/support/Text.h"
#include "tests/support/Program.h"
#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::runProgram;
using test::TempHome;

constexpr Date day = Date(std::chrono::days(20'000));

HistoryEntry entry(Date date, Int64 gain, Int64 estimate, Int64 items) {
    HistoryEntry entry;
    entry.id = "0";
    entry.date = date;
    entry.measuredGain = gain;
    entry.estimatedFreed = estimate;
    entry.itemCount = items;
    return entry;
}

std::string minuteOf(Date date) {
    std::string text = localTimeText(date).substr(0, 16);
    text[10] = ' ';
    return text;
}

TEST(HistoryCommand, ShowsTheLatestFirst) {
    HistoryEntry last = entry(day + std::chrono::hours(30), 500, 12 * gigabyte, 3);
    last.movedToTrash = 2 * gigabyte;
    last.failures = 2;
    EXPECT_EQ(historyText({entry(day, 700 * megabyte, 5, 1), last}, 12'700 * megabyte, Terminal{}),
              minuteOf(last.date) + "   12 GB  3 items, 2 GB moved to the Trash, 2 failed\n" +
                  minuteOf(day) +
                  "  700 MB  1 item\n"
                  "\n"
                  "Freed so far: 12.7 GB in 2 cleanups\n");
}

TEST(HistoryCommand, SaysWhenThereIsNone) {
    const TempHome home;
    const ProcessOutput output = runProgram(home.url(), {"history"});
    EXPECT_EQ(output.output, "Nothing has been cleaned yet.\n");
    EXPECT_EQ(output.exitCode, 0);
    EXPECT_EQ(runProgram(home.url(), {"history", "--json"}).output, "[]\n");
}

TEST(HistoryCommand, FitsTheTerminal) {
    HistoryEntry wide = entry(day, 700 * megabyte, 5, 1);
    wide.movedToTrash = 2 * gigabyte;
    wide.failures = 1'000'000;
    for (std::size_t columns = 40; columns < 90; ++columns)
        for (const std::string& line :
             nonEmptyLines(historyText({wide}, 1, Terminal{true, false, columns})))
            ASSERT_LE(displayWidth(line), columns);
}

TEST(HistoryCommand, ReadsTheFileOfTheWindow) {
    const TempHome home;
    home.file(".local/share/Tidewright/history.json",
              R"([{"id":"6F1C0F0C-8F5B-4B58-9E0B-0F6C54B8D0A1","date":794571000,)"
              R"("measuredGain":12,"estimatedFreed":10,"movedToTrash":0,"itemCount":4,)"
              R"("failures":1,"logFile":"file:///logs/clean%20one.jsonl"}])");
    const ProcessOutput output = runProgram(home.url(), {"history", "--json"});
    EXPECT_EQ(parseJson(output.output).value_or(ParsedJson()),
              ParsedJson::array({{{"id", "6F1C0F0C-8F5B-4B58-9E0B-0F6C54B8D0A1"},
                                  {"date", "2026-03-07T10:10:00Z"},
                                  {"measuredGain", 12},
                                  {"estimatedFreed", 10},
                                  {"movedToTrash", 0},
                                  {"itemCount", 4},
                                  {"failures", 1},
                                  {"logFile", "/logs/clean one.jsonl"}}}));
}

} // namespace
} // namespace tidewright
