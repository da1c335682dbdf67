// The documents of the commands against the schemas that describe them.

#include "cli/CheckCommand.h"
#include "cli/CleanText.h"
#include "cli/StatusCommand.h"
#include "core/model/Coding.h"
#include "core/model/ScanReport.h"
#include "samples/SampleHome.h"
#include "tests/support/Program.h"
#include "tests/support/Shell.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace tidewright::test {

namespace {

using testing::HasSubstr;

class Schema : public testing::Test {
protected:
    /// What the schemas say against the documents, each under its schema: lines that begin with the
    /// schema and the document's number.
    std::string faults(const std::vector<std::pair<std::string, std::string>>& documents) const {
        std::vector<std::string> words{"python3", "-B", TIDEWRIGHT_SOURCE "/tests/e2e/validate.py",
                                       TIDEWRIGHT_SOURCE "/docs/schema"};
        for (std::size_t i = 0; i < documents.size(); ++i) {
            const auto& [name, text] = documents[i];
            words.push_back(name + "=" + m_place.file(fmt::format("{}-{}", name, i), text).path());
        }
        const ProcessOutput output = runTool(m_place.url(), words);
        EXPECT_EQ(output.errorOutput, "");
        EXPECT_EQ(output.exitCode == 0, output.output.empty());
        return output.output;
    }

    template <class T>
    static std::string text(const T& record) {
        return jsonText(encode(record, commandLineStyle), JsonLayout::compact);
    }

    TempHome m_place;
};

TEST_F(Schema, DescribesWhatEveryCommandPrints) {
    const URL home = m_place.path("home");
    ASSERT_TRUE(SampleHome{.folder = home}.build());
    std::vector<std::pair<std::string, std::string>> documents;
    const auto add = [&](const std::string& schema, std::vector<std::string> words) {
        words.emplace_back("--json");
        documents.emplace_back(schema, runProgram(home, words).output);
    };
    add("scan", {"scan"});
    const ParsedJson report = parseJson(documents.front().second).value_or(ParsedJson::object());
    ASSERT_GT(report["items"].size(), 50U);
    add("explain", {"explain", report["items"][0]["id"]});
    add("clean-dry-run", {"clean", "--recommended", "--dry-run"});
    add("check", {"check", ".ssh", "/etc", "Library/Caches/x"});
    add("projects", {"projects"});
    add("rules", {"rules"});
    add("status", {"status"});
    add("settings", {"settings"});
    add("settings", {"settings", "lowSpaceGB"});
    add("settings", {"settings", "exclusions", "--add", "x"});
    add("history", {"history"});
    add("clean", {"clean", "--recommended", "--yes"});
    add("clean", {"clean", "--recommended", "--exclude", home.path(), "--yes"});
    add("history", {"history"});
    EXPECT_THAT(documents.back().second, HasSubstr("itemCount"));
    EXPECT_EQ(faults(documents), "");

    // Whatever is not described is noticed, and so is what is missing.
    std::vector<std::pair<std::string, std::string>> wrong;
    for (const auto& [schema, document] : documents) {
        ParsedJson json = parseJson(document).value_or(ParsedJson());
        if (json.empty())
            continue; // a list of nothing
        ParsedJson& record = json.is_array() ? json[0] : json;
        record["surprise"] = 1;
        wrong.emplace_back(schema, json.dump());
        record.clear();
        wrong.emplace_back(schema, json.dump());
    }
    const std::string said = faults(wrong);
    for (std::size_t i = 0; i < wrong.size(); ++i)
        EXPECT_THAT(said, HasSubstr(fmt::format("{}-{}: ", wrong[i].first, i)));
    EXPECT_GT(wrong.size(), 20U);
}

TEST_F(Schema, KnowsEveryFormOfARecord) {
    const AppMatcher matcher{"Some", {"com.some"}, {"some -d"}};
    ScanItem item = ScanItem::make({.ruleID = "rule", .urls = {URL("/a")}, .owner = matcher});
    item.version = "1";
    item.inUseBy = "Some";
    item.lastUsed = Date();
    item.sizeSource = SizeSource::known(1);
    ScanReport report;
    for (const CleanMethod& method :
         {CleanMethod::remove(), CleanMethod::trash(), CleanMethod::manual("By hand."),
          CleanMethod::command({"tool", {"-x"}, URL("/a"), true})}) {
        item.method = method;
        report.items.push_back(item);
    }
    report.apps = {{URL("/A.app"), "A", "com.a", Date(), Date(), 1},
                   {URL("/B.app"), "B", {}, {}, {}, 0}};
    report.largeFiles = {{URL("/f"), 1, Date()}, {URL("/g"), 1, std::nullopt}};
    for (const Insight::Action& action : {Insight::Action::none(), Insight::Action::review({"id"}),
                                          Insight::Action::open(Insight::Destination::apps)})
        report.insights.push_back(
            {"i", Insight::Severity::tip, "disk", "Title", "Message.", 1, "Do", action});
    report.insights.front().actionTitle.reset();
    Project project;
    project.url = URL("/p");
    project.reactNativeVersion = "1";
    project.packageManager = "npm";
    project.androidDirectory = URL("/p/android");
    project.iosDirectory = URL("/p/ios");
    project.lastActivity = Date();
    project.requirements = {{RequirementKind::ndk, "1", "file"}};
    report.projects = {project};
    report.needed.add(RequirementKind::simulator, "iPhone", "p");

    CleanSummary summary;
    for (const CleanOutcome::Status& status :
         {CleanOutcome::Status::skipped("why"), CleanOutcome::Status::failed("why"),
          CleanOutcome::Status::cleaned(), CleanOutcome::Status::movedToTrash()})
        summary.outcomes.push_back({"id", "title", status, 1});
    summary.verification = {{"adb", true, "There."}};
    summary.logFile = URL("/log");

    std::vector<PathVerdict> verdicts{{"/a", true, std::nullopt, std::nullopt}};
    for (const auto& [kind, name] : EnumCases<PolicyViolation::Kind>::cases)
        verdicts.push_back({"/a", false, kind, "Because."});
    EXPECT_EQ(faults({{"scan", text(report)},
                      {"clean", text(summary)},
                      {"check", text(verdicts)},
                      {"status", text(StatusRecord{})}}),
              "");
}

TEST_F(Schema, SeesAWrongValue) {
    const std::string said =
        faults({{"status", R"({"health":"fine"})"},
                {"check", R"([{"path":"a","allowed":true}])"},
                {"check", R"([{"path":"/a","allowed":false}])"},
                {"check", R"([{"path":"/a","allowed":true,"sentence":"No."}])"},
                {"rules", R"([{"id":"a","category":"none","name":"A"}])"},
                {"settings", R"({"lowSpaceGB":1,"criticalSpaceGB":2})"},
                {"clean-dry-run", R"({"items":[{"id":"a","title":"A","allowed":"yes"}]})"}});
    for (const char* fault :
         {"status-0: $.health: ", "check-1: $[0].path: ", "check-2: $[0]: ", "check-3: $[0]: ",
          "rules-4: $[0].category: ", "settings-5: $: ", "clean-dry-run-6: $.items[0].allowed: "})
        EXPECT_THAT(said, HasSubstr(fault));
}

} // namespace

} // namespace tidewright::test
