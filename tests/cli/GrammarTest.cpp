#include "cli/Grammar.h"

#include "core/support/Text.h"
#include "tests/support/Program.h"
#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::runProgram;
using test::TempHome;
using testing::HasSubstr;
using testing::SizeIs;

CommandDescription command(const CommandDescription& program, const std::string& name) {
    for (const CommandDescription& each : program.commands)
        if (each.name == name)
            return each;
    ADD_FAILURE() << name;
    return {};
}

TEST(Grammar, DescribesWhatACommandTakes) {
    const CommandDescription program = Grammar().description();
    EXPECT_EQ(program.name, "tidewright");
    EXPECT_THAT(program.options, SizeIs(2));
    const CommandDescription check = command(program, "check");
    ASSERT_THAT(check.options, SizeIs(3));
    EXPECT_EQ(check.options[0].names, (std::vector<std::string>{"-h", "--help"}));
    EXPECT_EQ(check.options[2].names, std::vector<std::string>{"--project-item"});
    EXPECT_EQ(check.options[2].value, "");
    EXPECT_FALSE(check.options[2].isRepeatable);
    ASSERT_THAT(check.arguments, SizeIs(1));
    EXPECT_EQ(check.arguments[0].value, "PATH");
    EXPECT_TRUE(check.arguments[0].isRequired && check.arguments[0].isRepeatable);
    const CommandDescription settings = command(program, "settings");
    ASSERT_THAT(settings.arguments, SizeIs(2));
    EXPECT_FALSE(settings.arguments[0].isRequired || settings.arguments[0].isRepeatable);
    EXPECT_EQ(settings.options[2].value, "DIR");
    EXPECT_TRUE(settings.options[2].isRepeatable);
}

TEST(Grammar, HelpOfEveryCommandFitsATerminalAndSaysAll) {
    const TempHome home;
    const CommandDescription program = Grammar().description();
    std::vector<std::string> names{""};
    for (const CommandDescription& each : program.commands)
        names.push_back(each.name);
    for (const std::string& name : names) {
        std::vector<std::string> arguments{name, "--help"};
        std::erase(arguments, "");
        const ProcessOutput help = runProgram(home.url(), arguments);
        EXPECT_EQ(help.exitCode, 0);
        EXPECT_EQ(help.errorOutput, "");
        const CommandDescription& described = name.empty() ? program : command(program, name);
        for (const OptionDescription& option : described.options)
            for (const std::string& each : option.names)
                EXPECT_THAT(help.output, HasSubstr(each)) << name;
        for (const OptionDescription& argument : described.arguments)
            EXPECT_THAT(help.output, HasSubstr("\n  " + argument.value + " "));
        for (const CommandDescription& each : described.commands)
            EXPECT_THAT(help.output, HasSubstr("\n  " + each.name + " "));
        for (const std::string& line : nonEmptyLines(help.output))
            EXPECT_LE(displayWidth(line), 80U) << line;
    }
}

} // namespace
} // namespace tidewright
