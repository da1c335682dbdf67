#include "core/support/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tidewright {
namespace {

using namespace std::string_view_literals;

using Texts = std::vector<std::string>;

TEST(Text, RepairedUTF8ReplacesEachIllFormedPartOnce) {
    struct Case {
        const char* name;
        std::string_view bytes;
        std::string_view expected;
    };
    constexpr Case cases[] = {
        {"nothing", "", ""},
        {"ASCII", "abc\n", "abc\n"},
        {"well-formed", "é漢😀", "é漢😀"},
        {"the last code point", "\xF4\x8F\xBF\xBF", "\xF4\x8F\xBF\xBF"},
        {"a NUL", "a\0b"sv, "a\0b"sv},
        {"a lone lead byte", "a\xC3z", "a\uFFFDz"},
        {"a lone trail byte", "a\x80z", "a\uFFFDz"},
        {"two trail bytes", "\x80\xBF", "\uFFFD\uFFFD"},
        {"a cut sequence of three", "\xE2\x82z", "\uFFFDz"},
        {"a cut sequence of four", "\xF0\x9F\x98", "\uFFFD"},
        {"bytes that never occur", "\xFE\xFF", "\uFFFD\uFFFD"},
        {"an overlong slash", "\xC0\xAF", "\uFFFD\uFFFD"},
        {"a surrogate", "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
        {"beyond the last code point", "\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"the Unicode standard's example",
         "a\xF1\x80\x80\xE1\x80\xC2"
         "b\x80"
         "c\x80\xBF"
         "d",
         "a\uFFFD\uFFFD\uFFFD"
         "b\uFFFD"
         "c\uFFFD\uFFFD"
         "d"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(repairedUTF8(each.bytes), each.expected) << each.name;
}

TEST(Text, IsUTF8TellsWhatNeedsNoRepair) {
    constexpr std::string_view whole[] = {
        "", "abc", "é漢😀", "a\0b"sv, "\xF4\x8F\xBF\xBF", "\xEF\xBB\xBF"};
    constexpr std::string_view broken[] = {
        "\xFF", "a\x80", "caf\xE9", "\xC0\xAF", "\xED\xA0\x80", "\xE2\x82", "\xF4\x90\x80\x80"};
    for (const std::string_view text : whole) {
        EXPECT_TRUE(isUTF8(text)) << text;
        EXPECT_EQ(repairedUTF8(text), text);
    }
    for (const std::string_view text : broken) {
        EXPECT_FALSE(isUTF8(text)) << text;
        EXPECT_FALSE(isUTF8(std::string(100, 'a').append(text))) << text;
        EXPECT_TRUE(isUTF8(repairedUTF8(text))) << text;
    }
}

TEST(Text, TrimmedTakesWhiteSpaceFromBothEndsAlone) {
    struct Case {
        std::string_view text;
        std::string_view expected;
    };
    constexpr Case cases[] = {
        {"", ""},           {" ", ""},    {" \t\r\n\v\f", ""}, {"a", "a"},
        {"  a b\n", "a b"}, {"a\n", "a"}, {"\ta", "a"},        {"\u00A0a", "\u00A0a"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(trimmed(each.text), each.expected) << each.text;
    EXPECT_EQ(trimmed("'a'b'", "'"), "a'b");
    EXPECT_EQ(trimmed("\"' a\"", "\"'"), " a");
    EXPECT_EQ(trimmed("''", "'"), "");
    EXPECT_EQ(trimmed(" a ", ""), " a ");
}

TEST(Text, SplitDroppingEmpty) {
    struct Case {
        const char* text;
        Texts expected;
    };
    const Case cases[] = {
        {"", {}},
        {".", {}},
        {"...", {}},
        {"a", {"a"}},
        {"a.b.c", {"a", "b", "c"}},
        {".a..b.", {"a", "b"}},
        {"a b", {"a b"}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(splitDroppingEmpty(each.text, '.'), each.expected) << '"' << each.text << '"';
    EXPECT_EQ(splitDroppingEmpty("a\0b"sv, '\0'), (Texts{"a", "b"}));
}

TEST(Text, NonEmptyLines) {
    struct Case {
        const char* text;
        Texts expected;
    };
    const Case cases[] = {
        {"", {}},
        {"\n\n", {}},
        {"\r\n\r\n", {}},
        {"one", {"one"}},
        {"one\ntwo\n", {"one", "two"}},
        {"one\r\ntwo\r\n", {"one", "two"}},
        {"\none\n\n\ntwo", {"one", "two"}},
        {"one\rtwo\n", {"one\rtwo"}},
        {" \n\t\n", {" ", "\t"}},
        {"last\r", {"last"}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(nonEmptyLines(each.text), each.expected) << each.text;
}

TEST(Text, Contains) {
    EXPECT_TRUE(contains("gradle-8.7-bin", "8.7"));
    EXPECT_TRUE(contains("a", "a"));
    EXPECT_TRUE(contains("a", ""));
    EXPECT_FALSE(contains("", "a"));
    EXPECT_FALSE(contains("GradleDaemon", "gradledaemon"));
}

TEST(Text, RemovingTakesOutEveryOccurrence) {
    struct Case {
        const char* text;
        const char* expected;
    };
    constexpr Case cases[] = {
        {"Mail.app", "Mail"},
        {"Mail", "Mail"},
        {"", ""},
        {".app", ""},
        {".app.app", ""},
        {"a.app.b.app.c", "a.b.c"},
        {"Mail.application", "Maillication"},
        // What is left over on both sides is not looked at again.
        {".ap.appp", ".app"},
        {".ap.appp.app", ".app"},
        {".APP", ".APP"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(removing(".app", each.text), each.expected) << each.text;
    EXPECT_EQ(removing("aa", "aaaaa"), "a");
    EXPECT_EQ(removing("", "text"), "text");
    EXPECT_EQ(removing("", ""), "");
}

TEST(Text, LowercasedChangesTheLettersOfAllScripts) {
    struct Case {
        std::string_view text;
        std::string_view expected;
    };
    constexpr Case cases[] = {
        {"", ""},
        {"AZaz09_[@`{", "azaz09_[@`{"},
        {"ÄÉÑØ", "äéñø"},
        {"ΑΒΓ ЖЯ", "αβγ жя"},
        {"\u1E9E", "ß"},
        {"ΟΔΟΣ", "οδος"},             // another letter at the end of a word
        {"\u0130", "i\u0307"},        // a dot of its own stays one
        {"I", "i"},                   // whatever the user's language
        {"\U00010400", "\U00010428"}, // beyond the first 65536
        {"漢😀ß", "漢😀ß"},
        {"A\0B"sv, "a\0b"sv},
        {"A\xFF\xC3", "a\uFFFD\uFFFD"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(lowercased(each.text), each.expected) << each.text;
}

TEST(Text, LastCharactersAreThoseThatAPersonCounts) {
    EXPECT_EQ(lastCharacters("", 3), "");
    EXPECT_EQ(lastCharacters("abc", 0), "");
    EXPECT_EQ(lastCharacters("abc", 3), "abc");
    EXPECT_EQ(lastCharacters("abc", 4), "abc");
    EXPECT_EQ(lastCharacters("abcd", 2), "cd");
    EXPECT_EQ(lastCharacters("aé漢😀", 2), "漢😀");
    EXPECT_EQ(lastCharacters("xe\u0301y", 2), "e\u0301y") << "a letter and its accent are one";
    EXPECT_EQ(lastCharacters("a\r\nb", 2), "\r\nb") << "so are both bytes of a line end";
    EXPECT_EQ(lastCharacters("a\xFF", 1), "\uFFFD");
}

TEST(Text, CapitalizedRaisesTheFirstLetterOfEachWordAndLowersTheRest) {
    struct Case {
        std::string_view text;
        std::string_view expected;
    };
    constexpr Case cases[] = {
        {"", ""},
        {"3 local snapshots", "3 Local Snapshots"},
        {"1 LOCAL sNAPSHOT", "1 Local Snapshot"},
        {"  two  blanks ", "  Two  Blanks "},
        {"a-b/c", "A-B/C"},
        {"don't", "Don't"},
        {"2nd", "2Nd"},
        {"élan ÉTÉ", "Élan Été"},
        {"ǆ", "ǅ"},
        {"straße", "Straße"},
        {"i", "I"},
        {"漢字", "漢字"},
        {"caf\xE9", "Caf\uFFFD"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(capitalized(each.text), each.expected) << each.text;
}

TEST(Text, LowercasedASCIILeavesOtherLettersAlone) {
    EXPECT_EQ(lowercasedASCII("AZaz09_[@`{"), "azaz09_[@`{");
    EXPECT_EQ(lowercasedASCII("ÄÉ\xC0\xFF"), "ÄÉ\xC0\xFF");
    EXPECT_EQ(lowercasedASCII(""), "");
}

TEST(Text, NamesThatAFileSystemMayTakeForTheSameFoldAlike) {
    for (const char* name :
         {"KEYS", "keys", "\u212Aeys", "key\u017F", "k\u200Cey\u00ADs", "\uFF4B\uFF45\uFF59\uFF53"})
        EXPECT_EQ(caseFolded(name), "keys") << name;
    EXPECT_EQ(caseFolded("CLE\u0301"), caseFolded("cl\u00E9"));
    EXPECT_NE(caseFolded("key"), caseFolded("keys"));
    EXPECT_EQ(caseFolded(".Env\xFF"), ".env\uFFFD");
    EXPECT_EQ(caseFolded(""), "");
}

TEST(Text, MajorVersionIsTheFirstNumber) {
    struct Case {
        const char* version;
        std::optional<int> expected;
    };
    constexpr Case cases[] = {
        {"35.0.1", 35},
        {"35", 35},
        {"35.", 35},
        {".9", 9},
        {"..9.8", 9},
        {"007.1", 7},
        {"0", 0},
        {"-7", -7},
        {"2147483647", 2147483647},
        {"27.0.11902837", 27},
        {"35.0.0-rc1", 35},
        {"", std::nullopt},
        {".", std::nullopt},
        {"...", std::nullopt},
        {"r21e", std::nullopt},
        {"21e", std::nullopt},
        {"21-rc1", std::nullopt},
        {"v20.1", std::nullopt},
        {" 7", std::nullopt},
        {"7 ", std::nullopt},
        {"0x10", std::nullopt},
        {"1,5", std::nullopt},
        {"-", std::nullopt},
        {"٣", std::nullopt},
        {"2147483648", std::nullopt},
        {"99999999999999999999.1", std::nullopt},
    };
    for (const Case& each : cases)
        EXPECT_EQ(majorVersion(each.version), each.expected) << '"' << each.version << '"';
}

TEST(Text, DisplayWidthIsInColumnsOfATerminal) {
    struct Case {
        const char* name;
        std::string_view text;
        std::size_t expected;
    };
    constexpr Case cases[] = {
        {"nothing", "", 0},
        {"ASCII", "abc", 3},
        {"accents", "café", 4},
        {"combining accents", "cafe\u0301", 4},
        {"an enclosing mark", "1\u20E3", 1},
        {"Chinese", "漢字", 4},
        {"Japanese", "かな", 4},
        {"Korean", "한국", 4},
        {"Korean in parts, as some file systems give it", "\u1112\u1161\u11AB\u1100\u116E\u11A8",
         4},
        {"full-width letters", "ＡＢ", 4},
        {"half-width kana", "ｱｲ", 2},
        {"an emoji", "😀", 2},
        {"a joiner takes nothing", "a\u200Db", 2},
        {"a variation selector takes nothing", "\u2601\uFE0F", 1},
        {"an ellipsis", "…", 1},
        {"bytes that are not UTF-8",
         "a\xFF"
         "b",
         3},
    };
    for (const Case& each : cases)
        EXPECT_EQ(displayWidth(each.text), each.expected) << each.name;
}

TEST(Text, PrintableLetsNoNameMoveTheCursorOrHide) {
    struct Case {
        const char* name;
        std::string_view text;
        std::string_view expected;
    };
    constexpr Case cases[] = {
        {"ordinary text", "Ärger mit 漢字 😀.txt", "Ärger mit 漢字 😀.txt"},
        {"a colour", "\x1B[31mred\x1B[0m", "\uFFFD[31mred\uFFFD[0m"},
        {"a title", "\x1B]0;x\x07", "\uFFFD]0;x\uFFFD"},
        {"line ends", "a\nb\rc\r\n", "a\uFFFDb\uFFFDc\uFFFD\uFFFD"},
        {"a tab", "a\tb", "a\uFFFDb"},
        {"a backspace", "a\bb", "a\uFFFDb"},
        {"a NUL", "a\0b"sv, "a\uFFFDb"},
        {"DEL", "a\x7F", "a\uFFFD"},
        {"the C1 control sequence introducer", "a\u009B31m", "a\uFFFD31m"},
        {"the first and the last of C1", "\u0080\u009F", "\uFFFD\uFFFD"},
        {"what follows C1 is text", "\u00A0\u00A1", "\u00A0\u00A1"},
        {"an override of direction", "a\u202Etxt.exe", "a\uFFFDtxt.exe"},
        {"embeddings", "\u202A\u202B\u202C\u202D", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"isolates", "\u2066\u2067\u2068\u2069", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"direction marks", "\u200E\u200F\u061C", "\uFFFD\uFFFD\uFFFD"},
        {"line and paragraph separators", "\u2028\u2029\u0085", "\uFFFD\uFFFD\uFFFD"},
        {"bytes that are not UTF-8",
         "a\x9B"
         "31m",
         "a\uFFFD31m"},
        {"nothing", "", ""},
    };
    for (const Case& each : cases)
        EXPECT_EQ(printable(each.text), each.expected) << each.name;
}

constexpr std::string_view samples[] = {
    "",
    "a",
    "library",
    "Ordinary text with several words in it",
    "漢字かな交じり文",
    "a漢b字c文d",
    "😀😀😀😀",
    "cafe\u0301 e\u0301e\u0301e\u0301",
    "\u0301\u0301",
    "x\u200Dy\u200Dz",
    "averyveryverylongwordwithoutanyblankinit and more",
    "bytes \xFF\xFE\x80 that are not UTF-8",
};

TEST(Text, ElidedMiddleKeepsBothEnds) {
    struct Case {
        std::string_view text;
        std::size_t columns;
        std::string_view expected;
    };
    constexpr Case cases[] = {
        {"library", 7, "library"},
        {"library", 100, "library"},
        {"library", 6, "lib…ry"},
        {"library", 5, "li…ry"},
        {"library", 4, "li…y"},
        {"library", 3, "l…y"},
        {"library", 2, "l…"},
        {"library", 1, "…"},
        {"library", 0, ""},
        {"", 0, ""},
        {"", 3, ""},
        {"漢字漢字", 8, "漢字漢字"},
        {"漢字漢字", 7, "漢…字"},
        {"漢字漢字", 5, "漢…字"},
        {"漢字漢字", 4, "漢…"},
        {"漢字漢字", 2, "…"},
        {"e\u0301bcd", 3, "e\u0301…d"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(elidedMiddle(each.text, each.columns), each.expected)
            << each.text << " in " << each.columns;
}

TEST(Text, ElidedMiddleIsNeverWiderThanAsked) {
    for (const std::string_view text : samples)
        for (std::size_t columns = 0; columns <= displayWidth(text) + 2; ++columns) {
            const std::string elided = elidedMiddle(text, columns);
            EXPECT_LE(displayWidth(elided), columns) << text << " in " << columns;
            const bool fits = displayWidth(text) <= columns;
            EXPECT_EQ(elided == repairedUTF8(text), fits) << text << " in " << columns;
            EXPECT_EQ(repairedUTF8(elided), elided) << text << " in " << columns;
        }
}

TEST(Text, WrappedBreaksAtBlanks) {
    struct Case {
        const char* text;
        std::size_t columns;
        Texts expected;
    };
    const Case cases[] = {
        {"", 10, {}},
        {"   ", 10, {}},
        {"one", 10, {"one"}},
        {"one two", 7, {"one two"}},
        {"one two", 6, {"one", "two"}},
        {"one two three", 8, {"one two", "three"}},
        {"  one   two  ", 10, {"one two"}},
        {"abcdefgh", 3, {"abc", "def", "gh"}},
        {"a bcdefgh i", 3, {"a", "bcd", "efg", "h i"}},
        {"漢字漢字 漢", 5, {"漢字", "漢字", "漢"}},
        {"漢字 漢字", 9, {"漢字 漢字"}},
        {"abc", 1, {"a", "b", "c"}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(wrapped(each.text, each.columns), each.expected)
            << each.text << " in " << each.columns;
}

std::string withoutBlanks(std::string_view text) { return removing(" ", text); }

TEST(Text, WrappedIsNeverWiderThanAskedAndLosesNothing) {
    for (const std::string_view text : samples)
        for (std::size_t columns = 2; columns <= displayWidth(text) + 2; ++columns) {
            std::string joined;
            for (const std::string& line : wrapped(text, columns)) {
                EXPECT_LE(displayWidth(line), columns) << text << " in " << columns;
                EXPECT_GT(line.size(), 0U) << text << " in " << columns;
                joined += line;
            }
            EXPECT_EQ(withoutBlanks(joined), withoutBlanks(repairedUTF8(text)))
                << text << " in " << columns;
        }
}

TEST(Text, WrappedKeepsCharactersWholeWhereNotEvenOneFits) {
    EXPECT_EQ(wrapped("漢字", 1), (Texts{"漢", "字"}));
    EXPECT_EQ(wrapped("😀😀", 1), (Texts{"😀", "😀"}));
    EXPECT_EQ(wrapped("a😀", 0), (Texts{"a", "😀"}));
}

} // namespace
} // namespace tidewright
