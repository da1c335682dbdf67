#include "cli/RulesCommand.h"

#include "core/support/Json.h"
#include "core/support/Text.h"
#include "tests/support/Program.h"
#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using testing::HasSubstr;

TEST(RulesCommand, ListsAllRulesInColumns) {
    const std::string text = rulesText(Terminal{});
    EXPECT_EQ(nonEmptyLines(text).size(), 40U);
    EXPECT_THAT(text, HasSubstr("system.trash               System       TrashRule\n"));
}

TEST(RulesCommand, FitsANarrowTerminal) {
    for (const std::string& line : nonEmptyLines(rulesText(Terminal{true, false, 40})))
        EXPECT_LE(displayWidth(line), 40U);
}

TEST(RulesCommand, PrintsAListOfRecordsAsJson) {
    const test::TempHome home;
    const ProcessOutput run = test::runProgram(home.url(), {"rules", "--json"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errorOutput, "");
    const auto list = parseJson(run.output);
    ASSERT_TRUE(list && list->is_array());
    ASSERT_EQ(list->size(), 40U);
    const ParsedJson first{
        {"id", "android.systemImage"}, {"category", "android"}, {"name", "SystemImagesRule"}};
    EXPECT_EQ((*list)[0], first);
}

} // namespace
} // namespace tidewright
