#include "core/model/Coding.h"

#include "core/model/AndroidEnvironment.h"
#include "core/model/InUseSnapshot.h"
#include "core/model/ScanReport.h"
#include "core/scan/ScanSettings.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

constexpr CodingStyle historyStyle{CodingStyle::Locations::fileURL,
                                   CodingStyle::Dates::secondsSince2001};
constexpr CodingStyle styles[] = {commandLineStyle, historyStyle};

const Date date(1'772'357'400s); // 2026-03-01T09:30:00Z, 794050200 seconds after 2001
const Date otherDate(-1s);

std::string compact(const Json& json) { return jsonText(json, JsonLayout::compact); }

template <class T>
std::string coded(const T& value) {
    return compact(encode(value, commandLineStyle));
}

template <class T>
std::optional<T> read(std::string_view text) {
    const auto json = parseJson(text);
    EXPECT_TRUE(json.has_value()) << text;
    return json ? decode<T>(*json, commandLineStyle) : std::nullopt;
}

const AppMatcher matcher{"App", {"org.example.app", "org.example.helper"}, {"pattern"}};
const ShellCommand command{"npm", {"cache", "clean", "--force"}, URL("/tmp/a b"), true};
const Simctl::Device device{"UDID", "iPhone 16", "Booted", true, "/data", 123, date, ""};
const Simctl::Runtime runtime{"I", "18.2", "22C", "R", "P", 5, true, date, "Ready"};
const Project::Requirement requirement{RequirementKind::buildTools, "35.0.1", "build.gradle"};
const Project project{URL("/p/app"),
                      "app",
                      Project::Kind::reactNative,
                      "^0.76.1",
                      "yarn",
                      true,
                      URL("/p/app/android"),
                      URL("/p/app/ios"),
                      date,
                      {requirement, {}}};
const AndroidEnvironment::AVD avd{"Pixel_8", URL("/a/Pixel_8.avd"), URL("/a/Pixel_8.ini"),
                                  "android-34/google_apis"};
const Insight insight{"space.low", Insight::Severity::warning,
                      "symbol",    "title",
                      "message",   5,
                      "Review",    Insight::Action::review({"a:b", "c:d"})};
const AppUsage app{URL("/Applications/A.app"), "A", "org.example.a", date, otherDate, 5};

ScanItem fullItem() {
    ScanItem item = ScanItem::make({.ruleID = "js.npm",
                                    .group = "npm",
                                    .title = "npm cache",
                                    .version = "10",
                                    .urls = {URL("/a"), URL("/b")},
                                    .sizeSource = SizeSource::known(123),
                                    .category = Category::javascript,
                                    .risk = Risk::low,
                                    .decision = Decision::clean,
                                    .reason = "reason",
                                    .whatItIs = "what",
                                    .afterEffect = "after",
                                    .method = CleanMethod::command(command),
                                    .owner = matcher,
                                    .lastUsed = date,
                                    .isProjectItem = true});
    item.inUseBy = "App";
    item.hideBelowBytes = 7;
    return item;
}

TEST(Coding, ARecordHasItsFieldsAsKeysInOrder) {
    EXPECT_EQ(coded(DiskSpace{100, 40}), R"({"totalBytes":100,"availableBytes":40})");
    EXPECT_EQ(
        coded(matcher),
        R"({"displayName":"App","bundleIdentifiers":["org.example.app","org.example.helper"],)"
        R"("processPatterns":["pattern"]})");
    EXPECT_EQ(coded(command), R"({"tool":"npm","arguments":["cache","clean","--force"],)"
                              R"("workingDirectory":"/tmp/a b","fallbackToRemove":true})");
    EXPECT_EQ(coded(requirement),
              R"({"kind":"buildTools","version":"35.0.1","source":"build.gradle"})");
    EXPECT_EQ(coded(project),
              R"({"url":"/p/app","name":"app","kind":"React Native",)"
              R"("reactNativeVersion":"^0.76.1","packageManager":"yarn","usesExpo":true,)"
              R"("androidDirectory":"/p/app/android","iosDirectory":"/p/app/ios",)"
              R"("lastActivity":"2026-03-01T09:30:00Z","requirements":[)"
              R"({"kind":"buildTools","version":"35.0.1","source":"build.gradle"},)"
              R"({"kind":"gradle","version":"","source":""}]})");
    EXPECT_EQ(coded(app),
              R"({"url":"/Applications/A.app","name":"A","bundleIdentifier":"org.example.a",)"
              R"("lastUsed":"2026-03-01T09:30:00Z","addedOn":"1969-12-31T23:59:59Z",)"
              R"("sizeBytes":5})");
    EXPECT_EQ(coded(LargeFile{URL("/m"), 5, date}),
              R"({"url":"/m","sizeBytes":5,"modified":"2026-03-01T09:30:00Z"})");
    EXPECT_EQ(coded(insight),
              R"({"id":"space.low","severity":"warning","symbolName":"symbol","title":"title",)"
              R"("message":"message","estimatedGain":5,"actionTitle":"Review",)"
              R"("action":{"review":{"itemIDs":["a:b","c:d"]}}})");
    EXPECT_EQ(coded(fullItem()),
              R"({"id":"js.npm:/a","ruleID":"js.npm","group":"npm","title":"npm cache",)"
              R"("version":"10","urls":["/a","/b"],"sizeSource":{"known":{"_0":123}},)"
              R"("sizeBytes":123,"category":"javascript","risk":"low","decision":"clean",)"
              R"("reason":"reason","whatItIs":"what","afterEffect":"after",)"
              R"("method":{"command":{"_0":{"tool":"npm",)"
              R"("arguments":["cache","clean","--force"],"workingDirectory":"/tmp/a b",)"
              R"("fallbackToRemove":true}}},"inUseBy":"App",)"
              R"("owner":{"displayName":"App",)"
              R"("bundleIdentifiers":["org.example.app","org.example.helper"],)"
              R"("processPatterns":["pattern"]},"lastUsed":"2026-03-01T09:30:00Z",)"
              R"("isProjectItem":true,"hideBelowBytes":7})");
}

TEST(Coding, AbsentOptionalsAreLeftOut) {
    EXPECT_EQ(coded(AppUsage{URL("/a"), "A", std::nullopt, std::nullopt, std::nullopt, 0}),
              R"({"url":"/a","name":"A","sizeBytes":0})");
    EXPECT_EQ(coded(LargeFile{URL("/a"), 0, std::nullopt}), R"({"url":"/a","sizeBytes":0})");
    EXPECT_EQ(coded(ShellCommand{"brew", {}, std::nullopt, false}),
              R"({"tool":"brew","arguments":[],"fallbackToRemove":false})");
    Project bare;
    bare.url = URL("/p");
    bare.kind = Project::Kind::ios;
    EXPECT_EQ(coded(bare),
              R"({"url":"/p","name":"","kind":"iOS","usesExpo":false,"requirements":[]})");
    EXPECT_EQ(coded(ScanItem::make({.ruleID = "r", .title = "t", .method = CleanMethod::remove()})),
              R"({"id":"r:t","ruleID":"r","group":"","title":"t","urls":[],)"
              R"("sizeSource":{"measure":{}},"sizeBytes":0,"category":"android","risk":"safe",)"
              R"("decision":"keep","reason":"","whatItIs":"","afterEffect":"",)"
              R"("method":{"remove":{}},"isProjectItem":false,"hideBelowBytes":1000000})");
}

TEST(Coding, AFieldWithoutANameIsNotCoded) {
    Simctl::Device listed = device;
    listed.runtimeIdentifier = "runtime";
    EXPECT_EQ(coded(listed), coded(device));
    EXPECT_EQ(coded(device),
              R"({"udid":"UDID","name":"iPhone 16","state":"Booted","isAvailable":true,)"
              R"("dataPath":"/data","dataPathSize":123,)"
              R"("lastBootedAt":"2026-03-01T09:30:00Z"})");
    EXPECT_EQ(decode<Simctl::Device>(encode(listed, commandLineStyle), commandLineStyle), device);
}

TEST(Coding, ATaggedChoiceIsAnObjectWithItsCaseAsTheOnlyKey) {
    EXPECT_EQ(coded(CleanMethod::remove()), R"({"remove":{}})");
    EXPECT_EQ(coded(CleanMethod::trash()), R"({"trash":{}})");
    EXPECT_EQ(coded(CleanMethod::command({"npm", {"x"}, std::nullopt, false})),
              R"({"command":{"_0":{"tool":"npm","arguments":["x"],"fallbackToRemove":false}}})");
    EXPECT_EQ(coded(CleanMethod::manual("Drag it.")), R"({"manual":{"_0":"Drag it."}})");
    EXPECT_EQ(coded(SizeSource::measure()), R"({"measure":{}})");
    EXPECT_EQ(coded(SizeSource::known(123)), R"({"known":{"_0":123}})");
    EXPECT_EQ(coded(Insight::Action::none()), R"({"none":{}})");
    EXPECT_EQ(coded(Insight::Action::review({"a", "b"})), R"({"review":{"itemIDs":["a","b"]}})");
    EXPECT_EQ(coded(Insight::Action::open(Insight::Destination::javascript)),
              R"({"open":{"_0":"javascript"}})");
}

TEST(Coding, MapsAndListsAreCodedByTheirElements) {
    const NeededSet needed{{{RequirementKind::ndk, {{"27.0", {"b", "a"}}}},
                            {RequirementKind::gradle, {{"8.7", {"app"}}}}}};
    EXPECT_EQ(coded(needed), R"({"storage":{"gradle":{"8.7":["app"]},"ndk":{"27.0":["a","b"]}}})");
    EXPECT_EQ(coded(std::vector<DiskSpace>{{2, 1}, {4, 3}}),
              R"([{"totalBytes":2,"availableBytes":1},{"totalBytes":4,"availableBytes":3}])");
    EXPECT_EQ(coded(std::vector<std::string>{}), "[]");
    EXPECT_EQ(coded(std::map<std::string, int>{{"b", 1}, {"a", 2}}), R"({"a":2,"b":1})");
}

TEST(Coding, ADurationIsInSeconds) {
    EXPECT_EQ(encode(Duration(1500ms), commandLineStyle), Json(1.5));
    EXPECT_EQ(encode(Duration(0), commandLineStyle), Json(0.0));
}

TEST(Coding, AWholeReportIsOneObject) {
    ScanReport report;
    report.items = {fullItem()};
    report.projects = {project};
    report.apps = {app};
    report.insights = {insight};
    report.disk = {2, 1};
    report.avdNames = {"Pixel_8"};
    report.scannedAt = date;
    report.duration = 2s;
    const Json json = encode(report, commandLineStyle);
    std::vector<std::string> keys;
    for (const auto& [key, value] : json.items())
        keys.push_back(key);
    EXPECT_EQ(keys,
              (std::vector<std::string>{"items", "projects", "needed", "apps", "largeFiles",
                                        "insights", "disk", "avdNames", "scannedAt", "duration"}));
    EXPECT_EQ(json["items"][0], encode(fullItem(), commandLineStyle));
    EXPECT_EQ(json["largeFiles"], Json::array());
    EXPECT_EQ(json["scannedAt"], "2026-03-01T09:30:00Z");
    EXPECT_EQ(json["duration"], 2.0);
}

template <class T>
void expectRoundTrip(const char* name, const T& value) {
    for (const CodingStyle style : styles) {
        const Json json = encode(value, style);
        EXPECT_EQ(decode<T>(json, style), value) << name << ": " << compact(json);
        const auto reread = parseJson(compact(json));
        ASSERT_TRUE(reread.has_value()) << name;
        EXPECT_EQ(decode<T>(*reread, style), value) << name << " as text: " << compact(json);
    }
}

TEST(Coding, EveryRecordSurvivesARoundTrip) {
    expectRoundTrip("AppMatcher", matcher);
    expectRoundTrip("AppMatcher, empty", AppMatcher());
    expectRoundTrip("ShellCommand", command);
    expectRoundTrip("ShellCommand, empty", ShellCommand());
    for (const CleanMethod& method : {CleanMethod::remove(), CleanMethod::trash(),
                                      CleanMethod::command(command), CleanMethod::manual("x")})
        expectRoundTrip("CleanMethod", method);
    for (const SizeSource& source : {SizeSource::measure(), SizeSource::known(0),
                                     SizeSource::known(std::numeric_limits<Int64>::max())})
        expectRoundTrip("SizeSource", source);
    expectRoundTrip("ScanItem", fullItem());
    expectRoundTrip("ScanItem, empty", ScanItem::make({}));
    expectRoundTrip("DiskSpace", DiskSpace{std::numeric_limits<Int64>::max(), -1});
    expectRoundTrip("Device", device);
    expectRoundTrip("Device, empty", Simctl::Device());
    expectRoundTrip("Runtime", runtime);
    expectRoundTrip("Runtime, empty", Simctl::Runtime());
    expectRoundTrip("Requirement", requirement);
    expectRoundTrip("Project", project);
    expectRoundTrip("Project, empty", Project());
    expectRoundTrip("AVD", avd);
    expectRoundTrip(
        "AndroidEnvironment",
        AndroidEnvironment{URL("/sdk"), URL("/avd"), {avd, {}}, {"Studio2", "Studio1"}});
    expectRoundTrip("InUseSnapshot",
                    InUseSnapshot{{"b", "a"}, {"node x", "zsh"}, {"Pixel"}, {device}});
    expectRoundTrip("Insight", insight);
    for (const Insight::Action& action :
         {Insight::Action::none(), Insight::Action::review({}), Insight::Action::review({"a"}),
          Insight::Action::open(Insight::Destination::apps)})
        expectRoundTrip("Action", action);
    expectRoundTrip("AppUsage", app);
    expectRoundTrip("AppUsage, empty", AppUsage());
    expectRoundTrip("LargeFile", LargeFile{URL("/m"), 5, date});
    expectRoundTrip("ScanSettings",
                    ScanSettings{60, 90, 30, 25'000'000'000, 10, 5, {URL("/p")}, {URL("/x")}});
    expectRoundTrip("a list", std::vector{fullItem(), ScanItem::make({.title = "second"})});
}

TEST(Coding, EveryCaseOfAnEnumerationSurvivesARoundTrip) {
    const auto check = []<class E>(E) {
        for (const E value : allCases<E>()) {
            EXPECT_EQ(encode(value, commandLineStyle), Json(rawValue(value)));
            EXPECT_EQ(decode<E>(encode(value, commandLineStyle), commandLineStyle), value);
        }
    };
    check(Category());
    check(Risk());
    check(Decision());
    check(RequirementKind());
    check(Project::Kind());
    check(DiskSpace::Health());
    check(Insight::Severity());
    check(Insight::Destination());
}

TEST(Coding, ARecordWithoutAMandatoryKeyIsAbsent) {
    const auto check = []<Record T>(const char* name, const T& value,
                                    const std::vector<std::string>& optionalKeys) {
        const Json whole = encode(value, commandLineStyle);
        ASSERT_TRUE(decode<T>(whole, commandLineStyle).has_value()) << name;
        for (const auto& [key, ignored] : whole.items()) {
            Json cut = whole;
            cut.erase(key);
            const bool isOptional = std::ranges::count(optionalKeys, key) > 0;
            EXPECT_EQ(decode<T>(cut, commandLineStyle).has_value(), isOptional)
                << name << " without " << key;
            cut[key] = nullptr;
            EXPECT_EQ(decode<T>(cut, commandLineStyle).has_value(), isOptional)
                << name << " with null for " << key;
        }
    };
    check("AppMatcher", matcher, {});
    check("ShellCommand", command, {"workingDirectory"});
    check("ScanItem", fullItem(), {"version", "inUseBy", "owner", "lastUsed"});
    check("DiskSpace", DiskSpace{2, 1}, {});
    check("Device", device, {"dataPath", "dataPathSize", "lastBootedAt"});
    check("Runtime", runtime,
          {"build", "runtimeIdentifier", "platformIdentifier", "sizeBytes", "deletable",
           "lastUsedAt", "state"});
    check("Requirement", requirement, {});
    check("Project", project,
          {"reactNativeVersion", "packageManager", "androidDirectory", "iosDirectory",
           "lastActivity"});
    check("Insight", insight, {"actionTitle"});
    check("AppUsage", app, {"bundleIdentifier", "lastUsed", "addedOn"});
    check("LargeFile", LargeFile{URL("/m"), 5, date}, {"modified"});
}

TEST(Coding, NullForAnOptionalIsItsAbsence) {
    const auto usage = read<AppUsage>(
        R"({"url":"/a","name":"A","bundleIdentifier":null,"lastUsed":null,"sizeBytes":1})");
    EXPECT_EQ(usage, (AppUsage{URL("/a"), "A", std::nullopt, std::nullopt, std::nullopt, 1}));
}

TEST(Coding, AValueOfAnotherTypeMakesTheRecordAbsent) {
    const auto check = []<Record T>(const char* name, const T& value) {
        const Json whole = encode(value, commandLineStyle);
        for (const auto& [key, right] : whole.items())
            for (const char* text : {"true", "17", "1.5", R"("text")", "[17]", R"({"a":1})"}) {
                const Json other = parseJson(text).value();
                const bool sameType = other.is_number() && right.is_number()
                                          ? other.is_number_integer()
                                          : other.type() == right.type();
                if (sameType)
                    continue;
                Json changed = whole;
                changed[key] = other;
                EXPECT_FALSE(decode<T>(changed, commandLineStyle).has_value())
                    << name << " with " << text << " for " << key;
            }
    };
    check("AppMatcher", matcher);
    check("ShellCommand", command);
    check("ScanItem", fullItem());
    check("Device", device);
    check("Runtime", runtime);
    check("Project", project);
    check("Insight", insight);
    check("AppUsage", app);
}

TEST(Coding, WhatIsNoObjectIsNoRecord) {
    for (const char* text : {"null", "[]", "1", R"("text")", "true"}) {
        EXPECT_FALSE(read<DiskSpace>(text).has_value()) << text;
        EXPECT_FALSE(read<CleanMethod>(text).has_value()) << text;
    }
    EXPECT_FALSE(read<std::vector<DiskSpace>>("{}").has_value());
    EXPECT_FALSE(read<std::vector<DiskSpace>>(R"([{"totalBytes":1,"availableBytes":1},1])"));
}

TEST(Coding, KeysThatAreNotKnownArePassedOver) {
    EXPECT_EQ(read<DiskSpace>(R"({"new":[1,{}],"totalBytes":2,"availableBytes":1,"":null})"),
              (DiskSpace{2, 1}));
    EXPECT_FALSE(read<DiskSpace>(R"({"TotalBytes":2,"availableBytes":1})").has_value());
}

TEST(Coding, MalformedChoicesAreAbsent) {
    constexpr const char* methods[] = {
        R"({})",
        R"({"erase":{}})",
        R"({"Remove":{}})",
        R"({"remove":{},"trash":{}})",
        R"({"remove":null})",
        R"({"remove":[]})",
        R"({"manual":{}})",
        R"({"manual":{"_0":1}})",
        R"({"manual":"text"})",
        R"({"command":{}})",
        R"({"command":{"_0":{"tool":"npm","arguments":[]}}})",
        R"({"command":{"tool":"npm","arguments":[],"fallbackToRemove":true}})",
    };
    for (const char* text : methods)
        EXPECT_FALSE(read<CleanMethod>(text).has_value()) << text;
    EXPECT_FALSE(read<SizeSource>(R"({"known":{"_0":"1"}})").has_value());
    EXPECT_FALSE(read<SizeSource>(R"({"known":{"_0":1.5}})").has_value());
    EXPECT_FALSE(read<Insight::Action>(R"({"review":{"items":[]}})").has_value());
    EXPECT_FALSE(read<Insight::Action>(R"({"open":{"_0":"nowhere"}})").has_value());
    EXPECT_EQ(read<CleanMethod>(R"({"remove":{"later":1}})"), CleanMethod::remove());
}

TEST(Coding, ATextThatIsNoCaseIsAbsent) {
    EXPECT_FALSE(read<Category>(R"("Android")").has_value());
    EXPECT_FALSE(read<Category>(R"("")").has_value());
    EXPECT_FALSE(read<Category>("0").has_value());
    EXPECT_FALSE(read<Project::Kind>(R"("reactNative")").has_value());
    EXPECT_EQ(read<Project::Kind>(R"("React Native")"), Project::Kind::reactNative);
}

TEST(Coding, IntegersAreExactOrAbsent) {
    struct Case {
        const char* text;
        std::optional<Int64> expected;
    };
    constexpr Case cases[] = {
        {"0", 0},
        {"-1", -1},
        {"9223372036854775807", std::numeric_limits<Int64>::max()},
        {"-9223372036854775808", std::numeric_limits<Int64>::min()},
        {"9223372036854775808", std::nullopt},
        {"18446744073709551615", std::nullopt},
        {"18446744073709551616", std::nullopt},
        {"-9223372036854775809", std::nullopt},
        {"5.0", 5},
        {"1e3", 1'000},
        {"-0.0", 0},
        {"9007199254740992.0", 9'007'199'254'740'992},
        {"1e19", std::nullopt},
        {"1e300", std::nullopt},
        {"-1e300", std::nullopt},
        {"1.5", std::nullopt},
        {"0.0000001", std::nullopt},
        {"true", std::nullopt},
        {R"("1")", std::nullopt},
    };
    for (const Case& each : cases)
        EXPECT_EQ(read<Int64>(each.text), each.expected) << each.text;
    EXPECT_EQ(read<int>("2147483647"), 2147483647);
    EXPECT_FALSE(read<int>("2147483648").has_value());
    EXPECT_FALSE(read<int>("-2147483649").has_value());
}

TEST(Coding, LocationsLookAsTheWriterWants) {
    struct Case {
        const char* name;
        std::string_view path;
        std::string_view fileURL;
    };
    constexpr Case cases[] = {
        {"a plain one", "/Users/dev/Library", "file:///Users/dev/Library"},
        {"the root", "/", "file:///"},
        {"a trailing slash", "/a/", "file:///a/"},
        {"a blank", "/Application Support", "file:///Application%20Support"},
        {"what an address sets apart", "/a?b#c", "file:///a%3Fb%23c"},
        {"a percent sign", "/100%/%41", "file:///100%25/%2541"},
        {"what stays", "/-._~!$&'()*+,=:@", "file:///-._~!$&'()*+,=:@"},
        {"what does not", "/;[]{}<>\"\\^`|", "file:///%3B%5B%5D%7B%7D%3C%3E%22%5C%5E%60%7C"},
        {"letters beyond ASCII", "/caf\xC3\xA9", "file:///caf%C3%A9"},
        {"bytes that are not UTF-8", "/caf\xE9\xFF", "file:///caf%E9%FF"},
        {"control characters", "/a\nb\x7F", "file:///a%0Ab%7F"},
    };
    for (const Case& each : cases) {
        const URL url{std::string(each.path)};
        EXPECT_EQ(encode(url, commandLineStyle), Json(each.path)) << each.name;
        EXPECT_EQ(encode(url, historyStyle), Json(each.fileURL)) << each.name;
        EXPECT_EQ(decode<URL>(Json(each.path), commandLineStyle), url) << each.name;
        EXPECT_EQ(decode<URL>(Json(each.fileURL), historyStyle), url) << each.name;
    }
}

TEST(Coding, AFileURLIsReadInEverySpelling) {
    EXPECT_EQ(decode<URL>(Json("file:///a%2fb%C3%a9"), historyStyle), URL("/a/b\xC3\xA9"));
    EXPECT_EQ(decode<URL>(Json("file:///a%"), historyStyle), URL("/a%"));
    EXPECT_EQ(decode<URL>(Json("file:///a%4"), historyStyle), URL("/a%4"));
    EXPECT_EQ(decode<URL>(Json("file:///a%4g"), historyStyle), URL("/a%4g"));
    EXPECT_EQ(decode<URL>(Json("file:///a%41"), historyStyle), URL("/aA"));
    EXPECT_EQ(decode<URL>(Json("file:///a b"), historyStyle), URL("/a b"));
    EXPECT_FALSE(decode<URL>(Json(1), historyStyle).has_value());
    EXPECT_FALSE(decode<URL>(Json(1), commandLineStyle).has_value());
}

TEST(Coding, APlainPathIsNotTakenForAnAddress) {
    EXPECT_EQ(decode<URL>(Json("/a%20b"), commandLineStyle), URL("/a%20b"));
    EXPECT_EQ(decode<URL>(Json("/a%20b"), historyStyle), URL("/a%20b"));
}

TEST(Coding, DatesLookAsTheWriterWants) {
    EXPECT_EQ(encode(date, commandLineStyle), Json("2026-03-01T09:30:00Z"));
    EXPECT_EQ(encode(date + 999ms, commandLineStyle), Json("2026-03-01T09:30:00Z"));
    EXPECT_EQ(encode(date, historyStyle), Json(794'050'200.0));
    EXPECT_EQ(encode(date + 250ms, historyStyle), Json(794'050'200.25));
    EXPECT_EQ(encode(Date(), historyStyle), Json(-978'307'200.0));
    EXPECT_EQ(encode(Date(978'307'200s), historyStyle), Json(0.0));
}

TEST(Coding, TheHistorysDatesKeepTheirMicroseconds) {
    for (const auto micros : {1us, 123'456us, 999'999us, -1us}) {
        const Json json = parseJson(compact(encode(date + micros, historyStyle))).value();
        EXPECT_EQ(decode<Date>(json, historyStyle), date + micros) << micros.count();
    }
}

TEST(Coding, DatesAreReadFromTheirOwnFormAlone) {
    struct Case {
        const char* text;
        std::optional<Date> commandLine;
        std::optional<Date> history;
    };
    const Case cases[] = {
        {R"("2026-03-01T09:30:00Z")", date, std::nullopt},
        {R"("2026-03-01T10:30:00+01:00")", date, std::nullopt},
        {R"("2026-03-01T09:30:00.5Z")", std::nullopt, std::nullopt},
        {R"("yesterday")", std::nullopt, std::nullopt},
        {"794050200", std::nullopt, date},
        {"794050200.0", std::nullopt, date},
        {"794050200.5", std::nullopt, date + 500ms},
        {"-978307201", std::nullopt, otherDate},
        {"1e13", std::nullopt, std::nullopt},
        {"-1e13", std::nullopt, std::nullopt},
        {"1e300", std::nullopt, std::nullopt},
        {"true", std::nullopt, std::nullopt},
        {"null", std::nullopt, std::nullopt},
    };
    for (const Case& each : cases) {
        const Json json = parseJson(each.text).value();
        EXPECT_EQ(decode<Date>(json, commandLineStyle), each.commandLine) << each.text;
        EXPECT_EQ(decode<Date>(json, historyStyle), each.history) << each.text;
    }
    EXPECT_TRUE(decode<Date>(Json(8.9e12), historyStyle).has_value());
    EXPECT_TRUE(decode<Date>(Json(-8.9e12), historyStyle).has_value());
}

TEST(Coding, OneBadElementMakesTheListAbsent) {
    EXPECT_EQ(read<std::vector<std::string>>(R"(["a","b"])"), (std::vector<std::string>{"a", "b"}));
    EXPECT_FALSE(read<std::vector<std::string>>(R"(["a",1])").has_value());
    EXPECT_FALSE(read<std::vector<std::string>>(R"(["a",null])").has_value());
    EXPECT_EQ(read<std::set<std::string>>(R"(["b","a","b"])"), (std::set<std::string>{"a", "b"}));
}

} // namespace
} // namespace tidewright
