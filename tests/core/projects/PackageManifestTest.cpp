#include "core/projects/PackageManifest.h"

#include "tests/support/Sanitizers.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sys/resource.h>

#include <chrono>
#include <functional>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using namespace std::string_view_literals;
using Text = std::optional<std::string>;
using Scripts = std::map<std::string, std::string>;

// A sanitizer makes each step many times slower.
constexpr std::size_t bigBytes = test::underSanitizer ? 1'000'000 : 20'000'000;
constexpr auto quickly = 20s; // a second or two, on an idle machine and without sanitizers

TEST(PackageManifestTest, OnlyAnObjectIsAManifest) {
    const std::string_view texts[] = {
        "",
        "[]",
        "null",
        "5",
        "\"{}\"",
        "true",
        "{",
        "}",
        "{}{}",
        "{} x",
        "{'a': 1}",
        "{a: 1}",
        "{\"a\"}",
        "{,}",
        "{\"a\": 1,}",
        "[{}]",
        "// x\n{}",
        "\xFF\xFE",
        "{}\0"sv,
        "{}\0x"sv,
        "{\"name\": \"caf\xE9\"}",
        "{\"name\": \"\xC0\xAF\"}",
        "{\"\xFF\": 1}",
        "{\"name\": \"a\nb\"}",
        "{\"name\": \"\0\"}"sv,
        "{\"name\": 01}",
        "{\"name\": NaN}",
        "{\"dependencies\": {\"expo\": 1}, ",
        "{\"x\": [}]}",
    };
    for (const std::string_view text : texts)
        EXPECT_FALSE(PackageManifest::parse(text).has_value()) << text;
    for (const std::string_view text :
         {"{}"sv, " \t\r\n{ }\n"sv, R"({"name": "\u0000 \ud83d\ude00"})"sv,
          R"({"a": {"b": [{}, [], null, 1e3, -0.5]}})"sv})
        EXPECT_EQ(PackageManifest::parse(text), PackageManifest()) << text;
}

TEST(PackageManifestTest, ExpoAndReactNativeStandAmongEitherKindOfDependencies) {
    struct Case {
        const char* name;
        const char* text;
        bool usesExpo;
        Text reactNative;
    };
    const Case cases[] = {
        {"none", R"({"dependencies": {"react": "18"}})", false, {}},
        {"both", R"({"dependencies": {"expo": "51", "react-native": "^0.74"}})", true, "^0.74"},
        {"for development", R"({"devDependencies": {"expo": "51", "react-native": "0.74"}})", true,
         "0.74"},
        {"one in each",
         R"({"devDependencies": {"expo": "51"}, "dependencies": {"react-native": "0.74"}})", true,
         "0.74"},
        {"dependencies win",
         R"({"dependencies": {"react-native": "1"}, "devDependencies": {"react-native": "2"}})",
         false, "1"},
        {"dependencies win, whatever comes first",
         R"({"devDependencies": {"react-native": "2"}, "dependencies": {"react-native": "1"}})",
         false, "1"},
        {"dependencies win with what is no text",
         R"({"dependencies": {"react-native": 1}, "devDependencies": {"react-native": "2"}})",
         false,
         {}},
        {"expo true", R"({"dependencies": {"expo": true}})", true, {}},
        {"expo null", R"({"dependencies": {"expo": null}})", true, {}},
        {"expo an object", R"({"dependencies": {"expo": {}}})", true, {}},
        {"expo a list", R"({"devDependencies": {"expo": [1]}})", true, {}},
        {"expo false and empty", R"({"dependencies": {"expo": ""}})", true, {}},
        {"React Native a number", R"({"dependencies": {"react-native": 74}})", false, {}},
        {"React Native null", R"({"dependencies": {"react-native": null}})", false, {}},
        {"React Native an object",
         R"({"dependencies": {"react-native": {"react-native": "1"}}})",
         false,
         {}},
        {"React Native an empty text", R"({"dependencies": {"react-native": ""}})", false, ""},
        {"behind an object",
         R"({"dependencies": {"a": {"b": {"c": 1}}, "expo": 1, "d": [[]], "react-native": "2"}})",
         true, "2"},
        {"a list with such names",
         R"({"dependencies": ["expo", "react-native"], "devDependencies": [{"expo": 1}]})",
         false,
         {}},
        {"no object", R"({"dependencies": "expo", "devDependencies": null})", false, {}},
        {"one of them no object",
         R"({"dependencies": 5, "devDependencies": {"expo": "51"}})",
         true,
         {}},
        {"elsewhere",
         R"({"peerDependencies": {"expo": "51"}, "expo": {"name": "x"}, "react-native": "1"})",
         false,
         {}},
        {"deeper",
         R"({"dependencies": {"a": {"expo": 1, "react-native": "1"}}, "x": {"dependencies": {"expo": 1}}})",
         false,
         {}},
        {"in other letters", R"({"dependencies": {"Expo": "51", "React-Native": "1"}})", false, {}},
        {"similar names",
         R"({"dependencies": {"expo-cli": "1", "react-native-web": "1"}})",
         false,
         {}},
        {"escaped", R"({"dependenc\u0069es": {"\u0065xpo": "51"}})", true, {}},
        {"twice, the last counts",
         R"({"dependencies": {"expo": "51"}, "dependencies": {"react-native": "1"}})", false, "1"},
        {"twice, the last is no object",
         R"({"dependencies": {"expo": "51"}, "dependencies": 5})",
         false,
         {}},
        {"a version twice", R"({"dependencies": {"react-native": "1", "react-native": "2"}})",
         false, "2"},
        {"a version twice, then a number",
         R"({"dependencies": {"react-native": "1", "react-native": 2}})",
         false,
         {}},
    };
    for (const Case& each : cases) {
        const auto manifest = PackageManifest::parse(each.text);
        ASSERT_TRUE(manifest.has_value()) << each.name;
        EXPECT_EQ(manifest->usesExpo, each.usesExpo) << each.name;
        EXPECT_EQ(manifest->reactNativeVersion, each.reactNative) << each.name;
    }
}

TEST(PackageManifestTest, PackageManagerAndNodeEngineAreTextsVerbatim) {
    struct Case {
        const char* text;
        Text packageManager;
        Text nodeEngine;
    };
    const Case cases[] = {
        {R"({})", {}, {}},
        {R"({"packageManager": "yarn@4.1.0", "engines": {"node": ">=18 <21"}})", "yarn@4.1.0",
         ">=18 <21"},
        {R"({"packageManager": "", "engines": {"node": ""}})", "", ""},
        {R"({"packageManager": " pnpm ", "engines": {"npm": "9", "node": " 18 "}})", " pnpm ",
         " 18 "},
        {R"({"packageManager": 5, "engines": {"node": 18}})", {}, {}},
        {R"({"packageManager": null, "engines": null})", {}, {}},
        {R"({"packageManager": ["yarn"], "engines": ["node", "18"]})", {}, {}},
        {R"({"packageManager": {"packageManager": "yarn"}, "engines": "18"})", {}, {}},
        {R"({"engines": {"node": {"node": "18"}, "x": {"node": "19"}}})", {}, {}},
        {R"({"engines": {"node": "18", "x": {"node": "19"}}})", {}, "18"},
        {R"({"x": {"packageManager": "yarn", "engines": {"node": "18"}}})", {}, {}},
        {R"({"node": "18"})", {}, {}},
        {R"({"packageManager": "yarn", "packageManager": 5})", {}, {}},
        {R"({"engines": {"node": "18"}, "engines": {}})", {}, {}},
        {R"({"packageManager": "caf\u00e9"})", "café", {}},
    };
    for (const Case& each : cases) {
        const auto manifest = PackageManifest::parse(each.text);
        ASSERT_TRUE(manifest.has_value()) << each.text;
        EXPECT_EQ(manifest->packageManager, each.packageManager) << each.text;
        EXPECT_EQ(manifest->nodeEngine, each.nodeEngine) << each.text;
    }
}

TEST(PackageManifestTest, ScriptsAreAllTextsOrNone) {
    struct Case {
        const char* text;
        Scripts expected;
    };
    const Case cases[] = {
        {R"({})", {}},
        {R"({"scripts": {}})", {}},
        {R"({"scripts": {"b": "2", "a": "1"}})", {{"a", "1"}, {"b", "2"}}},
        {R"({"scripts": {"a": "1", "b": 2}})", {}},
        {R"({"scripts": {"a": 1, "b": "2"}})", {}},
        {R"({"scripts": {"a": "1", "b": null, "c": "3"}})", {}},
        {R"({"scripts": {"a": "1", "b": ["x"]}})", {}},
        {R"({"scripts": {"a": "1", "b": {"c": "x"}}})", {}},
        {R"({"scripts": {"a": "1", "b": {}}})", {}},
        {R"({"scripts": ["a"]})", {}},
        {R"({"scripts": "a"})", {}},
        {R"({"x": {"scripts": {"a": "1"}}})", {}},
        {R"({"scripts": {"": ""}})", {{"", ""}}},
        {R"({"scripts": {"a": "1", "a": "2"}})", {{"a", "2"}}},
        {R"({"scripts": {"a": 1}, "scripts": {"b": "2"}})", {{"b", "2"}}},
        {R"({"scripts": {"a": "1"}, "scripts": {"b": "2"}})", {{"b", "2"}}},
        {R"({"scripts": {"a": "1"}, "scripts": 5})", {}},
    };
    for (const Case& each : cases) {
        const auto manifest = PackageManifest::parse(each.text);
        ASSERT_TRUE(manifest.has_value()) << each.text;
        EXPECT_EQ(manifest->scripts, each.expected) << each.text;
    }
}

TEST(PackageManifestTest, NestingOfAnyDepthIsSurvived) {
    for (const char* key : {"x", "dependencies", "scripts", "engines", "packageManager"})
        for (const auto& [open, close] : {std::pair{"[", "]"}, std::pair{"{\"a\":", "}"}}) {
            std::string deep;
            std::string ends;
            for (int i = 0; i < 100'000; ++i) {
                deep += open;
                ends += close;
            }
            const std::string text =
                fmt::format(R"({{"{}": {}1{}, "engines": {{"node": "18"}}}})", key, deep, ends);
            const auto manifest = PackageManifest::parse(text);
            ASSERT_TRUE(manifest.has_value()) << key << open;
            EXPECT_EQ(manifest->nodeEngine, "18") << key << open;
            EXPECT_FALSE(PackageManifest::parse(deep).has_value());
        }
}

/// A manifest of 20 MB; made without leaving memory behind that could be used again unnoticed.
std::string filled(std::string_view start, std::string_view part, std::string_view end) {
    std::string text(start);
    text.reserve(bigBytes + 100);
    while (text.size() < bigBytes)
        text += part;
    return text.append(end);
}

/// The same with a member of its own name at each repetition.
std::string filledWithMembers(std::string_view start, std::string_view end) {
    std::string text(start);
    text.reserve(bigBytes + 100);
    for (int i = 0; text.size() < bigBytes; ++i)
        text.append("\"m").append(std::to_string(i)).append("\":{},");
    return text.append(end);
}

/// By how many times the text the greatest memory of a process grows when it parses it. The process
/// is a new one: memory that has been used before would hide the growth.
double growthOf(const std::function<std::string()>& makeText) {
    const auto greatest = [] {
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        return static_cast<double>(usage.ru_maxrss) * 1024; // in KiB here, in bytes on macOS
    };
    const std::string growth = test::asOrdinaryUser([&] {
        const std::string text = makeText();
        const double before = greatest();
        if (PackageManifest::parse(text).has_value() != text.starts_with('{'))
            return std::string();
        return std::to_string((greatest() - before) / static_cast<double>(text.size()));
    });
    return growth.empty() ? 1e9 : std::stod(growth);
}

TEST(PackageManifestTest, BigManifestsAreReadQuicklyAndInAFewTimesTheirMemory) {
    struct Case {
        const char* name;
        std::function<std::string()> makeText;
        double atMost = 3; ///< of the text, where nothing of it is kept
    };
    const Case cases[] = {
        {"objects in an unknown list", [] { return filled(R"({"x":[)", "{},", "1]}"); }},
        {"numbers in an unknown list", [] { return filled(R"({"x":[)", "0,", "1]}"); }},
        {"objects in a known list", [] { return filled(R"({"scripts":[)", "{},", "1]}"); }},
        {"lists in a known list", [] { return filled(R"({"dependencies":[)", "[],", "1]}"); }},
        {"objects of known objects",
         [] { return filledWithMembers(R"({"dependencies":{)", R"("z":1}})"); }},
        {"objects of an unknown object",
         [] { return filledWithMembers(R"({"x":{)", R"("z":1}})"); }},
        {"unknown members", [] { return filledWithMembers("{", "\"z\":1}"); }},
        {"one long text", [] { return filled(R"({"x":")", "x", R"("})"); }, 6},
        {"one long script", [] { return filled(R"({"scripts":{"x":")", "x", R"("}})"); }, 6},
        {"escapes", [] { return filled(R"({"description":")", "\\u00e9", R"("})"); }, 6},
        {"a root that is a list", [] { return filled("[", "{},", "1]"); }},
        {"blanks", [] { return filled("{", " ", "}"); }},
        {"the same member",
         [] { return filled(R"({"engines":{)", R"("node":"18",)", R"("node":"18"}})"); }},
        {"the same script", [] { return filled(R"({"scripts":{)", R"("a":{},)", R"("a":1}})"); }},
    };
    for (const Case& each : cases) {
        const auto start = std::chrono::steady_clock::now();
        // A sanitizer keeps what was freed for a while, so that a use of it is seen.
        const double growth = growthOf(each.makeText);
        EXPECT_TRUE(growth < each.atMost || test::underSanitizer) << each.name << ": " << growth;
        EXPECT_LT(std::chrono::steady_clock::now() - start, quickly) << each.name;
    }
}

TEST(PackageManifestTest, ManyScriptsAreAllThere) {
    std::string text = R"({"scripts":{)";
    for (int i = 0; i < 50'000; ++i)
        text += fmt::format(R"("s{0}":"run {0}",)", i);
    const auto manifest = PackageManifest::parse(text + R"("last":"x"}})");
    ASSERT_TRUE(manifest.has_value());
    EXPECT_EQ(manifest->scripts.size(), 50'001U);
    EXPECT_EQ(manifest->scripts.at("s49999"), "run 49999");
}

} // namespace
} // namespace tidewright
