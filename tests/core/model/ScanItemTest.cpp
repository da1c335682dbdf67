#include "core/model/ScanItem.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace tidewright {
namespace {

const Date someDate(std::chrono::seconds(1'772'357'400));
const AppMatcher someApp{"App", {"org.example.app"}, {}};

TEST(ScanItem, ItsIdIsTheRuleAndTheFirstKeyThatExists) {
    struct Case {
        const char* name;
        std::string title;
        std::vector<URL> urls;
        std::optional<std::string> idSuffix;
        std::string expected;
    };
    const Case cases[] = {
        {"the path", "DerivedData", {URL("/a/b")}, std::nullopt, "rule:/a/b"},
        {"the first of several paths", "x", {URL("/b"), URL("/a")}, std::nullopt, "rule:/b"},
        {"a path as it stands", "x", {URL("/b/../c/")}, std::nullopt, "rule:/b/../c/"},
        {"the suffix before a path", "x", {URL("/a")}, "UDID", "rule:UDID"},
        {"the suffix before the title", "x", {}, "UDID", "rule:UDID"},
        {"an empty suffix is one", "x", {URL("/a")}, "", "rule:"},
        {"the title", "npm cache", {}, std::nullopt, "rule:npm cache"},
        {"nothing", "", {}, std::nullopt, "rule:"},
    };
    for (const Case& each : cases) {
        const ScanItem item = ScanItem::make(
            {.ruleID = "rule", .title = each.title, .urls = each.urls, .idSuffix = each.idSuffix});
        EXPECT_EQ(item.id, each.expected) << each.name;
        EXPECT_EQ(item.ruleID, "rule") << each.name;
        EXPECT_EQ(item.title, each.title) << each.name;
        EXPECT_EQ(item.urls, each.urls) << each.name;
    }
}

TEST(ScanItem, MakeTakesOverEverythingThatTheRuleSays) {
    const ScanItem item = ScanItem::make({.ruleID = "rule",
                                          .group = "group",
                                          .title = "title",
                                          .version = "1.2",
                                          .urls = {URL("/a"), URL("/b")},
                                          .sizeSource = SizeSource::known(42),
                                          .category = Category::system,
                                          .risk = Risk::check,
                                          .decision = Decision::ask,
                                          .reason = "reason",
                                          .whatItIs = "what it is",
                                          .afterEffect = "after effect",
                                          .method = CleanMethod::manual("text"),
                                          .owner = someApp,
                                          .lastUsed = someDate,
                                          .isProjectItem = true,
                                          .idSuffix = "suffix"});
    EXPECT_EQ(item.id, "rule:suffix");
    EXPECT_EQ(item.ruleID, "rule");
    EXPECT_EQ(item.group, "group");
    EXPECT_EQ(item.title, "title");
    EXPECT_EQ(item.version, "1.2");
    EXPECT_EQ(item.urls, (std::vector{URL("/a"), URL("/b")}));
    EXPECT_EQ(item.sizeSource, SizeSource::known(42));
    EXPECT_EQ(item.sizeBytes, 42);
    EXPECT_EQ(item.category, Category::system);
    EXPECT_EQ(item.risk, Risk::check);
    EXPECT_EQ(item.decision, Decision::ask);
    EXPECT_EQ(item.reason, "reason");
    EXPECT_EQ(item.whatItIs, "what it is");
    EXPECT_EQ(item.afterEffect, "after effect");
    EXPECT_EQ(item.method, CleanMethod::manual("text"));
    EXPECT_EQ(item.inUseBy, std::nullopt);
    EXPECT_EQ(item.owner, someApp);
    EXPECT_EQ(item.lastUsed, someDate);
    EXPECT_TRUE(item.isProjectItem);
    EXPECT_EQ(item.hideBelowBytes, 1'000'000);
}

TEST(ScanItem, StartsWithTheSizeThatIsKnown) {
    EXPECT_EQ(ScanItem::make({.sizeSource = SizeSource::measure()}).sizeBytes, 0);
    EXPECT_EQ(ScanItem::make({.sizeSource = SizeSource::known(0)}).sizeBytes, 0);
    EXPECT_EQ(ScanItem::make({.sizeSource = SizeSource::known(7)}).sizeBytes, 7);
    EXPECT_FALSE(ScanItem::make({.sizeSource = SizeSource::known(0)}).sizeSource.isMeasured());
}

TEST(ScanItem, WithoutAWordOfItsRuleNothingIsOfferedForCleaning) {
    EXPECT_EQ(ScanItem::make({}).decision, Decision::keep);
}

TEST(ScanItem, ThePrimaryURLIsTheFirst) {
    EXPECT_EQ(ScanItem::make({.urls = {URL("/b"), URL("/a")}}).primaryURL(), URL("/b"));
    EXPECT_EQ(ScanItem::make({}).primaryURL(), std::nullopt);
}

TEST(ScanItem, KeepSetsDecisionAndReasonAndLeavesAnEarlierHolder) {
    struct Case {
        const char* name;
        std::optional<std::string> before;
        std::optional<std::string> given;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {"none at all", std::nullopt, std::nullopt, std::nullopt},
        {"a first one", std::nullopt, "Xcode", "Xcode"},
        {"an earlier one stays", "Xcode", std::nullopt, "Xcode"},
        {"a new one replaces it", "Xcode", "Simulator", "Simulator"},
    };
    for (const Case& each : cases) {
        ScanItem item = ScanItem::make({.decision = Decision::clean, .reason = "old"});
        item.inUseBy = each.before;
        ScanItem expected = item;
        expected.decision = Decision::keep;
        expected.reason = "new";
        expected.inUseBy = each.expected;
        item.keep("new", each.given);
        EXPECT_EQ(item, expected) << each.name;
    }
}

TEST(ScanItem, KeepNeedsNoName) {
    ScanItem item = ScanItem::make({.decision = Decision::ask});
    item.inUseBy = "Xcode";
    item.keep("needed");
    EXPECT_EQ(item.decision, Decision::keep);
    EXPECT_EQ(item.reason, "needed");
    EXPECT_EQ(item.inUseBy, "Xcode");
}

TEST(ScanItem, EveryFieldCountsForEqualityAndHash) {
    struct Change {
        const char* field;
        std::function<void(ScanItem&)> apply;
    };
    const std::vector<Change> changes = {
        {"id", [](ScanItem& item) { item.id = "x"; }},
        {"ruleID", [](ScanItem& item) { item.ruleID = "x"; }},
        {"group", [](ScanItem& item) { item.group = "x"; }},
        {"title", [](ScanItem& item) { item.title = "x"; }},
        {"version", [](ScanItem& item) { item.version = ""; }},
        {"urls", [](ScanItem& item) { item.urls = {URL("/x")}; }},
        {"sizeSource", [](ScanItem& item) { item.sizeSource = SizeSource::known(0); }},
        {"sizeBytes", [](ScanItem& item) { item.sizeBytes = 1; }},
        {"category", [](ScanItem& item) { item.category = Category::system; }},
        {"risk", [](ScanItem& item) { item.risk = Risk::low; }},
        {"decision", [](ScanItem& item) { item.decision = Decision::info; }},
        {"reason", [](ScanItem& item) { item.reason = "x"; }},
        {"whatItIs", [](ScanItem& item) { item.whatItIs = "x"; }},
        {"afterEffect", [](ScanItem& item) { item.afterEffect = "x"; }},
        {"method", [](ScanItem& item) { item.method = CleanMethod::trash(); }},
        {"inUseBy", [](ScanItem& item) { item.inUseBy = ""; }},
        {"owner", [](ScanItem& item) { item.owner = AppMatcher(); }},
        {"lastUsed", [](ScanItem& item) { item.lastUsed = Date(); }},
        {"isProjectItem", [](ScanItem& item) { item.isProjectItem = true; }},
        {"hideBelowBytes", [](ScanItem& item) { item.hideBelowBytes = 0; }},
    };
    std::vector<std::string> names;
    forEachField(ScanItem(), [&](std::string_view name, const auto&) { names.emplace_back(name); });
    ASSERT_EQ(names.size(), changes.size());

    const ScanItem item = ScanItem::make({.ruleID = "rule"});
    EXPECT_EQ(std::hash<ScanItem>()(item), std::hash<ScanItem>()(ScanItem(item)));
    for (std::size_t i = 0; i < changes.size(); ++i) {
        EXPECT_EQ(names[i], changes[i].field);
        ScanItem changed = item;
        changes[i].apply(changed);
        EXPECT_NE(changed, item) << changes[i].field;
        EXPECT_NE(std::hash<ScanItem>()(changed), std::hash<ScanItem>()(item)) << changes[i].field;
    }
}

} // namespace
} // namespace tidewright
