#include "app/state/ItemDetails.h"

#include "tests/support/app/StateTesting.h"

#include <QMetaProperty>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

const Date now = Date(1'772'366'400s); // 2026-03-01T12:00:00Z

struct ShownSection {
    std::string title;
    std::string symbolName;
    std::string text;
    std::string lines; ///< with "|" between them
    bool operator==(const ShownSection&) const = default;
};

/// As a view reads them: by the names of the properties.
std::vector<ShownSection> sectionsOf(const ItemDetails& details) {
    std::vector<ShownSection> sections;
    for (const QVariant& each : details.shownSections()) {
        const QMetaObject& meta = DetailSection::staticMetaObject;
        const auto read = [&](const char* name) {
            return meta.property(meta.indexOfProperty(name)).readOnGadget(each.constData());
        };
        sections.push_back({read("title").toString().toStdString(),
                            read("symbolName").toString().toStdString(),
                            read("text").toString().toStdString(),
                            read("lines").toStringList().join(QLatin1Char('|')).toStdString()});
    }
    return sections;
}

TEST(ItemDetails, SayEverythingOfAnItem) {
    ScanItem item = test::testItem(Category::javascript, "cache", 1'500'000);
    item.title = "Cache\xff";
    item.version = "1.2";
    item.decision = Decision::ask;
    item.risk = Risk::low;
    item.inUseBy = "Editor";
    item.lastUsed = now - 25h;
    item.urls = {URL("/1"), URL("/2"), URL("/3"), URL("/4"), URL("/5"), URL("/6")};
    item.method = CleanMethod::command({"npm", {"cache", "a b"}, std::nullopt, false});
    const ItemDetails details = ItemDetails::of(item, true, now);
    EXPECT_TRUE(details.isPresent);
    EXPECT_EQ(details.title.toStdString(), "Cache\xef\xbf\xbd");
    EXPECT_EQ(details.version.toStdString(), "1.2");
    EXPECT_EQ(details.sizeText.toStdString(), "1.5 MB");
    EXPECT_EQ(details.decision.toStdString(), "ask");
    EXPECT_EQ(details.decisionTitle.toStdString(), "Optional");
    EXPECT_EQ(details.decisionSymbol.toStdString(), "questionmark.circle.fill");
    EXPECT_EQ(details.riskTitle.toStdString(), "Low risk");
    EXPECT_EQ(details.inUse.toStdString(), "In use by Editor");
    EXPECT_TRUE(details.selectable);
    EXPECT_TRUE(details.selected);
    EXPECT_EQ(sectionsOf(details),
              (std::vector<ShownSection>{
                  {"Why", "lightbulb", "Nothing needs it.", ""},
                  {"What it is", "questionmark.circle", "A test's item.", ""},
                  {"After cleaning", "arrow.triangle.2.circlepath", "It is made again.", ""},
                  {"How it's cleaned", "wrench.and.screwdriver", "npm cache 'a b'", ""},
                  {"Last used", "clock", "yesterday", ""},
                  {"Locations (6)", "folder", "", "/1|/2|/3|/4|/5|/6"},
              }));
}

TEST(ItemDetails, SevenLocationsAreSixAndOneMore) {
    ScanItem item = test::testItem(Category::javascript, "cache");
    item.urls = {URL("/1"), URL("/2"), URL("/3"), URL("/4"), URL("/5"), URL("/6"), URL("/7")};
    const auto sections = sectionsOf(ItemDetails::of(item, false, now));
    EXPECT_EQ(sections.back(),
              (ShownSection{"Locations (7)", "folder", "", "/1|/2|/3|/4|/5|/6|and 1 more"}));
}

TEST(ItemDetails, AnItemToCleanByHandSaysHow) {
    ScanItem item = test::testItem(Category::javascript, "manual");
    item.method = CleanMethod::manual("Do it yourself.");
    const ItemDetails details = ItemDetails::of(item, true, now);
    EXPECT_FALSE(details.selectable);
    EXPECT_EQ(details.inUse, QString());
    const auto sections = sectionsOf(details);
    ASSERT_EQ(sections.size(), 5U) << "nothing of a last use";
    EXPECT_EQ(sections[3].text, "Manual\nDo it yourself.");
}

TEST(ItemDetails, EachMethodIsNamed) {
    const std::pair<CleanMethod, const char*> methods[] = {
        {CleanMethod::remove(), "Delete permanently"},
        {CleanMethod::trash(), "Move to Trash"},
        {CleanMethod::manual(""), "Manual"},
    };
    for (const auto& [method, text] : methods) {
        ScanItem item = test::testItem(Category::javascript, "a");
        item.method = method;
        EXPECT_EQ(sectionsOf(ItemDetails::of(item, false, now))[3].text, text);
    }
}

} // namespace
} // namespace tidewright
