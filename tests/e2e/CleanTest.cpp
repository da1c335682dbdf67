// The whole loop in a sample home, as a person would go through it: scan, clean, look again.

#include "core/model/CleanSummary.h"
#include "core/model/Coding.h"
#include "core/model/ScanReport.h"
#include "core/probes/Tools.h"
#include "core/scan/DirectorySizer.h"
#include "core/support/Text.h"
#include "samples/SampleHome.h"
#include "tests/support/Program.h"
#include "tests/support/TempHome.h"

#include <fmt/ranges.h>
#include <gmock/gmock.h>

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

namespace tidewright::test {

namespace {

namespace fs = std::filesystem;

// It only removes packages that no project has a link to: a little of its size stays.
constexpr const char* prunedOnly = "js.pnpm";

class CleanLoop : public testing::Test {
protected:
    CleanLoop() {
        const auto built = SampleHome{.folder = m_home}.build();
        EXPECT_TRUE(built) << (built ? "" : built.error().sentence);
    }

    TempHome m_place;
    URL m_home = m_place.path("home");

    ParsedJson answer(const std::vector<std::string>& arguments) const {
        const ProcessOutput output = runProgram(m_home, arguments);
        EXPECT_EQ(output.exitCode, 0) << output.output;
        EXPECT_EQ(output.errorOutput, "");
        return parseJson(output.output).value_or(ParsedJson::object());
    }

    std::vector<ScanItem> scanned() const {
        const auto items =
            decode<std::vector<ScanItem>>(answer({"scan", "--json"})["items"], commandLineStyle);
        EXPECT_TRUE(items);
        return items.value_or(std::vector<ScanItem>());
    }

    CleanSummary cleaned(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"clean", "--yes", "--json"});
        const auto summary = decode<CleanSummary>(answer(arguments), commandLineStyle);
        EXPECT_TRUE(summary);
        return summary.value_or(CleanSummary());
    }

    bool has(const URL& url) const {
        return fs::symlink_status(url.path()).type() != fs::file_type::not_found;
    }
};

bool isRecommended(const ScanItem& item) {
    return item.decision == Decision::clean && item.method.isExecutable();
}

std::set<std::string> idsOf(const std::vector<ScanItem>& items) {
    std::set<std::string> ids;
    for (const ScanItem& item : items)
        ids.insert(item.id);
    return ids;
}

/// Each file and link below a folder, outside of some places: what tells one from another, its
/// times, which no write leaves as they are, and the text of the small ones. Of folders only that
/// they are there, as something in them may go.
std::map<std::string, std::string> contentsOutside(const std::vector<URL>& places,
                                                   const URL& folder) {
    constexpr off_t small = 50'000;
    std::map<std::string, std::string> contents;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder.path())) {
        const URL url(entry.path().string());
        if (std::ranges::any_of(places, [&](const URL& place) { return url.isInside(place); }))
            continue;
        struct stat status = {};
        EXPECT_EQ(lstat(entry.path().c_str(), &status), 0);
        std::string& text = contents[url.path()];
        if (S_ISDIR(status.st_mode))
            continue;
        text = fmt::format("{} {:o} {} {} {} {} {} ", status.st_ino, status.st_mode, status.st_size,
                           status.st_blocks, status.st_nlink, status.st_mtime, status.st_ctime);
        if (S_ISREG(status.st_mode) && status.st_size < small) {
            std::ifstream stream(entry.path(), std::ios::binary);
            text.append(std::istreambuf_iterator<char>(stream), {});
        }
    }
    return contents;
}

/// The logs of an application are part of all logs, and some of them are an item of their own.
Int64 bytesInTwoItems(const std::vector<ScanItem>& items) {
    Int64 bytes = 0;
    for (const ScanItem& inner : items)
        for (const ScanItem& outer : items)
            for (const URL& url : inner.urls)
                if (inner.id != outer.id && std::ranges::any_of(outer.urls, [&](const URL& each) {
                        return url.isInside(each);
                    }))
                    bytes += DirectorySizer().size(url);
    return bytes;
}

TEST_F(CleanLoop, CleansAllThatIsRecommendedAndNothingElse) {
    std::vector<ScanItem> recommended = scanned();
    std::erase_if(recommended, [](const ScanItem& item) { return !isRecommended(item); });
    ASSERT_GT(recommended.size(), 30U);

    // The stand-in tools delete these; what is theirs has no location or is only thinned out.
    std::vector<URL> mayGo{m_home.appending("Library/pnpm/store/v3/files/a9"),
                           m_home.appending(".local/state"),             // the audit log
                           m_home.appending(".local/share/Tidewright")}; // the history
    for (const char* device :
         {"11F4B6D8-0A2C-4E3F-8B5D-7C9E1A3F5B01", "22A5C7E9-1B3D-4F40-9C6E-8DAF2B406C12"})
        mayGo.push_back(
            m_home.appending("Library/Developer/CoreSimulator/Devices").appending(device));
    for (const ScanItem& item : recommended)
        if (item.ruleID != prunedOnly)
            mayGo.insert(mayGo.end(), item.urls.begin(), item.urls.end());
    const auto before = contentsOutside(mayGo, m_home);
    ASSERT_GT(before.size(), 150U);
    const Int64 bytesBefore = DirectorySizer().size(m_home);
    const Int64 countedTwice = bytesInTwoItems(recommended);

    const CleanSummary summary = cleaned({"--recommended"});

    EXPECT_EQ(contentsOutside(mayGo, m_home), before);
    ASSERT_EQ(summary.outcomes.size(), recommended.size());
    for (const CleanOutcome& outcome : summary.outcomes)
        EXPECT_TRUE(outcome.status.isSuccess())
            << outcome.title << ": " << outcome.status.reason().value_or("");
    for (const ScanItem& item : recommended)
        if (std::holds_alternative<CleanMethod::Remove>(item.method.choice)) {
            for (const URL& url : item.urls)
                EXPECT_FALSE(has(url)) << url.path();
        }
    EXPECT_GT(summary.verification.size(), 5U);
    for (const VerificationCheck& check : summary.verification)
        EXPECT_TRUE(check.passed) << check.name << ": " << check.detail;

    // What it says is what is gone. Folders that a tool has emptied take a block each.
    Int64 staysInStore = 0;
    Int64 sizes = 0;
    for (const ScanItem& item : recommended) {
        sizes += item.sizeBytes;
        if (item.ruleID == prunedOnly)
            staysInStore += DirectorySizer().size(item.urls.front());
    }
    const Int64 logBytes = DirectorySizer().size(m_home.appending(".local/state"));
    const Int64 gone = bytesBefore - (DirectorySizer().size(m_home) - logBytes);
    EXPECT_EQ(summary.estimatedFreed(), sizes);
    EXPECT_NEAR(static_cast<double>(gone), static_cast<double>(sizes - staysInStore - countedTwice),
                100'000);

    std::set<std::string> left = idsOf(scanned());
    for (const ScanItem& item : recommended)
        EXPECT_FALSE(left.contains(item.id)) << item.id;
}

TEST_F(CleanLoop, TheAuditLogHasEveryItemWithEveryPath) {
    std::map<std::string, ScanItem> recommended;
    for (const ScanItem& item : scanned())
        if (isRecommended(item))
            recommended[item.id] = item;
    const CleanSummary summary = cleaned({"--recommended"});
    ASSERT_TRUE(summary.logFile);
    EXPECT_TRUE(summary.logFile->isInside(m_home.appending(".local/state")));

    std::ifstream stream(summary.logFile->path());
    std::vector<std::string> events;
    for (std::string line; std::getline(stream, line);) {
        const ParsedJson entry = parseJson(line).value_or(ParsedJson::object());
        events.push_back(entry.value("event", ""));
        if (events.back() != "item")
            continue;
        const auto item = recommended.find(entry.value("id", ""));
        ASSERT_NE(item, recommended.end()) << line;
        std::vector<std::string> paths;
        for (const URL& url : item->second.urls)
            paths.push_back(url.path());
        EXPECT_EQ(entry.value("paths", "none"), fmt::format("{}", fmt::join(paths, "|")));
        EXPECT_EQ(entry.value("result", ""), "cleaned");
        recommended.erase(item);
    }
    EXPECT_TRUE(recommended.empty());
    ASSERT_GT(events.size(), 2U);
    EXPECT_EQ(events.front(), "start");
    EXPECT_EQ(events.back(), "finish");
}

TEST_F(CleanLoop, EveryToolFreesWhatItsItemSays) {
    int commands = 0;
    for (const ScanItem& item : scanned()) {
        if (!isSelectable(item.decision) ||
            !std::holds_alternative<CleanMethod::Command>(item.method.choice))
            continue;
        ++commands;
        const Int64 before = DirectorySizer().size(m_home);
        const CleanSummary summary = cleaned({"--id", item.id});
        ASSERT_EQ(summary.outcomes.size(), 1U);
        EXPECT_EQ(summary.outcomes.front().status, CleanOutcome::Status::cleaned()) << item.id;
        const Int64 gone = before - DirectorySizer().size(m_home);
        EXPECT_NEAR(static_cast<double>(gone), static_cast<double>(item.sizeBytes), 150'000)
            << item.id;
        EXPECT_FALSE(idsOf(scanned()).contains(item.id)) << item.id;
    }
    EXPECT_EQ(commands, 9);
}

TEST_F(CleanLoop, ADryRunChangesNothing) {
    scanned(); // whoever is run for the first time shows that
    const std::string before = m_place.outline();
    const ParsedJson verdicts = answer({"clean", "--recommended", "--dry-run", "--json"})["items"];
    EXPECT_EQ(m_place.outline(), before);
    ASSERT_GT(verdicts.size(), 30U);
    for (const ParsedJson& verdict : verdicts)
        EXPECT_EQ(verdict["allowed"], true) << verdict.dump();
}

TEST_F(CleanLoop, TheHomeIsKnownAsASample) { EXPECT_TRUE(isSampleHome(m_home)); }

} // namespace

} // namespace tidewright::test
