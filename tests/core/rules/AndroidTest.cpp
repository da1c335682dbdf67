#include "core/rules/Android.h"

#include "core/platform/FileContents.h"
#include "tests/support/RuleTesting.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace tidewright::test {

namespace {

using Kind = RequirementKind;
using enum Decision;

std::string fixture(std::string_view name) {
    return readFile(URL(fmt::format("{}/android/{}", TIDEWRIGHT_FIXTURES, name)), 1'000'000)
        .value();
}

/// What all items of a rule have in common.
struct RuleTexts {
    std::string id;
    std::string group;
    std::string title;
    std::string whatItIs;
    std::string afterEffect;
};

template <class Rule>
const RuleTexts texts{};
template <>
const RuleTexts texts<SystemImagesRule>{
    "android.systemImage", "Emulator system images", "System image",
    "An Android OS image that emulators boot from. Each one is 2–8 GB.",
    "Install it again from Android Studio → Settings → Android SDK if you create an emulator that "
    "needs it."};
template <>
const RuleTexts texts<NDKRule>{
    "android.ndk", "NDK versions", "NDK",
    "The native C/C++ toolchain used to compile React Native and other native code. About 2.5–3 GB "
    "per version.",
    "Gradle downloads it again automatically if a project asks for this version."};
template <>
const RuleTexts texts<BuildToolsRule>{
    "android.buildTools", "Build tools", "Build tools",
    "aapt2, d8, zipalign and friends for one Android build-tools version.",
    "Gradle installs it again if a project requests it."};
template <>
const RuleTexts texts<CMakeRule>{"android.cmake", "CMake versions", "CMake",
                                 "The build system used for native (C++) modules.",
                                 "Gradle installs it again if a project requests it."};

/// What differs between the items of a rule.
struct Judged {
    std::string path; ///< below the SDK
    std::string version;
    Decision decision;
    std::string reason;
};

template <class Rule>
ScanItem itemOf(const Judged& judged, const URL& sdk) {
    const RuleTexts& common = texts<Rule>;
    ScanItem item = usualItem(Category::android, common.id, {sdk.appending(judged.path)});
    item.group = common.group;
    item.title = common.title;
    item.version = judged.version;
    item.risk = Risk::low;
    item.decision = judged.decision;
    item.reason = judged.reason;
    item.whatItIs = common.whatItIs;
    item.afterEffect = common.afterEffect;
    return item;
}

/// A home with an SDK; all paths are below the SDK.
struct Machine {
    TempHome home;
    ScanContext context;
    URL sdk = home.folder("Library/Android/sdk");

    Machine() {
        context.home = home.url();
        context.android.sdk = sdk;
        context.android.avdHome = home.path(".android/avd");
    }
    static std::string inHome(std::string_view path) {
        return fmt::format("Library/Android/sdk/{}", path);
    }
    void folders(std::initializer_list<const char*> paths) const {
        for (const char* path : paths)
            home.folder(inHome(path));
    }
    void file(std::string_view path, std::string_view contents = "x") const {
        home.file(inHome(path), contents);
    }
    void link(std::string_view path, std::string_view target) const {
        home.link(inHome(path), target);
    }
    void need(Kind kind, const std::string& version, const std::string& owner) {
        context.needed.add(kind, version, owner);
    }
    void avd(const std::string& name, std::optional<std::string> image) {
        context.android.avds.push_back({name, context.android.avdHome.appending(name + ".avd"),
                                        context.android.avdHome.appending(name + ".ini"),
                                        std::move(image)});
    }
    template <class Rule>
    void expect(const std::vector<Judged>& judged) const {
        std::vector<ScanItem> items;
        for (const Judged& each : judged)
            items.push_back(itemOf<Rule>(each, sdk));
        expectItems(scanWith<Rule>(context), items);
    }
};

// What is left alone

struct LeftAloneSDK {
    std::string name;
    std::vector<std::string> folders = {};
    std::vector<std::string> files = {};
    std::vector<std::pair<std::string, std::string>> links = {};
};

void PrintTo(const LeftAloneSDK& each, std::ostream* stream) { *stream << each.name; }

class AndroidLeavesAlone : public testing::TestWithParam<LeftAloneSDK> {};

std::vector<ScanItem> scanWithAll(const ScanContext& context) {
    std::vector<ScanItem> items;
    for (auto* const scan : {scanWith<SystemImagesRule>, scanWith<NDKRule>,
                             scanWith<BuildToolsRule>, scanWith<CMakeRule>})
        for (ScanItem& item : scan(context))
            items.push_back(std::move(item));
    return items;
}

TEST_P(AndroidLeavesAlone, ThisSDK) {
    Machine machine;
    machine.home.folder("elsewhere/folder/inner");
    make(machine.home, GetParam(), "x", Machine::inHome(""));
    // Everything else would be cleaned.
    machine.avd("Pixel", "android-1/other");
    machine.need(Kind::ndk, "1", "app");
    expectItems(scanWithAll(machine.context), {});
}

const LeftAloneSDK leftAlone[] = {
    {.name = "EmptySDK"},
    {.name = "EmptyFolders", .folders = {"system-images", "ndk", "build-tools", "cmake"}},
    {.name = "FilesInPlaceOfFolders", .files = {"system-images", "ndk", "build-tools", "cmake"}},
    {.name = "FilesInPlaceOfPackages",
     .files = {"system-images/android-34", "ndk/25.1.8937393", "build-tools/30.0.3",
               "build-tools/36.0.0-rc1", "cmake/3.18.1", "ndk/source.properties"}},
    {.name = "LinksInPlaceOfPackages",
     .links = {{"system-images/android-34", "../../../../elsewhere/folder"},
               {"ndk/25.1.8937393", "../../../../elsewhere/folder"},
               {"build-tools/30.0.3", "../../../../elsewhere/folder"},
               {"cmake/3.18.1", "../../../../elsewhere/folder"},
               {"ndk/26", "gone"}}},
    {.name = "LinksThatLeadNowhere",
     .links = {{"system-images", "gone"},
               {"ndk", "gone"},
               {"ndk-bundle", "gone"},
               {"build-tools", "gone"},
               {"cmake", "cmake"}}},
    {.name = "HiddenFolders",
     .folders = {"system-images/.temp/google_apis", "ndk/.temp", "build-tools/.30.0.3",
                 "cmake/.installer", ".ndk/1"}},
    {.name = "OtherPartsOfTheSDK",
     .folders = {"platforms/android-30", "platform-tools", "emulator/lib64", "sources/android-34",
                 "cmdline-tools/latest/bin", "tools/bin", "licenses", "extras/google",
                 "add-ons/addon-google_apis", "skins/pixel_8", "fonts", "ndk-bundle2/source",
                 "ndk-bundle.bak", "ndk2/25.1.8937393", "side-by-side/ndk/25.1.8937393",
                 "build-tools-old/30.0.3", "cmake2/3.18.1", "system-images2/android-34/google_apis",
                 "system-image/android-34/google_apis"}},
};

INSTANTIATE_TEST_SUITE_P(All,
                         AndroidLeavesAlone,
                         testing::ValuesIn(leftAlone),
                         [](const auto& each) { return each.param.name; });

TEST(AndroidRules, FindNothingWithoutAnSDK) {
    Machine machine;
    machine.folders({"system-images/android-34/default", "ndk/25.1", "ndk-bundle",
                     "build-tools/30.0.3", "cmake/3.18.1"});
    EXPECT_EQ(scanWithAll(machine.context).size(), 5U);
    machine.context.android.sdk = machine.home.path("gone");
    expectItems(scanWithAll(machine.context), {});
    machine.context.android.sdk = machine.home.file("file");
    expectItems(scanWithAll(machine.context), {});
    machine.context.android.sdk = std::nullopt;
    expectItems(scanWithAll(machine.context), {});
}

TEST(AndroidRules, LookOnlyIntoTheSDKOfTheContext) {
    Machine machine;
    machine.folders({"ndk/25.1", "cmake/3.18.1", "build-tools/30.0.3", "system-images/a/b"});
    machine.context.android.sdk = machine.home.folder("other");
    expectItems(scanWithAll(machine.context), {});
}

TEST(AndroidRules, WhatRunsChangesNothing) {
    Machine machine;
    machine.folders({"system-images/android-34/default", "ndk/25.1", "ndk-bundle",
                     "build-tools/30.0.3", "cmake/3.18.1"});
    machine.avd("Pixel", "android-35/default");
    const std::vector<ScanItem> idle = scanWithAll(machine.context);
    machine.context.inUse.runningAVDs = {"Pixel"};
    machine.context.inUse.runningBundleIdentifiers = {"com.google.android.studio"};
    machine.context.inUse.processCommandLines = {
        "java GradleDaemon", "qemu-system-aarch64 -avd Pixel",
        machine.sdk.appending("cmake/3.18.1/bin/cmake").path()};
    expectItems(scanWithAll(machine.context), idle);
}

TEST(AndroidRules, FoldersThatMayNotBeListedGiveNothing) {
    Machine machine;
    machine.home.setMode("", 0755);
    machine.folders({"system-images/android-34/default", "ndk/25.1", "ndk-bundle",
                     "build-tools/30.0.3", "cmake/3.18.1"});
    const auto found = [&] {
        std::string paths;
        for (const ScanItem& item : scanWithAll(machine.context))
            paths += item.urls.front().path().substr(machine.sdk.path().size()) + "\n";
        return paths;
    };
    EXPECT_EQ(asOrdinaryUser(found), "/system-images/android-34/default\n/ndk/25.1\n/ndk-bundle\n"
                                     "/build-tools/30.0.3\n/cmake/3.18.1\n");
    // A platform that may not be listed must not pass for an empty one.
    for (const char* folder : {"system-images/android-34", "ndk", "build-tools", "cmake"})
        machine.home.setMode(Machine::inHome(folder), 0);
    EXPECT_EQ(asOrdinaryUser(found), "/ndk-bundle\n");
    machine.home.setMode(Machine::inHome("system-images"), 0);
    EXPECT_EQ(asOrdinaryUser(found), "/ndk-bundle\n");
}

// System images

TEST(SystemImagesRule, KeepsWhatEmulatorsUseAndNamesThem) {
    Machine machine;
    machine.folders({"system-images/android-34/google_apis/arm64-v8a",
                     "system-images/android-34/google_apis/x86_64",
                     "system-images/android-35/default/arm64-v8a",
                     "system-images/android-36/google_apis_playstore/arm64-v8a"});
    for (const char* name : {"A", "B", "C", "D", "E"})
        machine.avd(name, "android-36/google_apis_playstore");
    machine.avd("Pixel_8", "android-34/google_apis");
    machine.avd("Pixel_9", "android-35/default");
    machine.avd("Tablet", "android-34/google_apis");
    machine.expect<SystemImagesRule>({
        {"system-images/android-34/google_apis", "android-34/google_apis", keep,
         "Used by emulator Pixel_8 and Tablet."},
        {"system-images/android-35/default", "android-35/default", keep,
         "Used by emulator Pixel_9."},
        {"system-images/android-36/google_apis_playstore", "android-36/google_apis_playstore", keep,
         "Used by emulator A, B and 3 more."},
    });
}

TEST(SystemImagesRule, NamesThreeEmulatorsAsAList) {
    Machine machine;
    machine.folders({"system-images/android-34/default"});
    for (const char* name : {"C", "B", "A"})
        machine.avd(name, "android-34/default");
    machine.expect<SystemImagesRule>({{"system-images/android-34/default", "android-34/default",
                                       keep, "Used by emulator C, B, and A."}});
}

TEST(SystemImagesRule, CleansWhatNoneOfTheEmulatorsUses) {
    Machine machine;
    machine.folders({"system-images/android-34/google_apis"});
    machine.avd("Pixel_8", "android-34/google_apis_playstore");
    machine.expect<SystemImagesRule>(
        {{"system-images/android-34/google_apis", "android-34/google_apis", clean,
          "None of your 1 emulators use this image."}});
    // Neither of these is the image, and an emulator without one protects nothing.
    for (const char* image : {"android-34/google_api", "android-34/google_apis/", "android-34",
                              "android-3/google_apis", "Android-34/google_apis"})
        machine.avd(image, image);
    machine.avd("without", std::nullopt);
    machine.expect<SystemImagesRule>(
        {{"system-images/android-34/google_apis", "android-34/google_apis", clean,
          "None of your 7 emulators use this image."}});
}

TEST(SystemImagesRule, AsksWhenThereAreNoEmulators) {
    Machine machine;
    machine.folders({"system-images/android-34/google_apis", "system-images/android-34/default"});
    machine.need(Kind::systemImage, "android-34/default", "emulator Gone"); // not what is asked
    const std::string reason = "No emulators exist right now. Remove it if you don't plan to "
                               "create one with this image.";
    machine.expect<SystemImagesRule>({
        {"system-images/android-34/default", "android-34/default", ask, reason},
        {"system-images/android-34/google_apis", "android-34/google_apis", ask, reason},
    });
}

TEST(SystemImagesRule, AnEmulatorWithoutAnImageProtectsNothing) {
    Machine machine;
    machine.folders({"system-images/android-34/default"});
    machine.avd("broken", std::nullopt);
    machine.expect<SystemImagesRule>({{"system-images/android-34/default", "android-34/default",
                                       clean, "None of your 1 emulators use this image."}});
}

TEST(SystemImagesRule, CleansPlatformsWithoutATag) {
    Machine machine;
    machine.folders({"system-images/android-33"});
    machine.file("system-images/android-34/.DS_Store");
    machine.file("system-images/android-35/package.xml");
    machine.folders({"system-images/android-36/.hidden"});
    machine.avd("Pixel", "android-33/default");
    const std::string reason = "Empty folder left behind by an uninstalled image.";
    const std::vector<Judged> empty{
        {"system-images/android-33", "android-33", clean, reason},
        {"system-images/android-34", "android-34", clean, reason},
        {"system-images/android-35", "android-35", clean, reason},
        {"system-images/android-36", "android-36", clean, reason},
    };
    machine.expect<SystemImagesRule>(empty);
    machine.context.android.avds.clear(); // asks nothing of an empty one
    machine.expect<SystemImagesRule>(empty);
}

TEST(SystemImagesRule, TakesOnlyFoldersAsTags) {
    Machine machine;
    machine.folders({"system-images/android-34/default", "system-images/android-34/.temp"});
    machine.file("system-images/android-34/google_apis");
    machine.link("system-images/android-34/linked", "default");
    machine.avd("Pixel", "android-34/default");
    machine.expect<SystemImagesRule>({{"system-images/android-34/default", "android-34/default",
                                       keep, "Used by emulator Pixel."}});
}

// NDK

TEST(NDKRule, KeepsWhatProjectsNeedAndCleansTheOthers) {
    Machine machine;
    machine.folders({"ndk/9.0.1", "ndk/25.1.8937393", "ndk/26.1.10909125", "ndk/27.0.12077973"});
    machine.need(Kind::ndk, "26.1.10909125", "shop");
    machine.need(Kind::ndk, "26.1.10909125", "game");
    machine.need(Kind::ndk, "9.0.0", "old");
    const std::string needed = " Projects need 9.0.0, 26.1.10909125.";
    machine.expect<NDKRule>({
        {"ndk/9.0.1", "9.0.1", clean, "No project uses NDK 9.0.1." + needed},
        {"ndk/25.1.8937393", "25.1.8937393", clean, "No project uses NDK 25.1.8937393." + needed},
        {"ndk/26.1.10909125", "26.1.10909125", keep, "Needed by game and shop."},
        // The newest one is no exception.
        {"ndk/27.0.12077973", "27.0.12077973", clean,
         "No project uses NDK 27.0.12077973." + needed},
    });
}

const std::string noNDKDeclared = "No project on this Mac declares a NDK version, so Tidewright "
                                  "can't confirm this one is unused.";

TEST(NDKRule, AsksWhenNoProjectDeclaresAnNDK) {
    Machine machine;
    machine.folders({"ndk/25.1.8937393", "ndk/27.0.12077973"});
    machine.need(Kind::buildTools, "25.1.8937393", "app");
    machine.expect<NDKRule>({{"ndk/25.1.8937393", "25.1.8937393", ask, noNDKDeclared},
                             {"ndk/27.0.12077973", "27.0.12077973", ask, noNDKDeclared}});
}

TEST(NDKRule, AsksOfTheSingleInstallUnderItsNameWhereItTellsNoRevision) {
    Machine machine;
    machine.folders({"ndk-bundle"});
    machine.expect<NDKRule>({{"ndk-bundle", "ndk-bundle", ask, noNDKDeclared}});
}

TEST(NDKRule, TheSingleInstallCountsAlsoAsALink) {
    Machine machine;
    machine.home.file("elsewhere/source.properties", fixture("source.properties"));
    machine.link("ndk-bundle", "../../../elsewhere");
    machine.expect<NDKRule>({{"ndk-bundle", "21.4.7075529", ask, noNDKDeclared}});
}

TEST(NDKRule, JudgesTheSingleInstallLastAndByTheRevisionInIt) {
    Machine machine;
    machine.folders({"ndk/25.1.8937393", "ndk/zzz"});
    machine.file("ndk-bundle/source.properties", fixture("source.properties"));
    machine.need(Kind::ndk, "21.4.7075529", "legacy");
    machine.expect<NDKRule>({
        {"ndk/25.1.8937393", "25.1.8937393", clean,
         "No project uses NDK 25.1.8937393. Projects need 21.4.7075529."},
        {"ndk/zzz", "zzz", clean, "No project uses NDK zzz. Projects need 21.4.7075529."},
        {"ndk-bundle", "21.4.7075529", keep, "Needed by legacy."},
    });
}

TEST(NDKRule, TheRevisionOfAVersionedFolderIsItsName) {
    Machine machine;
    machine.file("ndk/25.1.8937393/source.properties", "Pkg.Revision = 1.2.3\n");
    EXPECT_EQ(NDKRule::version(machine.sdk.appending("ndk/25.1.8937393")), "25.1.8937393");
    EXPECT_EQ(NDKRule::version(URL("/gone/ndk-bundle2")), "ndk-bundle2");
    EXPECT_EQ(NDKRule::version(URL("/gone/ndk-bundle")), "ndk-bundle");
}

TEST(NDKRule, ReadsTheRevisionOfTheSingleInstall) {
    struct Case {
        std::string properties;
        std::string version;
    };
    const Case cases[] = {
        {fixture("source.properties"), "21.4.7075529"},
        {fixture("source-windows.properties"), "22.1.7171670"},
        {"Pkg.Revision=21", "21"},
        {"Pkg.Revision \t= \t21.4\n", "21.4"},
        {"Pkg.Revision\n=\n21.4", "21.4"},
        {"Pkg.Revision = 23.0.7123448-beta1\n", "23.0.7123448"},
        {"Pkg.Revision = 1.0\nPkg.Revision = 2.0\n", "1.0"},
        {"Pkg.Revision = none\nPkg.Revision = 2.0\n", "2.0"},
        {"# Pkg.Revision = 3.0\nPkg.Revision = 2.0\n", "3.0"},
        {"Old.Pkg.Revision = 4.0", "4.0"},
        {"", "ndk-bundle"},
        {"Pkg.Desc = Android NDK\n", "ndk-bundle"},
        {"Pkg.Revision = r21e\n", "ndk-bundle"},
        {"Pkg.Revision 21.4\n", "ndk-bundle"},
        {"Pkg.Revision = \"21.4\"\n", "ndk-bundle"},
        {"PkgXRevision = 21.4\n", "ndk-bundle"},
        {"pkg.revision = 21.4\n", "ndk-bundle"},
        {"Pkg.RevisionX = 21.4\n", "ndk-bundle"},
        {"Pkg.Revision = 21.4\n\xff", "ndk-bundle"},
    };
    const Machine machine;
    for (const Case& each : cases) {
        machine.file("ndk-bundle/source.properties", each.properties);
        EXPECT_EQ(NDKRule::version(machine.sdk.appending("ndk-bundle")), each.version)
            << each.properties;
    }
}

TEST(NDKRule, PropertiesThatAreNoFileTellNoRevision) {
    const Machine machine;
    machine.folders({"ndk-bundle/source.properties"});
    EXPECT_EQ(NDKRule::version(machine.sdk.appending("ndk-bundle")), "ndk-bundle");
}

// Build tools

TEST(BuildToolsRule, WithoutAProjectKeepsTheNewestAndRecentOnes) {
    Machine machine;
    machine.folders({"build-tools/33.0.2", "build-tools/34.0.0", "build-tools/35.0.0"});
    machine.expect<BuildToolsRule>({
        {"build-tools/35.0.0", "35.0.0", keep,
         "Newest installed version, kept as the default for new projects."},
        {"build-tools/34.0.0", "34.0.0", keep,
         "Recent version that the Android Gradle Plugin may pick by default."},
        {"build-tools/33.0.2", "33.0.2", clean, "Older than 34.0 and no project pins it."},
    });
}

TEST(BuildToolsRule, KeepsWhatProjectsNeedBeforeAllElse) {
    Machine machine;
    machine.folders({"build-tools/30.0.3", "build-tools/34.0.0", "build-tools/35.0.0",
                     "build-tools/36.0.0-rc1", "build-tools/android-4.4W"});
    for (const char* version : {"30.0.3", "34.0.0", "35.0.0", "36.0.0-rc1", "android-4.4W"})
        for (const char* owner : {"web", "app"})
            machine.need(Kind::buildTools, version, owner);
    const std::string reason = "Needed by app and web.";
    machine.expect<BuildToolsRule>({
        {"build-tools/android-4.4W", "android-4.4W", keep, reason},
        {"build-tools/36.0.0-rc1", "36.0.0-rc1", keep, reason},
        {"build-tools/35.0.0", "35.0.0", keep, reason},
        {"build-tools/34.0.0", "34.0.0", keep, reason},
        {"build-tools/30.0.3", "30.0.3", keep, reason},
    });
}

TEST(BuildToolsRule, ACandidateIsNeverTheNewest) {
    Machine machine;
    machine.folders({"build-tools/33.0.1", "build-tools/34.0.0", "build-tools/35.0.0-rc1"});
    machine.need(Kind::buildTools, "35.0.0", "app"); // not the candidate of it
    machine.expect<BuildToolsRule>({
        {"build-tools/35.0.0-rc1", "35.0.0-rc1", clean,
         "Release candidate. Stable versions replace it."},
        {"build-tools/34.0.0", "34.0.0", keep,
         "Newest installed version, kept as the default for new projects."},
        {"build-tools/33.0.1", "33.0.1", clean, "Older than 34.0 and no project pins it."},
    });
}

TEST(BuildToolsRule, CleansCandidatesAlsoWhereNothingElseIsInstalled) {
    Machine machine;
    machine.folders({"build-tools/35.0.0-rc1", "build-tools/35.0.0-rc2", "build-tools/36.0.0-rc3"});
    machine.need(Kind::buildTools, "35.0.0-rc1", "app");
    const std::string reason = "Release candidate. Stable versions replace it.";
    machine.expect<BuildToolsRule>({
        {"build-tools/36.0.0-rc3", "36.0.0-rc3", clean, reason},
        {"build-tools/35.0.0-rc2", "35.0.0-rc2", clean, reason},
        {"build-tools/35.0.0-rc1", "35.0.0-rc1", keep, "Needed by app."},
    });
}

TEST(BuildToolsRule, KeepsTheNewestHoweverOldItIs) {
    Machine machine;
    machine.folders({"build-tools/9.0.0", "build-tools/10.0.0", "build-tools/10.0.0-rc1"});
    machine.expect<BuildToolsRule>({
        {"build-tools/10.0.0-rc1", "10.0.0-rc1", clean,
         "Release candidate. Stable versions replace it."},
        {"build-tools/10.0.0", "10.0.0", keep,
         "Newest installed version, kept as the default for new projects."},
        {"build-tools/9.0.0", "9.0.0", clean, "Older than 34.0 and no project pins it."},
    });
}

TEST(BuildToolsRule, WhatIsNoNumberGoesTheWayOfOldVersions) {
    Machine machine;
    machine.folders({"build-tools/android-15", "build-tools/34-preview", "build-tools/34",
                     "build-tools/zzz", "build-tools/34.0.0 copy"});
    const std::string old = "Older than 34.0 and no project pins it.";
    const std::string recent = "Recent version that the Android Gradle Plugin may pick by default.";
    machine.expect<BuildToolsRule>({
        {"build-tools/zzz", "zzz", keep,
         "Newest installed version, kept as the default for new projects."},
        {"build-tools/android-15", "android-15", clean, old},
        {"build-tools/34.0.0 copy", "34.0.0 copy", keep, recent},
        {"build-tools/34-preview", "34-preview", clean, old},
        {"build-tools/34", "34", keep, recent},
    });
}

// CMake

TEST(CMakeRule, KeepsWhatBuildsUsedThePluginsDefaultAndTheNewest) {
    Machine machine;
    machine.folders({"cmake/3.6.0", "cmake/3.10.2", "cmake/3.18.1", "cmake/3.22.1", "cmake/3.30.3",
                     "cmake/3.31.1"});
    machine.need(Kind::cmake, "3.10.2", "game");
    machine.need(Kind::cmake, "3.18.1", "a");
    machine.need(Kind::cmake, "3.18.1", "b");
    machine.need(Kind::cmake, "3.18.1", "c");
    machine.need(Kind::cmake, "3.18.1", "d");
    const std::string unused = "Not pinned by any project and not used by recent native builds.";
    machine.expect<CMakeRule>({
        {"cmake/3.31.1", "3.31.1", keep, "Newest installed version."},
        {"cmake/3.30.3", "3.30.3", clean, unused},
        {"cmake/3.22.1", "3.22.1", keep, "Android Gradle Plugin's default CMake version."},
        {"cmake/3.18.1", "3.18.1", keep, "Used by the last native build of a, b and 2 more."},
        {"cmake/3.10.2", "3.10.2", keep, "Used by the last native build of game."},
        {"cmake/3.6.0", "3.6.0", clean, unused},
    });
}

TEST(CMakeRule, KeepsTheOnlyInstall) {
    Machine machine;
    machine.folders({"cmake/3.30.3"});
    machine.expect<CMakeRule>({{"cmake/3.30.3", "3.30.3", keep, "Newest installed version."}});
}

TEST(CMakeRule, ThePluginsDefaultIsKeptAsSuchAlsoWhereItIsTheNewest) {
    Machine machine;
    machine.folders({"cmake/3.22.1", "cmake/3.22.0", "cmake/3.22.1.bak"});
    machine.expect<CMakeRule>({
        {"cmake/3.22.1.bak", "3.22.1.bak", keep, "Newest installed version."},
        {"cmake/3.22.1", "3.22.1", keep, "Android Gradle Plugin's default CMake version."},
        {"cmake/3.22.0", "3.22.0", clean,
         "Not pinned by any project and not used by recent native builds."},
    });
    machine.need(Kind::cmake, "3.22.1", "app");
    EXPECT_EQ(scanWith<CMakeRule>(machine.context)[1].reason,
              "Used by the last native build of app.");
}

} // namespace

} // namespace tidewright::test
