#include "core/rules/JavaScript.h"

#include "tests/support/RuleTesting.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <unicode/locid.h>

namespace tidewright::test {

namespace {

/// What each item of these rules has unless told otherwise.
ScanItem item(std::string ruleID, std::vector<URL> urls) {
    return usualItem(Category::javascript, std::move(ruleID), std::move(urls));
}

/// Sentences list names in the user's language.
class English {
public:
    English() { set(icu::Locale::getUS()); }
    ~English() { set(m_usual); }
    English(const English&) = delete;
    English& operator=(const English&) = delete;

private:
    static void set(const icu::Locale& locale) {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(locale, status);
        EXPECT_TRUE(U_SUCCESS(status));
    }
    icu::Locale m_usual = icu::Locale::getDefault();
};

class JavaScriptTest : public RuleTest {
protected:
    English english;
};

// What is left alone

class JavaScriptLeavesAlone : public testing::TestWithParam<LeftAlone> {};

TEST_P(JavaScriptLeavesAlone, ThisHome) {
    const TempHome home;
    make(home, GetParam());
    expectItems(GetParam().scan(contextOf(home)), {});
}

const LeftAlone leftAlone[] = {
    {.name = "TheSettingsAndLogsOfNPM",
     .scan = scanWith<NPMRule>,
     .files = {".npmrc", ".npm/_logs/a.log", ".npm/_cacache2/a", ".npm/_cacache.bak/a",
               ".npm/npx/a", ".npm/_update-notifier-last-checked", "_npx/a",
               "Library/Caches/npm/a"},
     .links = {{".npm/_npx", "gone"}}},
    {.name = "AFileInPlaceOfTheFolderOfNPM", .scan = scanWith<NPMRule>, .files = {".npm"}},
    {.name = "WhatYarnInstalledAndIsSetTo",
     .scan = scanWith<YarnRule>,
     .files = {".yarnrc.yml", ".yarn/bin/yarn", ".yarn/berry/index/a", ".yarn/berry/cache2/a",
               ".yarn/cache/a", ".yarn/global/a", "Library/Caches/Yarn Berry/a", "Library/Yarn/a"},
     .links = {{"Library/Caches/Yarn", "gone"}}},
    {.name = "AFileInPlaceOfTheFolderOfYarn", .scan = scanWith<YarnRule>, .files = {".yarn/berry"}},
    {.name = "TheProgramsOfPNPM",
     .scan = scanWith<PNPMRule>,
     .files = {"Library/pnpm/pnpm", "Library/pnpm/global/5/a", "Library/pnpm/store2/a",
               ".local/share/pnpm/store/a", ".pnpm/store/a", "Library/Caches/pnpm/a"},
     .links = {{".pnpm-store", "gone"}}},
    {.name = "AFileInPlaceOfTheFolderOfPNPM",
     .scan = scanWith<PNPMRule>,
     .files = {"Library/pnpm"}},
    {.name = "TheProgramsOfBun",
     .scan = scanWith<BunRule>,
     .files = {".bun/bin/bun", ".bun/install/global/a", ".bun/install/cache2/a", ".bun/cache/a",
               ".bunfig.toml"},
     .links = {{".bun/install/cache", "gone"}}},
    {.name = "OnlyTheLoginOfExpo", .scan = scanWith<ExpoRule>, .files = {".expo/state.json"}},
    {.name = "TheLoginAndSettingsOfExpo",
     .scan = scanWith<ExpoRule>,
     .files = {".expo/state.json", ".expo/settings.json", ".expo/codesigning/a",
               ".expo/versions-cache/a", ".expo/expo-go2/a", ".expo/schema-cache/a", "expo-go/a",
               "work/app/.expo/expo-go/a"},
     .links = {{".expo/expo-go", "gone"}}},
    {.name = "AFileInPlaceOfTheFolderOfExpo", .scan = scanWith<ExpoRule>, .files = {".expo"}},
    {.name = "TheLookAlikesOfNodeGyp",
     .scan = scanWith<NodeGypRule>,
     .files = {"Library/Caches/node-gyp2/a", "Library/Caches/node/a", "Library/node-gyp/a",
               ".node-gyp/a"},
     .links = {{"Library/Caches/node-gyp", "gone"}}},
    {.name = "TheLookAlikesOfDotslash",
     .scan = scanWith<DotslashRule>,
     .files = {"Library/Caches/dotslash2/a", "Library/dotslash/a", ".dotslash/a"},
     .links = {{"Library/Caches/dotslash", "gone"}}},
    {.name = "TheLookAlikesOfPackagerCaches",
     .scan = scanWith<BundlerTempRule>,
     .files = {"tmp/react-dom-x", "tmp/react-", "tmp/react-nativ", "tmp/reactnative-cache",
               "tmp/native-react-a", "tmp/my-react-native-a", "tmp/React-native-a",
               "tmp/react-Native-a", "tmp/xreact-native-packager-cache-a"}},
    {.name = "TheLookAlikesOfMetroAndHasteCaches",
     .scan = scanWith<BundlerTempRule>,
     .files = {"tmp/metro", "tmp/metro_cache", "tmp/Metro-cache", "tmp/xmetro-cache",
               "tmp/.metro-cache", "tmp/ metro-cache", "tmp/haste-map", "tmp/Haste-map-a",
               "tmp/haste_map-a", "tmp/inner/metro-cache", "metro-cache", "haste-map-a"}},
    {.name = "AnEmptyTemporaryFolder", .scan = scanWith<BundlerTempRule>, .folders = {"tmp"}},
    {.name = "AFileInPlaceOfTheTemporaryFolder",
     .scan = scanWith<BundlerTempRule>,
     .files = {"tmp"}},
    {.name = "TheLoneNodeOfEachManager",
     .scan = scanWith<NodeVersionsRule>,
     .folders = {".nvm/versions/node/v20.11.0", ".local/share/fnm/node-versions/v18.19.0"}},
    {.name = "ALoneNodeBesideOtherEntries",
     .scan = scanWith<NodeVersionsRule>,
     .folders = {".nvm/versions/node/v20.11.0", ".nvm/versions/node/.v18.19.0",
                 ".nvm/versions/node/20.10.0", ".nvm/versions/node/V16.0.0",
                 ".nvm/versions/node/system", ".nvm/versions/node/.cache"}},
    {.name = "NodeOfOtherManagers",
     .scan = scanWith<NodeVersionsRule>,
     .folders = {".nvm/versions/io.js/v2.0.0", ".nvm/versions/io.js/v3.0.0", ".nvm/v0.10.1",
                 ".nvm/v0.12.2", ".volta/tools/image/node/v20.0.0",
                 ".volta/tools/image/node/v18.0.0", ".fnm/node-versions/v18.0.0",
                 ".fnm/node-versions/v20.0.0"}},
    {.name = "AFileInPlaceOfTheVersions",
     .scan = scanWith<NodeVersionsRule>,
     .files = {".nvm/versions/node", ".local/share/fnm/node-versions"}},
};

INSTANTIATE_TEST_SUITE_P(All,
                         JavaScriptLeavesAlone,
                         testing::ValuesIn(leftAlone),
                         [](const auto& each) { return each.param.name; });

constexpr std::vector<ScanItem> (*allRules[])(const ScanContext&) = {
    scanWith<NPMRule>,         scanWith<YarnRule>,     scanWith<PNPMRule>,
    scanWith<BunRule>,         scanWith<ExpoRule>,     scanWith<NodeGypRule>,
    scanWith<BundlerTempRule>, scanWith<DotslashRule>, scanWith<NodeVersionsRule>,
};

std::size_t countOfAll(const ScanContext& context) {
    std::size_t count = 0;
    for (const auto& scan : allRules)
        count += scan(context).size();
    return count;
}

TEST_F(JavaScriptTest, AnEmptyHomeHasNothing) { EXPECT_EQ(countOfAll(context), 0U); }

/// One of everything that these rules look for.
void fill(const TempHome& home) {
    for (const char* path :
         {".npm/_cacache", ".npm/_npx", ".yarn/berry/cache", "Library/Caches/Yarn",
          "Library/pnpm/store", ".pnpm-store", ".bun/install/cache", ".expo/expo-go",
          "Library/Caches/node-gyp", "tmp/metro-cache", "Library/Caches/dotslash",
          ".nvm/versions/node/v20.11.0", ".nvm/versions/node/v18.19.0",
          ".local/share/fnm/node-versions/v20.11.0", ".local/share/fnm/node-versions/v18.19.0"})
        home.folder(path);
    home.link(".local/share/fnm/aliases/default", "../node-versions/v18.19.0");
}
constexpr std::size_t countOfFill = 15;

TEST_F(JavaScriptTest, NoToolIsRunAndNothingIsChanged) {
    fill(home);
    expectOnlyReads({"npm", "npx", "yarn", "pnpm", "bun", "node", "fnm"},
                    [this] { EXPECT_EQ(countOfAll(context), countOfFill); });
}

TEST_F(JavaScriptTest, WhatMayNotBeListedGivesNothing) {
    fill(home);
    home.setMode("", 0755);
    const auto count = [this] { return std::to_string(countOfAll(context)); };
    EXPECT_EQ(count(), std::to_string(countOfFill));
    for (const char* folder : {".npm", ".yarn", "Library", ".pnpm-store", ".bun", ".expo", "tmp",
                               ".nvm/versions/node", ".local/share/fnm/node-versions"})
        home.setMode(folder, 0);
    EXPECT_EQ(asOrdinaryUser(count), "1"); // .pnpm-store itself can be seen
}

// Caches of the package managers

class CachesTest : public JavaScriptTest {
protected:
    ScanItem npmCache() const {
        ScanItem expected = item("js.npm", at({".npm/_cacache"}));
        expected.group = "npm";
        expected.title = "npm download cache";
        expected.reason = "Download cache; packages are fetched again when needed.";
        expected.whatItIs = "Every package tarball npm has ever downloaded.";
        expected.afterEffect = "The next `npm install` downloads packages again.";
        expected.method =
            CleanMethod::command({"npm", {"cache", "clean", "--force"}, std::nullopt, true});
        return expected;
    }
    ScanItem npxInstalls() const {
        ScanItem expected = item("js.npm", at({".npm/_npx"}));
        expected.group = "npm";
        expected.title = "npx installs";
        expected.reason = "Packages installed by one-off `npx` runs.";
        expected.whatItIs = "Tools that `npx` downloaded, such as CLIs and MCP servers.";
        expected.afterEffect = "Each tool is downloaded again the next time it runs with npx.";
        return expected;
    }
    ScanItem pnpmStore(std::string_view path) const {
        ScanItem expected = item("js.pnpm", at({path}));
        expected.group = "pnpm";
        expected.title = "pnpm store";
        expected.reason = "`pnpm store prune` removes only packages no project links to.";
        expected.whatItIs = "pnpm's content-addressable package store.";
        expected.afterEffect =
            "Unreferenced packages download again if a project needs them later.";
        expected.method = CleanMethod::command({"pnpm", {"store", "prune"}, std::nullopt, false});
        return expected;
    }
    ScanItem dotslash() const {
        ScanItem expected = item("js.dotslash", at({"Library/Caches/dotslash"}));
        expected.group = "React Native DevTools";
        expected.title = "dotslash cache";
        expected.reason = "Download cache.";
        expected.whatItIs = "Tools fetched by dotslash, including the React Native DevTools app. "
                            "It's stored read-only, which Tidewright handles.";
        expected.afterEffect = "React Native DevTools downloads again the first time you open it.";
        return expected;
    }
};

TEST_F(CachesTest, DownloadsAndOneOffInstallsOfNPM) {
    home.folder(".npm/_npx");
    home.folder(".npm/_cacache");
    run({"/usr/bin/node /Users/ada/.npm/_npx", "/bin/zsh -c npx", "vim ~/.npm/_cacache/index"});
    expectItems(scan<NPMRule>(), {npmCache(), npxInstalls()});
}

TEST_F(CachesTest, EachFolderOfNPMCountsByItself) {
    home.folder(".npm/_npx");
    expectItems(scan<NPMRule>(), {npxInstalls()});
    home.folder("elsewhere");
    home.link(".npm/_cacache", "../elsewhere");
    expectItems(scan<NPMRule>(), {npmCache(), npxInstalls()});
}

TEST_F(CachesTest, AToolThatRunsFromNpxKeepsTheInstallsOnly) {
    home.folder(".npm/_npx");
    home.folder(".npm/_cacache");
    run({"/sbin/launchd",
         "node /Users/ada/.npm/_npx/0a1b2c/node_modules/@scope/server/dist/index.js --stdio",
         "node /Users/ada/.npm/_npx/3d4e5f/node_modules/.bin/other"});
    expectItems(
        scan<NPMRule>(),
        {npmCache(), kept(npxInstalls(), "@scope/server (via npx) is running from here right now.",
                          "@scope/server (via npx)")});
    run({"/opt/tools/watcher /Users/ada/.npm/_npx/"});
    expectItems(
        scan<NPMRule>(),
        {npmCache(), kept(npxInstalls(), "watcher is running from here right now.", "watcher")});
}

TEST_F(CachesTest, BothCachesOfYarn) {
    ScanItem berry = item("js.yarn", at({".yarn/berry/cache"}));
    berry.group = "Yarn";
    berry.title = "Yarn global cache";
    berry.reason = "Download cache.";
    berry.whatItIs = "Yarn 2+ (Berry) package archives.";
    berry.afterEffect = "The next `yarn install` in each project downloads packages again.";
    ScanItem classic = item("js.yarn", at({"Library/Caches/Yarn"}));
    classic.group = "Yarn";
    classic.title = "Yarn 1 cache";
    classic.reason = "Download cache.";
    classic.whatItIs = "Yarn Classic package cache.";
    classic.afterEffect = "The next `yarn install` in each project downloads packages again.";
    home.folder("Library/Caches/Yarn");
    expectItems(scan<YarnRule>(), {classic});
    home.folder(".yarn/berry/cache");
    expectItems(scan<YarnRule>(), {berry, classic});
}

TEST_F(CachesTest, BothStoresOfPNPMArePrunedAndNeverRemoved) {
    home.folder(".pnpm-store");
    expectItems(scan<PNPMRule>(), {pnpmStore(".pnpm-store")});
    home.folder("Library/pnpm/store/v3");
    run({"node /Users/ada/Library/pnpm/store/v3/tool"});
    expectItems(scan<PNPMRule>(), {pnpmStore("Library/pnpm/store"), pnpmStore(".pnpm-store")});
}

TEST_F(CachesTest, TheCacheOfBun) {
    home.folder(".bun/install/cache");
    ScanItem expected = item("js.bun", at({".bun/install/cache"}));
    expected.group = "Bun";
    expected.title = "Bun install cache";
    expected.reason = "Download cache.";
    expected.whatItIs = "Packages downloaded by `bun install`.";
    expected.afterEffect = "The next `bun install` downloads packages again.";
    expectItems(scan<BunRule>(), {expected});
}

TEST_F(CachesTest, TheHeadersOfNodeGyp) {
    home.folder("Library/Caches/node-gyp");
    ScanItem expected = item("js.nodeGyp", at({"Library/Caches/node-gyp"}));
    expected.group = "Native addons";
    expected.title = "node-gyp headers";
    expected.reason = "Node headers, downloaded again on demand.";
    expected.whatItIs = "Node.js header files used to compile native addons.";
    expected.afterEffect = "Downloaded again the next time a native addon is built.";
    expectItems(scan<NodeGypRule>(), {expected});
}

TEST_F(CachesTest, ToolsOfDotslashUnlessOneRuns) {
    home.folder("Library/Caches/dotslash");
    run({"/usr/local/bin/dotslash ./tool", "/Users/ada/Caches/dotslash2/tool",
         "/Users/ada/Library/caches/dotslash/tool"});
    expectItems(scan<DotslashRule>(), {dotslash()});
    run({"/bin/zsh", "/Users/ada/Library/Caches/dotslash/1f/a0/DevTools --no-sandbox"});
    expectItems(scan<DotslashRule>(),
                {kept(dotslash(), "DevTools is running from here.", "DevTools")});
}

// Expo

class ExpoTest : public JavaScriptTest {
protected:
    void project(const char* name, bool usesExpo) {
        Project project;
        project.url = URL(fmt::format("/Users/ada/{}", name));
        project.name = name;
        project.kind = Project::Kind::expo;
        project.usesExpo = usesExpo;
        context.projects.push_back(project);
    }
    static ScanItem expected(std::vector<URL> urls) {
        ScanItem expected = item("js.expo", std::move(urls));
        expected.group = "Expo";
        expected.title = "Expo CLI caches";
        expected.reason = "No project on this Mac uses Expo. Your Expo login is kept.";
        expected.whatItIs = "Cached Expo Go builds and simulator apps.";
        expected.afterEffect =
            "Expo downloads Expo Go again the next time you open a project in it.";
        return expected;
    }
};

TEST_F(ExpoTest, AllCachesAreOneItemInTheirOrder) {
    for (const char* name : {"native-modules-cache", "ios-simulator-app-cache", "android-apk-cache",
                             "expo-go", "codesigning"})
        home.folder(fmt::format(".expo/{}", name));
    home.file(".expo/state.json");
    project("Shop", false);
    expectItems(scan<ExpoRule>(),
                {expected(at({".expo/expo-go", ".expo/android-apk-cache",
                              ".expo/ios-simulator-app-cache", ".expo/native-modules-cache"}))});
}

TEST_F(ExpoTest, OneCacheIsEnough) {
    home.folder(".expo/native-modules-cache");
    home.link(".expo/expo-go", "gone");
    expectItems(scan<ExpoRule>(), {expected(at({".expo/native-modules-cache"}))});
}

TEST_F(ExpoTest, WhereProjectsUseExpoTheUserIsAsked) {
    home.folder(".expo/expo-go");
    ScanItem asked = expected(at({".expo/expo-go"}));
    asked.decision = Decision::ask;
    project("Zebra", true);
    project("Shop", false);
    asked.reason = "Used by Zebra; clean only if space is tight. Your Expo login is kept.";
    expectItems(scan<ExpoRule>(), {asked});
    project("Atlas", true);
    asked.reason =
        "Used by Zebra and Atlas; clean only if space is tight. Your Expo login is kept.";
    expectItems(scan<ExpoRule>(), {asked});
    for (const char* name : {"C", "D", "E", "F"})
        project(name, true);
    asked.reason = "Used by Zebra, Atlas and 4 more; clean only if space is tight. Your Expo "
                   "login is kept.";
    expectItems(scan<ExpoRule>(), {asked});
}

// Metro

class BundlerTempTest : public JavaScriptTest {
protected:
    static ScanItem expected(std::vector<URL> urls) {
        ScanItem expected = item("js.bundlerTemp", std::move(urls));
        expected.group = "Metro";
        expected.title = "Metro and Haste caches";
        expected.reason = "Bundler cache, rebuilt on the next start.";
        expected.whatItIs = "Transformed JavaScript cached by Metro between runs.";
        expected.afterEffect = "The next Metro start takes longer while it re-transforms files.";
        expected.owner = AppMatcher{"Metro bundler",
                                    {},
                                    {"react-native start", "@react-native/community-cli-plugin",
                                     "metro/src", "expo start"}};
        return expected;
    }
};

TEST_F(BundlerTempTest, FoldersAndFilesAreOneItem) {
    for (const char* name : {"react-native-packager-cache-abc", "metro-cache", "react-dom-x",
                             "react-native-foo", "react-x-native", "reactive", "other"})
        home.folder(fmt::format("tmp/{}", name));
    for (const char* name : {"haste-map-1", "metro-", "react-native", "react-xnativex", "x-metro-"})
        home.file(fmt::format("tmp/{}", name));
    home.link("tmp/metro-link", "gone");
    expectItems(scan<BundlerTempRule>(),
                {expected(at({"tmp/haste-map-1", "tmp/metro-", "tmp/metro-cache", "tmp/metro-link",
                              "tmp/react-native", "tmp/react-native-foo",
                              "tmp/react-native-packager-cache-abc", "tmp/react-x-native",
                              "tmp/react-xnativex"}))});
}

TEST_F(BundlerTempTest, OnlyTheTemporaryFolderOfTheContextCounts) {
    home.folder("tmp/metro-cache");
    context.temporaryDirectory = home.folder("other tmp");
    expectItems(scan<BundlerTempRule>(), {});
    home.folder("other tmp/metro-cache");
    expectItems(scan<BundlerTempRule>(), {expected(at({"other tmp/metro-cache"}))});
}

TEST_F(BundlerTempTest, WhileMetroRunsTheyAreKept) {
    home.folder("tmp/metro-cache");
    const ScanItem free = expected(at({"tmp/metro-cache"}));
    for (const char* line : {"node /w/node_modules/.bin/react-native start --port 8081",
                             "node /w/node_modules/@react-native/community-cli-plugin/a.js",
                             "node /w/node_modules/metro/src/cli.js", "node expo start"}) {
        run({"/sbin/launchd", line});
        expectItems(scan<BundlerTempRule>(), {kept(free, "Metro is running.", std::nullopt)});
    }
    run({"node react-native run-ios", "vim metro.config.js", "node expo export", "metrosrc"});
    expectItems(scan<BundlerTempRule>(), {free});
}

// Node versions

struct Admission {
    const char* requirement;
    std::vector<const char*> admitted;
    std::vector<const char*> refused;
};

const Admission admissions[] = {
    {"20", {"20.0.0", "20.11.0", "20"}, {"2.0.0", "200.1.0", "18.20.0", "", "v20.0.0"}},
    {"2", {"2.5.0"}, {"20.11.0"}},
    {"20.11", {"20.11.0", "20.11"}, {"20.12.0", "20.110.0", "20"}},
    {"20.11.0", {"20.11.0", "20.11.0.1"}, {"20.11.01", "20.11"}},
    {"20.", {}, {"20.11.0"}},
    {"20.x", {}, {"20.11.0"}},
    // Signs at both ends
    {"v18", {"18.19.0"}, {"20.0.0"}},
    {"v18.19.0", {"18.19.0"}, {"18.19.1"}},
    {"= v18", {"18.19.0"}, {}},
    {"=18.19.0", {"18.19.0"}, {}},
    {"18v~ ", {"18.19.0"}, {}},
    {"V18", {}, {"18.19.0"}},
    {"\t18", {}, {"18.19.0"}},
    {"^18.0.0", {"18.0.0"}, {"18.19.0", "20.0.0"}},
    {"~18.19", {"18.19.5"}, {"18.20.0"}},
    {"~18.19.0", {"18.19.0"}, {"18.19.5"}},
    // From a major number on
    {">=18", {"18.0.0", "22.1.0", "100.0.0", "18"}, {"17.9.1", "9.0.0", "system", "", "r19.0"}},
    {">18", {"18.0.0", "19.0.0"}, {"17.9.1"}},
    {" >= 18.17.1 ", {"18.0.0", "20.0.0"}, {"17.99.0"}},
    {"^>=18", {"20.0.0"}, {"17.0.0"}},
    {"=>18", {"20.0.0"}, {"17.0.0"}},
    {">>18", {"20.0.0"}, {"17.0.0"}},
    {">=18.x", {"20.0.0"}, {"17.0.0"}},
    {">=18.0.0 <21", {"18.0.0", "22.0.0"}, {"17.0.0"}}, // only what stands before the first "."
    {">=18 <21", {}, {"18.0.0", "20.0.0", "22.0.0"}},
    {">=18||>=20", {}, {"20.0.0"}},
    {">=v18", {}, {"20.0.0"}},
    {">=", {}, {"20.0.0"}},
    {">=.5", {}, {"20.0.0"}},
    {">=1e1", {}, {"20.0.0"}},
    {">=0x1", {}, {"20.0.0"}},
    {">=99999999999999999999", {}, {"20.0.0"}},
    // Nothing else is understood
    {"<20", {}, {"18.0.0"}},
    {"<=20", {}, {"20", "18.0.0"}},
    {"18 || 20", {}, {"18.0.0", "20.0.0"}},
    {"18 - 20", {}, {"18.0.0"}},
    {"*", {}, {"20.0.0"}},
    {"lts/iron", {}, {"20.0.0"}},
    {"node", {}, {"20.0.0"}},
    {"", {}, {"20.0.0"}},
    {" ^~=v", {}, {"20.0.0"}},
};

TEST(NodeRequirementTest, AdmitsVersions) {
    for (const Admission& each : admissions) {
        SCOPED_TRACE(each.requirement);
        for (const char* version : each.admitted)
            EXPECT_TRUE(admitsNodeVersion(each.requirement, version)) << version;
        for (const char* version : each.refused)
            EXPECT_FALSE(admitsNodeVersion(each.requirement, version)) << version;
    }
}

constexpr const char* fnmFolder = ".local/share/fnm/node-versions";
constexpr const char* nvmFolder = ".nvm/versions/node";
constexpr const char* fnmAlias = ".local/share/fnm/aliases/default";

class NodeVersionsTest : public JavaScriptTest {
protected:
    void install(const char* folder, std::initializer_list<const char*> names) const {
        for (const char* name : names)
            home.folder(fmt::format("{}/{}/installation/bin", folder, name));
    }
    void need(const std::string& version, const std::string& project) {
        context.needed.add(RequirementKind::node, version, project);
    }
    ScanItem node(const std::string& manager,
                  const std::string& version,
                  Decision decision,
                  std::string reason) const {
        const char* folder = manager == "fnm" ? fnmFolder : nvmFolder;
        ScanItem expected =
            item("js.nodeVersions", {context.path(fmt::format("{}/v{}", folder, version))});
        expected.group = "Node versions (" + manager + ")";
        expected.title = "Node";
        expected.version = version;
        expected.risk = Risk::low;
        expected.decision = decision;
        expected.reason = std::move(reason);
        expected.whatItIs = "A Node.js installation managed by " + manager + ".";
        expected.afterEffect =
            "Install it again with `" + manager + " install " + version + "` if you need it.";
        return expected;
    }
    ScanItem newest(const std::string& manager, const std::string& version) const {
        return node(manager, version, Decision::keep, "Newest installed version.");
    }
    ScanItem isDefault(const std::string& version) const {
        return node("fnm", version, Decision::keep, "Your default fnm version.");
    }
    ScanItem unneeded(const std::string& manager, const std::string& version) const {
        return node(manager, version, Decision::clean,
                    "No project's .nvmrc or engines field needs Node " + version + ".");
    }
};

TEST_F(NodeVersionsTest, BothManagersNewestVersionFirst) {
    install(nvmFolder, {"v9.5.0", "v20.11.0", "v20.9.0"});
    install(fnmFolder, {"v18.2.0", "v18.10.0"});
    expectItems(scan<NodeVersionsRule>(),
                {newest("fnm", "18.10.0"), unneeded("fnm", "18.2.0"), newest("nvm", "20.11.0"),
                 unneeded("nvm", "20.9.0"), unneeded("nvm", "9.5.0")});
}

TEST_F(NodeVersionsTest, ManagersDoNotCountForEachOther) {
    install(fnmFolder, {"v18.2.0"});
    install(nvmFolder, {"v20.11.0", "v18.19.0", "20.0.0", ".v16.0.0"});
    expectItems(scan<NodeVersionsRule>(), {newest("nvm", "20.11.0"), unneeded("nvm", "18.19.0")});
}

TEST_F(NodeVersionsTest, WhatAProjectNamesIsKept) {
    install(nvmFolder, {"v20.11.0", "v18.19.0", "v16.20.0"});
    need("v18", "Shop");
    context.needed.add(RequirementKind::gradle, "16", "Atlas");
    expectItems(scan<NodeVersionsRule>(),
                {newest("nvm", "20.11.0"),
                 node("nvm", "18.19.0", Decision::keep, "Matches \"v18\" required by Shop."),
                 unneeded("nvm", "16.20.0")});
}

TEST_F(NodeVersionsTest, ARangeComesBeforeTheNewest) {
    install(nvmFolder, {"v22.1.0", "v20.11.0", "v18.19.0"});
    need(">=20", "Shop");
    const std::string reason = "Matches \">=20\" required by Shop.";
    expectItems(scan<NodeVersionsRule>(),
                {node("nvm", "22.1.0", Decision::keep, reason),
                 node("nvm", "20.11.0", Decision::keep, reason), unneeded("nvm", "18.19.0")});
}

TEST_F(NodeVersionsTest, AllEntriesAndTheirOwnersAreNamed) {
    install(nvmFolder, {"v20.11.0", "v18.19.0"});
    need("20", "Shop");
    need("20", "Atlas");
    expectItems(
        {scan<NodeVersionsRule>().front()},
        {node("nvm", "20.11.0", Decision::keep, "Matches \"20\" required by Atlas and Shop.")});
    need("v20.11.0", "Shop");
    need("lts/iron", "Zebra");
    expectItems({scan<NodeVersionsRule>().front()},
                {node("nvm", "20.11.0", Decision::keep,
                      "Matches \"20\", \"v20.11.0\" required by Atlas, Shop, and Shop.")});
    need("=20", "Bear");
    need("=20", "Cat");
    EXPECT_EQ(scan<NodeVersionsRule>().front().reason,
              "Matches \"=20\", \"20\", \"v20.11.0\" required by Bear, Cat and 3 more.");
}

TEST_F(NodeVersionsTest, WhatNoProjectUnderstandablyNamesIsUnneeded) {
    install(nvmFolder, {"v20.11.0", "v18.19.0"});
    for (const char* version : {">=16 <19", "lts/hydrogen", "^18.0.0", "18.1", "<20"})
        need(version, "Shop");
    expectItems(scan<NodeVersionsRule>(), {newest("nvm", "20.11.0"), unneeded("nvm", "18.19.0")});
}

struct Default {
    const char* name;
    const char* target; ///< of the alias; in a relative one, from its folder
    bool isAbsolute = false;
    bool isKept = true;
};

const Default defaults[] = {
    {"TheVersion", "../node-versions/v18.19.0"},
    {"InTheVersion", "../node-versions/v18.19.0/installation"},
    {"Absolute", ".local/share/fnm/node-versions/v18.19.0/installation", true},
    {"ThroughAnotherLink", "lts-hydrogen"},
    {"InTheVersionLeadingNowhere", "../node-versions/v18.19.0/gone/further"},
    {"ThroughDots", "../aliases/../node-versions/./v18.19.0"},
    {"AnotherVersion", "../node-versions/v16.20.0/installation", false, false},
    {"TheFolderOfAllVersions", "../node-versions", false, false},
    {"OneThatIsGone", "../node-versions/v17.0.0/installation", false, false},
    {"AnotherManagers", ".nvm/versions/node/v18.19.0", true, false},
    {"Itself", "default", false, false},
    {"Elsewhere", "/", false, false},
};

TEST_F(NodeVersionsTest, TheDefaultIsKeptWhereverItsAliasLeadsThrough) {
    install(fnmFolder, {"v20.11.0", "v18.19.0", "v18.1.0"});
    home.link(".local/share/fnm/aliases/lts-hydrogen", "../node-versions/v18.19.0/installation");
    for (const Default& each : defaults) {
        SCOPED_TRACE(each.name);
        home.link(fnmAlias, each.isAbsolute ? home.path(each.target).path() : each.target);
        expectItems(scan<NodeVersionsRule>(),
                    {newest("fnm", "20.11.0"),
                     each.isKept ? isDefault("18.19.0") : unneeded("fnm", "18.19.0"),
                     unneeded("fnm", "18.1.0")});
        EXPECT_EQ(std::remove(home.path(fnmAlias).path().c_str()), 0);
    }
}

TEST_F(NodeVersionsTest, TheDefaultIsFoundInAHomeThatIsALink) {
    install(fnmFolder, {"v20.11.0", "v18.19.0"});
    home.link(fnmAlias, home.path(".local/share/fnm/node-versions/v18.19.0").path());
    context.home = home.link("linked home", ".");
    expectItems(scan<NodeVersionsRule>(), {newest("fnm", "20.11.0"), isDefault("18.19.0")});
}

TEST_F(NodeVersionsTest, TheOrderOfReasons) {
    install(fnmFolder, {"v20.11.0", "v18.19.0"});
    run({home.path(".local/share/fnm/node-versions/v20.11.0/installation/bin/node").path()});
    expectItems(scan<NodeVersionsRule>(), {newest("fnm", "20.11.0"), unneeded("fnm", "18.19.0")});
    home.link(fnmAlias, "../node-versions/v20.11.0");
    expectItems(scan<NodeVersionsRule>(), {isDefault("20.11.0"), unneeded("fnm", "18.19.0")});
    need("20", "Shop");
    expectItems(scan<NodeVersionsRule>(),
                {node("fnm", "20.11.0", Decision::keep, "Matches \"20\" required by Shop."),
                 unneeded("fnm", "18.19.0")});
}

TEST_F(NodeVersionsTest, OnlyOneManagerHasADefault) {
    install(nvmFolder, {"v20.11.0", "v18.19.0"});
    for (const char* alias : {".nvm/alias/default", ".nvm/aliases/default", fnmAlias})
        home.link(alias, home.path(".nvm/versions/node/v18.19.0").path());
    expectItems(scan<NodeVersionsRule>(), {newest("nvm", "20.11.0"), unneeded("nvm", "18.19.0")});
}

TEST_F(NodeVersionsTest, AVersionThatRunsIsKeptWithoutANameOfItsUser) {
    install(nvmFolder, {"v20.11.0", "v18.19.0", "v16.20.0"});
    run({"/usr/bin/node server.js", "/elsewhere/.nvm/versions/node/v16.20.0/bin/node",
         home.path(".nvm/versions/node/v18.19.0/bin/node").path() + " server.js"});
    expectItems(scan<NodeVersionsRule>(),
                {newest("nvm", "20.11.0"),
                 node("nvm", "18.19.0", Decision::keep, "node is running on it."),
                 unneeded("nvm", "16.20.0")});
}

} // namespace

} // namespace tidewright::test
