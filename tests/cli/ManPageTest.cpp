#include "cli/ManPage.h"

#include "core/support/Text.h"
#include "tests/support/Shell.h"
#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

namespace tidewright {
namespace {

using test::answerOfTool;
using test::TempHome;
using testing::HasSubstr;

class ManPage : public testing::Test {
protected:
    TempHome m_home;
    CommandDescription m_program = Grammar().description();

    URL filed(const CommandDescription& program) const {
        return m_home.file("tidewright.1", manPage(program, "1.2.3"));
    }

    /// As people read it, in one line and without markup.
    std::string read(const CommandDescription& program) const {
        const std::string shown =
            answerOfTool(m_home.url(), {"mandoc", "-Tutf8", "-Owidth=1000", filed(program).path()});
        std::string text;
        for (const char c : shown)
            if (c == '\b')
                text.pop_back(); // bold is a letter over itself
            else if (c != '\n' || !text.ends_with(' '))
                text += c == '\n' ? ' ' : c;
        return text;
    }

    /// What is said of one command.
    static std::string sectionOf(const std::string& name, const std::string& page) {
        const std::size_t start = page.find("\n.SS " + name + "\n");
        EXPECT_NE(start, std::string::npos) << name;
        return page.substr(start, std::min(page.find("\n.S", start + 1), page.size()) - start);
    }
};

/// As roff wants it.
std::string dashed(const std::string& name) {
    std::string text;
    for (const char c : name)
        text += c == '-' ? "\\-" : std::string(1, c);
    return text;
}

TEST_F(ManPage, IsMadeByTheBuildOfThisGrammar) {
    std::ifstream stream(TIDEWRIGHT_SHARE "/man/man1/tidewright.1", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}),
              manPage(m_program, TIDEWRIGHT_VERSION));
}

TEST_F(ManPage, HasNoFault) {
    EXPECT_EQ(answerOfTool(m_home.url(), {"mandoc", "-Tlint", filed(m_program).path()}), "");
}

TEST_F(ManPage, TellsOfEveryCommandWithAllThatItTakes) {
    const std::string page = manPage(m_program, "1.2.3");
    for (const CommandDescription& command : m_program.commands) {
        const std::string section = sectionOf(command.name, page);
        for (const OptionDescription& option : command.options)
            for (const std::string& name : option.names)
                EXPECT_THAT(section, HasSubstr("\\fB" + dashed(name) + "\\fR")) << command.name;
        for (const OptionDescription& argument : command.arguments)
            EXPECT_THAT(section, HasSubstr("\n.TP\n" + std::string(argument.isRequired ? "" : "[") +
                                           "\\fI" + argument.value))
                << command.name;
    }
    const std::string text = read(m_program);
    for (const CommandDescription& command : m_program.commands)
        EXPECT_THAT(text, HasSubstr(command.text + "."));
    for (const Setting& setting : allSettings())
        EXPECT_THAT(text, HasSubstr(setting.meaning));
}

TEST_F(ManPage, HasTheUsualSections) {
    const std::string page = manPage(m_program, "1.2.3");
    std::size_t from = 0;
    for (const char* section : {"NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "COMMANDS",
                                "SETTINGS", "EXIT STATUS", "ENVIRONMENT", "FILES", "EXAMPLES"}) {
        from = page.find("\n.SH " + std::string(section) + "\n", from);
        ASSERT_NE(from, std::string::npos) << section;
    }
    for (const char* word :
         {"Tidewright 1.2.3", "130", "HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
          "TMPDIR", "NO_COLOR", "TIDEWRIGHT_LOG", "history.json", "Tidewright.conf"})
        EXPECT_THAT(read(m_program), HasSubstr(word));
}

TEST_F(ManPage, TextStaysAsItIs) {
    const std::string wicked = R"(.SH 'it' \fBis\fR "a" -- `b` ^ ~ \ %)";
    CommandDescription program{"tidewright", wicked, {}, {}, {}};
    program.commands.push_back(
        {"scan", "'quoted' first", {{{"--a-b"}, "DIR", wicked, false, false}}, {}, {}});
    EXPECT_EQ(answerOfTool(m_home.url(), {"mandoc", "-Tlint", filed(program).path()}), "");
    const std::string text = read(program);
    EXPECT_THAT(text, HasSubstr("DESCRIPTION        " + wicked + " "));
    EXPECT_THAT(text, HasSubstr(" " + wicked + ". "));
    EXPECT_THAT(text, HasSubstr("'quoted' first."));
    EXPECT_THAT(text, HasSubstr("--a-b DIR"));
}

} // namespace
} // namespace tidewright
