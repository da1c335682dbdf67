#include "core/support/Collation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tidewright {
namespace {

int sign(int value) { return (value > 0) - (value < 0); }

TEST(Collation, TheSmallerOfTwoComesFirst) {
    struct Case {
        const char* name;
        std::string_view smaller;
        std::string_view greater;
    };
    constexpr Case cases[] = {
        {"digits by value", "2", "10"},
        {"digits in a name", "item 9", "item 10"},
        {"versions", "9.5.0", "20.11.0"},
        {"a version's second number", "8.7.9", "8.10.1"},
        {"a version and a longer one", "8.7", "8.7.1"},
        {"a value behind leading zeros", "file 007", "file 10"},
        {"a leading zero does not make less", "file 9", "file 010"},
        {"what follows equal numbers", "02a", "2b"},
        {"numbers beyond 64 bits", "99999999999999999999", "100000000000000000000"},
        {"digits before letters", "10", "a"},
        {"letters", "a", "b"},
        {"a small letter before the next capital", "a", "B"},
        {"a capital before the next small letter", "A", "b"},
        {"case where nothing else differs", "a", "A"},
        {"case counts after all letters", "Apple a", "apple b"},
        {"case counts after the numbers", "Item 2", "item 10"},
        {"an accent where nothing else differs", "cafe", "café"},
        {"an accent counts after all letters", "café a", "cafe b"},
        {"an accented letter among its like", "é", "f"},
        {"umlauts", "Ärger", "Bach"},
        {"a shared prefix", "pod", "pods"},
        {"nothing at all", "", "a"},
        {"a blank before letters", "a b", "ab"},
        {"other scripts behind", "z", "я"},
    };
    for (const Case& each : cases) {
        EXPECT_LT(standardCompare(each.smaller, each.greater), 0) << each.name;
        EXPECT_GT(standardCompare(each.greater, each.smaller), 0) << each.name;
    }
}

TEST(Collation, WhatCollatesTheSameIsEqual) {
    struct Case {
        const char* name;
        std::string_view one;
        std::string_view other;
    };
    constexpr Case cases[] = {
        {"nothing", "", ""},
        {"the same", "node_modules", "node_modules"},
        {"leading zeros", "02", "2"},
        {"leading zeros in a version", "1.04", "1.4"},
        {"composed and decomposed", "caf\xC3\xA9", "cafe\xCC\x81"},
        {"marks in another order", "a\xCC\x81\xCC\xA3", "a\xCC\xA3\xCC\x81"},
        {"a soft hyphen", "ab",
         "a\xC2\xAD"
         "b"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(standardCompare(each.one, each.other), 0) << each.name;
        EXPECT_EQ(standardCompare(each.other, each.one), 0) << each.name;
    }
}

TEST(Collation, SortsAFolderAsAPersonWould) {
    std::vector<std::string> names = {"node 20.11.0", "README", "node 9.5.0", "apps",
                                      "Zebra",        "éclair", "Apps.old",   "node 10.1",
                                      "zoo",          "2",      "10",         "1"};
    const std::vector<std::string> expected = {
        "1",          "2",         "10",           "apps",   "Apps.old", "éclair",
        "node 9.5.0", "node 10.1", "node 20.11.0", "README", "Zebra",    "zoo"};
    std::ranges::sort(names, [](const std::string& a, const std::string& b) {
        return standardCompare(a, b) < 0;
    });
    EXPECT_EQ(names, expected);
}

TEST(Collation, BytesThatAreNotUTF8HaveAnOrderToo) {
    constexpr std::string_view texts[] = {"\xFF",
                                          "\xC3",
                                          "a\x80",
                                          "a\xE2\x82",
                                          "\xED\xA0\x80",
                                          "\xF4\x90\x80\x80",
                                          std::string_view("\0", 1)};
    for (const std::string_view a : texts) {
        EXPECT_EQ(standardCompare(a, a), 0);
        for (const std::string_view b : texts)
            EXPECT_EQ(sign(standardCompare(a, b)), -sign(standardCompare(b, a)));
    }
    EXPECT_LT(standardCompare("a\xFF"
                              "1",
                              "b\xFF"
                              "1"),
              0);
    EXPECT_LT(standardCompare("\xFF"
                              "2",
                              "\xFF"
                              "10"),
              0);
}

std::string randomText(std::mt19937& random) {
    constexpr std::string_view pieces[] = {
        "a", "A", "b", "e", "é", "e\xCC\x81", "\xCC\x81", "0",    "1",  "2",        "10",   "010",
        ".", "-", " ", "_", "ß", "ss",        "\xFF",     "\xC3", "漢", "\xC2\xAD", "\x01", "٣"};
    std::string text;
    for (auto length = random() % 6; length > 0; --length)
        text += pieces[random() % std::size(pieces)];
    return text;
}

TEST(Collation, IsOneOrderForAllTexts) {
    std::mt19937 random(20260301);
    for (int round = 0; round < 20'000; ++round) {
        std::string a = randomText(random);
        std::string b = randomText(random);
        std::string c = randomText(random);
        ASSERT_EQ(sign(standardCompare(a, b)), -sign(standardCompare(b, a))) << a << " / " << b;
        if (standardCompare(a, b) > 0)
            std::swap(a, b);
        if (standardCompare(b, c) > 0)
            std::swap(b, c);
        if (standardCompare(a, b) > 0)
            std::swap(a, b);
        ASSERT_LE(standardCompare(a, c), 0) << a << " / " << b << " / " << c;
        if (standardCompare(a, b) == 0) {
            ASSERT_EQ(sign(standardCompare(a, c)), sign(standardCompare(b, c)))
                << a << " / " << b << " / " << c;
        }
    }
}

TEST(Collation, SortKeysHaveTheOrderOfTheTexts) {
    std::mt19937 random(20260301);
    for (int round = 0; round < 20'000; ++round) {
        const std::string a = randomText(random);
        const std::string b = randomText(random);
        ASSERT_EQ(sign(sortKey(a).compare(sortKey(b))), sign(standardCompare(a, b)))
            << a << " / " << b;
    }
}

TEST(Collation, SortKeysOfLongTextsAreWhole) {
    for (const std::size_t length : {10U, 60U, 120U, 125U, 130U, 1'000U, 100'000U}) {
        const std::string same(length, 'a');
        EXPECT_LT(sortKey(same + "9"), sortKey(same + "10")) << length;
        EXPECT_LT(sortKey(same + "b"), sortKey(same + "B")) << length;
        EXPECT_EQ(sortKey(same + "02"), sortKey(same + "2")) << length;
    }
}

/// The language is looked up once for a process, so each child here is a new one.
class CollationDeathTest : public testing::TestWithParam<const char*> {
protected:
    CollationDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

[[noreturn]] void exitWithOrderIn(const char* locale) {
    setenv("LC_ALL", locale, 1);
    const bool asPeopleExpect = standardCompare("a", "B") < 0 && standardCompare("A", "b") < 0 &&
                                standardCompare("a", "A") < 0 && standardCompare("2", "10") < 0 &&
                                standardCompare("é", "f") < 0 && standardCompare("é", "E") > 0;
    std::exit(asPeopleExpect ? 0 : 1);
}

TEST_P(CollationDeathTest, EveryLanguageHasTheOrderThatPeopleExpect) {
    EXPECT_EXIT(exitWithOrderIn(GetParam()), testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(
    locales,
    CollationDeathTest,
    testing::Values(
        "C", "POSIX", "C.UTF-8", "en_US.UTF-8", "de_DE.UTF-8", "ja_JP.UTF-8", "not_A_LOCALE", ""));

TEST_F(CollationDeathTest, TheUsersLanguageDecides) {
    const auto exitWithSwedishOrder = [](const char* locale) {
        setenv("LC_ALL", locale, 1);
        std::exit(standardCompare("ä", "z") > 0 ? 0 : 1); // ä is the last letter but one
    };
    EXPECT_EXIT(exitWithSwedishOrder("sv_SE.UTF-8"), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(exitWithSwedishOrder("de_DE.UTF-8"), testing::ExitedWithCode(1), "");
}

} // namespace
} // namespace tidewright
