#include "app/platform/LoginItem.h"

#include "app/state/SettingsModel.h"
#include "core/platform/FileContents.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <sstream>

namespace tidewright {
namespace {

namespace fs = std::filesystem;
using test::ScopedVariable;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* entry = "settings/autostart/com.tidewright.app.desktop";

/// The words of the command line of a desktop entry, as whoever starts it takes them apart.
class CommandLine {
public:
    explicit CommandLine(std::string_view value) : m_text(unescaped(value)) { takeApart(); }

    const std::vector<std::string>& words() const { return m_words; }

private:
    /// First come the escapes of any value.
    static std::string unescaped(std::string_view value) {
        std::string text;
        for (std::size_t i = 0; i < value.size(); ++i) {
            if (value[i] != '\\') {
                text += value[i];
                continue;
            }
            switch (value.at(++i)) {
            case 's':
                text += ' ';
                break;
            case 'n':
                text += '\n';
                break;
            case 't':
                text += '\t';
                break;
            case 'r':
                text += '\r';
                break;
            case '\\':
                text += '\\';
                break;
            default:
                ADD_FAILURE() << "no such escape in " << value;
            }
        }
        return text;
    }

    /// Then the quotes, in which four characters stand behind a backslash, and the field codes.
    void takeApart() {
        bool isInQuotes = false;
        bool isInWord = false;
        std::string word;
        for (std::size_t i = 0; i < m_text.size(); ++i) {
            char c = m_text[i];
            if (c == '"') {
                isInQuotes = !isInQuotes;
                isInWord = true;
                continue;
            }
            if (c == ' ' && !isInQuotes) {
                if (isInWord)
                    m_words.push_back(std::exchange(word, {}));
                isInWord = false;
                continue;
            }
            if (isInQuotes && c == '\\') {
                c = m_text.at(++i);
                EXPECT_TRUE(std::string_view("\"`$\\").find(c) != std::string_view::npos) << m_text;
            } else {
                EXPECT_TRUE(std::string_view("`$\\").find(c) == std::string_view::npos) << m_text;
            }
            if (c == '%') {
                EXPECT_EQ(m_text.at(++i), '%') << "a field code in " << m_text;
            }
            word += c;
            isInWord = true;
        }
        EXPECT_FALSE(isInQuotes) << m_text;
        if (isInWord)
            m_words.push_back(word);
    }

    std::string m_text;
    std::vector<std::string> m_words;
};

class LoginItemTest : public testing::Test {
protected:
    test::TempHome home;
    ScopedVariable settings{"XDG_CONFIG_HOME", home.path("settings").path()};
    const URL program{"/opt/Tidewright/tidewright-app"};

    void enable() {
        const auto result = LoginItem::setEnabled(true, program);
        EXPECT_TRUE(result) << result.error();
    }
    void disable() {
        const auto result = LoginItem::setEnabled(false, program);
        EXPECT_TRUE(result) << result.error();
    }
    std::string contents(std::string_view path) const {
        return readFile(home.path(path), 10'000).value_or("unreadable");
    }
    std::vector<std::string> entryLines() const {
        std::istringstream stream(contents(entry));
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        return lines;
    }
    std::size_t filesBesideEntry() const {
        const fs::directory_iterator files(home.path("settings/autostart").path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }
};

TEST_F(LoginItemTest, IsMadeFoundAndRemoved) {
    EXPECT_FALSE(LoginItem::isEnabled());
    for (int i = 0; i < 2; ++i) {
        enable();
        EXPECT_TRUE(LoginItem::isEnabled());
    }
    EXPECT_THAT(entryLines(), ElementsAre("[Desktop Entry]", "Type=Application", "Name=Tidewright",
                                          "Exec=\"/opt/Tidewright/tidewright-app\"",
                                          "Terminal=false", "X-GNOME-Autostart-enabled=true"));
    EXPECT_EQ(filesBesideEntry(), 1U);
    for (int i = 0; i < 2; ++i) {
        disable();
        EXPECT_FALSE(LoginItem::isEnabled());
    }
    EXPECT_EQ(filesBesideEntry(), 0U);
}

TEST_F(LoginItemTest, FollowsTheHomeWithoutAFolderOfSettings) {
    const ScopedVariable none("XDG_CONFIG_HOME", std::nullopt);
    const ScopedVariable user("HOME", home.path("user").path());
    enable();
    EXPECT_TRUE(fs::exists(home.path("user/.config/autostart/com.tidewright.app.desktop").path()));
}

TEST_F(LoginItemTest, CommandLineIsTheProgramsPathWhateverItHolds) {
    for (const char* path :
         {"/opt/tidewright", "/opt/two words/app", " /leading", "/trailing ", "/a\"b", "/a'b",
          "/$HOME/app", "/`date`/app", "/100%/app", "/%f%%u", "/back\\slash", "/two\\\\", "/\\n\\s",
          "/a;b&c|d<e>f(g)#h*i?j~k", "/tab\there", "/line\nbreak\rand", "/\xC3\xA9\xE2\x82\xAC",
          "/\\\"$`%\\"}) {
        ASSERT_TRUE(LoginItem::setEnabled(true, URL(path)));
        const auto lines = entryLines();
        ASSERT_EQ(lines.size(), 6U) << path;
        ASSERT_THAT(lines[3], StartsWith("Exec="));
        EXPECT_THAT(CommandLine(std::string_view(lines[3]).substr(5)).words(), ElementsAre(path));
    }
}

TEST_F(LoginItemTest, IsNotEnabledWhereTheDesktopHasTurnedItOff) {
    struct Case {
        const char* text;
        bool isEnabled;
    };
    for (const Case& each : {
             Case{"[Desktop Entry]\nExec=app\n", true},
             Case{"[Desktop Entry]\nExec=app\nHidden=false\n", true},
             Case{"[Desktop Entry]\nExec=app\nHidden=true\n", false},
             Case{"[Desktop Entry]\nHidden = true\nExec=app\n", false},
             Case{"[Desktop Entry]\nExec=app\nX-GNOME-Autostart-enabled=true\n", true},
             Case{"[Desktop Entry]\nExec=app\nX-GNOME-Autostart-enabled=false\n", false},
             Case{"[Desktop Entry]\nExec=app\n[Other]\nHidden=true\n", true},
             Case{"[Desktop Entry]\n", false},
             Case{"", false},
         }) {
        home.file(entry, each.text);
        EXPECT_EQ(LoginItem::isEnabled(), each.isEnabled) << each.text;
        enable();
        EXPECT_TRUE(LoginItem::isEnabled()) << each.text;
    }
}

TEST_F(LoginItemTest, LinkInItsPlaceIsReplacedAndRemovedAsALink) {
    home.file("elsewhere", "precious");
    for (const char* target : {"../../elsewhere", "../../nowhere"}) {
        home.link(entry, target);
        enable();
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(home.path(entry).path())));
        EXPECT_TRUE(LoginItem::isEnabled());
        disable();
        home.link(entry, target);
        disable();
        EXPECT_FALSE(fs::is_symlink(home.path(entry).path()));
        EXPECT_EQ(contents("elsewhere"), "precious");
        EXPECT_FALSE(fs::exists(home.path("nowhere").path()));
    }
}

TEST_F(LoginItemTest, FolderThatMayNotBeChangedIsToldWithWhatToDo) {
    home.file(entry, "[Desktop Entry]\nExec=app\n");
    home.setMode("", 0755);
    home.setMode("settings/autostart", 0555);
    const auto errors = [&] {
        std::string text;
        for (const bool enabled : {true, false}) {
            const auto result = LoginItem::setEnabled(enabled, program);
            text += result ? "done\n" : result.error() + "\n";
        }
        return text + (LoginItem::isEnabled() ? "enabled" : "not enabled");
    };
    const std::string place = home.path(entry).path();
    EXPECT_EQ(test::asOrdinaryUser(errors),
              "Opening at login could not be turned on, since " + place +
                  " could not be written (Permission denied). See that you may write there and "
                  "that the disk has room, then try again.\n"
                  "Opening at login could not be turned off, since " +
                  place +
                  " could not be removed (Permission denied). See that you may change its folder, "
                  "then try again.\n"
                  "enabled");
}

TEST_F(LoginItemTest, FolderThatCanNotBeMadeIsTold) {
    home.folder("settings");
    home.setMode("", 0755);
    home.setMode("settings", 0555);
    const auto error = [&] {
        const auto result = LoginItem::setEnabled(true, program);
        return result ? "done" : result.error();
    };
    EXPECT_THAT(test::asOrdinaryUser(error), HasSubstr("(Permission denied)"));
    home.file("settings/autostart");
    EXPECT_THAT(error(), HasSubstr("(Not a directory)"));
    EXPECT_FALSE(LoginItem::isEnabled());
    disable(); // there is none
}

TEST_F(LoginItemTest, DiskWithoutRoomLeavesWhatWasThere) {
    home.file(entry, "[Desktop Entry]\nExec=app\n");
    home.setMode("", 0777);
    home.setMode("settings", 0777);
    home.setMode("settings/autostart", 0777);
    home.setMode(entry, 0666);
    EXPECT_THAT(test::asOrdinaryUser([&] {
                    std::signal(SIGXFSZ, SIG_IGN);
                    const rlimit small{10, 10}; // bytes of a file
                    setrlimit(RLIMIT_FSIZE, &small);
                    const auto result = LoginItem::setEnabled(true, program);
                    return result ? "done" : result.error();
                }),
                AllOf(StartsWith("Opening at login could not be turned on"),
                      HasSubstr("the disk has room"), EndsWith("then try again.")));
    EXPECT_EQ(contents(entry), "[Desktop Entry]\nExec=app\n");
    EXPECT_EQ(filesBesideEntry(), 1U);
}

TEST_F(LoginItemTest, PathThatIsNoTextIsTold) {
    const auto result = LoginItem::setEnabled(true, URL("/caf\xFF/app"));
    ASSERT_FALSE(result);
    EXPECT_THAT(result.error(), HasSubstr("Move Tidewright to another folder"));
    EXPECT_FALSE(fs::exists(home.path(entry).path()));
}

TEST_F(LoginItemTest, IsWhatTheWindowsSwitchMakesAndRemoves) {
    const test::TestState state([](AppEnvironment& environment) {
        const AppEnvironment current = AppEnvironment::current();
        environment.opensAtLogin = current.opensAtLogin;
        environment.setOpensAtLogin = current.setOpensAtLogin;
    });
    SettingsModel window(*state.model);
    EXPECT_FALSE(window.launchAtLogin());
    window.setLaunchAtLogin(true);
    EXPECT_TRUE(window.launchAtLogin());
    const auto lines = entryLines();
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_THAT(CommandLine(std::string_view(lines[3]).substr(5)).words(),
                ElementsAre(fs::read_symlink("/proc/self/exe").string()));
    EXPECT_TRUE(SettingsModel(*state.model).launchAtLogin());
    disable(); // in the desktop's own settings
    window.checkSystem();
    EXPECT_FALSE(window.launchAtLogin());
    window.setLaunchAtLogin(true);
    window.setLaunchAtLogin(false);
    EXPECT_EQ(filesBesideEntry(), 0U);

    fs::remove_all(home.path("settings/autostart").path());
    home.file("settings/autostart");
    window.setLaunchAtLogin(true);
    EXPECT_FALSE(window.launchAtLogin());
    EXPECT_THAT(
        window.loginError().toStdString(),
        AllOf(StartsWith("Opening at login could not be turned on"), EndsWith("then try again.")));
}

} // namespace
} // namespace tidewright
