#include "core/scan/ScanContext.h"

#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using test::asOrdinaryUser;
using test::TempHome;

ScanContext contextOf(const TempHome& home) {
    ScanContext context;
    context.home = home.url();
    return context;
}

std::vector<std::string> namesIn(const ScanContext& context, const URL& folder) {
    std::vector<std::string> names;
    for (const URL& each : context.children(folder)) {
        EXPECT_EQ(each.deletingLastPathComponent(), folder);
        names.push_back(each.lastPathComponent());
    }
    return names;
}

TEST(ScanContext, PathsStandBelowTheHomeFolder) {
    ScanContext context;
    context.home = URL("/Users/dev");
    EXPECT_EQ(context.path("Library"), URL("/Users/dev/Library"));
    EXPECT_EQ(context.path("Library/Caches/a b"), URL("/Users/dev/Library/Caches/a b"));
    EXPECT_EQ(context.path(""), URL("/Users/dev"));
}

TEST(ScanContext, ExistenceIsAskedThroughLinks) {
    const TempHome home;
    home.file("file");
    home.folder("folder");
    home.link("toFile", "file");
    home.link("toFolder", "folder");
    home.link("dangling", "nowhere");
    home.link("chain", "dangling");
    home.link("loop", "loop");
    struct Case {
        const char* path;
        bool exists;
        bool isDirectory;
    };
    constexpr Case cases[] = {
        {"file", true, false},        {"folder", true, true},     {"toFile", true, false},
        {"toFolder", true, false},    {"dangling", false, false}, {"chain", false, false},
        {"loop", false, false},       {"missing", false, false},  {"missing/child", false, false},
        {"file/child", false, false}, {"", true, true},
    };
    const ScanContext context = contextOf(home);
    for (const Case& each : cases) {
        EXPECT_EQ(context.exists(home.path(each.path)), each.exists) << each.path;
        EXPECT_EQ(context.isDirectory(home.path(each.path)), each.isDirectory) << each.path;
    }
}

TEST(ScanContext, ModificationDateIsThatOfTheLocationItself) {
    const TempHome home;
    home.file("file");
    home.folder("folder");
    home.link("link", "file");
    home.link("dangling", "nowhere");
    const Date date(1'600'000'000s + 123'456us);
    home.setModified("file", date);
    home.setModified("folder", date + 1s);
    home.setModified("link", date + 2s);
    home.setModified("dangling", Date(-1s));
    const ScanContext context = contextOf(home);
    EXPECT_EQ(context.modificationDate(home.path("file")), date);
    EXPECT_EQ(context.modificationDate(home.path("folder")), date + 1s);
    EXPECT_EQ(context.modificationDate(home.path("link")), date + 2s);
    EXPECT_EQ(context.modificationDate(home.path("dangling")), Date(-1s));
    EXPECT_EQ(context.modificationDate(home.path("missing")), std::nullopt);
    EXPECT_EQ(context.modificationDate(home.path("file/child")), std::nullopt);
}

TEST(ScanContext, DaysAreCountedToTheScansOwnClock) {
    ScanContext context;
    context.now = Date(1'780'000'000s); // in a May, far from any change of the clock
    struct Case {
        const char* name;
        std::optional<Date> since;
        std::optional<int> expected;
    };
    const Case cases[] = {
        {"absent", std::nullopt, std::nullopt},
        {"now", context.now, 0},
        {"almost a day ago", context.now - 24h + 1s, 0},
        {"a day ago", context.now - 24h, 1},
        {"nine days ago", context.now - 9 * 24h, 9},
        {"soon", context.now + 23h, 0},
        {"in a day", context.now + 24h, -1},
        {"in nine days", context.now + 9 * 24h, -9},
    };
    for (const Case& each : cases)
        EXPECT_EQ(context.days(each.since), each.expected) << each.name;
}

TEST(ScanContext, ChildrenStandInTheOrderOfPeople) {
    const TempHome home;
    for (const char* name : {"gradle-10.1", "gradle-9.5.0", "gradle-20.11.0", "Zebra", "apple",
                             "éclair", "2", "10", "1"})
        home.file(std::string("folder/") + name);
    EXPECT_EQ(namesIn(contextOf(home), home.path("folder")),
              (std::vector<std::string>{"1", "2", "10", "apple", "éclair", "gradle-9.5.0",
                                        "gradle-10.1", "gradle-20.11.0", "Zebra"}));
}

TEST(ScanContext, ChildrenAreOfEveryKindButHidden) {
    const TempHome home;
    home.file("folder/.DS_Store");
    home.file("folder/.hidden");
    home.folder("folder/.git");
    home.file("folder/..data");
    home.link("folder/.link", "file");
    home.file("folder/file");
    home.folder("folder/inner");
    home.file("folder/inner/deeper");
    home.link("folder/dangling", "nowhere");
    home.file("folder/a.hidden");
    home.file("folder/bytes \xFF");
    EXPECT_EQ(namesIn(contextOf(home), home.path("folder")),
              (std::vector<std::string>{"a.hidden", "bytes \xFF", "dangling", "file", "inner"}));
}

TEST(ScanContext, WhatIsNoReadableFolderHasNoChildren) {
    const TempHome home;
    home.file("file");
    home.folder("empty");
    home.file("full/child");
    home.link("dangling", "nowhere");
    const ScanContext context = contextOf(home);
    for (const char* path : {"missing", "file", "empty", "dangling", "file/child"})
        EXPECT_TRUE(context.children(home.path(path)).empty()) << path;
    EXPECT_EQ(context.children(home.path("full")).size(), 1U);
}

TEST(ScanContext, AFolderWithoutPermissionHasNoChildren) {
    const TempHome home;
    home.setMode("", 0755);
    home.file("open/child");
    home.file("closed/child");
    home.file("namesOnly/child");
    home.file("pathsOnly/child");
    home.setMode("closed", 0);
    home.setMode("namesOnly", 0444);
    home.setMode("pathsOnly", 0111);
    const ScanContext context = contextOf(home);
    const std::string seen = asOrdinaryUser([&] {
        std::string text;
        for (const char* folder : {"open", "closed", "namesOnly", "pathsOnly"}) {
            const URL child = home.path(folder).appending("child");
            text += std::string(folder) + ": " +
                    std::to_string(context.children(home.path(folder)).size()) +
                    (context.exists(child) ? " there" : " not there") +
                    (context.modificationDate(child) ? " dated; " : " not dated; ");
        }
        return text;
    });
    EXPECT_EQ(seen, "open: 1 there dated; closed: 0 not there not dated; "
                    "namesOnly: 1 not there not dated; pathsOnly: 0 there dated; ");
}

} // namespace
} // namespace tidewright
