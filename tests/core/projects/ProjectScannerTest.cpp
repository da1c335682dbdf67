#include "core/projects/ProjectScanner.h"

#include "core/platform/FileInfo.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <thread>

namespace tidewright {
namespace {

using test::asOrdinaryUser;
using test::TempHome;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Kind = Project::Kind;
using Names = ProjectScanner::Names;
using Texts = std::vector<std::string>;
using namespace std::chrono_literals;

constexpr int usualDepth = 6;
constexpr Int64 usualThreshold = 1'000'000'000;
constexpr Int64 block = 4096; // of the file systems that tests run on
constexpr const char* wrapper = "gradle/wrapper/gradle-wrapper.properties";

std::string fixture(const std::string& name) {
    std::ifstream stream(std::string(TIDEWRIGHT_FIXTURES) + "/projects/" + name, std::ios::binary);
    EXPECT_TRUE(stream.good()) << name;
    return {std::istreambuf_iterator<char>(stream), {}};
}

ProjectScanner::Result scan(const std::vector<URL>& roots, Int64 threshold = usualThreshold) {
    return ProjectScanner{roots, usualDepth, threshold}.scan(CancelToken());
}

ProjectScanner::Result scan(const TempHome& home, Int64 threshold = usualThreshold) {
    return scan(std::vector{home.url()}, threshold);
}

/// The path below the home; "." for the home itself.
std::string relative(const TempHome& home, const URL& url) {
    return url == home.url() ? "." : url.path().substr(home.url().path().size() + 1);
}

Texts projectPaths(const TempHome& home, const ProjectScanner::Result& result) {
    Texts paths;
    for (const Project& project : result.projects)
        paths.push_back(relative(home, project.url));
    return paths;
}

Texts largeFilePaths(const TempHome& home, const ProjectScanner::Result& result) {
    Texts paths;
    for (const LargeFile& file : result.largeFiles)
        paths.push_back(relative(home, file.url));
    return paths;
}

void makeAndroidProject(const TempHome& home, const std::string& folder) {
    home.file(folder + "/settings.gradle");
    home.file(folder + "/" + wrapper);
}

/// One project found directly below the home; the test fails where there is another number.
Project onlyProject(const TempHome& home) {
    auto result = scan(home);
    EXPECT_EQ(result.projects.size(), 1U) << fmt::format("{}", projectPaths(home, result));
    return result.projects.empty() ? Project() : result.projects.front();
}

// What is a project

struct Arranged {
    const char* path;
    std::string contents = {};
    enum class As { file, folder, link } as = As::file; ///< of a link the contents is the target
};

TEST(ProjectScannerTest, DetectsByTheFirstRuleThatFires) {
    constexpr auto folder = Arranged::As::folder;
    constexpr auto link = Arranged::As::link;
    struct Case {
        const char* name;
        std::vector<Arranged> entries;
        std::string_view expected; ///< the kind's text; empty for no project
    };
    const Case cases[] = {
        {"nothing", {}, ""},
        {"a readme", {{"README.md"}}, ""},

        {"the smallest manifest", {{"package.json", "{}"}}, "Node"},
        {"React Native", {{"package.json", fixture("react-native.package.json")}}, "React Native"},
        {"Expo", {{"package.json", fixture("expo.package.json")}}, "Expo"},
        {"CRLF and a byte order mark",
         {{"package.json", fixture("node-crlf.package.json")}},
         "Node"},
        {"a manifest beside everything else",
         {{"package.json", "{}"}, {"pubspec.yaml"}, {"settings.gradle"}, {wrapper}, {"Podfile"}},
         "Node"},
        {"an empty manifest", {{"package.json", fixture("empty")}}, ""},
        {"an empty manifest beside a Podfile", {{"package.json"}, {"Podfile"}}, "iOS"},
        {"a manifest with a list", {{"package.json", "[]"}, {"Podfile"}}, "iOS"},
        {"a manifest with a text", {{"package.json", "\"{}\""}, {"Podfile"}}, "iOS"},
        {"a manifest that is no JSON", {{"package.json", "name: x"}, {"Podfile"}}, "iOS"},
        {"a manifest cut short", {{"package.json", "{\"name\": "}, {"pubspec.yaml"}}, "Flutter"},
        {"a manifest with comments",
         {{"package.json", fixture("with-comments.package.json")}, {"pubspec.yaml"}},
         "Flutter"},
        {"a manifest that is not UTF-8",
         {{"package.json", fixture("invalid-utf8.package.json")}, {"pubspec.yaml"}},
         "Flutter"},
        {"a broken manifest beside an Android project",
         {{"package.json", "{"}, {"settings.gradle"}, {wrapper}},
         "Android"},
        {"a folder named as a manifest", {{"package.json", "", folder}, {"Podfile"}}, "iOS"},
        {"a link named as a manifest",
         {{"other.json", "{}"}, {"package.json", "other.json", link}, {"Podfile"}},
         "Node"},
        {"a link to nothing named as a manifest",
         {{"package.json", "missing", link}, {"Podfile"}},
         "iOS"},
        {"a link in a circle named as a manifest", {{"package.json", "package.json", link}}, ""},
        {"a manifest in other letters", {{"Package.json", "{}"}}, ""},

        {"Flutter", {{"pubspec.yaml"}}, "Flutter"},
        {"a link to nothing named as Flutter's", {{"pubspec.yaml", "missing", link}}, "Flutter"},
        {"a folder named as Flutter's", {{"pubspec.yaml", "", folder}}, "Flutter"},
        {"Flutter beside everything that comes later",
         {{"pubspec.yaml"}, {"settings.gradle"}, {wrapper}, {"Podfile"}},
         "Flutter"},
        {"Flutter in another spelling", {{"pubspec.yml"}}, ""},

        {"Android", {{"settings.gradle"}, {wrapper}}, "Android"},
        {"Android in Kotlin", {{"settings.gradle.kts"}, {wrapper}}, "Android"},
        {"Android beside a Podfile", {{"settings.gradle"}, {wrapper}, {"Podfile"}}, "Android"},
        {"Android, the wrapper through a link",
         {{"settings.gradle"}, {"a/wrapper/gradle-wrapper.properties"}, {"gradle", "a", link}},
         "Android"},
        {"a build without settings", {{"build.gradle"}, {wrapper}}, ""},
        {"settings without a wrapper", {{"settings.gradle"}, {"gradle/wrapper", "", folder}}, ""},
        {"settings without a wrapper, but a Podfile",
         {{"settings.gradle.kts"}, {"Podfile"}},
         "iOS"},
        {"settings with a wrapper in android",
         {{"settings.gradle"}, {"android/gradle/wrapper/gradle-wrapper.properties"}},
         ""},
        {"settings whose wrapper leads nowhere",
         {{"settings.gradle"}, {wrapper, "missing", link}},
         ""},

        {"a Podfile", {{"Podfile"}}, "iOS"},
        {"a lock file alone", {{"Podfile.lock"}}, ""},
        {"an Xcode project", {{"Shop.xcodeproj", "", folder}}, "iOS"},
        {"a file named as an Xcode project", {{"Shop.xcodeproj"}}, "iOS"},
        {"a link named as an Xcode project", {{"Shop.xcodeproj", "missing", link}}, "iOS"},
        {"nothing but the ending", {{".xcodeproj", "", folder}}, "iOS"},
        {"an Xcode project put aside", {{"Shop.xcodeproj.bak", "", folder}}, ""},
        {"the ending in other letters", {{"Shop.XcodeProj", "", folder}}, ""},
        {"an Xcode workspace", {{"Shop.xcworkspace", "", folder}}, ""},
    };
    for (const Case& each : cases) {
        const TempHome home;
        home.folder("p");
        for (const Arranged& entry : each.entries) {
            const std::string path = std::string("p/") + entry.path;
            if (entry.as == folder)
                home.folder(path);
            else if (entry.as == link)
                home.link(path, entry.contents);
            else
                home.file(path, entry.contents);
        }
        const auto result = scan(home);
        if (each.expected.empty()) {
            EXPECT_THAT(projectPaths(home, result), IsEmpty()) << each.name;
            continue;
        }
        ASSERT_THAT(projectPaths(home, result), ElementsAre("p")) << each.name;
        EXPECT_EQ(rawValue(result.projects[0].kind), each.expected) << each.name;
    }
}

TEST(ProjectScannerTest, FillsInWhatAReactNativeProjectIs) {
    const TempHome home;
    home.file("shop/package.json", fixture("react-native.package.json"));
    home.file(std::string("shop/android/") + wrapper, fixture("gradle-wrapper.properties"));
    home.folder("shop/ios");
    home.file("shop/package-lock.json");
    const Date then(1'700'000'000s);
    for (const char* path : {"shop/package.json", "shop/package-lock.json"})
        home.setModified(path, then);

    Project expected;
    expected.url = home.path("shop");
    expected.name = "shop";
    expected.kind = Kind::reactNative;
    expected.reactNativeVersion = "^0.76.1";
    expected.packageManager = "yarn";
    expected.androidDirectory = home.path("shop/android");
    expected.iosDirectory = home.path("shop/ios");
    expected.lastActivity = then;
    expected.requirements = {
        {RequirementKind::gradle, "8.10.2", "gradle-wrapper.properties"},
        {RequirementKind::simulator, "iPhone 15 Pro", "package.json scripts"},
        {RequirementKind::simulator, "iPhone-15", "package.json scripts"},
        {RequirementKind::simulator, "iPhone SE (3rd generation)", "package.json scripts"},
        {RequirementKind::node, ">=18", "package.json engines"},
    };
    Project found = onlyProject(home);
    const auto byVersion = [](const auto& a, const auto& b) { return a.version < b.version; };
    std::ranges::sort(expected.requirements, byVersion); // the order of scripts is free
    std::ranges::sort(found.requirements, byVersion);
    EXPECT_EQ(found, expected);
}

TEST(ProjectScannerTest, FillsInWhatAnExpoProjectIs) {
    const TempHome home;
    home.file("notes/package.json", fixture("expo.package.json"));
    home.file("notes/bun.lockb");
    const Project found = onlyProject(home);
    EXPECT_EQ(found.kind, Kind::expo);
    EXPECT_TRUE(found.usesExpo);
    EXPECT_EQ(found.reactNativeVersion, "0.74.5");
    EXPECT_EQ(found.packageManager, "bun");
    EXPECT_EQ(found.androidDirectory, std::nullopt);
    EXPECT_EQ(found.iosDirectory, std::nullopt);
    EXPECT_THAT(found.requirements, IsEmpty());
}

TEST(ProjectScannerTest, PlatformFoldersOfAProjectForBoth) {
    struct Case {
        const char* name;
        const char* marker;
        std::vector<const char*> files;
        bool android;
        bool ios;
    };
    const Case cases[] = {
        {"none", "package.json", {}, false, false},
        {"both",
         "package.json",
         {"android/gradle/wrapper/gradle-wrapper.properties", "ios/x"},
         true,
         true},
        {"android without a wrapper", "package.json", {"android/build.gradle"}, false, false},
        {"ios as a file", "package.json", {"ios"}, false, true},
        {"a wrapper beside the manifest", "package.json", {wrapper}, false, false},
        {"both of Flutter",
         "pubspec.yaml",
         {"android/gradle/wrapper/gradle-wrapper.properties", "ios/x"},
         true,
         true},
        {"none of Flutter", "pubspec.yaml", {}, false, false},
    };
    for (const Case& each : cases) {
        const TempHome home;
        home.file(std::string("p/") + each.marker, "{}");
        for (const char* file : each.files)
            home.file(std::string("p/") + file);
        const Project found = onlyProject(home);
        EXPECT_EQ(found.androidDirectory,
                  each.android ? std::optional(home.path("p/android")) : std::nullopt)
            << each.name;
        EXPECT_EQ(found.iosDirectory, each.ios ? std::optional(home.path("p/ios")) : std::nullopt)
            << each.name;
    }
}

TEST(ProjectScannerTest, FlutterTakesNothingFromAManifest) {
    const TempHome home;
    home.file("p/pubspec.yaml");
    home.file("p/yarn.lock");
    const Project found = onlyProject(home);
    EXPECT_EQ(found.packageManager, std::nullopt);
    EXPECT_EQ(found.reactNativeVersion, std::nullopt);
    EXPECT_FALSE(found.usesExpo);
}

TEST(ProjectScannerTest, AndroidAndIOSProjectsAreTheirOwnPlatformFolders) {
    const TempHome home;
    makeAndroidProject(home, "a");
    home.folder("a/ios");
    home.file("i/Podfile");
    home.file(std::string("i/android/") + wrapper);
    const auto result = scan(home);
    ASSERT_THAT(projectPaths(home, result), ElementsAre("a", "i"));
    EXPECT_EQ(result.projects[0].androidDirectory, home.path("a"));
    EXPECT_EQ(result.projects[0].iosDirectory, std::nullopt);
    EXPECT_EQ(result.projects[1].androidDirectory, std::nullopt);
    EXPECT_EQ(result.projects[1].iosDirectory, home.path("i"));
}

TEST(ProjectScannerTest, NodeVersionFileOfAnIOSProjectIsARequirement) {
    const TempHome home;
    home.file("i/Podfile");
    home.file("i/.nvmrc", "20\n");
    EXPECT_THAT(onlyProject(home).requirements,
                ElementsAre(Project::Requirement{RequirementKind::node, "20", ".nvmrc"}));
}

TEST(ProjectScannerTest, DisplayNamesOfFoldersThatSayNothingHaveTheParentsInFront) {
    struct Case {
        const char* path;
        const char* expected;
    };
    const Case cases[] = {
        {"/u/shop", "shop"},
        {"/u/shop/example", "shop/example"},
        {"/u/shop/app", "shop/app"},
        {"/u/shop/mobile", "shop/mobile"},
        {"/u/shop/apps", "shop/apps"},
        {"/u/Shop/Mobile", "Shop/Mobile"},
        {"/u/shop/APP", "shop/APP"},
        {"/u/shop/app/", "shop/app"},
        {"/u/app/app", "app/app"},
        {"/u/shop/apple", "apple"},
        {"/u/shop/examples", "examples"},
        {"/u/shop/my app", "my app"},
        {"/u/shop/app.old", "app.old"},
        {"/u/app/shop", "shop"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(ProjectScanner::displayName(URL(each.path)), each.expected) << each.path;
}

TEST(ProjectScannerTest, PackageManagerIsTheManifestsElseTheLockFiles) {
    struct Case {
        const char* name;
        std::optional<std::string> declared;
        Names files;
        std::optional<std::string> expected;
    };
    const Names allLocks{"bun.lock", "bun.lockb", "package-lock.json", "pnpm-lock.yaml",
                         "yarn.lock"};
    const Case cases[] = {
        {"nothing", std::nullopt, {}, std::nullopt},
        {"declared", "yarn@4.1.0", {}, "yarn"},
        {"declared beats lock files", "npm@10", allLocks, "npm"},
        {"without a version", "pnpm", {}, "pnpm"},
        {"an at sign in front", "@yarn@4", {}, "yarn"},
        {"at signs alone", "@@", allLocks, std::nullopt},
        {"one at sign", "@", {"yarn.lock"}, std::nullopt},
        {"an empty text", "", {"yarn.lock"}, std::nullopt},
        {"all locks", std::nullopt, allLocks, "yarn"},
        {"all but yarn's",
         std::nullopt,
         {"bun.lock", "bun.lockb", "package-lock.json", "pnpm-lock.yaml"},
         "pnpm"},
        {"bun's binary one", std::nullopt, {"bun.lockb", "package-lock.json"}, "bun"},
        {"bun's text", std::nullopt, {"bun.lock", "package-lock.json"}, "bun"},
        {"npm's", std::nullopt, {"package-lock.json"}, "npm"},
        {"other locks", std::nullopt, {"npm-shrinkwrap.json", "Yarn.lock"}, std::nullopt},
    };
    for (const Case& each : cases) {
        PackageManifest manifest;
        manifest.packageManager = each.declared;
        EXPECT_EQ(ProjectScanner::packageManager(manifest, each.files), each.expected) << each.name;
    }
}

TEST(ProjectScannerTest, PackageManagerThatIsNoTextLeavesItToLockFiles) {
    const TempHome home;
    home.file("p/package.json", R"({"packageManager": 5})");
    home.file("p/pnpm-lock.yaml");
    EXPECT_EQ(onlyProject(home).packageManager, "pnpm");
}

// Activity

constexpr const char* markers[] = {
    ".git/index",       ".git/HEAD",    ".git/FETCH_HEAD",
    "package.json",     "yarn.lock",    "package-lock.json",
    "pnpm-lock.yaml",   "pubspec.yaml", "android/app/build.gradle",
    "ios/Podfile.lock", "src",          "app",
};

TEST(ProjectScannerTest, EachMarkerAloneIsActivity) {
    const Date then(1'234'567'890s + 250'000us);
    for (const std::string marker : markers) {
        const TempHome home;
        home.file("p/" + marker);
        home.setModified("p/" + marker, then);
        EXPECT_EQ(ProjectScanner::lastActivity(home.path("p")), then) << marker;
    }
}

TEST(ProjectScannerTest, LatestOfAllMarkersCountsWhicheverItIs) {
    const TempHome home;
    for (const std::string marker : markers)
        home.file("p/" + marker);
    for (const std::string latest : markers) {
        for (const std::string marker : markers)
            home.setModified("p/" + marker, Date(marker == latest ? 2'000'000s : 1'000'000s));
        EXPECT_EQ(ProjectScanner::lastActivity(home.path("p")), Date(2'000'000s)) << latest;
    }
}

TEST(ProjectScannerTest, OtherFilesAreNoActivity) {
    const TempHome home;
    for (const char* path : {"p/README.md", "p/main.js", "p/.git/config", "p/Podfile", "p/bun.lock",
                             "p/lib/src", "p/build.gradle"})
        home.file(path);
    EXPECT_EQ(ProjectScanner::lastActivity(home.path("p")), std::nullopt);
    EXPECT_EQ(ProjectScanner::lastActivity(home.path("missing")), std::nullopt);
}

TEST(ProjectScannerTest, EditBelowASourceFolderDoesNotChangeItsActivity) {
    const TempHome home;
    home.file("p/src/deep/main.js");
    home.setModified("p/src", Date(1'000s));
    EXPECT_EQ(ProjectScanner::lastActivity(home.path("p")), Date(1'000s));
}

TEST(ProjectScannerTest, ActivityBeforeTheEpochCounts) {
    const TempHome home;
    home.folder("p/src");
    home.setModified("p/src", Date(-86'400s));
    EXPECT_EQ(ProjectScanner::lastActivity(home.path("p")), Date(-86'400s));
}

TEST(ProjectScannerTest, LinkAmongTheMarkersCountsItself) {
    const TempHome home;
    home.file("elsewhere");
    home.setModified("elsewhere", Date(9'000'000s));
    home.link("p/src", "../elsewhere");
    home.setModified("p/src", Date(1'000s));
    EXPECT_EQ(ProjectScanner::lastActivity(home.path("p")), Date(1'000s));
}

// What is entered

/// Whether a project in this folder, below `p`, is found from the home.
bool isEntered(const std::string& folder, bool belowAProject) {
    const TempHome home;
    if (belowAProject)
        home.file("p/pubspec.yaml");
    home.file("p/" + folder + "/inner/package.json", "{}");
    const Texts paths = projectPaths(home, scan(home));
    return std::ranges::count(paths, "p/" + folder + "/inner") == 1;
}

TEST(ProjectScannerTest, FoldersOfToolsAreNeverEntered) {
    for (const char* name :
         {"node_modules", "Library", "Pods", "build", "DerivedData", "dist", "vendor", ".build",
          ".gradle", ".cxx", "Applications", "Carthage", "bower_components"})
        EXPECT_FALSE(isEntered(name, false)) << name;
    for (const char* name :
         {"Node_modules", "library", "pods", "Build", "deriveddata", "Dist", "Vendor",
          "applications", "carthage", "build2", "my build", "node_modules.old", "vendor-x"})
        EXPECT_TRUE(isEntered(name, false)) << name;
}

TEST(ProjectScannerTest, PackagesAreNeverEnteredWhateverTheCaseOfTheirEnding) {
    for (const std::string ending :
         {"app", "photoslibrary", "xcodeproj", "xcworkspace", "bundle", "framework", "xcarchive",
          "musiclibrary", "tvlibrary", "imovielibrary", "fcpbundle", "logicx", "band",
          "playground"}) {
        std::string upper = ending;
        std::ranges::transform(upper, upper.begin(), [](char c) { return c == 'a' ? 'A' : c; });
        upper[0] = static_cast<char>(upper[0] - ('a' <= upper[0] ? 'a' - 'A' : 0));
        EXPECT_FALSE(isEntered("x." + ending, false)) << ending;
        EXPECT_FALSE(isEntered("x." + upper, false)) << upper;
        EXPECT_FALSE(isEntered("x.y." + ending, false)) << ending;
        EXPECT_TRUE(isEntered(ending + "x", false)) << ending;
        EXPECT_TRUE(isEntered("x." + ending + "s", false)) << ending;
        EXPECT_TRUE(isEntered("x." + ending + ".old", false)) << ending;
    }
    for (const char* name : {"app", "bundle", "band", "framework", "playground"})
        EXPECT_TRUE(isEntered(name, false)) << name;
}

TEST(ProjectScannerTest, HiddenFoldersAreNotEntered) {
    for (const char* name : {".x", ".git", ".config", "..x", "..."})
        EXPECT_FALSE(isEntered(name, false)) << name;
    for (const char* name : {"x.", "x.y", "_x"})
        EXPECT_TRUE(isEntered(name, false)) << name;
}

TEST(ProjectScannerTest, SkippedFoldersOfARootAreNotEnteredEither) {
    const TempHome home;
    for (const char* name : {"node_modules", "Library", "x.app", ".hidden", "build"})
        home.file(std::string(name) + "/package.json", "{}");
    home.file("src/package.json", "{}");
    EXPECT_THAT(projectPaths(home, scan(home)), ElementsAre("src"));
}

TEST(ProjectScannerTest, SkippedFolderAsARootIsScanned) {
    const TempHome home;
    home.file("build/package.json", "{}");
    home.file(".hidden/p/package.json", "{}");
    EXPECT_THAT(projectPaths(home, scan({home.path("build"), home.path(".hidden")})),
                ElementsAre("build", ".hidden/p"));
}

constexpr const char* platforms[] = {"android", "ios", "macos", "windows", "linux", "web"};

TEST(ProjectScannerTest, PlatformFoldersAreNotEnteredDirectlyBelowAProject) {
    for (const char* name : platforms) {
        EXPECT_FALSE(isEntered(name, true)) << name;
        EXPECT_TRUE(isEntered(name, false)) << name;
        EXPECT_TRUE(isEntered(std::string("packages/") + name, true)) << name;
    }
    for (const char* name : {"Android", "iOS", "ios2", "src"})
        EXPECT_TRUE(isEntered(name, true)) << name;
}

TEST(ProjectScannerTest, PlatformFoldersOfARootAreEnteredAlthoughItIsAProject) {
    const TempHome home;
    home.file("package.json", "{}");
    makeAndroidProject(home, "android");
    for (const char* name : {"ios", "macos", "windows", "linux", "web"})
        home.file(std::string(name) + "/Podfile");
    EXPECT_THAT(projectPaths(home, scan(home)),
                UnorderedElementsAre(".", "android", "ios", "macos", "windows", "linux", "web"));

    const TempHome deeper;
    deeper.file("shop/package.json", "{}");
    makeAndroidProject(deeper, "shop/android");
    EXPECT_THAT(projectPaths(deeper, scan(deeper)), ElementsAre("shop"));
    EXPECT_THAT(projectPaths(deeper, scan({deeper.path("shop")})),
                UnorderedElementsAre("shop", "shop/android"));
}

TEST(ProjectScannerTest, PackagesOfAProjectAreProjectsOfTheirOwn) {
    const TempHome home;
    for (const char* path :
         {"mono/package.json", "mono/packages/a/package.json", "mono/packages/b/package.json",
          "mono/packages/b/example/package.json"})
        home.file(path, "{}");
    const auto result = scan(home);
    Texts names;
    for (const Project& project : result.projects)
        names.push_back(project.name);
    EXPECT_THAT(names, ElementsAre("a", "b", "b/example", "mono"));
}

TEST(ProjectScannerTest, XcodeProjectIsNotEnteredButMakesItsFolderAProject) {
    const TempHome home;
    home.file("shop/Shop.xcodeproj/inner/package.json", "{}");
    const auto result = scan(home);
    ASSERT_THAT(projectPaths(home, result), ElementsAre("shop"));
    EXPECT_EQ(result.projects[0].kind, Kind::ios);
}

TEST(ProjectScannerTest, FolderAtTheGreatestDepthIsReadAndThoseBelowAreNot) {
    const TempHome home;
    home.file("1/2/3/4/5/6/package.json", "{}");
    home.file("1/2/3/4/5/6/7/package.json", "{}");
    home.allocatedFile("1/2/3/4/5/6/large", 2 * block);
    home.allocatedFile("1/2/3/4/5/6/7/large", 2 * block);
    const auto result = scan(home, 2 * block);
    EXPECT_THAT(projectPaths(home, result), ElementsAre("1/2/3/4/5/6"));
    EXPECT_THAT(largeFilePaths(home, result), ElementsAre("1/2/3/4/5/6/large"));

    const auto shallow = ProjectScanner{{home.path("1/2/3")}, 2, 2 * block}.scan(CancelToken());
    EXPECT_THAT(projectPaths(home, shallow), IsEmpty());
}

TEST(ProjectScannerTest, RootsThatOverlapYieldAProjectTwice) {
    const TempHome home;
    home.file("work/shop/package.json", "{}");
    home.allocatedFile("work/large", 2 * block);
    const auto result = scan({home.url(), home.path("work")}, 2 * block);
    EXPECT_THAT(projectPaths(home, result), ElementsAre("work/shop", "work/shop"));
    EXPECT_THAT(largeFilePaths(home, result), ElementsAre("work/large", "work/large"));
    const auto twice = scan({home.path("work"), home.path("work")}, 2 * block);
    EXPECT_THAT(projectPaths(home, twice), ElementsAre("work/shop", "work/shop"));
}

TEST(ProjectScannerTest, RootsThatAreNoReadableFoldersYieldNothing) {
    const TempHome home;
    home.file("file", "{}");
    home.link("nowhere", "missing");
    home.file("p/package.json", "{}");
    const auto result = scan({home.path("missing"), home.path("file"), home.path("nowhere"), URL(),
                              home.path("file/below"), home.path("p")},
                             1);
    EXPECT_THAT(projectPaths(home, result), ElementsAre("p"));
    EXPECT_EQ(result.largeFiles.size(), 1U); // the manifest
    EXPECT_THAT(scan(std::vector<URL>{}).projects, IsEmpty());
}

// Links

TEST(ProjectScannerTest, LinksAreNeverFollowedOrCounted) {
    const TempHome home;
    const TempHome outside;
    outside.file("shop/package.json", "{}");
    const URL large = outside.allocatedFile("large", 4 * block);
    home.link("shop", outside.path("shop").path());
    home.link("all", outside.url().path());
    home.link("large", large.path());
    home.link("root", "/");
    home.file("p/pubspec.yaml");
    home.link("p/inner", outside.path("shop").path());
    const auto result = scan(home, 4 * block);
    EXPECT_THAT(projectPaths(home, result), ElementsAre("p"));
    EXPECT_THAT(largeFilePaths(home, result), IsEmpty());
}

TEST(ProjectScannerTest, LinksInCirclesAreHarmless) {
    const TempHome home;
    home.file("a/package.json", "{}");
    home.link("a/up", "..");
    home.link("a/self", ".");
    home.link("a/own", "own");
    home.link("a/b", "../c/d");
    home.link("c/d", "../a/b");
    EXPECT_THAT(projectPaths(home, scan(home)), ElementsAre("a"));
}

// Large files

TEST(ProjectScannerTest, FileIsLargeFromTheThresholdOn) {
    const TempHome home;
    home.allocatedFile("exactly", 10 * block);
    home.allocatedFile("one-block-less", 9 * block);
    home.allocatedFile("one-block-more", 11 * block);
    const Date then(1'600'000'000s + 123'456us);
    home.setModified("exactly", then);
    const auto result = scan(home, 10 * block);
    ASSERT_THAT(largeFilePaths(home, result), ElementsAre("one-block-more", "exactly"));
    EXPECT_EQ(result.largeFiles[1],
              (LargeFile{.url = home.path("exactly"), .sizeBytes = 10 * block, .modified = then}));
    EXPECT_THAT(largeFilePaths(home, scan(home, 10 * block + 1)), ElementsAre("one-block-more"));
}

TEST(ProjectScannerTest, SizeIsWhatAFileTakesOnDisk) {
    const TempHome home;
    const URL sparse = home.file("sparse");
    ASSERT_EQ(truncate(sparse.path().c_str(), 5'000'000'000), 0);
    const URL partly = home.allocatedFile("partly", 5 * block);
    ASSERT_EQ(truncate(partly.path().c_str(), 100 * block), 0);
    home.allocatedFile("full", 20 * block);
    const auto result = scan(home, 5 * block);
    ASSERT_THAT(largeFilePaths(home, result), ElementsAre("full", "partly"));
    EXPECT_EQ(result.largeFiles[1].sizeBytes, 5 * block);
    EXPECT_THAT(largeFilePaths(home, scan(home, 5 * block + 1)), ElementsAre("full"));
}

TEST(ProjectScannerTest, LargeFilesAreFoundWhereverTheWalkComes) {
    const TempHome home;
    for (const char* path :
         {"a/.hidden-large", ".large", "a/b/large", "p/large", "p/android/large", "a/build",
          "a/large.app", "a/line\nbreak", "a/node_modules/large", "Library/large", ".config/large",
          "a/x.framework/large", "a/.git/objects/pack"})
        home.allocatedFile(path, 4 * block);
    home.file("p/pubspec.yaml");
    EXPECT_THAT(largeFilePaths(home, scan(home, 4 * block)),
                UnorderedElementsAre("a/.hidden-large", ".large", "a/b/large", "p/large", "a/build",
                                     "a/large.app", "a/line\nbreak"));
}

TEST(ProjectScannerTest, FoldersAreNoLargeFiles) {
    const TempHome home;
    home.file("folder/file");
    home.file(".hidden/file");
    home.file("node_modules/file");
    EXPECT_THAT(largeFilePaths(home, scan(home, 1)), IsEmpty()); // empty files take no block
}

TEST(ProjectScannerTest, LargestFileComesFirstAndEachNameOfAFileCounts) {
    const TempHome home;
    home.allocatedFile("small", 5 * block);
    home.allocatedFile("a/largest", 20 * block);
    home.allocatedFile("b/c/middle", 10 * block);
    home.hardLink("d/again", "b/c/middle");
    const auto result = scan(home, 5 * block);
    const Texts paths = largeFilePaths(home, result);
    ASSERT_EQ(paths.size(), 4U);
    EXPECT_EQ(paths.front(), "a/largest");
    EXPECT_EQ(paths.back(), "small");
    EXPECT_THAT(paths, UnorderedElementsAre("small", "a/largest", "b/c/middle", "d/again"));
}

// Order

TEST(ProjectScannerTest, ProjectsStandInTheOrderOfPeople) {
    const TempHome home;
    for (const std::string name : {"app10", "App2", "app9", "zebra", "Älg", "beta"})
        home.file(name + "/package.json", "{}");
    const auto result = scan(home);
    EXPECT_THAT(projectPaths(home, result),
                ElementsAre("Älg", "App2", "app9", "app10", "beta", "zebra"));
}

TEST(ProjectScannerTest, TwoScansGiveTheSame) {
    const TempHome home;
    for (int i = 0; i < 40; ++i) {
        home.file(fmt::format("group{}/app/package.json", i), "{}");
        home.file(fmt::format("group{}/same/package.json", i), R"({"engines": {"node": "20"}})");
        home.allocatedFile(fmt::format("group{}/large", i), 2 * block);
    }
    const auto first = scan(home, 2 * block);
    EXPECT_EQ(first.projects.size(), 80U);
    EXPECT_EQ(first.largeFiles.size(), 40U);
    for (int i = 0; i < 5; ++i) {
        const auto again = scan(home, 2 * block);
        EXPECT_EQ(again.projects, first.projects);
        EXPECT_EQ(again.largeFiles, first.largeFiles);
    }
}

TEST(ProjectScannerTest, ChangesNothing) {
    const TempHome home;
    home.file("shop/package.json", fixture("react-native.package.json"));
    home.file(std::string("shop/android/") + wrapper, fixture("gradle-wrapper.properties"));
    home.file("shop/android/app/.cxx/Debug/build.ninja", fixture("build.ninja"));
    home.file("shop/.nvmrc", "20");
    home.snapshot(); // reads for the first time, which a file's access time shows
    const std::string before = home.snapshot();
    EXPECT_EQ(scan(home).projects.size(), 1U);
    EXPECT_EQ(home.snapshot(), before);
}

// Cancellation

TEST(ProjectScannerTest, CancelledScanStillReturnsWhatTheRootsHold) {
    const TempHome home;
    home.file("package.json", R"({"engines": {"node": "20"}})");
    home.allocatedFile("large", 2 * block);
    home.file("inner/package.json", "{}");
    CancelSource source;
    source.cancel();
    const auto result = ProjectScanner{{home.url()}, usualDepth, 2 * block}.scan(source.token());
    ASSERT_THAT(projectPaths(home, result), ElementsAre("."));
    EXPECT_EQ(result.projects[0].requirements.size(), 1U);
    EXPECT_THAT(largeFilePaths(home, result), ElementsAre("large"));
}

TEST(ProjectScannerTest, CancellationOnTheWayReturnsWhatWasFoundSoFarInOrder) {
    const TempHome home(TempHome::Place::memory);
    constexpr int groups = 60;
    constexpr int perGroup = 60;
    for (int group = 0; group < groups; ++group)
        for (int i = 0; i < perGroup; ++i)
            home.file(fmt::format("all/g{}/p{}/package.json", group, i),
                      R"({"engines": {"node": "20"}})");
    const auto whole = scan(home).projects;
    ASSERT_EQ(whole.size(), static_cast<std::size_t>(groups * perGroup));

    bool someInBetween = false;
    for (auto delay = 500us; !someInBetween && delay < 2s; delay = delay * 5 / 4) {
        CancelSource source;
        std::thread canceller([&] {
            std::this_thread::sleep_for(delay);
            source.cancel();
        });
        const auto part =
            ProjectScanner{{home.url()}, usualDepth, usualThreshold}.scan(source.token()).projects;
        canceller.join();
        // By name, and of one name by the order of the walk, as in the whole.
        auto from = whole.begin();
        for (const Project& project : part) {
            from = std::find(from, whole.end(), project);
            ASSERT_NE(from, whole.end()) << project.url.path();
        }
        someInBetween = !part.empty() && part.size() < whole.size();
    }
    EXPECT_TRUE(someInBetween);
}

// A disk that is not as one would like it

TEST(ProjectScannerTest, FoldersThatComeAndGoDuringTheWalkAreHarmless) {
    const TempHome home(TempHome::Place::memory);
    for (int i = 0; i < 20; ++i)
        home.file(fmt::format("stays{}/package.json", i), "{}");
    std::atomic<bool> done = false;
    std::atomic<int> rounds = 0;
    std::thread busy([&] {
        namespace fs = std::filesystem;
        while (!done) {
            for (int i = 0; i < 30; ++i) {
                const std::string folder = home.path(fmt::format("goes{}", i)).path();
                std::error_code ignored;
                fs::create_directories(folder + "/a/b", ignored);
                std::ofstream(folder + "/a/package.json") << "{}";
                std::ofstream(folder + "/a/b/Podfile") << "x";
            }
            for (int i = 0; i < 30; ++i) {
                std::error_code ignored;
                fs::remove_all(home.path(fmt::format("goes{}", i)).path(), ignored);
            }
            ++rounds;
        }
    });
    int scans = 0;
    for (const auto start = std::chrono::steady_clock::now();
         scans < 20 || (rounds < 20 && std::chrono::steady_clock::now() - start < 20s); ++scans) {
        const auto result = scan(home, 1);
        const auto stays = std::ranges::count_if(result.projects, [](const Project& project) {
            return project.name.starts_with("stays");
        });
        EXPECT_EQ(stays, 20);
    }
    done = true;
    busy.join();
    EXPECT_GE(rounds, 20);
}

TEST(ProjectScannerTest, UnreadableFolderIsALeafAndUnreadableEntriesAreNamesAlone) {
    const TempHome home;
    home.setMode("", 0755);
    home.file("closed/package.json", "{}");
    home.file("closed-manifest/package.json", "{}");
    home.file("closed-manifest/Podfile");
    home.file("listed-only/Podfile");
    home.allocatedFile("listed-only/large", block);
    home.file("listed-only/inner/package.json", "{}");
    home.file("open/package.json", "{}");
    home.setMode("closed", 0);
    home.setMode("closed-manifest/package.json", 0);
    home.setMode("listed-only", 0744);
    const std::string found = asOrdinaryUser([&] {
        std::string text;
        const auto result = scan(home, 2);
        for (const Project& project : result.projects)
            text += fmt::format("{}: {}\n", relative(home, project.url), rawValue(project.kind));
        for (const LargeFile& file : result.largeFiles)
            text += relative(home, file.url) + "\n";
        return text;
    });
    EXPECT_EQ(found, "closed-manifest: iOS\nlisted-only: iOS\nopen: Node\n"
                     "closed-manifest/package.json\nopen/package.json\n");
}

TEST(ProjectScannerTest, NamesThatAreNotUTF8Survive) {
    const TempHome home;
    home.file("caf\xE9/package.json", "{}");
    home.file("caf\xE9/\xFF/Podfile");
    home.file("caf\xE9/a\nb/Podfile");
    home.allocatedFile("caf\xE9/\xC3\x28", block);
    const auto result = scan(home, block);
    EXPECT_THAT(projectPaths(home, result),
                UnorderedElementsAre("caf\xE9", "caf\xE9/\xFF", "caf\xE9/a\nb"));
    EXPECT_THAT(largeFilePaths(home, result), testing::Contains("caf\xE9/\xC3\x28"));
}

TEST(ProjectScannerTest, PipesAreNotWaitedFor) {
    const TempHome home;
    home.folder("p/android/gradle/wrapper");
    home.folder("p/android/app/.cxx");
    home.file("p/Podfile");
    for (const char* path : {"p/package.json", "p/.nvmrc", "p/.node-version",
                             "p/android/build.gradle", "p/android/app/.cxx/build.ninja"})
        ASSERT_EQ(mkfifo(home.path(path).path().c_str(), 0600), 0) << path;
    ASSERT_EQ(mkfifo(home.path(std::string("p/android/") + wrapper).path().c_str(), 0600), 0);
    const auto result = scan(home, 1);
    ASSERT_THAT(projectPaths(home, result), ElementsAre("p"));
    EXPECT_EQ(result.projects[0].kind, Kind::ios);
    EXPECT_THAT(result.projects[0].requirements, IsEmpty());
    EXPECT_THAT(result.largeFiles, IsEmpty());

    home.file("f/pubspec.yaml"); // a project with an Android folder whose files are pipes
    home.folder("f/android/gradle/wrapper");
    ASSERT_EQ(mkfifo(home.path(std::string("f/android/") + wrapper).path().c_str(), 0600), 0);
    EXPECT_THAT(projectPaths(home, scan(home)), ElementsAre("f", "p"));
}

TEST(ProjectScannerTest, FolderOfManyEntriesIsReadInOneGo) {
    const TempHome home(TempHome::Place::memory);
    home.file("many/package.json", "{}");
    home.file("many/zzz/Podfile");
    const int folder = open(home.path("many").path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < 200'000; ++i)
        close(openat(folder, fmt::format("f{}", i).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    close(folder);
    const auto start = std::chrono::steady_clock::now();
    const auto result = scan(home, 1);
    EXPECT_THAT(projectPaths(home, result), ElementsAre("many", "many/zzz"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, test::underSanitizer ? 120s : 20s);
}

TEST(ProjectScannerTest, FoldersBesideEachOtherBeyondTheWidthOfTheWalkAreAllFound) {
    const TempHome home(TempHome::Place::memory);
    for (int i = 0; i < 500; ++i)
        home.file(fmt::format("p{}/package.json", i), "{}");
    const auto result = scan(home);
    ASSERT_EQ(result.projects.size(), 500U);
    for (std::size_t i = 0; i < 500; ++i)
        EXPECT_EQ(result.projects[i].name, fmt::format("p{}", i));
}

} // namespace
} // namespace tidewright
