#include "core/model/CleanSummary.h"

#include "core/model/Coding.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace tidewright {
namespace {

using Status = CleanOutcome::Status;

constexpr CodingStyle otherStyle{CodingStyle::Locations::fileURL,
                                 CodingStyle::Dates::secondsSince2001};

template <class T>
std::string coded(const T& value) {
    return jsonText(encode(value, commandLineStyle), JsonLayout::compact);
}

template <class T>
std::optional<T> readBack(const T& value, CodingStyle style) {
    const auto json = parseJson(jsonText(encode(value, style), JsonLayout::compact));
    return json ? decode<T>(*json, style) : std::nullopt;
}

template <class T>
std::optional<T> read(std::string_view text) {
    const auto json = parseJson(text);
    return json ? decode<T>(*json, commandLineStyle) : std::nullopt;
}

const std::vector<Status> statuses = {Status::skipped("Xcode is running."),
                                      Status::failed("Permission denied"), Status::cleaned(),
                                      Status::movedToTrash()};

CleanSummary fullSummary() {
    return {
        .outcomes = {{"a:1", "A", statuses[0], 1},
                     {"b:2", "B", statuses[1], 20},
                     {"c:3", "C", statuses[2], 300},
                     {"d:4", "D", statuses[3], 4000},
                     {"e:5", "E", statuses[2], 50'000},
                     {"f:6", "F", statuses[3], 600'000}},
        .diskBefore = {1000, 400},
        .diskAfter = {1000, 650},
        .verification = {{"adb", true, "Present"}, {"NDK 9.0", false, "Missing: needed by app"}},
        .logFile = URL("/logs/clean.jsonl"),
        .date = parseISO8601("2026-03-01T09:30:00Z").value()};
}

TEST(CleanOutcome, StatusTellsSuccessAndReason) {
    struct Case {
        Status status;
        bool isSuccess;
        std::optional<std::string> reason;
    };
    const Case cases[] = {
        {Status::skipped("Xcode is running."), false, "Xcode is running."},
        {Status::failed("Permission denied"), false, "Permission denied"},
        {Status::skipped(""), false, ""},
        {Status::failed(""), false, ""},
        {Status::cleaned(), true, std::nullopt},
        {Status::movedToTrash(), true, std::nullopt},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(each.status.isSuccess(), each.isSuccess) << coded(each.status);
        EXPECT_EQ(each.status.reason(), each.reason) << coded(each.status);
    }
}

TEST(CleanOutcome, StatusIsCodedAsItsCaseWithWhatItHolds) {
    EXPECT_EQ(coded(statuses), R"([{"skipped":{"_0":"Xcode is running."}},)"
                               R"({"failed":{"_0":"Permission denied"}},)"
                               R"({"cleaned":{}},{"movedToTrash":{}}])");
    EXPECT_EQ(readBack(statuses, commandLineStyle), statuses);
}

TEST(CleanOutcome, StatusWithAnythingElseThanOneCaseIsNone) {
    EXPECT_EQ(read<Status>(R"({"cleaned":{}})"), Status::cleaned());
    for (const char* text :
         {"{}", "null", R"("cleaned")", R"({"trashed":{}})", R"({"cleaned":{},"skipped":{}})",
          R"({"skipped":{}})", R"({"failed":{"_0":5}})", R"({"failed":"reason"})"})
        EXPECT_EQ(read<Status>(text), std::nullopt) << text;
}

TEST(CleanOutcome, CasesAndReasonsTellStatusesApart) {
    std::vector<Status> all = statuses;
    all.push_back(Status::skipped(""));
    all.push_back(Status::failed(""));
    all.push_back(Status::failed("Xcode is running."));
    for (std::size_t i = 0; i < all.size(); ++i)
        for (std::size_t j = 0; j < all.size(); ++j) {
            EXPECT_EQ(all[i] == all[j], i == j);
            EXPECT_EQ(std::hash<Status>()(all[i]) == std::hash<Status>()(all[j]), i == j);
        }
}

TEST(CleanSummary, SumsAreOfTheirStatusAlone) {
    const CleanSummary summary = fullSummary();
    EXPECT_EQ(summary.estimatedFreed(), 50'300);
    EXPECT_EQ(summary.movedToTrash(), 604'000);
    EXPECT_EQ(CleanSummary().estimatedFreed(), 0);
    EXPECT_EQ(CleanSummary().movedToTrash(), 0);
}

TEST(CleanSummary, SumsHoldMoreThan32Bits) {
    const Int64 half = std::numeric_limits<Int64>::max() / 2;
    CleanSummary summary;
    for (const Status& status : {Status::cleaned(), Status::movedToTrash()})
        summary.outcomes.insert(summary.outcomes.end(), 2, {"id", "title", status, half});
    EXPECT_EQ(summary.estimatedFreed(), 2 * half);
    EXPECT_EQ(summary.movedToTrash(), 2 * half);
}

TEST(CleanSummary, MeasuredGainMayBeALoss) {
    CleanSummary summary = fullSummary();
    EXPECT_EQ(summary.measuredGain(), 250);
    summary.diskAfter = {2000, 150};
    EXPECT_EQ(summary.measuredGain(), -250);
    EXPECT_EQ(CleanSummary().measuredGain(), 0);
}

TEST(CleanSummary, IsCodedWithItsFieldsInOrder) {
    EXPECT_EQ(coded(fullSummary()),
              R"({"outcomes":[)"
              R"({"itemID":"a:1","title":"A","status":{"skipped":{"_0":"Xcode is running."}},)"
              R"("bytes":1},)"
              R"({"itemID":"b:2","title":"B","status":{"failed":{"_0":"Permission denied"}},)"
              R"("bytes":20},)"
              R"({"itemID":"c:3","title":"C","status":{"cleaned":{}},"bytes":300},)"
              R"({"itemID":"d:4","title":"D","status":{"movedToTrash":{}},"bytes":4000},)"
              R"({"itemID":"e:5","title":"E","status":{"cleaned":{}},"bytes":50000},)"
              R"({"itemID":"f:6","title":"F","status":{"movedToTrash":{}},"bytes":600000}],)"
              R"("diskBefore":{"totalBytes":1000,"availableBytes":400},)"
              R"("diskAfter":{"totalBytes":1000,"availableBytes":650},)"
              R"("verification":[)"
              R"({"name":"adb","passed":true,"detail":"Present"},)"
              R"({"name":"NDK 9.0","passed":false,"detail":"Missing: needed by app"}],)"
              R"("logFile":"/logs/clean.jsonl","date":"2026-03-01T09:30:00Z"})");
}

TEST(CleanSummary, WithoutALogItHasNoSuchKey) {
    EXPECT_EQ(coded(CleanSummary()),
              R"({"outcomes":[],"diskBefore":{"totalBytes":0,"availableBytes":0},)"
              R"("diskAfter":{"totalBytes":0,"availableBytes":0},"verification":[],)"
              R"("date":"1970-01-01T00:00:00Z"})");
}

TEST(CleanSummary, IsReadBackAsItWas) {
    for (const CodingStyle style : {commandLineStyle, otherStyle})
        for (const CleanSummary& summary : {fullSummary(), CleanSummary()})
            EXPECT_EQ(readBack(summary, style), summary) << coded(summary);
}

TEST(CleanSummary, EveryFieldTellsSummariesApart) {
    std::vector<CleanSummary> all(7, fullSummary());
    all[1].outcomes[0].bytes = 2;
    all[2].diskBefore.availableBytes = 1;
    all[3].diskAfter.totalBytes = 1;
    all[4].verification[1].passed = true;
    all[5].logFile.reset();
    all[6].date += std::chrono::seconds(1);
    for (std::size_t i = 0; i < all.size(); ++i)
        for (std::size_t j = 0; j < all.size(); ++j) {
            EXPECT_EQ(all[i] == all[j], i == j);
            EXPECT_EQ(std::hash<CleanSummary>()(all[i]) == std::hash<CleanSummary>()(all[j]),
                      i == j);
        }
}

Int64 bytesOf(int gigabytes) { return gigabytes * gigabyte; }

TEST(CleanSummary, ItsTextsTellWhatWasMeasured) {
    struct Case {
        const char* name;
        Int64 before;
        Int64 after;
        std::vector<CleanOutcome> outcomes;
        const char* headline;
        const char* explanation;
    };
    const auto of = [](Status status, Int64 bytes) {
        return CleanOutcome{"a", "A", status, bytes};
    };
    const Case cases[] = {
        {"as estimated",
         bytesOf(10),
         bytesOf(22),
         {of(Status::cleaned(), bytesOf(12))},
         "Freed 12 GB",
         "Measured on your disk: 22 GB now available."},
        {"half of the estimate",
         bytesOf(10),
         bytesOf(16),
         {of(Status::cleaned(), bytesOf(12) + 1)},
         "Freed 6 GB",
         "Measured on your disk: 16 GB now available."},
        {"a byte below half of the estimate",
         bytesOf(10),
         bytesOf(16) - 1,
         {of(Status::cleaned(), bytesOf(12))},
         "Freed 6 GB",
         "Measured on your disk: 16 GB now available."
         " macOS may take a moment to report all reclaimed space."},
        {"less space than before",
         bytesOf(10),
         bytesOf(9),
         {of(Status::cleaned(), 2)},
         "Freed Zero KB",
         "Measured on your disk: 9 GB now available."
         " macOS may take a moment to report all reclaimed space."},
        {"only to the Trash",
         bytesOf(10),
         bytesOf(10),
         {of(Status::movedToTrash(), bytesOf(3))},
         "Freed Zero KB",
         "Measured on your disk: 10 GB now available."
         " 3 GB moved to the Trash; empty it to free that space too."},
        {"a byte to the Trash, and waiting",
         bytesOf(10),
         bytesOf(10),
         {of(Status::movedToTrash(), 1), of(Status::cleaned(), bytesOf(3))},
         "Freed Zero KB",
         "Measured on your disk: 10 GB now available."
         " 1 byte moved to the Trash; empty it to free that space too."
         " macOS may take a moment to report all reclaimed space."},
        {"nothing done",
         bytesOf(10),
         bytesOf(10),
         {of(Status::failed(""), bytesOf(5))},
         "Freed Zero KB",
         "Measured on your disk: 10 GB now available."},
    };
    for (const Case& each : cases) {
        CleanSummary summary;
        summary.diskBefore = {bytesOf(100), each.before};
        summary.diskAfter = {bytesOf(100), each.after};
        summary.outcomes = each.outcomes;
        EXPECT_EQ(summary.headline(), each.headline) << each.name;
        EXPECT_EQ(summary.explanation(), each.explanation) << each.name;
    }
}

} // namespace
} // namespace tidewright
