#include "core/model/ScanReport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tidewright {
namespace {

ScanItem item(const char* title, Category category, Decision decision, Int64 bytes) {
    return ScanItem::make({.ruleID = "rule",
                           .title = title,
                           .sizeSource = SizeSource::known(bytes),
                           .category = category,
                           .decision = decision});
}

ScanReport sampleReport() {
    ScanReport report;
    report.items = {
        item("a", Category::android, Decision::clean, 1),
        item("b", Category::system, Decision::ask, 20),
        item("c", Category::android, Decision::keep, 300),
        item("d", Category::system, Decision::clean, 4'000),
        item("e", Category::android, Decision::info, 50'000),
        item("f", Category::projects, Decision::ask, 600'000),
    };
    return report;
}

std::string titles(const std::vector<ScanItem>& items) {
    std::string result;
    for (const ScanItem& each : items)
        result += each.title;
    return result;
}

TEST(ScanReport, ItemsInACategoryKeepTheReportsOrder) {
    const ScanReport report = sampleReport();
    EXPECT_EQ(titles(report.itemsIn(Category::android)), "ace");
    EXPECT_EQ(titles(report.itemsIn(Category::system)), "bd");
    EXPECT_EQ(titles(report.itemsIn(Category::projects)), "f");
    EXPECT_EQ(titles(report.itemsIn(Category::xcode)), "");
    EXPECT_EQ(report.itemsIn(Category::projects), std::vector{report.items.back()});
}

TEST(ScanReport, TotalsSumWhatHolds) {
    const ScanReport report = sampleReport();
    EXPECT_EQ(report.recommendedBytes(), 4'001);
    EXPECT_EQ(report.optionalBytes(), 600'020);
    EXPECT_EQ(report.total([](const ScanItem&) { return true; }), 654'321);
    EXPECT_EQ(report.total([](const ScanItem&) { return false; }), 0);
    EXPECT_EQ(report.total([](const ScanItem& each) { return each.title == "c"; }), 300);
}

TEST(ScanReport, TotalsTakeTheMeasuredSizeAndNotTheKnownOne) {
    ScanReport report = sampleReport();
    report.items[0].sizeBytes = 5'000'000'000;
    EXPECT_EQ(report.recommendedBytes(), 5'000'004'000);
}

TEST(ScanReport, WithoutItemsAllIsNothing) {
    const ScanReport report;
    EXPECT_EQ(report.recommendedBytes(), 0);
    EXPECT_EQ(report.optionalBytes(), 0);
    EXPECT_TRUE(report.itemsIn(Category::android).empty());
}

} // namespace
} // namespace tidewright
