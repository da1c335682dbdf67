#include "core/support/URL.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>

namespace tidewright {
namespace {

TEST(URL, KeepsThePathAsItWasGiven) {
    EXPECT_EQ(URL("/a//b/../c/").path(), "/a//b/../c/");
    EXPECT_EQ(URL().path(), "");
}

TEST(URL, LastPathComponent) {
    struct Case {
        const char* path;
        const char* expected;
    };
    constexpr Case cases[] = {
        {"/a/b", "b"},     {"/a", "a"},   {"/a/b/", "b"},  {"/a/b///", "b"},
        {"/a//b", "b"},    {"/", "/"},    {"//", "/"},     {"", ""},
        {"a", "a"},        {"a/b", "b"},  {"/a/..", ".."}, {"/a/.hidden", ".hidden"},
        {"/a/b c", "b c"}, {"/a/ ", " "},
    };
    for (const Case& each : cases)
        EXPECT_EQ(URL(each.path).lastPathComponent(), each.expected) << '"' << each.path << '"';
}

TEST(URL, PathExtension) {
    struct Case {
        const char* path;
        const char* expected;
    };
    constexpr Case cases[] = {
        {"/a/x.tar.gz", "gz"},
        {"/a/.Helper.app", "app"},
        {"/a/Tool.app/", "app"},
        {"/a/.bashrc", ""},
        {"/a/a.", ""},
        {"/a/.bashrc.", ""},
        {"/a/none", ""},
        {"/a.d/none", ""},
        {"/a.d/", "d"},
        {"/", ""},
        {"", ""},
        {"/a/.", ""},
        {"/a/..", ""},
        {"/a/.gradle/8.7", "7"},
        {"/a/Pixel_8.avd", "avd"},
        {"/a/ARCHIVE.ZIP", "ZIP"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(URL(each.path).pathExtension(), each.expected) << '"' << each.path << '"';
}

TEST(URL, DeletingLastPathComponent) {
    struct Case {
        const char* path;
        const char* expected;
    };
    constexpr Case cases[] = {
        {"/a/b/c", "/a/b"}, {"/a/b/", "/a"}, {"/a//b", "/a"}, {"/a", "/"},
        {"/a/", "/"},       {"///a", "/"},   {"/", "/"},      {"//", "/"},
        {"a/b", "a"},       {"a", ""},       {"", ""},
    };
    for (const Case& each : cases)
        EXPECT_EQ(URL(each.path).deletingLastPathComponent(), URL(each.expected))
            << '"' << each.path << '"';
}

TEST(URL, Appending) {
    struct Case {
        const char* path;
        const char* relative;
        const char* expected;
    };
    constexpr Case cases[] = {
        {"/a", "b", "/a/b"},   {"/a", "b/c/d", "/a/b/c/d"},
        {"/a/", "b", "/a/b"},  {"/a//", "b", "/a/b"},
        {"/a", "/b", "/a/b"},  {"/a", "//b", "/a/b"},
        {"/a/", "/b", "/a/b"}, {"/a", "b/", "/a/b/"},
        {"/", "b", "/b"},      {"//", "/b", "/b"},
        {"/a", "", "/a"},      {"/a/", "", "/a/"},
        {"/a", "/", "/a"},     {"/", "", "/"},
        {"", "b", "/b"},       {"/a", "../b", "/a/../b"},
        {"/a", ".", "/a/."},
    };
    for (const Case& each : cases)
        EXPECT_EQ(URL(each.path).appending(each.relative), URL(each.expected))
            << '"' << each.path << "\" and \"" << each.relative << '"';
}

TEST(URL, Standardized) {
    struct Case {
        const char* path;
        const char* expected;
    };
    constexpr Case cases[] = {
        {"/a/b", "/a/b"},
        {"/a/b/", "/a/b"},
        {"/a//b///c", "/a/b/c"},
        {"//a", "/a"},
        {"/a/./b", "/a/b"},
        {"/./a/.", "/a"},
        {"/a/../b", "/b"},
        {"/a/b/../../c", "/c"},
        {"/a/b/..", "/a"},
        {"/a/..", "/"},
        {"/a/b/c/../../../d", "/d"},
        {"/..", "/"},
        {"/../a", "/a"},
        {"/a/../../../b", "/b"},
        {"/", "/"},
        {"///", "/"},
        {"/.", "/"},
        {"", "/"},
        {"/a/...", "/a/..."},
        {"/a/.../..", "/a"},
        {"/a/..b/.c", "/a/..b/.c"},
        {"/a/b../c.", "/a/b../c."},
        {"/a/ /b", "/a/ /b"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(URL(each.path).standardized(), URL(each.expected)) << '"' << each.path << '"';
        EXPECT_EQ(URL(each.expected).standardized(), URL(each.expected)) << each.expected;
    }
}

TEST(URL, IsInsideEndsAtTheBordersOfComponents) {
    struct Case {
        const char* path;
        const char* folder;
        bool expected;
    };
    constexpr Case cases[] = {
        {"/a/b", "/a/b", true},   {"/a/b/c", "/a/b", true},    {"/a/b/c/d", "/a", true},
        {"/a/bc", "/a/b", false}, {"/a/b.app", "/a/b", false}, {"/a/b", "/a/b/c", false},
        {"/a", "/b", false},      {"/x/a/b", "/a/b", false},   {"/A/b", "/a", false},
        {"/a/b/", "/a/b", true},  {"/a/b", "/a/b/", false},    {"", "/a", false},
    };
    for (const Case& each : cases)
        EXPECT_EQ(URL(each.path).isInside(URL(each.folder)), each.expected)
            << '"' << each.path << "\" in \"" << each.folder << '"';
}

TEST(URL, IsInsideTakesPathsAsTheyStand) {
    EXPECT_TRUE(URL("/a/../b").isInside(URL("/a")));
    EXPECT_FALSE(URL("/a/../b").standardized().isInside(URL("/a")));
    EXPECT_FALSE(URL("/a/./b").isInside(URL("/a/b")));
}

TEST(URL, NamesThatAreNotUTF8SurviveUnchanged) {
    const std::string name = "caf\xE9\xFF\xC0\xAF.t\xFEr";
    const URL url = URL("/\x80home").appending("a/" + name);
    EXPECT_EQ(url.path(), "/\x80home/a/" + name);
    EXPECT_EQ(url.lastPathComponent(), name);
    EXPECT_EQ(url.pathExtension(), "t\xFEr");
    EXPECT_EQ(url.standardized(), url);
    EXPECT_EQ(url.deletingLastPathComponent().path(), "/\x80home/a");
    EXPECT_TRUE(url.isInside(URL("/\x80home")));
    EXPECT_FALSE(url.isInside(URL("/\x81home")));
}

TEST(URL, IsComparedAndOrderedByTheBytesOfItsPath) {
    EXPECT_NE(URL("/a"), URL("/a/"));
    EXPECT_NE(URL("/a"), URL("/A"));
    EXPECT_NE(URL("/\xC3\xA9"), URL("/e\xCC\x81")); // one letter to a reader, two names on a disk
    const std::set<URL> urls{URL("/b"), URL("/a/c"), URL("/a"), URL("/a")};
    EXPECT_EQ(urls, (std::set{URL("/a"), URL("/a/c"), URL("/b")}));
    EXPECT_LT(URL("/a"), URL("/a/c"));
}

} // namespace
} // namespace tidewright
