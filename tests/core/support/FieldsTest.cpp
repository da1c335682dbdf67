#include "core/support/Fields.h"

#include "core/model/AndroidEnvironment.h"
#include "core/model/AppUsage.h"
#include "core/model/Decision.h"
#include "core/model/InUseSnapshot.h"
#include "core/model/ScanReport.h"
#include "core/scan/ScanSettings.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

template <class T>
std::size_t hashOf(const T& value) {
    return std::hash<T>()(value);
}

enum class Colour { red, green };

struct Inner {
    std::string text;
    bool operator==(const Inner&) const = default;
    static constexpr auto fields() { return std::tuple{field("text", &Inner::text)}; }
};

struct Choice {
    struct Nothing {
        bool operator==(const Nothing&) const = default;
        static constexpr auto fields() { return std::tuple{}; }
    };
    struct Other {
        bool operator==(const Other&) const = default;
        static constexpr auto fields() { return std::tuple{}; }
    };
    static constexpr std::array<std::string_view, 3> cases{"nothing", "other", "inner"};
    std::variant<Nothing, Other, Inner> choice;
    bool operator==(const Choice&) const = default;
};

struct Sample {
    std::string text = {};
    int number = 0;
    bool flag = false;
    double fraction = 0;
    Colour colour = Colour::red;
    URL url = {};
    Date date = {};
    Duration duration = {};
    std::optional<int> optional = {};
    std::vector<std::string> list = {};
    std::set<std::string> set = {};
    std::map<std::string, int> map = {};
    Inner inner = {};
    Choice choice = {};
    std::string uncoded = {};

    bool operator==(const Sample&) const = default;
    static constexpr auto fields() {
        return std::tuple{
            field("text", &Sample::text),         field("number", &Sample::number),
            field("flag", &Sample::flag),         field("fraction", &Sample::fraction),
            field("colour", &Sample::colour),     field("url", &Sample::url),
            field("date", &Sample::date),         field("duration", &Sample::duration),
            field("optional", &Sample::optional), field("list", &Sample::list),
            field("set", &Sample::set),           field("map", &Sample::map),
            field("inner", &Sample::inner),       field("choice", &Sample::choice),
            uncodedField(&Sample::uncoded)};
    }
};

template <Record T>
std::vector<std::string> namesOf() {
    std::vector<std::string> names;
    forEachField(T(), [&](std::string_view name, const auto&) { names.emplace_back(name); });
    return names;
}

TEST(Fields, AreVisitedByNameInOrder) {
    EXPECT_EQ(namesOf<Sample>(),
              (std::vector<std::string>{"text", "number", "flag", "fraction", "colour", "url",
                                        "date", "duration", "optional", "list", "set", "map",
                                        "inner", "choice", ""}));
    EXPECT_EQ(namesOf<Choice::Nothing>(), std::vector<std::string>{});
}

TEST(Fields, RecordsThatDifferInAnythingHashDifferently) {
    const std::vector<Sample> samples = {
        {},
        {.text = "a"},
        {.text = "b"},
        {.number = 1},
        {.number = -1},
        {.flag = true},
        {.fraction = 0.5},
        {.colour = Colour::green},
        {.url = URL("/a")},
        {.date = Date(1us)},
        {.duration = 1ns},
        {.optional = 0},
        {.optional = 1},
        {.list = {""}},
        {.list = {"a"}},
        {.list = {"a", "b"}},
        {.list = {"b", "a"}},
        {.list = {"ab"}},
        {.set = {"a"}},
        {.set = {"a", "b"}},
        {.map = {{"a", 0}}},
        {.map = {{"a", 1}}},
        {.map = {{"b", 0}}},
        {.inner = {"a"}},
        {.choice = {Choice::Other{}}},
        {.choice = {Inner{}}},
        {.choice = {Inner{"a"}}},
        {.uncoded = "a"},
    };
    for (std::size_t i = 0; i < samples.size(); ++i)
        for (std::size_t j = 0; j < samples.size(); ++j) {
            EXPECT_EQ(samples[i] == samples[j], i == j) << i << " and " << j;
            EXPECT_EQ(hashOf(samples[i]) == hashOf(samples[j]), i == j) << i << " and " << j;
        }
}

TEST(Fields, EqualRecordsHashAlike) {
    const auto make = [] {
        return Sample{.text = std::string(100, 'x'),
                      .optional = 3,
                      .list = {"a", "b"},
                      .map = {{"k", 1}},
                      .choice = {Inner{"a"}}};
    };
    EXPECT_EQ(hashOf(make()), hashOf(make()));
}

/// Two records that differ in every field: with any one field taken over, they must still differ
/// in equality and in hash.
template <Record T>
void expectEveryFieldCounts(const char* name, const T& one, const T& other) {
    EXPECT_EQ(one, T(one)) << name;
    EXPECT_EQ(hashOf(one), hashOf(T(one))) << name;
    const auto check = [&](const auto& each) {
        T changed = one;
        changed.*each.member = other.*each.member;
        EXPECT_NE(changed, one) << name << "." << each.name;
        EXPECT_NE(hashOf(changed), hashOf(one)) << name << "." << each.name;
    };
    std::apply([&](const auto&... each) { (check(each), ...); }, T::fields());
}

TEST(Fields, EveryFieldOfEveryRecordCountsForEqualityAndHash) {
    const Date date(std::chrono::seconds(1'772'357'400));
    const AppMatcher matcher{"App", {"org.example.app"}, {"pattern"}};
    const ShellCommand command{"npm", {"cache", "clean"}, URL("/tmp"), true};
    const Simctl::Device device{"U", "iPhone", "Booted", true, "/d", 5, date, "runtime"};
    const Project::Requirement requirement{RequirementKind::node, "20", "package.json"};
    const AppUsage app{URL("/Applications/A.app"), "A", "org.example.a", date, date, 5};
    const LargeFile file{URL("/movie"), 5, date};
    const AndroidEnvironment::AVD avd{"Pixel", URL("/a.avd"), URL("/a.ini"), "android-34/google"};
    const Project project{URL("/p"), "p",          Project::Kind::expo, "0.76",
                          "yarn",    true,         URL("/p/android"),   URL("/p/ios"),
                          date,      {requirement}};
    const Insight insight{"space",  Insight::Severity::critical,   "symbol", "title", "message", 5,
                          "Review", Insight::Action::review({"a"})};
    const ScanItem item = ScanItem::make({.ruleID = "rule", .title = "title"});

    expectEveryFieldCounts("AppMatcher", AppMatcher(), matcher);
    expectEveryFieldCounts("ShellCommand", ShellCommand(), command);
    expectEveryFieldCounts("Command", CleanMethod::Command(), CleanMethod::Command{command});
    expectEveryFieldCounts("Manual", CleanMethod::Manual(), CleanMethod::Manual{"text"});
    expectEveryFieldCounts("Known", SizeSource::Known(), SizeSource::Known{1});
    expectEveryFieldCounts("DiskSpace", DiskSpace(), DiskSpace{2, 1});
    expectEveryFieldCounts("Device", Simctl::Device(), device);
    expectEveryFieldCounts("Runtime", Simctl::Runtime(),
                           Simctl::Runtime{"I", "18.2", "22C", "R", "P", 5, false, date, "Ready"});
    expectEveryFieldCounts("Requirement", Project::Requirement(), requirement);
    expectEveryFieldCounts("Project", Project(), project);
    expectEveryFieldCounts("Insight", Insight(), insight);
    expectEveryFieldCounts("Review", Insight::Action::Review(), Insight::Action::Review{{"a"}});
    expectEveryFieldCounts("Open", Insight::Action::Open(),
                           Insight::Action::Open{Insight::Destination::apps});
    expectEveryFieldCounts("AppUsage", AppUsage(), app);
    expectEveryFieldCounts("LargeFile", LargeFile(), file);
    expectEveryFieldCounts("AVD", AndroidEnvironment::AVD(), avd);
    expectEveryFieldCounts("AndroidEnvironment", AndroidEnvironment(),
                           AndroidEnvironment{URL("/sdk"), URL("/avd"), {avd}, {"Studio"}});
    expectEveryFieldCounts("InUseSnapshot", InUseSnapshot(),
                           InUseSnapshot{{"org.example.app"}, {"node"}, {"Pixel"}, {device}});
    expectEveryFieldCounts("NeededSet", NeededSet(),
                           NeededSet{{{RequirementKind::ndk, {{"27", {"app"}}}}}});
    expectEveryFieldCounts("ScanSettings", ScanSettings(),
                           ScanSettings{60, 90, 30, 25, 10, 5, {URL("/p")}, {URL("/x")}});
    expectEveryFieldCounts("ScanReport", ScanReport(),
                           ScanReport{{item},
                                      {project},
                                      {{{RequirementKind::ndk, {{"27", {"app"}}}}}},
                                      {app},
                                      {file},
                                      {insight},
                                      {2, 1},
                                      {"Pixel"},
                                      date,
                                      5ns});
}

TEST(Fields, WhoNeedsWhatIsPartOfTheHashOfANeededSet) {
    const auto needed = [](RequirementKind kind, const char* version, const char* owner) {
        return NeededSet{{{kind, {{version, {owner}}}}}};
    };
    const NeededSet one = needed(RequirementKind::ndk, "27", "app");
    for (const NeededSet& other :
         {needed(RequirementKind::cmake, "27", "app"), needed(RequirementKind::ndk, "26", "app"),
          needed(RequirementKind::ndk, "27", "other"), NeededSet()}) {
        EXPECT_NE(one, other);
        EXPECT_NE(hashOf(one), hashOf(other));
    }
}

template <Enumerated E>
void expectCases(std::vector<std::pair<E, std::string_view>> expected) {
    const auto all = allCases<E>();
    ASSERT_EQ(all.size(), expected.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i], expected[i].first) << expected[i].second;
        EXPECT_EQ(static_cast<std::size_t>(all[i]), i) << expected[i].second;
        EXPECT_EQ(rawValue(all[i]), expected[i].second);
        EXPECT_EQ(fromRawValue<E>(expected[i].second), all[i]) << expected[i].second;
    }
    for (const std::string_view unknown : {"", "unknown", "Android ", "ANDROID", "0"})
        EXPECT_FALSE(fromRawValue<E>(unknown).has_value()) << unknown;
}

TEST(Fields, EveryEnumerationNamesAllItsCasesInOrder) {
    expectCases<Category>({{Category::android, "android"},
                           {Category::xcode, "xcode"},
                           {Category::javascript, "javascript"},
                           {Category::system, "system"},
                           {Category::projects, "projects"}});
    expectCases<Risk>(
        {{Risk::safe, "safe"}, {Risk::low, "low"}, {Risk::check, "check"}, {Risk::leave, "leave"}});
    expectCases<Decision>({{Decision::clean, "clean"},
                           {Decision::ask, "ask"},
                           {Decision::keep, "keep"},
                           {Decision::info, "info"}});
    expectCases<DiskSpace::Health>({{DiskSpace::Health::good, "good"},
                                    {DiskSpace::Health::low, "low"},
                                    {DiskSpace::Health::critical, "critical"}});
    expectCases<RequirementKind>({{RequirementKind::gradle, "gradle"},
                                  {RequirementKind::ndk, "ndk"},
                                  {RequirementKind::buildTools, "buildTools"},
                                  {RequirementKind::cmake, "cmake"},
                                  {RequirementKind::compileSdk, "compileSdk"},
                                  {RequirementKind::systemImage, "systemImage"},
                                  {RequirementKind::simulator, "simulator"},
                                  {RequirementKind::iosRuntime, "iosRuntime"},
                                  {RequirementKind::node, "node"}});
    expectCases<Project::Kind>({{Project::Kind::reactNative, "React Native"},
                                {Project::Kind::expo, "Expo"},
                                {Project::Kind::flutter, "Flutter"},
                                {Project::Kind::android, "Android"},
                                {Project::Kind::ios, "iOS"},
                                {Project::Kind::node, "Node"}});
    expectCases<Insight::Severity>({{Insight::Severity::tip, "tip"},
                                    {Insight::Severity::notice, "notice"},
                                    {Insight::Severity::warning, "warning"},
                                    {Insight::Severity::critical, "critical"}});
    expectCases<Insight::Destination>({{Insight::Destination::android, "android"},
                                       {Insight::Destination::xcode, "xcode"},
                                       {Insight::Destination::javascript, "javascript"},
                                       {Insight::Destination::system, "system"},
                                       {Insight::Destination::projects, "projects"},
                                       {Insight::Destination::apps, "apps"}});
}

} // namespace
} // namespace tidewright
