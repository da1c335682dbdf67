#include "core/model/CleanMethod.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace tidewright {
namespace {

TEST(ShellCommand, DisplayStringIsTheLineThatAUserReads) {
    struct Case {
        const char* name;
        std::string tool;
        std::vector<std::string> arguments;
        std::string expected;
    };
    const Case cases[] = {
        {"no arguments", "brew", {}, "brew"},
        {"plain arguments", "npm", {"cache", "clean", "--force"}, "npm cache clean --force"},
        {"an argument with a blank", "tool", {"a b"}, "tool 'a b'"},
        {"several", "tool", {"a b", "c", "d e f"}, "tool 'a b' c 'd e f'"},
        {"a quote is not escaped", "tool", {"it's", "it's so"}, "tool it's 'it's so'"},
        {"a double quote", "tool", {"\"a\""}, "tool \"a\""},
        {"a blank alone", "tool", {" "}, "tool ' '"},
        {"an empty argument", "tool", {"", "x"}, "tool  x"},
        {"other white space is not quoted", "tool", {"a\tb"}, "tool a\tb"},
        {"a tool with a blank is not quoted", "/opt/My Tools/x", {"a"}, "/opt/My Tools/x a"},
    };
    for (const Case& each : cases) {
        const ShellCommand command{each.tool, each.arguments, URL("/elsewhere"), true};
        EXPECT_EQ(command.displayString(), each.expected) << each.name;
    }
}

TEST(CleanMethod, OnlyAManualOneCannotBeExecuted) {
    EXPECT_TRUE(CleanMethod::remove().isExecutable());
    EXPECT_TRUE(CleanMethod::trash().isExecutable());
    EXPECT_TRUE(CleanMethod::command({}).isExecutable());
    EXPECT_FALSE(CleanMethod::manual("Drag it to the Trash.").isExecutable());
}

TEST(CleanMethod, LabelIsTheHeadingOfItsItems) {
    EXPECT_EQ(CleanMethod::remove().label(), "Delete permanently");
    EXPECT_EQ(CleanMethod::trash().label(), "Move to Trash");
    EXPECT_EQ(CleanMethod::command({}).label(), "Run clean command");
    EXPECT_EQ(CleanMethod::manual("text").label(), "Manual");
}

TEST(CleanMethod, CasesAndPayloadsTellMethodsApart) {
    const std::vector<CleanMethod> methods = {
        CleanMethod::remove(),
        CleanMethod::trash(),
        CleanMethod::command({"npm", {}, std::nullopt, false}),
        CleanMethod::command({"npm", {}, std::nullopt, true}),
        CleanMethod::manual(""),
        CleanMethod::manual("text"),
    };
    for (std::size_t i = 0; i < methods.size(); ++i)
        for (std::size_t j = 0; j < methods.size(); ++j) {
            EXPECT_EQ(methods[i] == methods[j], i == j);
            EXPECT_EQ(std::hash<CleanMethod>()(methods[i]) == std::hash<CleanMethod>()(methods[j]),
                      i == j);
        }
    EXPECT_EQ(CleanMethod(), CleanMethod::remove());
}

TEST(SizeSource, KnowsItsBytesOrMeasures) {
    struct Case {
        SizeSource source;
        bool isMeasured;
        Int64 initialBytes;
    };
    constexpr Int64 most = std::numeric_limits<Int64>::max();
    const Case cases[] = {
        {SizeSource(), true, 0},
        {SizeSource::measure(), true, 0},
        {SizeSource::known(0), false, 0},
        {SizeSource::known(123), false, 123},
        {SizeSource::known(most), false, most},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(each.source.isMeasured(), each.isMeasured) << each.initialBytes;
        EXPECT_EQ(each.source.initialBytes(), each.initialBytes);
    }
    EXPECT_NE(SizeSource::known(0), SizeSource::measure());
}

} // namespace
} // namespace tidewright
