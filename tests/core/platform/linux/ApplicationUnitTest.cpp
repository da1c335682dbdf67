#include "core/platform/linux/ApplicationUnit.h"

#include <gtest/gtest.h>

#include <vector>

namespace tidewright {
namespace {

using Identifiers = std::set<std::string>;

struct Case {
    std::string unit;
    Identifiers expected;
};

TEST(ApplicationUnit, ReadsTheFormsOfScopesAndServices) {
    const std::vector<Case> cases = {
        // Without a launcher.
        {"app-org.mozilla.firefox-12345.scope", {"org.mozilla.firefox"}},
        {"app-org.mozilla.firefox@12345.service", {"org.mozilla.firefox"}},
        {"app-org.kde.dolphin@autostart.service", {"org.kde.dolphin"}},
        {"app-org.kde.dolphin@3f8e0a4b5d6c47d2.service", {"org.kde.dolphin"}},
        {"app-org.kde.dolphin.service", {"org.kde.dolphin"}},
        {"app-org.gnome.Terminal.slice", {"org.gnome.Terminal"}},
        {"app-code-12345.scope", {"code"}},
        // Without the random part.
        {"app-firefox.scope", {"firefox"}},
        // Escaped dashes and others.
        {R"(app-firefox\x2desr-12345.scope)", {"firefox-esr"}},
        {R"(app-google\x2dchrome@2f1c.service)", {"google-chrome"}},
        {R"(app-com.example.A\x2DB\x20C-7.scope)", {"com.example.A-B C"}},
        {R"(app-code\x40home-7.scope)", {"code@home"}},
        {R"(app-a\x5cb-7.scope)", {R"(a\b)"}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(applicationsOfUnit(each.unit), each.expected) << each.unit;
}

// Without escapes nothing tells a launcher from the beginning of a name.
TEST(ApplicationUnit, GivesEveryReadingOfANameWithDashes) {
    const std::vector<Case> cases = {
        {"app-gnome-org.mozilla.firefox-12345.scope",
         {"org.mozilla.firefox", "gnome-org.mozilla.firefox"}},
        {"app-flatpak-com.brave.Browser-2345.scope",
         {"com.brave.Browser", "flatpak-com.brave.Browser"}},
        {"app-KDE-org.kde.okular-12345.service", {"org.kde.okular", "KDE-org.kde.okular"}},
        {"app-gnome-org.kde.kalarm-autostart.service", {"org.kde.kalarm", "gnome-org.kde.kalarm"}},
        {R"(app-gnome-google\x2dchrome-12345.scope)", {"google-chrome", "gnome-google-chrome"}},
        {"app-google-chrome-12345.scope", {"google-chrome", "chrome"}},
        {"app-niri-google-chrome-12345.scope", {"google-chrome", "niri-google-chrome"}},
        {"app-gnome-code.desktop-12345.scope",
         {"code", "code.desktop", "gnome-code", "gnome-code.desktop"}},
        {"app-org.telegram.desktop-12345.scope", {"org.telegram.desktop", "org.telegram"}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(applicationsOfUnit(each.unit), each.expected) << each.unit;
}

TEST(ApplicationUnit, ReadsUnitsOfTheMessageBusAndOfSnaps) {
    const std::vector<Case> cases = {
        {"dbus-:1.2-org.gnome.Nautilus@0.service", {"org.gnome.Nautilus"}},
        {"snap.firefox.firefox-2b5c8a4e-0f6d-4c0e-9a51-6d1f2e3a4b5c.scope", {"firefox_firefox"}},
        {"snap.code.code.2b5c8a4e-0f6d-4c0e-9a51-6d1f2e3a4b5c.scope", {"code_code"}},
        {"snap.android-studio.android-studio-2b5c8a4e-0f6d-4c0e-9a51-6d1f2e3a4b5c.scope",
         {"android-studio_android-studio"}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(applicationsOfUnit(each.unit), each.expected) << each.unit;
}

TEST(ApplicationUnit, PassesOverEverythingElse) {
    for (const char* const unit :
         {"", ".", "-", "app", "app-", "app-.scope", "app-.service", "app--.scope", "app.slice",
          "app-firefox", "app-firefox-12345", "app-firefox-12345.mount",
          "app-firefox-12345.scope.d", "App-firefox-12345.scope", "application-firefox-12345.scope",
          "myapp-firefox-1.scope", "firefox-12345.scope", "firefox.service",
          "org.gnome.Shell@wayland.service", "user@1000.service", "user-1000.slice",
          "session-3.scope", "init.scope", "dbus.service", "dbus-broker.service",
          "vte-spawn-2b5c8a4e-0f6d-4c0e-9a51-6d1f2e3a4b5c.scope", "docker-0123456789abcdef.scope",
          "snap.firefox.daemon.service", "snap.firefox.scope",
          "snap..-2b5c8a4e-0f6d-4c0e-9a51-6d1f2e3a4b5c.scope",
          // Names that would lead elsewhere as the name of a file.
          R"(app-\x2e\x2e-1.scope)", R"(app-\x2e\x2e\x2fetc-1.scope)", R"(app-a\x2fb-1.scope)",
          R"(app-a\x00b-1.scope)", R"(app-a\x0ab-1.scope)"})
        EXPECT_EQ(applicationsOfUnit(unit), Identifiers()) << unit;
}

TEST(ApplicationUnit, SurvivesDamagedEscapes) {
    const std::vector<Case> cases = {
        {R"(app-a\-1.scope)", {R"(a\)"}},       {R"(app-a\x-1.scope)", {R"(a\x)"}},
        {R"(app-a\x2-1.scope)", {R"(a\x2)"}},   {R"(app-a\x2z-1.scope)", {R"(a\x2z)"}},
        {R"(app-a\x 2-1.scope)", {R"(a\x 2)"}}, {R"(app-a\x-2-1.scope)", {R"(a\x-2)", "2"}},
        {"app-\xFF\xFE-1.scope", {"\xFF\xFE"}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(applicationsOfUnit(each.unit), each.expected) << each.unit;
}

TEST(ApplicationUnit, FindsUnitsAnywhereInAProcessesControlGroups) {
    struct Text {
        std::string name;
        std::string text;
        Identifiers expected;
    };
    const std::vector<Text> cases = {
        {"unified hierarchy",
         "0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
         "app-org.mozilla.firefox-12345.scope\n",
         {"org.mozilla.firefox"}},
        {"a group below the unit",
         "0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
         "app-org.kde.konsole-42.scope/tab(1234).scope\n",
         {"org.kde.konsole"}},
        {"a terminal's command is in the terminal's slice",
         "0::/user.slice/user-1000.slice/user@1000.service/app.slice/app-org.gnome.Terminal.slice/"
         "vte-spawn-2b5c8a4e-0f6d-4c0e-9a51-6d1f2e3a4b5c.scope\n",
         {"org.gnome.Terminal"}},
        {"several hierarchies",
         "12:pids:/user.slice/user-1000.slice/user@1000.service\n"
         "1:name=systemd:/user.slice/user-1000.slice/user@1000.service/app-code-7.scope\n"
         "0::/user.slice/user-1000.slice/user@1000.service/app-code-7.scope\n",
         {"code"}},
        {"a login", "0::/user.slice/user-1000.slice/session-3.scope\n", {}},
        {"a service of the system", "0::/system.slice/firefox.service\n", {}},
        {"a container", "0::/system.slice/docker-0123456789abcdef.scope\n", {}},
        {"the root", "0::/\n", {}},
        {"empty", "", {}},
        {"noise", std::string("\0\xFF::///\n:::\n/", 11), {}},
    };
    for (const Text& each : cases)
        EXPECT_EQ(applicationsOfControlGroups(each.text), each.expected) << each.name;
}

} // namespace
} // namespace tidewright
