#include "core/insights/InsightEngine.h"

#include "core/scan/RuleCatalog.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>

namespace tidewright {

// What a failed expectation shows.
static void PrintTo(const Insight& insight, std::ostream* stream) {
    *stream << fmt::format("{}, {}, {}: {} / {} / {} / {}", insight.id, rawValue(insight.severity),
                           insight.symbolName, insight.title, insight.message,
                           insight.estimatedGain, insight.actionTitle.value_or("no action"));
}

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Action = Insight::Action;
using Destination = Insight::Destination;
using Severity = Insight::Severity;
using Texts = std::vector<std::string>;

const Date now(1'780'000'000s); // in a May, far from any change of the clock
constexpr int unusedDays = 20;
constexpr Int64 critical = 10 * gigabyte;
constexpr Int64 low = 25 * gigabyte;
constexpr Int64 largeTrash = 5 * gigabyte;
constexpr Int64 plenty = 500 * gigabyte;

ScanItem itemOf(const std::string& ruleID,
                const std::string& key,
                Int64 bytes,
                Decision decision = Decision::clean,
                Category category = Category::system) {
    ScanItem item = ScanItem::make({.ruleID = ruleID,
                                    .title = key,
                                    .sizeSource = SizeSource::known(bytes),
                                    .category = category});
    item.decision = decision;
    return item;
}

AppUsage appUsed(int daysAgo, Int64 bytes) {
    AppUsage app;
    app.lastUsed = now - daysAgo * 24h;
    app.sizeBytes = bytes;
    return app;
}

LargeFile fileOf(Int64 bytes) {
    LargeFile file;
    file.sizeBytes = bytes;
    return file;
}

Texts cataloguedRules() {
    Texts ids;
    for (const CleanupRule& rule : RuleCatalog::all())
        ids.push_back(rule.id);
    return ids;
}

/// What the engine is given: a machine with nothing to say about.
struct Machine {
    ScanSettings settings{.dormantProjectDays = 60,
                          .unusedAppDays = unusedDays,
                          .oldDownloadDays = 30,
                          .lowSpaceThreshold = low,
                          .criticalSpaceThreshold = critical,
                          .largeTrashThreshold = largeTrash,
                          .projectRoots = {},
                          .exclusions = {}};
    Int64 available = plenty;
    std::vector<ScanItem> items = {};
    std::vector<AppUsage> apps = {};
    std::vector<LargeFile> largeFiles = {};

    std::vector<Insight> insights() const {
        return InsightEngine{settings}.insights({2 * plenty, available}, items, apps, largeFiles,
                                                now);
    }
    std::optional<Insight> insight(const std::string& id) const {
        const std::vector<Insight> all = insights();
        const auto found = std::ranges::find(all, id, &Insight::id);
        return found == all.end() ? std::nullopt : std::optional(*found);
    }
    bool says(const std::string& id) const { return insight(id).has_value(); }
    Texts ids() const {
        Texts ids;
        for (const Insight& insight : insights())
            ids.push_back(insight.id);
        return ids;
    }
};

TEST(InsightEngine, WithNothingToSayAllIsWell) {
    EXPECT_THAT(Machine().insights(),
                ElementsAre(Insight{.id = "healthy",
                                    .severity = Severity::tip,
                                    .symbolName = "checkmark.seal.fill",
                                    .title = "Your Mac is in good shape",
                                    .message = "500 GB free. Nothing urgent to clean.",
                                    .estimatedGain = 0,
                                    .actionTitle = std::nullopt,
                                    .action = Action::none()}));
}

TEST(InsightEngine, AllIsWellWithMoreToFree) {
    Machine machine;
    machine.items = {itemOf("a", "1", 1'500'000'000), itemOf("b", "2", gigabyte),
                     itemOf("c", "3", gigabyte, Decision::ask),
                     itemOf("d", "4", gigabyte, Decision::keep),
                     itemOf("e", "5", gigabyte, Decision::info)};
    const auto healthy = machine.insight("healthy");
    ASSERT_TRUE(healthy);
    EXPECT_EQ(healthy->message, "500 GB free. 2.5 GB more can still be freed safely.");
    EXPECT_EQ(healthy->estimatedGain, 2'500'000'000);
}

TEST(InsightEngine, SpaceIsCriticalOrLowBelowItsThreshold) {
    struct Case {
        Int64 available;
        const char* id;
    };
    const Case cases[] = {
        {0, "space.critical"},   {critical - 1, "space.critical"},
        {critical, "space.low"}, {low - 1, "space.low"},
        {low, "healthy"},        {plenty, "healthy"},
    };
    for (const Case& each : cases) {
        Machine machine;
        machine.available = each.available;
        EXPECT_THAT(machine.ids(), ElementsAre(each.id)) << each.available;
    }
}

TEST(InsightEngine, SpaceIsCriticalFirstWhereBothThresholdsAreTheSame) {
    Machine machine;
    machine.settings.criticalSpaceThreshold = machine.settings.lowSpaceThreshold = critical;
    machine.available = critical - 1;
    EXPECT_THAT(machine.ids(), ElementsAre("space.critical"));
    machine.available = critical;
    EXPECT_THAT(machine.ids(), ElementsAre("healthy"));
}

TEST(InsightEngine, CriticalSpaceNamesWhatCanBeFreed) {
    Machine machine;
    machine.available = 9'870'000'000;
    machine.items = {itemOf("a", "1", 1'200'000'000), itemOf("b", "2", gigabyte, Decision::ask),
                     itemOf("c", "3", 34'000'000)};
    EXPECT_THAT(machine.insights(),
                ElementsAre(Insight{
                    .id = "space.critical",
                    .severity = Severity::critical,
                    .symbolName = "exclamationmark.octagon.fill",
                    .title = "Your disk is almost full",
                    .message = "Only 9.87 GB left. Builds, simulators and macOS updates fail below "
                               "this. 1.23 GB can be freed without touching your projects.",
                    .estimatedGain = 1'234'000'000,
                    .actionTitle = "Review safe cleanup",
                    .action = Action::review({"a:1", "c:3"})}));
}

TEST(InsightEngine, LowSpaceNamesWhatCanBeFreed) {
    Machine machine;
    machine.available = 24'100'000'000;
    machine.items = {itemOf("a", "1", 1'200'000'000), itemOf("c", "3", 34'000'000)};
    EXPECT_THAT(
        machine.insights(),
        ElementsAre(Insight{.id = "space.low",
                            .severity = Severity::warning,
                            .symbolName = "externaldrive.badge.exclamationmark",
                            .title = "Free space is getting low",
                            .message = "24.1 GB free. A native React Native build needs several GB "
                                       "of scratch space. 1.23 GB can be freed safely.",
                            .estimatedGain = 1'234'000'000,
                            .actionTitle = "Review safe cleanup",
                            .action = Action::review({"a:1", "c:3"})}));
}

TEST(InsightEngine, LittleSpaceIsSaidAlsoWithNothingToFree) {
    Machine machine;
    machine.items = {itemOf("a", "1", gigabyte, Decision::keep)};
    machine.available = 0;
    ASSERT_TRUE(machine.says("space.critical"));
    EXPECT_EQ(machine.insight("space.critical")->message,
              "Only Zero KB left. Builds, simulators and macOS updates fail below this. Zero KB "
              "can be freed without touching your projects.");
    EXPECT_EQ(machine.insight("space.critical")->action, Action::review({}));
    machine.available = 20 * gigabyte;
    ASSERT_TRUE(machine.says("space.low"));
    EXPECT_EQ(machine.insight("space.low")->message,
              "20 GB free. A native React Native build needs several GB of scratch space. Zero KB "
              "can be freed safely.");
    EXPECT_EQ(machine.insight("space.low")->action, Action::review({}));
}

TEST(InsightEngine, TrashIsLargeByItsShareOfTheFreeSpaceOrByItsThreshold) {
    struct Case {
        const char* name;
        Int64 trash;
        Int64 available;
        std::optional<Severity> expected;
    };
    const Case cases[] = {
        {"small", gigabyte, plenty, std::nullopt},
        {"just below the threshold", largeTrash - 1, plenty, std::nullopt},
        {"at the threshold", largeTrash, plenty, Severity::notice},
        {"a fifth of the free space", 4 * gigabyte, 20 * gigabyte, std::nullopt},
        {"more than a fifth", 4 * gigabyte + 1, 20 * gigabyte, Severity::warning},
        {"at the threshold and a fifth", largeTrash, 25 * gigabyte, Severity::notice},
        {"above both", largeTrash + 1, 25 * gigabyte, Severity::warning},
        {"above the threshold and below a fifth", 6 * gigabyte, plenty, Severity::notice},
        {"one byte of one", 1, 1, Severity::warning},
        {"nothing of one", 0, 1, std::nullopt},
        {"no space left", largeTrash - 1, 0, std::nullopt},
        {"no space left, at the threshold", largeTrash, 0, Severity::notice},
    };
    for (const Case& each : cases) {
        Machine machine;
        machine.available = each.available;
        machine.items = {itemOf("system.trash", "T", each.trash, Decision::ask)};
        const auto insight = machine.insight("trash.large");
        EXPECT_EQ(insight ? std::optional(insight->severity) : std::nullopt, each.expected)
            << each.name;
    }
}

TEST(InsightEngine, LargeTrashCanBeEmptied) {
    Machine machine;
    machine.items = {itemOf("system.logs", "L", 50 * gigabyte, Decision::keep),
                     itemOf("system.trash", "T", 7 * gigabyte, Decision::keep),
                     itemOf("system.trash", "second", 300 * gigabyte)};
    EXPECT_EQ(machine.insight("trash.large"),
              (Insight{.id = "trash.large",
                       .severity = Severity::notice,
                       .symbolName = "trash.fill",
                       .title = "Your Trash is holding 7 GB",
                       .message = "Deleted files keep using space until the Trash is emptied. Look "
                                  "through it first if you're not sure what's in there.",
                       .estimatedGain = 7 * gigabyte,
                       .actionTitle = "Empty Trash…",
                       .action = Action::review({"system.trash:T"})}));
}

TEST(InsightEngine, WithoutATrashNothingIsSaidOfIt) {
    Machine machine;
    machine.settings.largeTrashThreshold = 0;
    machine.items = {itemOf("system.trashes", "T", 300 * gigabyte)};
    EXPECT_FALSE(machine.says("trash.large"));
}

/// Items that are worth a sentence together: of which rules and decisions, from which total.
struct Group {
    Insight insight; ///< for two items, of which one takes 3 bytes, that reach the limit
    Int64 limit;
    std::vector<std::string> ruleIDs; ///< empty: those of a category
    std::vector<Decision> decisions;
    Category category = Category::system;
};

void PrintTo(const Group& group, std::ostream* stream) { *stream << group.insight.id; }

const std::vector<Decision> all{Decision::clean, Decision::ask, Decision::keep, Decision::info};

const Group groups[] = {
    {.insight = {.id = "downloads.old",
                 .severity = Severity::notice,
                 .symbolName = "arrow.down.circle",
                 .title = "Old installers in Downloads (500 MB)",
                 .message = "2 disk images, packages and archives older than 30 days. They go to "
                            "the Trash, so you can put them back.",
                 .estimatedGain = 500'000'000,
                 .actionTitle = "Review downloads",
                 .action = Action::review({"1", "2"})},
     .limit = 500'000'000,
     .ruleIDs = {"system.oldDownloads"},
     .decisions = all},
    {.insight = {.id = "android.toolchains",
                 .severity = Severity::notice,
                 .symbolName = "square.stack.3d.up.slash",
                 .title = "Unused Android toolchains (500 MB)",
                 .message = "2 SDK packages and Gradle versions that none of your projects or "
                            "emulators reference.",
                 .estimatedGain = 500'000'000,
                 .actionTitle = "Review toolchains",
                 .action = Action::review({"1", "2"})},
     .limit = 500'000'000,
     .ruleIDs = {"android.systemImage", "android.ndk", "android.buildTools", "android.cmake",
                 "gradle.versionCache", "gradle.wrapperDist"},
     .decisions = {Decision::clean}},
    {.insight = {.id = "ide.leftovers",
                 .severity = Severity::tip,
                 .symbolName = "clock.arrow.circlepath",
                 .title = "Leftovers from old IDE versions (300 MB)",
                 .message = "Caches, settings and device symbols from Android Studio and Xcode "
                            "versions you've already upgraded from.",
                 .estimatedGain = 300'000'000,
                 .actionTitle = "Review leftovers",
                 .action = Action::review({"1", "2"})},
     .limit = 300'000'000,
     .ruleIDs = {"androidStudio.leftovers", "xcode.deviceSupport", "ide.heapDumps"},
     .decisions = {Decision::clean}},
    {.insight = {.id = "js.caches",
                 .severity = Severity::tip,
                 .symbolName = "shippingbox",
                 .title = "Package manager caches (1 GB)",
                 .message = "npm, Yarn, Bun and Metro caches. Everything downloads again on the "
                            "next install.",
                 .estimatedGain = 1'000'000'000,
                 .actionTitle = "Review caches",
                 .action = Action::review({"1", "2"})},
     .limit = 1'000'000'000,
     .ruleIDs = {},
     .decisions = {Decision::clean},
     .category = Category::javascript},
    {.insight = {.id = "xcode.derivedData",
                 .severity = Severity::tip,
                 .symbolName = "hammer",
                 .title = "Xcode DerivedData is 5 GB",
                 .message = "Build products for 2 Xcode projects. They rebuild on the next build.",
                 .estimatedGain = 5'000'000'000,
                 .actionTitle = "Review DerivedData",
                 .action = Action::review({"1", "2"})},
     .limit = 5'000'000'000,
     .ruleIDs = {"xcode.derivedData"},
     .decisions = {Decision::clean}},
    {.insight = {.id = "ios.runtimes",
                 .severity = Severity::tip,
                 .symbolName = "iphone.gen3",
                 .title = "Simulator runtimes nothing uses (1 GB)",
                 .message = "2 runtimes that no project script or booted simulator needs.",
                 .estimatedGain = 1'000'000'000,
                 .actionTitle = "Review runtimes",
                 .action = Action::review({"1", "2"})},
     .limit = 1'000'000'000,
     .ruleIDs = {"ios.runtime"},
     .decisions = {Decision::ask}},
    {.insight = {.id = "projects.dormant",
                 .severity = Severity::tip,
                 .symbolName = "moon.zzz",
                 .title = "Dormant projects hold 1 GB",
                 .message = "2 projects haven't changed in 60+ days. Their node_modules can be "
                            "reinstalled later. Projects are only cleaned if you pick them.",
                 .estimatedGain = 1'000'000'000,
                 .actionTitle = "Show projects",
                 .action = Action::open(Destination::projects)},
     .limit = 1'000'000'000,
     .ruleIDs = {"project.nodeModules"},
     .decisions = {Decision::ask}},
};

class InsightEngineGroup : public testing::TestWithParam<Group> {
protected:
    Machine m_machine;

    const std::string& id() const { return GetParam().insight.id; }

    /// Of the first rule and the last one, so that both ends of a list are counted.
    std::string firstRule() const {
        return GetParam().ruleIDs.empty() ? "any.rule" : GetParam().ruleIDs.front();
    }
    std::string lastRule() const {
        return GetParam().ruleIDs.empty() ? "other.rule" : GetParam().ruleIDs.back();
    }
    void add(const std::string& ruleID, const std::string& itemID, Int64 bytes, Decision decision) {
        m_machine.items.push_back(itemOf(ruleID, itemID, bytes, decision, GetParam().category));
        m_machine.items.back().id = itemID;
    }
    bool counts(Decision decision) const {
        return std::ranges::find(GetParam().decisions, decision) != GetParam().decisions.end();
    }
};

TEST_P(InsightEngineGroup, FiresAtItsLimitAndNamesItsItemsInTheirOrder) {
    const Decision decision = GetParam().decisions.front();
    add("other", "no", 100 * gigabyte, Decision::keep);
    add(lastRule(), "1", 3, decision);
    add("other", "no", 100 * gigabyte, Decision::info);
    add(firstRule(), "2", GetParam().limit - 3, decision);
    EXPECT_EQ(m_machine.insight(id()), GetParam().insight);
    m_machine.items.back().sizeBytes -= 1;
    EXPECT_EQ(m_machine.insight(id()), std::nullopt);
}

TEST_P(InsightEngineGroup, CountsEachOfItsRulesAndNoOther) {
    for (const std::string& ruleID : GetParam().ruleIDs) {
        m_machine.items.clear();
        add(ruleID, "1", GetParam().limit, GetParam().decisions.front());
        EXPECT_TRUE(m_machine.says(id())) << ruleID;
        m_machine.items.front().ruleID += "s";
        EXPECT_FALSE(m_machine.says(id())) << ruleID;
    }
}

TEST_P(InsightEngineGroup, CountsItsDecisionsAlone) {
    for (const Decision decision : allCases<Decision>()) {
        m_machine.items.clear();
        add(firstRule(), "1", 100 * GetParam().limit, decision);
        EXPECT_EQ(m_machine.says(id()), counts(decision)) << rawValue(decision);
    }
}

TEST_P(InsightEngineGroup, CountsEveryCategoryWhereRulesAreNamedAndOneWhereNot) {
    for (const Category category : allCases<Category>()) {
        m_machine.items.clear();
        add(firstRule(), "1", GetParam().limit, GetParam().decisions.front());
        m_machine.items.front().category = category;
        const bool fires = !GetParam().ruleIDs.empty() || category == GetParam().category;
        EXPECT_EQ(m_machine.says(id()), fires) << rawValue(category);
    }
}

TEST_P(InsightEngineGroup, RulesAreThoseOfTheCatalogue) {
    EXPECT_THAT(cataloguedRules(), testing::IsSupersetOf(GetParam().ruleIDs));
}

INSTANTIATE_TEST_SUITE_P(InsightEngine,
                         InsightEngineGroup,
                         testing::ValuesIn(groups),
                         [](const auto& each) {
                             std::string name = each.param.insight.id;
                             std::ranges::replace(name, '.', '_');
                             return name;
                         });

TEST(InsightEngine, TrashAndSnapshotsAreRulesOfTheCatalogue) {
    EXPECT_THAT(cataloguedRules(),
                testing::IsSupersetOf({"system.trash", "system.localSnapshots"}));
}

TEST(InsightEngine, DaysInTextsAreThoseOfTheSettings) {
    Machine machine;
    machine.settings.oldDownloadDays = 7;
    machine.settings.dormantProjectDays = 8;
    machine.settings.unusedAppDays = 9;
    machine.items = {itemOf("system.oldDownloads", "1", gigabyte),
                     itemOf("project.nodeModules", "2", gigabyte, Decision::ask)};
    machine.apps = {appUsed(9, 1), appUsed(8, 1)};
    EXPECT_THAT(machine.insight("downloads.old")->message,
                testing::StartsWith("1 disk images, packages and archives older than 7 days."));
    EXPECT_THAT(machine.insight("projects.dormant")->message,
                testing::StartsWith("1 projects haven't changed in 8+ days."));
    EXPECT_EQ(machine.insight("apps.unused")->title, "1 app not opened in 9+ days");
}

TEST(InsightEngine, AppsAreUnusedFromTheDaysOfTheSettings) {
    Machine machine;
    machine.apps = {appUsed(unusedDays - 1, gigabyte), AppUsage()};
    EXPECT_FALSE(machine.says("apps.unused"));
    machine.apps.push_back(appUsed(unusedDays, 1'500'000'000));
    EXPECT_EQ(machine.insight("apps.unused"),
              (Insight{.id = "apps.unused",
                       .severity = Severity::tip,
                       .symbolName = "app.badge.clock",
                       .title = "1 app not opened in 20+ days",
                       .message = "Together 1.5 GB. Tidewright never removes apps; look through "
                                  "them and uninstall the ones you don't need.",
                       .estimatedGain = 1'500'000'000,
                       .actionTitle = "See apps",
                       .action = Action::open(Destination::apps)}));
    AppUsage neverOpened;
    neverOpened.addedOn = now - 100 * 24h;
    neverOpened.sizeBytes = gigabyte;
    machine.apps.push_back(neverOpened);
    EXPECT_EQ(machine.insight("apps.unused")->title, "2 apps not opened in 20+ days");
    EXPECT_EQ(machine.insight("apps.unused")->estimatedGain, 2'500'000'000);
}

TEST(InsightEngine, AppOfWhichNothingIsKnownIsUnusedOnlyWhereNoDaysAreAsked) {
    Machine machine;
    machine.apps = {AppUsage(), AppUsage()};
    machine.settings.unusedAppDays = 1;
    EXPECT_FALSE(machine.says("apps.unused"));
    machine.settings.unusedAppDays = 0;
    EXPECT_EQ(machine.insight("apps.unused")->title, "2 apps not opened in 0+ days");
}

TEST(InsightEngine, SnapshotsAreNamedByTheirItem) {
    Machine machine;
    machine.items = {itemOf("system.localSnapshots", "3 local snapshots", 0, Decision::info),
                     itemOf("system.localSnapshots", "second", gigabyte)};
    EXPECT_EQ(
        machine.insight("system.snapshots"),
        (Insight{.id = "system.snapshots",
                 .severity = Severity::tip,
                 .symbolName = "clock.badge",
                 .title = "3 Local Snapshots",
                 .message = "Local Time Machine snapshots show up as \"System Data\". macOS frees "
                            "them on its own when space is low.",
                 .estimatedGain = 0,
                 .actionTitle = "Review",
                 .action = Action::review({"system.localSnapshots:3 local snapshots"})}));
    machine.items = {itemOf("system.snapshots", "other", gigabyte)};
    EXPECT_FALSE(machine.says("system.snapshots"));
}

TEST(InsightEngine, LargeFilesAreShownAlone) {
    Machine machine;
    machine.largeFiles = {fileOf(1'250'000'000)};
    EXPECT_EQ(machine.insight("files.large"),
              (Insight{.id = "files.large",
                       .severity = Severity::tip,
                       .symbolName = "doc.badge.ellipsis",
                       .title = "A file larger than 1 GB",
                       .message = "Together 1.25 GB in your folders. Shown for review only.",
                       .estimatedGain = 0,
                       .actionTitle = "See files",
                       .action = Action::open(Destination::apps)}));
    machine.largeFiles.push_back(fileOf(2 * gigabyte));
    EXPECT_EQ(machine.insight("files.large")->title, "2 files larger than 1 GB");
    EXPECT_EQ(machine.insight("files.large")->message,
              "Together 3.25 GB in your folders. Shown for review only.");
}

TEST(InsightEngine, AllIsWellOnlyWithTips) {
    struct Case {
        const char* name;
        Int64 available;
        std::vector<ScanItem> items;
        bool isWell;
    };
    const Case cases[] = {
        {"critical", 0, {}, false},
        {"a warning", critical, {}, false},
        {"a notice", plenty, {itemOf("system.oldDownloads", "1", gigabyte)}, false},
        {"a tip", plenty, {itemOf("ide.heapDumps", "1", gigabyte)}, true},
        {"a tip and a notice",
         plenty,
         {itemOf("ide.heapDumps", "1", gigabyte), itemOf("android.ndk", "2", gigabyte)},
         false},
    };
    for (const Case& each : cases) {
        Machine machine;
        machine.available = each.available;
        machine.items = each.items;
        EXPECT_EQ(machine.says("healthy"), each.isWell) << each.name;
    }
}

/// All that can be said at once.
Machine messyMachine() {
    Machine machine;
    machine.available = 20 * gigabyte;
    machine.items = {
        itemOf("android.ndk", "ndk", gigabyte, Decision::clean, Category::android),
        itemOf("ide.heapDumps", "dump", gigabyte),
        itemOf("xcode.derivedData", "data", 6 * gigabyte),
        itemOf("ios.runtime", "runtime", 2 * gigabyte, Decision::ask),
        itemOf("npm.cache", "npm", gigabyte, Decision::clean, Category::javascript),
        itemOf("system.trash", "trash", 5 * gigabyte, Decision::ask),
        itemOf("system.oldDownloads", "download", gigabyte, Decision::ask),
        itemOf("system.localSnapshots", "2 local snapshots", 0, Decision::ask),
        itemOf("project.nodeModules", "modules", gigabyte, Decision::ask),
    };
    machine.apps = {appUsed(unusedDays, 3 * gigabyte)};
    machine.largeFiles = {fileOf(9 * gigabyte)};
    return machine;
}

TEST(InsightEngine, OrderIsBySeverityThenByGainThenAsThisListGoes) {
    Machine machine = messyMachine();
    const Texts notices{"downloads.old", "android.toolchains"};
    const Texts tips{"xcode.derivedData", "apps.unused",      "ios.runtimes",     "ide.leftovers",
                     "js.caches",         "projects.dormant", "system.snapshots", "files.large"};
    const auto expected = [&](Texts first) {
        first.insert(first.end(), notices.begin(), notices.end());
        first.insert(first.end(), tips.begin(), tips.end());
        return first;
    };
    EXPECT_EQ(machine.ids(), expected({"space.low", "trash.large"}));
    machine.items[5].sizeBytes = 10 * gigabyte; // more than the 9 GB to clean
    EXPECT_EQ(machine.ids(), expected({"trash.large", "space.low"}));
    machine.available = 1;
    EXPECT_EQ(machine.ids(), expected({"space.critical", "trash.large"}));
}

TEST(InsightEngine, AllIsWellRisesAboveTipsThatWouldFreeLess) {
    Machine machine;
    machine.items = {itemOf("ide.heapDumps", "dump", gigabyte), itemOf("any.rule", "log", gigabyte),
                     itemOf("ios.runtime", "runtime", 3 * gigabyte, Decision::ask)};
    EXPECT_THAT(machine.ids(), ElementsAre("ios.runtimes", "healthy", "ide.leftovers"));
    machine.items = {itemOf("ide.heapDumps", "dump", gigabyte)};
    EXPECT_THAT(machine.ids(), ElementsAre("ide.leftovers", "healthy")) << "both would free 1 GB";
}

} // namespace
} // namespace tidewright
