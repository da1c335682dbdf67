#include "cli/StatusCommand.h"

#include "core/support/Json.h"
#include "tests/support/Program.h"
#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::runProgram;
using test::TempHome;
using testing::HasSubstr;
using Health = DiskSpace::Health;

TEST(StatusCommand, ShowsWhatIsFree) {
    EXPECT_EQ(statusText({DiskSpace{500 * gigabyte, 24 * gigabyte}, Health::low, 1'200 * megabyte},
                         Terminal{}),
              "Free space  24 GB of 500 GB\n"
              "Health      low\n"
              "Trash       1.2 GB\n");
    EXPECT_EQ(statusText({DiskSpace{500 * gigabyte, 0}, Health::critical, 0}, Terminal{}),
              "Free space  Zero KB of 500 GB\n"
              "Health      critical\n"
              "Trash       Zero KB\n");
}

TEST(StatusCommand, SaysWhatIsNotKnown) {
    EXPECT_EQ(statusText({}, Terminal{}), "Free space  not known: the volume can't be read\n"
                                          "Trash       not known\n");
}

TEST(StatusCommand, ColoursHealthOnATerminal) {
    const DiskSpace disk{500 * gigabyte, 24 * gigabyte};
    EXPECT_THAT(statusText({disk, Health::good, {}}, {true, true, 80}),
                HasSubstr("\x1b[32mgood\x1b[0m"));
    EXPECT_THAT(statusText({disk, Health::low, {}}, {true, true, 80}),
                HasSubstr("\x1b[33mlow\x1b[0m"));
}

TEST(StatusCommand, MeasuresDiskAndTrash) {
    const TempHome home;
    home.allocatedFile(".Trash/film", 8'192);
    const ProcessOutput output = runProgram(home.url(), {"status", "--json"});
    EXPECT_EQ(output.exitCode, 0) << output.errorOutput;
    const auto status = parseJson(output.output).value_or(ParsedJson());
    EXPECT_GT(status["disk"]["totalBytes"], status["disk"]["availableBytes"]);
    EXPECT_GE(status["trashBytes"], 8'192);
    EXPECT_EQ(status.size(), 3U);
}

TEST(StatusCommand, GoesByTheSavedThresholds) {
    const TempHome home;
    const auto health = [&] {
        const ProcessOutput output = runProgram(home.url(), {"status", "--json"});
        return parseJson(output.output).value_or(ParsedJson())["health"].get<std::string>();
    };
    ASSERT_EQ(runProgram(home.url(), {"settings", "lowSpaceGB", "0"}).exitCode, 0);
    ASSERT_EQ(runProgram(home.url(), {"settings", "criticalSpaceGB", "0"}).exitCode, 0);
    EXPECT_EQ(health(), "good");
    ASSERT_EQ(runProgram(home.url(), {"settings", "lowSpaceGB", "1000000000"}).exitCode, 0);
    EXPECT_EQ(health(), "low");
    ASSERT_EQ(runProgram(home.url(), {"settings", "criticalSpaceGB", "1000000000"}).exitCode, 0);
    EXPECT_EQ(health(), "critical");
}

TEST(StatusCommand, WritesNothing) {
    const TempHome home;
    home.file(".Trash/film", "film");
    const std::string before = home.outline();
    ASSERT_EQ(runProgram(home.url(), {"status"}).exitCode, 0);
    EXPECT_EQ(home.outline(), before);
}

} // namespace
} // namespace tidewright
