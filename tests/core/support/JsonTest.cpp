#include "core/support/Json.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace tidewright {
namespace {

using namespace std::string_view_literals;

TEST(Json, WhatIsNotJSONIsAbsent) {
    constexpr std::string_view cases[] = {
        "",
        " ",
        "nonsense",
        "{",
        "{\"a\":}",
        "{\"a\":1,}",
        "{a:1}",
        "{'a':1}",
        "[1,2",
        "[1 2]",
        "\"open",
        "{\"a\":1} x",
        "{}{}",
        "nul",
        "01",
        "+1",
        "1.",
        ".5",
        "1e",
        "1e999",
        "NaN",
        "Infinity",
        "// comment\n1",
        "\"\\x41\"",
        "\"\\ud800\"",
        "\"a\nb\"",
        "\"\xFF\"",
        "\"\xC0\xAF\"",
        "\0"sv,
        "1\0"sv,
    };
    for (const std::string_view text : cases)
        EXPECT_FALSE(parseJson(text).has_value()) << '"' << text << '"';
}

TEST(Json, AnyValueIsADocument) {
    EXPECT_EQ(parseJson("null"), ParsedJson(nullptr));
    EXPECT_EQ(parseJson(" true\n"), ParsedJson(true));
    EXPECT_EQ(parseJson("-12"), ParsedJson(-12));
    EXPECT_EQ(parseJson("1.5"), ParsedJson(1.5));
    EXPECT_EQ(parseJson("\"a\\u00e9\\n\""), ParsedJson("aé\n"));
    EXPECT_EQ(parseJson("[]"), ParsedJson::array());
    EXPECT_EQ(parseJson("{}"), ParsedJson::object());
    EXPECT_EQ(parseJson("\xEF\xBB\xBF{}"), ParsedJson::object()); // with a byte order mark
}

std::string repeated(std::string_view part, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += part;
    return text;
}

TEST(Json, NestingOfAnyDepthIsSurvived) {
    constexpr std::size_t depth = 100'000;
    struct Case {
        const char* name;
        const char* opening;
        const char* inner;
        const char* closing;
    };
    constexpr Case cases[] = {
        {"lists", "[", "", "]"},
        {"objects", "{\"a\":", "1", "}"},
        {"both", "[1,{\"a\":", "null", "}]"},
    };
    for (const Case& each : cases) {
        const std::string opening = repeated(each.opening, depth) + each.inner;
        const std::string whole = opening + repeated(each.closing, depth);
        EXPECT_TRUE(parseJson(whole).has_value()) << each.name;
        EXPECT_FALSE(parseJson(opening).has_value()) << each.name;
        EXPECT_FALSE(parseJson(opening + "x").has_value()) << each.name;
    }
}

TEST(Json, KeysThatAreWrittenKeepTheOrderInWhichTheyCame) {
    Json built = Json::object();
    built["second"] = 2;
    built["first"] = 1;
    built["second"] = 3;
    EXPECT_EQ(jsonText(built, JsonLayout::compact), R"({"second":3,"first":1})");
}

TEST(Json, AnObjectOfVeryManyKeysIsRead) {
    // With a search from the start for each key this would take minutes.
    std::string text = "{\"k0\":0";
    for (int i = 1; i < 300'000; ++i)
        text += ",\"k" + std::to_string(i) + "\":" + std::to_string(i);
    EXPECT_EQ(parseJson(text + "}").value().size(), 300'000U);
}

TEST(Json, OfAKeyThatCameTwiceTheLastValueStays) {
    EXPECT_EQ(jsonText(parseJson(R"({"a":1,"b":2,"a":3})").value(), JsonLayout::compact),
              R"({"a":3,"b":2})");
}

TEST(Json, TheIndentedLayoutHasTwoBlanksForEachLevel) {
    EXPECT_EQ(
        jsonText(parseJson(R"({"a":[1,{"b":"c"}],"d":{},"e":[]})").value(), JsonLayout::indented),
        "{\n  \"a\": [\n    1,\n    {\n      \"b\": \"c\"\n    }\n  ],\n"
        "  \"d\": {},\n  \"e\": []\n}");
}

TEST(Json, TheTextAtAKeyIsThatOfTheOutermostObject) {
    struct Case {
        const char* name;
        std::string_view document;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {"there", R"({"a":1,"name":"x","b":[]})", "x"},
        {"missing", R"({"a":"x"})", std::nullopt},
        {"no text", R"({"name":5})", std::nullopt},
        {"an object", R"({"name":{"name":"x"}})", std::nullopt},
        {"a list", R"({"name":["x"]})", std::nullopt},
        {"deeper down", R"({"a":{"name":"x"},"b":[{"name":"y"}]})", std::nullopt},
        {"after something deep", R"({"a":{"b":[1,{"c":2}]},"name":"x"})", "x"},
        {"twice", R"({"name":"x","name":"y"})", "y"},
        {"twice, the last no text", R"({"name":"x","name":null})", std::nullopt},
        {"in a list", R"(["name","x"])", std::nullopt},
        {"a text alone", R"("name")", std::nullopt},
        {"broken behind it", R"({"name":"x",})", std::nullopt},
        {"a byte order mark", "\xEF\xBB\xBF{\"name\":\"x\"}", "x"},
        {"behind a NUL", "{\"name\":\"x\"}\0"sv, std::nullopt},
    };
    for (const Case& each : cases)
        EXPECT_EQ(jsonTextAt(each.document, "name"), each.expected) << each.name;
}

TEST(Json, TheTextAtAKeyIsFoundInADocumentMadeToBeSlow) {
    const std::string siblings = "{\"a\":[" + repeated("{},", 1'000'000) + "{}],\"name\":\"x\"}";
    EXPECT_EQ(jsonTextAt(siblings, "name"), "x");
    EXPECT_EQ(jsonTextAt(repeated("[", 1'000'000), "name"), std::nullopt);
}

TEST(Json, TextIsWrittenAsUTF8WithTheLeastEscaping) {
    struct Case {
        const char* name;
        std::string_view text;
        std::string_view expected;
    };
    constexpr Case cases[] = {
        {"letters", "é漢😀/", "\"é漢😀/\""},
        {"quotes", "a\"b\\c", R"("a\"b\\c")"},
        {"control characters", "\n\t\x1B\x01", R"("\n\t\u001b\u0001")"},
        {"a NUL", "a\0b"sv, R"("a\u0000b")"},
        {"a byte that is not UTF-8", "caf\xE9.txt", "\"caf\uFFFD.txt\""},
        {"several", "\xFF\xFE", "\"\uFFFD\uFFFD\""},
        {"a cut sequence at the end", "a\xE2\x82", "\"a\uFFFD\""},
    };
    for (const Case& each : cases)
        EXPECT_EQ(jsonText(Json(each.text), JsonLayout::compact), each.expected) << each.name;
    EXPECT_EQ(jsonText(Json::object({{"k\xFF", 1}}), JsonLayout::compact), "{\"k\uFFFD\":1}");
}

TEST(Json, IntegersOf64BitsAreExactAndGreaterOnesAreNumbers) {
    struct Case {
        const char* text;
        bool isInteger;
    };
    constexpr Case cases[] = {
        {"9223372036854775807", true},
        {"-9223372036854775808", true},
        {"9223372036854775808", true},
        {"18446744073709551615", true},
        {"18446744073709551616", false},
        {"-9223372036854775809", false},
        {"1e3", false},
    };
    for (const Case& each : cases) {
        const auto value = parseJson(each.text);
        ASSERT_TRUE(value.has_value()) << each.text;
        EXPECT_TRUE(value->is_number()) << each.text;
        EXPECT_EQ(value->is_number_integer(), each.isInteger) << each.text;
        if (each.isInteger) {
            EXPECT_EQ(jsonText(*value, JsonLayout::compact), each.text);
        }
    }
}

} // namespace
} // namespace tidewright
