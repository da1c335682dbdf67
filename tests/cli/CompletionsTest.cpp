#include "cli/Completions.h"

#include "core/support/Text.h"
#include "tests/support/Shell.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace tidewright {
namespace {

using test::answerOfTool;
using test::TempHome;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;
using Words = std::vector<std::string>;

constexpr const char* share = TIDEWRIGHT_SHARE;

std::string textOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A grammar that tries to break out of quotes.
CommandDescription wicked() {
    CommandDescription program{"tidewright", "Program", {}, {}, {}};
    program.commands.push_back(
        {"scan",
         "It's [a:b] \\ \"c\" $HOME `d` \\n (e) %d {}",
         {{{"--root"}, "DIR", "Don't [take: it] \\ \"c\" $HOME `d`", false, true}},
         {},
         {}});
    return program;
}

class Completions : public testing::Test {
protected:
    Completions() {
        m_home.folder("src/one");
        m_home.folder("src/with blank");
        m_home.file("src/only a file");
    }

    /// What bash offers for the last word.
    Words bash(const Words& line, const std::string& script = bashFile) const {
        Words words{
            "bash",
            "--norc",
            "-uc",
            "source \"$1\"; shift; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); "
            "_tidewright; [[ ${#COMPREPLY[@]} == 0 ]] || printf '%s\\n' \"${COMPREPLY[@]}\"",
            "bash",
            script};
        words.insert(words.end(), line.begin(), line.end());
        return nonEmptyLines(answerOfTool(m_home.url(), words));
    }

    /// What fish offers, each with a tab and its description where there is one.
    Words described(const std::string& line, const std::string& script = fishFile) const {
        return nonEmptyLines(
            answerOfTool(m_home.url(), {"fish", "-N", "-c", "source $argv[1]; complete -C $argv[2]",
                                        script, line}));
    }

    Words fish(const std::string& line) const {
        Words names = described(line);
        for (std::string& name : names)
            name.resize(std::min(name.size(), name.find('\t')));
        return names;
    }

    static inline const std::string bashFile =
        std::string(share) + "/bash-completion/completions/tidewright";
    static inline const std::string zshFile =
        std::string(share) + "/zsh/site-functions/_tidewright";
    static inline const std::string fishFile =
        std::string(share) + "/fish/vendor_completions.d/tidewright.fish";

    TempHome m_home;
    CommandDescription m_program = Grammar().description();
};

Words namesOf(const std::vector<OptionDescription>& options) {
    Words names;
    for (const OptionDescription& option : options)
        names.insert(names.end(), option.names.begin(), option.names.end());
    return names;
}

TEST_F(Completions, AreMadeByTheBuildOfThisGrammar) {
    EXPECT_EQ(textOf(bashFile), bashCompletion(m_program));
    EXPECT_EQ(textOf(zshFile), zshCompletion(m_program));
    EXPECT_EQ(textOf(fishFile), fishCompletion(m_program));
}

TEST_F(Completions, OfferEveryCommand) {
    Words commands;
    for (const CommandDescription& command : m_program.commands)
        commands.push_back(command.name);
    EXPECT_EQ(bash({"tidewright", ""}), commands);
    EXPECT_THAT(fish("tidewright "), UnorderedElementsAreArray(commands));
    EXPECT_THAT(commands, testing::SizeIs(9));
}

TEST_F(Completions, OfferEveryOptionOfEachCommandAndNoOther) {
    EXPECT_EQ(bash({"tidewright", "-"}), (Words{"-h", "--help", "--version"}));
    EXPECT_THAT(fish("tidewright --"), UnorderedElementsAre("--help", "--version"));
    const std::string zsh = textOf(zshFile);
    for (const CommandDescription& command : m_program.commands) {
        const Words names = namesOf(command.options);
        EXPECT_EQ(bash({"tidewright", command.name, "-"}), names);
        Words longNames = names;
        std::erase(longNames, "-h"); // fish offers it as the first letter of several
        EXPECT_THAT(fish("tidewright " + command.name + " --"),
                    UnorderedElementsAreArray(longNames));
        const std::size_t start = zsh.find("        " + command.name + ") _arguments");
        ASSERT_NE(start, std::string::npos) << command.name;
        const std::string part = zsh.substr(start, zsh.find(";;", start) - start);
        for (const std::string& name : names)
            EXPECT_THAT(part, HasSubstr(name + "["));
        EXPECT_EQ(std::count(part.begin(), part.end(), '\n'),
                  static_cast<std::ptrdiff_t>(names.size() + command.arguments.size()));
    }
}

struct Offer {
    Words line;
    Words offered;
};

TEST_F(Completions, OfferWhatFitsThePlace) {
    const Words folders{"src/one", "src/with blank"};
    const Words files{"src/one", "src/only a file", "src/with blank"};
    const std::vector<Offer> offers{
        {{"se"}, {"settings"}},
        {{"nothing"}, {}},
        {{"scan", "--r"}, {"--root"}},
        {{"scan", "x", ""}, {}},
        {{"scan", "--root", "src/"}, folders},
        {{"scan", "--root", "x", "--exclude", "src/"}, folders},
        {{"scan", "--root", "src/one", "--ex"}, {"--exclude"}},
        {{"settings", "exclusions", "--add", "src/o"}, {"src/one"}},
        {{"settings", "exclusions", "--remove", "src/w"}, {"src/with blank"}},
        {{"clean", "--id", ""}, {}},
        {{"clean", "--id", "check", "--y"}, {"--yes"}},
        {{"explain", ""}, {}},
        {{"check", "src/"}, files},
        {{"check", "a", "--project-item", "src/"}, files},
        {{"settings", "l"}, {"largeTrashGB", "lowSpaceGB"}},
        {{"settings", "--add", "l", "l"}, {"largeTrashGB", "lowSpaceGB"}},
        {{"settings", "notificationsEnabled", ""}, {"no", "yes"}},
        {{"settings", "--json", "showFreeSpaceInMenuBar", "y"}, {"yes"}},
        {{"settings", "lowSpaceGB", ""}, {}},
        {{"settings", "notificationsEnabled", "yes", ""}, {}},
    };
    for (const Offer& offer : offers) {
        Words words{"tidewright"};
        words.insert(words.end(), offer.line.begin(), offer.line.end());
        const std::string line = fmt::format("{}", fmt::join(words, " "));
        Words inBash = bash(words);
        std::ranges::sort(inBash);
        EXPECT_EQ(inBash, offer.offered) << line;
        Words inFish = fish(line);
        for (std::string& each : inFish) {
            each = removing("\\", each);
            each.resize(each.size() - (each.ends_with('/') ? 1 : 0));
        }
        std::ranges::sort(inFish);
        EXPECT_EQ(inFish, offer.offered) << line;
    }
}

TEST_F(Completions, OfferEverySetting) {
    Words keys;
    for (const Setting& setting : allSettings())
        keys.emplace_back(setting.key);
    EXPECT_EQ(bash({"tidewright", "settings", ""}), keys);
    EXPECT_THAT(fish("tidewright settings "), UnorderedElementsAreArray(keys));
    for (const std::string& key : keys)
        EXPECT_THAT(textOf(zshFile), HasSubstr("        '" + key + ":"));
}

TEST_F(Completions, BashKnowsValuesBehindAnEqualsSignAndNamesBehindTwoDashes) {
    EXPECT_THAT(bash({"tidewright", "scan", "--root", "=", "src/o"}),
                testing::ElementsAre("src/one"));
    EXPECT_EQ(bash({"tidewright", "scan", "--root", "="}).size(), 1U); // the only folder here
    EXPECT_EQ(bash({"tidewright", "scan", "--root", "=", "x", "--ex"}), Words{"--exclude"});
    m_home.file("-odd");
    EXPECT_EQ(bash({"tidewright", "check", "--", "-"}), Words{"-odd"});
}

TEST_F(Completions, FishAndZshSayWhatEachThingDoes) {
    EXPECT_EQ(described("tidewright hist"), Words{"history\tList past cleanups"});
    EXPECT_EQ(described("tidewright rules --j"), Words{"--json\tPrint one JSON document"});
    EXPECT_THAT(textOf(zshFile), HasSubstr("'history:List past cleanups'"));
    EXPECT_THAT(textOf(zshFile), HasSubstr("'--json[Print one JSON document]'"));
}

TEST_F(Completions, ZshCompletesWithThem) {
    // It waits for what must appear, and is ended when that does not come.
    const char* const script = R"(
        zmodload zsh/zpty
        zpty shell zsh -f -i
        zpty -w shell "PS1=; fpath=('$1' \$fpath); autoload -Uz compinit; compinit -D -u; echo rea''dy"
        zpty -r -m shell text '*ready*'
        zpty -w -n shell $2$'\t'
        zpty -r -m shell text "*$3*"
        zpty -d shell
    )";
    const std::string functions = std::string(share) + "/zsh/site-functions";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"tidewright se", "settings"},
        {"tidewright scan --ro", "--root"},
        {"tidewright scan --root src/w", "with? blank"}, // a blank is quoted
        {"tidewright settings notificationsEnabled y", "yes"},
        {"tidewright settings crit", "criticalSpaceGB"},
    };
    for (const auto& [line, completed] : cases)
        answerOfTool(m_home.url(), {"zsh", "-f", "-c", script, "zsh", functions, line, completed});
}

TEST_F(Completions, AreWellFormedWhateverTheTextsAre) {
    for (const CommandDescription& program : std::vector{m_program, wicked()}) {
        const std::string bashScript = m_home.file("bash", bashCompletion(program)).path();
        const std::string zshScript = m_home.file("zsh", zshCompletion(program)).path();
        const std::string fishScript = m_home.file("fish", fishCompletion(program)).path();
        EXPECT_EQ(answerOfTool(m_home.url(), {"bash", "-n", bashScript}), "");
        EXPECT_EQ(answerOfTool(m_home.url(), {"zsh", "-n", zshScript}), "");
        EXPECT_EQ(answerOfTool(m_home.url(), {"fish", "-N", "-n", fishScript}), "");
    }
    const CommandDescription command = wicked().commands.front();
    const std::string script = m_home.path("fish").path();
    EXPECT_EQ(described("tidewright sc", script), Words{"scan\t" + command.text});
    EXPECT_EQ(described("tidewright scan --r", script),
              Words{"--root\t" + command.options.front().text});
    EXPECT_EQ(bash({"tidewright", "scan", "--"}, m_home.path("bash").path()), Words{"--root"});
}

} // namespace
} // namespace tidewright
