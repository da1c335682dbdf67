#include "core/support/Pattern.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace tidewright {
namespace {

using namespace std::string_view_literals;

using Groups = std::vector<std::string>;

TEST(Pattern, FirstMatchGivesTheGroups) {
    struct Case {
        const char* name;
        const char* expression;
        std::string_view text;
        Groups expected;
    };
    const Case cases[] = {
        {"the whole match", "b+", "aabbb", {"bbb"}},
        {"groups", R"((\w+)=(\d+))", "x: size=42;", {"size=42", "size", "42"}},
        {"the first of several", R"(\d)", "a1b2", {"1"}},
        {"an unset group in the middle", "(a)|(b)|(c)", "b", {"b", "", "b", ""}},
        {"an unset group at the end", "(a)(x)?", "a", {"a", "a", ""}},
        {"an empty group", "a(x*)b", "ab", {"ab", ""}},
        {"a group that was repeated", "(?:(a|b))+", "abab", {"abab", "b"}},
        {"a back reference",
         R"((["'])(.*?)\1)",
         R"(x = 'it"s' + "y")",
         {R"('it"s')", "'", R"(it"s)"}},
        {"a lazy quantifier", "<(.+?)>", "<a><b>", {"<a>", "a"}},
        {"a greedy quantifier", "<(.+)>", "<a><b>", {"<a><b>", "a><b"}},
        {"look-around", "(?<=a)b(?=c)", "ab abc", {"b"}},
        {"an empty match", "x*", "abc", {""}},
        {"in an empty text", "^$", "", {""}},
        {"in no text at all", "^$", std::string_view(), {""}},
        {"anchors mean the whole text", "^b", "a\nb\nbc", {}},
        {"the end may be before a last line end", "a$", "a\n", {"a"}},
        {"letters keep their case", "A", "a", {}},
        {"nothing", "x", "abc", {}},
        {"behind a NUL", "b", "a\0b"sv, {"b"}},
    };
    for (const Case& each : cases) {
        const auto match = Pattern(each.expression).firstMatch(each.text);
        EXPECT_EQ(match.value_or(Groups{}), each.expected) << each.name;
    }
}

TEST(Pattern, TheDotMatchesANewlineOnlyWhenAsked) {
    constexpr std::string_view text = "start {\n  inner\n}";
    constexpr std::string_view expression = R"(\{(.*?)\})";
    EXPECT_FALSE(Pattern(expression).firstMatch(text).has_value());
    EXPECT_EQ(Pattern(expression, Pattern::DotMatches::anything).firstMatch(text),
              (Groups{"{\n  inner\n}", "\n  inner\n"}));
}

TEST(Pattern, AllMatchesGoFromLeftToRightWithoutOverlaps) {
    struct Case {
        const char* name;
        const char* expression;
        std::string_view text;
        std::vector<Groups> expected;
    };
    const Case cases[] = {
        {"none", "x", "abc", {}},
        {"several", R"((\w)=(\d))", "a=1 b=2", {{"a=1", "a", "1"}, {"b=2", "b", "2"}}},
        {"no overlaps", "aa", "aaaaa", {{"aa"}, {"aa"}}},
        {"one behind the other", "[ab]", "ab", {{"a"}, {"b"}}},
        {"looking back at what was matched", "(?<=a)b|a", "ab", {{"a"}, {"b"}}},
        {"anchored at the start alone", "^a", "aaa", {{"a"}}},
        {"up to the end", "b", "aab", {{"b"}}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(Pattern(each.expression).allMatches(each.text), each.expected) << each.name;
}

TEST(Pattern, EachEmptyMatchIsFoundOnce) {
    struct Case {
        const char* name;
        const char* expression;
        std::string_view text;
        std::vector<Groups> expected;
    };
    const Case cases[] = {
        {"in an empty text", "", "", {{""}}},
        {"at each place", "", "ab", {{""}, {""}, {""}}},
        {"between others", "b*", "abba", {{""}, {"bb"}, {""}, {""}}},
        {"at the end", "$", "ab", {{""}}},
        {"farther to the right", "(?=c)", "abcc", {{""}, {""}}},
        {"at the borders of words", R"(\b)", "ab cd", {{""}, {""}, {""}, {""}}},
        {"with a group", "(x?)(?=c)", "abc", {{"", ""}}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(Pattern(each.expression).allMatches(each.text), each.expected) << each.name;
}

TEST(Pattern, TextThatIsNotUTF8IsMatchedByItsBytes) {
    constexpr std::string_view text = "\xFF/caf\xC3\xA9/\x80 id=\xE9;";
    EXPECT_EQ(Pattern("id=(.);").firstMatch(text), (Groups{"id=\xE9;", "\xE9"}));
    EXPECT_EQ(Pattern("/([^/]+)/").firstMatch(text), (Groups{"/caf\xC3\xA9/", "caf\xC3\xA9"}));
    EXPECT_EQ(Pattern("caf.").firstMatch(text), (Groups{"caf\xC3"}));
    EXPECT_EQ(Pattern("\xFF").allMatches(text).size(), 1U);
}

/// Without limits each of these would end one day, and with a match: the "!" at the end.
TEST(Pattern, ATextThatExceedsTheLimitsIsNoMatch) {
    struct Case {
        const char* name;
        const char* expression;
        std::string text;
    };
    const Case cases[] = {
        {"nested repetition, short", "^(?:a+)+$|!$", std::string(40, 'a') + "b!"},
        {"nested repetition with a group", "^(a+)+$|!$", std::string(40, 'a') + "b!"},
        {"alternatives that overlap", "^(?:a|a)*$|!$", std::string(40, 'a') + "b!"},
        {"a back reference", R"(^(?:(a+)\1*)+$|!$)", std::string(40, 'a') + "b!"},
        {"nested repetition, 10 MB", "^(a+)+$|!$", std::string(10'000'000, 'a') + "b!"},
        {"not anchored, 10 MB", "(a+)+$|!$", std::string(10'000'000, 'a') + "b!"},
    };
    for (const Case& each : cases) {
        const Pattern pattern(each.expression);
        EXPECT_FALSE(pattern.firstMatch(each.text).has_value()) << each.name;
        EXPECT_TRUE(pattern.allMatches(each.text).empty()) << each.name;
        EXPECT_TRUE(pattern.firstMatch("!").has_value()) << each.name;
    }
}

/// Each starting point alone is cheap here; all of them together would take hours.
TEST(Pattern, TheLimitsHoldForAllStartingPointsTogether) {
    std::string pairs;
    for (int i = 0; i < 500'000; ++i)
        pairs += "ab";
    const Pattern pattern("(?:ab)*?c");
    EXPECT_FALSE(pattern.firstMatch(pairs + "dc").has_value());
    EXPECT_TRUE(pattern.allMatches(pairs + "dc").empty());
    EXPECT_EQ(pattern.firstMatch("abdc"), (Groups{"c"}));
}

TEST(Pattern, ALargeOrdinaryTextIsSearchedToItsEnd) {
    std::string text;
    for (int i = 0; i < 10'000; ++i)
        text += "Some prose with a setting in it, width=12; and then it goes on for a while.\n";
    EXPECT_EQ(Pattern(R"((\w+)=(\d+);)").allMatches(text).size(), 10'000U);
    EXPECT_EQ(Pattern(R"(["'](\w+)["']:|end$)").firstMatch(text + "end"), (Groups{"end", ""}));
}

TEST(Pattern, ALongTextOfAnOrdinaryKindIsMatched) {
    struct Case {
        const char* name;
        const char* expression;
        std::string text;
    };
    const std::string names(20'000, 'a');
    const Case cases[] = {
        {"a string with escapes", R"re("((?:[^"\\]|\\.)*)")re", "\"" + names + "\""},
        {"a repeated group", "^(a|b)*c$", names + "c"},
        {"a lazy dot", "(?s)a.*?end", names + names + "end"},
        {"repetition of lists", R"(^(?:(\w)\w* ?,?)*;$)", names + ";"},
    };
    for (const Case& each : cases) {
        const auto match = Pattern(each.expression).firstMatch(each.text);
        ASSERT_TRUE(match.has_value()) << each.name;
        EXPECT_EQ(match->front().size(), each.text.size()) << each.name;
    }
}

TEST(Pattern, IsSharedBetweenThreads) {
    const Pattern pattern(R"(id=(\d+);)");
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([pattern, &wrong, i] {
            const std::string id = std::to_string(i);
            std::string text;
            for (int j = 0; j < 100; ++j)
                text += "some text id=" + id + "; ";
            for (int round = 0; round < 50; ++round) {
                const auto matches = pattern.allMatches(text);
                if (matches.size() != 100 || matches.back() != Groups{"id=" + id + ";", id})
                    ++wrong;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST(PatternDeathTest, AnExpressionThatDoesNotCompileStopsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(Pattern("(a"), "the pattern \\(a compiles");
}

} // namespace
} // namespace tidewright
