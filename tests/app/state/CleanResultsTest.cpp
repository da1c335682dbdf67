#include "app/state/CleanResults.h"

#include <QMetaProperty>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

using Status = CleanOutcome::Status;

CleanSummary summaryOf(std::vector<CleanOutcome> outcomes) {
    CleanSummary summary;
    summary.outcomes = std::move(outcomes);
    summary.diskBefore = {100 * gigabyte, 10 * gigabyte};
    summary.diskAfter = {100 * gigabyte, 22 * gigabyte};
    return summary;
}

TEST(CleanResults, TellWhetherAllWentWell) {
    const CleanOutcome cleaned{"a", "A", Status::cleaned(), 1};
    const CleanOutcome trashed{"b", "B", Status::movedToTrash(), 1};
    const CleanResults good = CleanResults::of(summaryOf({cleaned, trashed}));
    EXPECT_TRUE(good.isComplete);
    EXPECT_EQ(good.symbolName.toStdString(), "checkmark.seal.fill");
    for (const Status& status : {Status::skipped("Xcode is running."), Status::failed("No.")}) {
        const CleanResults results =
            CleanResults::of(summaryOf({cleaned, {"c", "C", status, 1}, trashed}));
        EXPECT_FALSE(results.isComplete);
        EXPECT_EQ(results.symbolName.toStdString(), "exclamationmark.triangle.fill");
    }
}

TEST(CleanResults, SayWhatWasGained) {
    const CleanSummary summary = summaryOf({{"b", "B", Status::movedToTrash(), gigabyte}});
    const CleanResults results = CleanResults::of(summary);
    EXPECT_EQ(results.headline.toStdString(), "Freed 12 GB");
    EXPECT_EQ(results.subtitle.toStdString(),
              "Measured on your disk: 22 GB now available. 1 GB moved to the Trash; empty it to "
              "free that space too.");
}

TEST(CleanResults, KnowWhetherThereIsALog) {
    CleanSummary summary = summaryOf({});
    EXPECT_FALSE(CleanResults::of(summary).hasLog);
    summary.logFile = URL("/logs/clean.jsonl");
    EXPECT_TRUE(CleanResults::of(summary).hasLog);
}

TEST(CleanResults, ListTheChecks) {
    CleanSummary summary = summaryOf({});
    EXPECT_TRUE(CleanResults::of(summary).shownChecks().isEmpty());
    summary.verification = {{"adb", true, "Present"}, {"NDK\xff", false, "Missing"}};
    const QVariantList checks = CleanResults::of(summary).shownChecks();
    ASSERT_EQ(checks.size(), 2);
    EXPECT_EQ(checks[0].value<ShownCheck>(),
              (ShownCheck{QStringLiteral("adb"), QStringLiteral("Present"), true,
                          QStringLiteral("checkmark.circle.fill")}));
    EXPECT_EQ(checks[1].value<ShownCheck>(),
              (ShownCheck{QString::fromUtf8("NDK\xef\xbf\xbd"), QStringLiteral("Missing"), false,
                          QStringLiteral("xmark.octagon.fill")}));
    const QMetaObject& meta = ShownCheck::staticMetaObject;
    EXPECT_TRUE(
        meta.property(meta.indexOfProperty("passed")).readOnGadget(checks[0].constData()).toBool());
}

} // namespace
} // namespace tidewright
