#include "cli/ProgressBar.h"

#include "core/support/Text.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

ScanProgress at(double fraction) {
    return {ScanProgress::Phase::measuring, fraction, "Measuring sizes… 3 of 12"};
}

TEST(ProgressBar, ShowsBarPercentageAndMessage) {
    EXPECT_EQ(progressLine(at(0.5), 80),
              "████████████░░░░░░░░░░░░  50 %  Measuring sizes… 3 of 12");
    EXPECT_EQ(progressLine(at(0), 80), "░░░░░░░░░░░░░░░░░░░░░░░░   0 %  Measuring sizes… 3 of 12");
    EXPECT_EQ(progressLine(at(1), 80), "████████████████████████ 100 %  Measuring sizes… 3 of 12");
}

TEST(ProgressBar, StaysWithinItsBounds) {
    EXPECT_EQ(progressLine(at(7), 80), progressLine(at(1), 80));
    EXPECT_EQ(progressLine(at(-1), 80), progressLine(at(0), 80));
    for (std::size_t columns = 1; columns < 80; ++columns)
        EXPECT_LE(displayWidth(progressLine(at(0.3), columns)), columns);
}

TEST(ProgressBar, IsSilentWhereThereIsNoTerminal) {
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    {
        ProgressBar bar(file);
        bar.show(at(0.5));
    }
    EXPECT_EQ(std::ftell(file), 0);
    std::fclose(file);
}

} // namespace
} // namespace tidewright
