#include "app/state/CleanResults.h"

#include "app/state/RowModel.h"

#include <algorithm>

namespace tidewright {

namespace {

ShownCheck shown(const VerificationCheck& check) {
    return {.name = shownText(check.name),
            .detail = shownText(check.detail),
            .passed = check.passed,
            .symbolName = check.passed ? QStringLiteral("checkmark.circle.fill")
                                       : QStringLiteral("xmark.octagon.fill")};
}

} // namespace

QVariantList CleanResults::shownChecks() const {
    QVariantList shown;
    for (const ShownCheck& each : checks)
        shown.append(QVariant::fromValue(each));
    return shown;
}

CleanResults CleanResults::of(const CleanSummary& summary) {
    CleanResults results;
    results.isComplete = std::ranges::all_of(
        summary.outcomes, [](const CleanOutcome& outcome) { return outcome.status.isSuccess(); });
    results.symbolName = results.isComplete ? QStringLiteral("checkmark.seal.fill")
                                            : QStringLiteral("exclamationmark.triangle.fill");
    results.headline = shownText(summary.headline());
    results.subtitle = shownText(summary.explanation());
    results.hasLog = summary.logFile.has_value();
    std::ranges::transform(summary.verification, std::back_inserter(results.checks), shown);
    return results;
}

} // namespace tidewright
