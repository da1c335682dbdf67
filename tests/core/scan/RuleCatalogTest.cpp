#include "core/scan/RuleCatalog.h"

#include "core/support/Text.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>
#include <thread>

namespace tidewright::test {

namespace {

using namespace std::chrono_literals;
using enum Category;

struct Entry {
    std::string_view id;
    std::string_view name;
    Category category;
};

constexpr Entry catalog[] = {
    {"android.systemImage", "SystemImagesRule", android},
    {"android.ndk", "NDKRule", android},
    {"android.buildTools", "BuildToolsRule", android},
    {"android.cmake", "CMakeRule", android},
    {"android.avdSnapshots", "AVDSnapshotsRule", android},
    {"android.avd", "AVDRule", android},
    {"gradle.versionCache", "GradleVersionCacheRule", android},
    {"gradle.wrapperDist", "GradleWrapperDistRule", android},
    {"gradle.daemonLogs", "GradleDaemonLogsRule", android},
    {"androidStudio.leftovers", "AndroidStudioLeftoversRule", android},
    {"ide.heapDumps", "HeapDumpRule", android},
    {"xcode.derivedData", "DerivedDataRule", xcode},
    {"xcode.deviceSupport", "DeviceSupportRule", xcode},
    {"xcode.archives", "XcodeArchivesRule", xcode},
    {"ios.runtime", "SimulatorRuntimeRule", xcode},
    {"ios.simulatorData", "SimulatorDeviceRule", xcode},
    {"ios.unavailableSimulators", "UnavailableSimulatorsRule", xcode},
    {"xcode.caches", "XcodeCachesRule", xcode},
    {"ios.podCaches", "CocoaPodsRule", xcode},
    {"xcode.extraInstalls", "ExtraXcodeRule", xcode},
    {"js.npm", "NPMRule", javascript},
    {"js.yarn", "YarnRule", javascript},
    {"js.pnpm", "PNPMRule", javascript},
    {"js.bun", "BunRule", javascript},
    {"js.expo", "ExpoRule", javascript},
    {"js.nodeGyp", "NodeGypRule", javascript},
    {"js.bundlerTemp", "BundlerTempRule", javascript},
    {"js.dotslash", "DotslashRule", javascript},
    {"js.nodeVersions", "NodeVersionsRule", javascript},
    {"system.homebrew", "HomebrewRule", Category::system},
    {"system.vscode", "VSCodeRule", Category::system},
    {"system.browserCaches", "BrowserCacheRule", Category::system},
    {"system.logs", "LogsRule", Category::system},
    {"system.appCaches", "AppCachesRule", Category::system},
    {"system.trash", "TrashRule", Category::system},
    {"system.oldDownloads", "OldDownloadsRule", Category::system},
    {"system.docker", "DockerRule", Category::system},
    {"system.localSnapshots", "TimeMachineSnapshotsRule", Category::system},
    {"project.buildOutputs", "ProjectBuildOutputsRule", projects},
    {"project.nodeModules", "DormantNodeModulesRule", projects},
};

TEST(RuleCatalogTest, HoldsFortyRulesInTheirOrder) {
    const auto& rules = RuleCatalog::all();
    ASSERT_EQ(rules.size(), 40U);
    ASSERT_EQ(std::size(catalog), 40U);
    for (std::size_t i = 0; i < rules.size(); ++i) {
        EXPECT_EQ(rules[i].id, catalog[i].id) << i;
        EXPECT_EQ(rules[i].name, catalog[i].name) << i;
        EXPECT_EQ(rules[i].category, catalog[i].category) << i;
    }
}

TEST(RuleCatalogTest, IdsAndNamesAreUnique) {
    std::set<std::string> ids;
    std::set<std::string> names;
    for (const CleanupRule& rule : RuleCatalog::all()) {
        EXPECT_TRUE(ids.insert(rule.id).second) << rule.id;
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
    }
}

TEST(RuleCatalogTest, IdsAreAFamilyADotAndALowerCamelName) {
    const std::set<std::string> families{"android", "gradle", "androidStudio", "ide",    "xcode",
                                         "ios",     "js",     "system",        "project"};
    for (const CleanupRule& rule : RuleCatalog::all()) {
        const std::size_t dot = rule.id.find('.');
        ASSERT_NE(dot, std::string::npos) << rule.id;
        EXPECT_TRUE(families.contains(rule.id.substr(0, dot))) << rule.id;
        const std::string name = rule.id.substr(dot + 1);
        EXPECT_TRUE(!name.empty() && std::islower(static_cast<unsigned char>(name[0]))) << rule.id;
        EXPECT_TRUE(std::ranges::all_of(name, [](unsigned char c) { return std::isalpha(c); }))
            << rule.id;
    }
}

TEST(RuleCatalogTest, IsMadeOnce) { EXPECT_EQ(&RuleCatalog::all(), &RuleCatalog::all()); }

/// A context that knows no tools and no applications but those of this home.
ScanContext contextOf(const TempHome& home) {
    ScanContext context;
    context.home = home.url();
    context.temporaryDirectory = home.path("tmp");
    context.android.avdHome = home.path(".android/avd");
    context.settings.oldDownloadDays = 30;
    context.now = currentDate();
    return context;
}

TEST(RuleCatalogTest, AnEmptyHomeHasNothingToFind) {
    const TempHome home;
    for (const CleanupRule& rule : RuleCatalog::all())
        EXPECT_TRUE(rule.scan(contextOf(home)).empty()) << rule.id;
}

/// A home in which every rule of the system family finds all that it can.
class RichHome {
public:
    RichHome() {
        for (const char* folder :
             {"Homebrew", "com.microsoft.VSCode.ShipIt", "Google/Chrome", "BraveSoftware",
              "Firefox", "org.example.Sketcher", "org.example.Sketcher.ShipIt",
              "org.example.Painter", "org.example.Gone.ShipIt"})
            home.file(fmt::format("Library/Caches/{}/data", folder), "data");
        home.file("Library/Application Support/Code/logs/main.log", "log");
        home.file("Library/Logs/app.log", "log");
        home.file("Library/Containers/com.docker.docker/Data/Docker.raw", "disk");
        home.file(".Trash/a\nb", "rubbish");
        home.file("Downloads/image.dmg", "image");
        home.tool(".volta/bin/tmutil", "echo com.apple.TimeMachine.2026-02-28-093000.local");
        install("Sketcher");
        install("Painter");
        context = contextOf(home);
        context.runner.locator = ToolLocator(home.url(), {});
        context.now = currentDate() + 24h * 40; // so that what is made now is old
        context.inUse.runningBundleIdentifiers = {"com.brave.Browser", "com.microsoft.VSCode",
                                                  "org.example.Painter"};
    }

    TempHome home;
    ScanContext context;

private:
    void install(std::string_view name) const {
        home.file(fmt::format("Applications/{}.app/Contents/Info.plist", name),
                  fmt::format("<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
                              "<string>org.example.{}</string></dict></plist>",
                              name));
    }
};

TEST(RuleCatalogTest, ItemsBearTheirRulesCategoryAndId) {
    const RichHome rich;
    for (const CleanupRule& rule : RuleCatalog::all())
        for (const ScanItem& item : rule.scan(rich.context)) {
            EXPECT_EQ(item.ruleID, rule.id) << item.id;
            EXPECT_EQ(item.category, rule.category) << item.id;
            EXPECT_TRUE(item.id.starts_with(rule.id + ":")) << item.id;
            EXPECT_GT(item.id.size(), rule.id.size() + 1) << item.id;
        }
}

void expectSentence(const std::string& text, const ScanItem& item) {
    EXPECT_TRUE(text.ends_with(".")) << item.id << ": " << text;
    EXPECT_FALSE(contains(text, "  ") || text.starts_with(" ")) << item.id << ": " << text;
    EXPECT_FALSE(contains(text, "..") || contains(text, " .")) << item.id << ": " << text;
}

TEST(RuleCatalogTest, EverySystemRuleFindsItemsAndSpeaksInSentences) {
    const RichHome rich;
    for (const CleanupRule& rule : RuleCatalog::all()) {
        const auto items = rule.scan(rich.context);
        EXPECT_TRUE(!items.empty() || rule.category != Category::system) << rule.id;
        for (const ScanItem& item : items) {
            EXPECT_FALSE(item.group.empty() || item.title.empty()) << item.id;
            for (const std::string* sentence : {&item.reason, &item.whatItIs, &item.afterEffect})
                expectSentence(*sentence, item);
            if (const auto* manual = std::get_if<CleanMethod::Manual>(&item.method.choice))
                expectSentence(manual->text, item);
        }
    }
}

TEST(RuleCatalogTest, ScanningChangesNothingAndFindsTheSameAgain) {
    const RichHome rich;
    // File systems note a read in the access time once after a change, and not within its tick.
    std::this_thread::sleep_for(50ms);
    rich.home.snapshot();
    for (const CleanupRule& rule : RuleCatalog::all()) {
        const std::string before = rich.home.snapshot();
        const auto items = rule.scan(rich.context);
        EXPECT_EQ(rich.home.snapshot(), before) << rule.id;
        EXPECT_TRUE(rule.scan(rich.context) == items) << rule.id;
    }
}

} // namespace

} // namespace tidewright::test
