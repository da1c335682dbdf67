#include "core/support/Lists.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace tidewright {
namespace {

/// The language is looked up once for a process, so each child here is a new one.
[[noreturn]] void exitIfListed(const char* locale,
                               const std::vector<std::string>& texts,
                               const std::string& expected) {
    setenv("LC_ALL", locale, 1);
    std::exit(joinedWithAnd(texts) == expected ? 0 : 1);
}

TEST(ListsDeathTest, AListIsASentencesPartInTheUsersLanguage) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    struct Case {
        const char* locale;
        std::vector<std::string> texts;
        std::string expected;
    };
    const Case cases[] = {
        {"en_US.UTF-8", {}, ""},
        {"en_US.UTF-8", {"A"}, "A"},
        {"en_US.UTF-8", {"A", "B"}, "A and B"},
        {"en_US.UTF-8", {"A", "B", "C"}, "A, B, and C"},
        {"en_US.UTF-8", {"A", "B", "C", "D"}, "A, B, C, and D"},
        {"C", {"A", "B", "C"}, "A, B, and C"},
        {"C.UTF-8", {"A", "B", "C"}, "A, B, and C"},
        {"de_DE.UTF-8", {"A", "B"}, "A und B"},
        {"de_DE.UTF-8", {"A", "B", "C"}, "A, B und C"},
        {"fr_FR.UTF-8", {"A", "B", "C"}, "A, B et C"},
    };
    for (const Case& each : cases)
        EXPECT_EXIT(exitIfListed(each.locale, each.texts, each.expected),
                    testing::ExitedWithCode(0), "")
            << each.locale << ": " << each.expected;
}

TEST(Lists, TextsComeThroughWhole) {
    const std::string one = "a project, and {0} more";
    const std::string joined = joinedWithAnd({one, "漢字", "caf\xE9"});
    EXPECT_TRUE(joined.starts_with(one)) << joined;
    EXPECT_NE(joined.find("漢字"), std::string::npos) << joined;
    EXPECT_TRUE(joined.ends_with("caf\uFFFD")) << joined;
    EXPECT_EQ(joinedWithAnd({""}), "");
}

} // namespace
} // namespace tidewright
