#include "core/platform/Applications.h"

#include "core/platform/FileInfo.h"
#include "core/platform/linux/ApplicationBundle.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace tidewright {
namespace {

using test::TempHome;

std::string plist(const std::string& inside) {
    return fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<plist version=\"1.0\"><dict>{}</dict></plist>\n",
                       inside);
}

std::string text(const std::string& key, const std::string& value) {
    return fmt::format("<key>{}</key><string>{}</string>", key, value);
}

TEST(Applications, FactsOfABundleAreInItsPropertyList) {
    struct Case {
        const char* name;
        std::string contents;
        std::string displayName;
        std::optional<std::string> identifier;
    };
    const std::string identifier = text("CFBundleIdentifier", "org.example.Paint");
    const std::string name = text("CFBundleName", "Paint");
    const std::string longName = text("CFBundleDisplayName", "Paint and Draw");
    const Case cases[] = {
        {"all", plist(identifier + name + longName), "Paint and Draw", "org.example.Paint"},
        {"no display name", plist(identifier + name), "Paint", "org.example.Paint"},
        {"an empty display name", plist(text("CFBundleDisplayName", "") + name), "Paint", {}},
        {"a name that is no text", plist("<key>CFBundleName</key><true/>"), "Here.app", {}},
        {"no name", plist(identifier), "Here.app", "org.example.Paint"},
        {"a name with the suffix", plist(text("CFBundleName", "Paint.app")), "Paint.app", {}},
        {"nothing", plist(""), "Here.app", {}},
        {"no property list", "Paint", "Here.app", {}},
        {"an empty file", "", "Here.app", {}},
    };
    for (const Case& each : cases) {
        const TempHome home;
        home.file("Here.app/Contents/Info.plist", each.contents);
        const ApplicationFacts facts = applicationFacts(home.path("Here.app"));
        EXPECT_EQ(facts.displayName, each.displayName) << each.name;
        EXPECT_EQ(facts.bundleIdentifier, each.identifier) << each.name;
        EXPECT_EQ(bundleIdentifier(home.path("Here.app")), each.identifier) << each.name;
        EXPECT_EQ(facts.lastUsed, std::nullopt) << each.name;
    }
}

TEST(Applications, WhatIsNoBundleHasItsOwnNameAndNoIdentifier) {
    const TempHome home;
    home.folder("Folder.app");
    home.file("File.app", plist(text("CFBundleName", "Not here")));
    home.link("Nowhere.app", "missing");
    home.folder("Pipe.app/Contents");
    ASSERT_EQ(mkfifo(home.path("Pipe.app/Contents/Info.plist").path().c_str(), 0644), 0);
    for (const std::string name :
         {"Folder.app", "File.app", "Nowhere.app", "Pipe.app", "None.app"}) {
        const ApplicationFacts facts = applicationFacts(home.path(name));
        EXPECT_EQ(facts.displayName, name);
        EXPECT_EQ(facts.bundleIdentifier, std::nullopt) << name;
    }
    EXPECT_EQ(applicationFacts(home.folder("caf\xE9.app")).displayName, "caf\uFFFD.app");
}

TEST(Applications, WasAddedWhenItWasBorn) {
    const TempHome home;
    const URL bundle = home.folder("Paint.app");
    home.setModified("Paint.app", Date(std::chrono::seconds(1'000'000'000)));
    const auto file = fileInfo(bundle, Links::dontFollow);
    ASSERT_TRUE(file);
    EXPECT_EQ(applicationFacts(bundle).addedOn, file->created);
    EXPECT_EQ(applicationFacts(home.path("None.app")).addedOn, std::nullopt);
    if (!file->created)
        GTEST_SKIP() << "this file system keeps no birth times";
    EXPECT_GT(*file->created, file->modified);
}

TEST(Applications, DateOfALinkIsItsOwnAndItsNameIsThatOfTheBundle) {
    const TempHome home;
    home.file("elsewhere/Paint.app/Contents/Info.plist", plist(text("CFBundleName", "Paint")));
    const URL link = home.link("Shortcut.app", "elsewhere/Paint.app");
    const URL toNothing = home.link("Gone.app", "elsewhere/Gone.app");
    EXPECT_EQ(applicationFacts(link).displayName, "Paint");
    for (const URL& each : {link, toNothing}) {
        const auto file = fileInfo(each, Links::dontFollow);
        ASSERT_TRUE(file);
        EXPECT_EQ(applicationFacts(each).addedOn, file->created);
    }
}

} // namespace
} // namespace tidewright
