#include "core/platform/linux/ApplicationSearch.h"

#include "core/platform/StandardFolders.h"
#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

#include <functional>

namespace tidewright {

// What a failed expectation shows.
static void PrintTo(const InstalledApplication& application, std::ostream* stream) {
    *stream << application.displayName << " at " << application.url.path();
}

namespace {

using test::TempHome;
using testing::_;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::Not;
using testing::Optional;

const Date longAgo = currentDate() - std::chrono::hours(24);

std::string plist(const std::string& identifier) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
           "<key>CFBundleIdentifier</key><string>" +
           identifier + "</string></dict></plist>\n";
}

std::string entry(const std::string& name, const std::string& more = {}) {
    return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\n" + more;
}

/// All in one temporary folder: nothing of this machine is looked at.
ApplicationFolders foldersIn(const TempHome& home) {
    return {.bundles = {home.path("Applications"), home.path("home/Applications")},
            .desktopEntries = {home.path("home/share/applications"),
                               home.path("share/applications"),
                               home.path("flatpak/exports/share/applications")},
            .flatpaks = {home.path("home/flatpak/app"), home.path("flatpak/app")}};
}

std::optional<InstalledApplication> found(const TempHome& home, const std::string& identifier) {
    return ApplicationSearch().find(identifier, foldersIn(home));
}

auto isApplication(const URL& url, const std::string& name) {
    return Optional(AllOf(Field(&InstalledApplication::url, url),
                          Field(&InstalledApplication::displayName, name)));
}

void makeBundle(const TempHome& home, const std::string& folder, const std::string& identifier) {
    home.file(folder + "/Contents/Info.plist", plist(identifier));
}

TEST(ApplicationSearch, FindsABundleByTheIdentifierInIt) {
    const TempHome home;
    makeBundle(home, "Applications/Paint.app", "org.example.Paint");
    makeBundle(home, "home/Applications/My Notes.app", "org.example.Notes");
    EXPECT_THAT(found(home, "org.example.Paint"),
                isApplication(home.path("Applications/Paint.app"), "Paint.app"));
    EXPECT_THAT(found(home, "org.example.Notes"),
                isApplication(home.path("home/Applications/My Notes.app"), "My Notes.app"));
}

TEST(ApplicationSearch, FindsABundleThatIsALink) {
    const TempHome home;
    makeBundle(home, "elsewhere/Paint.app", "org.example.Paint");
    home.folder("Applications");
    home.link("Applications/Paint.app", "../elsewhere/Paint.app");
    home.link("Applications/Gone.app", "../elsewhere/Gone.app");
    EXPECT_THAT(found(home, "org.example.Paint"),
                isApplication(home.path("Applications/Paint.app"), "Paint.app"));
}

TEST(ApplicationSearch, TakesTheFirstOfSeveralBundles) {
    const TempHome home;
    makeBundle(home, "home/Applications/A.app", "org.example.Paint");
    for (const char* const number : {"7", "3", "9", "2", "8", "5", "4", "6"})
        makeBundle(home, "Applications/Paint " + std::string(number) + ".app", "org.example.Paint");
    EXPECT_THAT(found(home, "org.example.Paint"),
                isApplication(home.path("Applications/Paint 2.app"), "Paint 2.app"));
}

TEST(ApplicationSearch, FindsADesktopEntryByItsFilesName) {
    const TempHome home;
    const URL file = home.file("share/applications/org.example.Paint.desktop",
                               "# a comment\n[Desktop Action new]\nName=New\n" +
                                   entry("Pa\\sint", "Name[de]=Malen\nNoDisplay=true\n"));
    EXPECT_THAT(found(home, "org.example.Paint"), isApplication(file, "Pa int"));
}

TEST(ApplicationSearch, TheFirstDesktopEntryOfANameCounts) {
    const TempHome home;
    home.file("share/applications/org.example.Paint.desktop", entry("System"));
    home.file("flatpak/exports/share/applications/org.example.Paint.desktop", entry("Flatpak"));
    const URL own = home.file("home/share/applications/org.example.Paint.desktop", entry("Own"));
    EXPECT_THAT(found(home, "org.example.Paint"), isApplication(own, "Own"));
}

TEST(ApplicationSearch, AHiddenEntryUninstallsThoseBehindIt) {
    const TempHome home;
    home.file("share/applications/org.example.Paint.desktop", entry("Paint"));
    EXPECT_THAT(found(home, "org.example.Paint"), Optional(_));
    home.file("home/share/applications/org.example.Paint.desktop", entry("Paint", "Hidden=true\n"));
    EXPECT_EQ(found(home, "org.example.Paint"), std::nullopt);
    home.file("home/share/applications/org.example.Paint.desktop",
              entry("Paint", "Hidden=false\n"));
    EXPECT_THAT(found(home, "org.example.Paint"), Optional(_));
}

TEST(ApplicationSearch, FindsAnInstalledFlatpakWithoutADesktopEntry) {
    const TempHome home;
    home.folder("flatpak/app/org.example.Paint/x86_64/stable");
    home.link("flatpak/app/org.example.Paint/current", "x86_64/stable");
    EXPECT_THAT(found(home, "org.example.Paint"),
                isApplication(home.path("flatpak/app/org.example.Paint"), "org.example.Paint"));
}

TEST(ApplicationSearch, FindsAnApplicationUnderItsOtherNames) {
    struct Case {
        std::string file;
        std::vector<std::string> identifiers;
    };
    const std::vector<Case> cases = {
        {"code.desktop", {"com.microsoft.VSCode", "code", "com.visualstudio.code"}},
        {"com.visualstudio.code.desktop", {"com.microsoft.VSCode", "code"}},
        {"google-chrome.desktop", {"com.google.Chrome"}},
        {"firefox-esr.desktop", {"org.mozilla.firefox", "firefox"}},
        {"firefox_firefox.desktop", {"org.mozilla.firefox"}},
        {"brave-browser.desktop", {"com.brave.Browser"}},
        {"jetbrains-studio.desktop", {"com.google.android.studio", "com.google.AndroidStudio"}},
    };
    for (const Case& each : cases) {
        const TempHome home;
        const URL file = home.file("share/applications/" + each.file, entry("Name"));
        for (const std::string& identifier : each.identifiers)
            EXPECT_THAT(found(home, identifier), isApplication(file, "Name")) << identifier;
    }
    const TempHome home;
    home.folder("home/flatpak/app/com.google.AndroidStudio/current");
    EXPECT_THAT(found(home, "com.google.android.studio"),
                isApplication(home.path("home/flatpak/app/com.google.AndroidStudio"),
                              "com.google.AndroidStudio"));
}

TEST(ApplicationSearch, PrefersBundlesThenEntriesThenFlatpaksAndTheAskedName) {
    const TempHome home;
    home.folder("flatpak/app/com.google.Chrome/current");
    EXPECT_THAT(found(home, "com.google.Chrome")->displayName, "com.google.Chrome");
    home.file("home/share/applications/google-chrome.desktop", entry("Other name"));
    EXPECT_THAT(found(home, "com.google.Chrome")->displayName, "Other name");
    home.file("share/applications/com.google.Chrome.desktop", entry("Asked name"));
    EXPECT_THAT(found(home, "com.google.Chrome")->displayName, "Asked name");
    makeBundle(home, "home/Applications/Chrome.app", "com.google.Chrome");
    EXPECT_THAT(found(home, "com.google.Chrome")->displayName, "Chrome.app");
}

TEST(ApplicationSearch, NamesThatAreNotUTF8AreRepaired) {
    const TempHome home;
    home.file("share/applications/org.example.Paint.desktop", entry("P\xFFint"));
    EXPECT_EQ(found(home, "org.example.Paint")->displayName, "P\xEF\xBF\xBDint");
}

TEST(ApplicationSearch, LeavesLookAlikesOut) {
    const std::vector<std::pair<std::string, std::function<void(const TempHome&)>>> cases = {
        {"nothing installed", [](const TempHome&) {}},
        {"other identifiers",
         [](const TempHome& home) {
             makeBundle(home, "Applications/A.app", "org.example.paint");
             makeBundle(home, "Applications/B.app", "org.example.Paint2");
             makeBundle(home, "Applications/C.app", "org.example");
             makeBundle(home, "Applications/D.app", "");
             makeBundle(home, "Applications/E.app", " org.example.Paint");
         }},
        {"a bundle of that name only",
         [](const TempHome& home) {
             makeBundle(home, "Applications/org.example.Paint.app", "other");
         }},
        {"a folder that is no bundle",
         [](const TempHome& home) { makeBundle(home, "Applications/Paint", "org.example.Paint"); }},
        {"an ending in another case",
         [](const TempHome& home) {
             makeBundle(home, "Applications/Paint.APP", "org.example.Paint");
         }},
        {"a bundle in a subfolder",
         [](const TempHome& home) {
             makeBundle(home, "Applications/Art/Paint.app", "org.example.Paint");
         }},
        {"a bundle in a bundle",
         [](const TempHome& home) {
             makeBundle(home, "Applications/A.app/Contents/Paint.app", "org.example.Paint");
         }},
        {"a bundle of the other kind",
         [](const TempHome& home) {
             home.file("Applications/Paint.app/Info.plist", plist("org.example.Paint"));
         }},
        {"a file named like a bundle",
         [](const TempHome& home) {
             home.file("Applications/Paint.app", plist("org.example.Paint"));
         }},
        {"a folder in place of the facts",
         [](const TempHome& home) { home.folder("Applications/Paint.app/Contents/Info.plist"); }},
        {"damaged facts",
         [](const TempHome& home) {
             home.file("Applications/Paint.app/Contents/Info.plist", "org.example.Paint");
         }},
        {"facts of 20 MB",
         [](const TempHome& home) {
             home.file("Applications/Paint.app/Contents/Info.plist",
                       plist("org.example.Paint") + std::string(20'000'000, ' '));
         }},
        {"other entries",
         [](const TempHome& home) {
             home.file("share/applications/org.example.paint.desktop", entry("Paint"));
             home.file("share/applications/org.example.Paint.desktop.bak", entry("Paint"));
             home.file("share/applications/org.example.Paint", entry("Paint"));
             home.file("share/org.example.Paint.desktop", entry("Paint"));
         }},
        {"a folder in place of an entry",
         [](const TempHome& home) { home.folder("share/applications/org.example.Paint.desktop"); }},
        {"an empty entry",
         [](const TempHome& home) { home.file("share/applications/org.example.Paint.desktop"); }},
        {"an entry without a name",
         [](const TempHome& home) {
             home.file("share/applications/org.example.Paint.desktop",
                       "[Desktop Entry]\nType=Application\n[Desktop Action new]\nName=New\n");
         }},
        {"an entry with an empty name",
         [](const TempHome& home) {
             home.file("share/applications/org.example.Paint.desktop", entry(""));
         }},
        {"an entry that is a link to a page",
         [](const TempHome& home) {
             home.file("share/applications/org.example.Paint.desktop",
                       "[Desktop Entry]\nType=Link\nName=Paint\nURL=https://example.org\n");
         }},
        {"a link that leads nowhere",
         [](const TempHome& home) {
             home.folder("share/applications");
             home.link("share/applications/org.example.Paint.desktop", "gone");
         }},
        {"data of a Flatpak that is not installed",
         [](const TempHome& home) {
             home.folder("flatpak/app/org.example.Paint");
             home.link("home/flatpak/app/org.example.Paint/current", "x86_64/stable");
         }},
    };
    for (const auto& [name, arrange] : cases) {
        const TempHome home;
        arrange(home);
        EXPECT_EQ(found(home, "org.example.Paint"), std::nullopt) << name;
    }
}

TEST(ApplicationSearch, WhatIsNoIdentifierFindsNothing) {
    const TempHome home;
    home.folder("flatpak/app/current");
    home.folder("flatpak/current");
    home.folder("flatpak/app/a/current");
    home.file("share/applications/.desktop", entry("Empty"));
    home.file("share/applications/a/b.desktop", entry("In a folder"));
    home.file("share/outside.desktop", entry("Outside"));
    for (const std::string& identifier :
         std::vector<std::string>{"", ".", "..", "/", "a/b", "../outside", "./outside", "../app/a",
                                  "/etc/passwd", home.path("share/outside").path(),
                                  std::string("outside\0", 8), "a\n", std::string(100'000, 'a')}) {
        makeBundle(home, "Applications/Odd.app", identifier);
        EXPECT_EQ(found(home, identifier), std::nullopt) << identifier;
    }
}

TEST(ApplicationSearch, MissingFoldersAreNoHindrance) {
    EXPECT_EQ(ApplicationSearch().find("org.example.Paint", {}), std::nullopt);
    const TempHome home;
    home.file("Applications", "a file");
    home.file("home/Applications/readme", "");
    makeBundle(home, "home/Applications/Paint.app", "org.example.Paint");
    EXPECT_THAT(found(home, "org.example.Paint"), Optional(_));
}

TEST(ApplicationSearch, ALongLivedSearchSeesWhatChanges) {
    const TempHome home;
    const ApplicationFolders folders = foldersIn(home);
    ApplicationSearch search;
    const auto finds = [&](const std::string& identifier) {
        return search.find(identifier, folders).has_value();
    };
    const std::string facts = "Applications/Paint.app/Contents/Info.plist";
    EXPECT_FALSE(finds("org.example.One"));

    makeBundle(home, "Applications/Paint.app", "org.example.One");
    home.setModified(facts, longAgo);
    EXPECT_TRUE(finds("org.example.One"));
    EXPECT_TRUE(finds("org.example.One"));
    EXPECT_FALSE(finds("org.example.Two"));

    // Changed in place, as long as before, and then again within the same moment.
    const Date moment = currentDate();
    home.file(facts, plist("org.example.Two"));
    home.setModified(facts, moment);
    EXPECT_TRUE(finds("org.example.Two"));
    EXPECT_FALSE(finds("org.example.One"));
    home.file(facts, plist("org.example.Six"));
    home.setModified(facts, moment);
    EXPECT_TRUE(finds("org.example.Six"));

    // Replaced by another file of the same age.
    home.setModified(facts, longAgo);
    EXPECT_TRUE(finds("org.example.Six"));
    makeBundle(home, "new", "org.example.Ten");
    home.setModified("new/Contents/Info.plist", longAgo);
    ASSERT_EQ(rename(home.path("new/Contents/Info.plist").path().c_str(),
                     home.path(facts).path().c_str()),
              0);
    EXPECT_TRUE(finds("org.example.Ten"));
    EXPECT_FALSE(finds("org.example.Six"));

    // Gone, and back.
    ASSERT_EQ(rename(home.path("Applications/Paint.app").path().c_str(),
                     home.path("kept").path().c_str()),
              0);
    EXPECT_FALSE(finds("org.example.Ten"));
    ASSERT_EQ(rename(home.path("kept").path().c_str(),
                     home.path("Applications/Other.app").path().c_str()),
              0);
    EXPECT_EQ(search.find("org.example.Ten", folders)->displayName, "Other.app");
}

TEST(ApplicationSearch, StandardFoldersFollowTheEnvironment) {
    const URL home("/home/user");
    const auto entryFolders = [&](const Environment& environment) {
        return standardApplicationFolders(home, environment).desktopEntries;
    };
    EXPECT_THAT(entryFolders({}),
                ElementsAre(URL("/home/user/.local/share/applications"),
                            URL("/usr/local/share/applications"), URL("/usr/share/applications"),
                            URL("/home/user/.local/share/flatpak/exports/share/applications"),
                            URL("/var/lib/flatpak/exports/share/applications"),
                            URL("/var/lib/snapd/desktop/applications")));
    EXPECT_THAT(entryFolders({{"XDG_DATA_HOME", ""}, {"XDG_DATA_DIRS", ""}}),
                testing::ElementsAreArray(entryFolders({})));
    EXPECT_THAT(entryFolders({{"XDG_DATA_HOME", "relative"}, {"XDG_DATA_DIRS", "a:b:"}}),
                AllOf(Contains(URL("/home/user/.local/share/applications")),
                      Not(Contains(URL("/usr/share/applications"))),
                      Not(Contains(URL("a/applications")))));
    EXPECT_THAT(
        entryFolders({{"XDG_DATA_HOME", "/data"}, {"XDG_DATA_DIRS", "/one/:relative::/two"}}),
        ElementsAre(URL("/data/applications"), URL("/one/applications"), URL("/two/applications"),
                    URL("/data/flatpak/exports/share/applications"),
                    URL("/var/lib/flatpak/exports/share/applications"),
                    URL("/var/lib/snapd/desktop/applications")));

    const ApplicationFolders standard = standardApplicationFolders(home, {});
    EXPECT_EQ(standard.bundles, applicationFolders(home));
    EXPECT_THAT(standard.flatpaks, ElementsAre(URL("/home/user/.local/share/flatpak/app"),
                                               URL("/var/lib/flatpak/app")));
}

TEST(Applications, FindsABundleInTheUsersOwnFolder) {
    const TempHome home;
    makeBundle(home, "Applications/Paint.app", "org.example.tidewright.test.Paint");
    EXPECT_THAT(applicationWithBundleIdentifier("org.example.tidewright.test.Paint", home.url()),
                isApplication(home.path("Applications/Paint.app"), "Paint.app"));
    EXPECT_EQ(applicationWithBundleIdentifier("org.example.tidewright.test.Other", home.url()),
              std::nullopt);
}

} // namespace
} // namespace tidewright
