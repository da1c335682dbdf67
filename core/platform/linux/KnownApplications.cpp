#include "core/platform/linux/KnownApplications.h"

#include <algorithm>

namespace tidewright {

namespace {

struct KnownApplication {
    std::string_view identifier;              ///< of the bundle on macOS
    std::vector<std::string_view> otherNames; ///< desktop entries, Flatpaks, "snap_application"
    std::vector<std::string_view> programs;   ///< file names
};

// A program's name stands here only where hardly anything else is called so.
const std::vector<KnownApplication>& knownApplications() {
    static const std::vector<KnownApplication> table = {
        // The owners that rules name.
        {"com.google.android.studio",
         {"android-studio", "android-studio_android-studio", "com.google.AndroidStudio",
          "jetbrains-studio"},
         {"studio", "studio.sh", "android-studio"}},
        {"com.microsoft.VSCode", {"code", "code_code", "com.visualstudio.code"}, {"code"}},
        {"com.google.Chrome",
         {"google-chrome", "google-chrome-stable", "chrome_chrome"},
         {"chrome", "google-chrome", "google-chrome-stable"}},
        {"com.brave.Browser",
         {"brave-browser", "brave-browser-stable", "brave", "brave_brave"},
         {"brave", "brave-browser", "brave-browser-stable"}},
        {"org.mozilla.firefox",
         {"firefox", "firefox-esr", "firefox_firefox"},
         {"firefox", "firefox-esr", "firefox-bin"}},

        // Others that keep large caches.
        {"org.chromium.Chromium",
         {"chromium", "chromium-browser", "chromium_chromium"},
         {"chromium", "chromium-browser"}},
        {"com.microsoft.edgemac",
         {"microsoft-edge", "microsoft-edge-stable", "com.microsoft.Edge"},
         {"msedge", "microsoft-edge", "microsoft-edge-stable"}},
        {"com.vivaldi.Vivaldi",
         {"vivaldi", "vivaldi-stable"},
         {"vivaldi", "vivaldi-bin", "vivaldi-stable"}},
        {"com.operasoftware.Opera", {"opera", "opera_opera", "com.opera.Opera"}, {"opera"}},
        {"org.mozilla.thunderbird",
         {"thunderbird", "thunderbird_thunderbird", "org.mozilla.Thunderbird"},
         {"thunderbird", "thunderbird-bin"}},
        {"com.microsoft.VSCodeInsiders",
         {"code-insiders", "code-insiders_code-insiders", "com.visualstudio.code.insiders"},
         {"code-insiders"}},
        {"com.vscodium",
         {"codium", "vscodium", "codium_codium", "com.vscodium.codium"},
         {"codium", "vscodium"}},
        {"com.jetbrains.intellij",
         {"jetbrains-idea", "com.jetbrains.IntelliJ-IDEA-Ultimate"},
         {"idea"}},
        {"com.sublimetext.4",
         {"sublime_text", "com.sublimetext.three", "sublime-text_subl"},
         {"sublime_text"}},
        {"com.tinyspeck.slackmacgap", {"slack", "slack_slack", "com.slack.Slack"}, {"slack"}},
        {"com.hnc.Discord",
         {"discord", "discord_discord", "com.discordapp.Discord"},
         {"Discord", "discord"}},
        {"com.spotify.client", {"spotify", "spotify_spotify", "com.spotify.Client"}, {"spotify"}},
        {"org.whispersystems.signal-desktop",
         {"signal-desktop", "signal-desktop_signal-desktop", "org.signal.Signal"},
         {"signal-desktop"}},
        {"com.docker.docker", {"docker-desktop"}, {"com.docker.backend"}},
    };
    return table;
}

struct JavaArgument {
    std::string_view text;
    bool isWhole; ///< otherwise only its beginning: a version follows
    std::string_view identifier;
};

// As the launcher scripts of such applications hand them to the Java machine.
constexpr JavaArgument javaArguments[] = {
    {"-Didea.paths.selector=AndroidStudio", false, "com.google.android.studio"},
    {"-Didea.platform.prefix=AndroidStudio", true, "com.google.android.studio"},
    {"-Didea.vendor.name=Google", true, "com.google.android.studio"},
};

bool contains(const std::vector<std::string_view>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

bool isApplicationIdentifier(std::string_view text) {
    constexpr std::size_t maximumBytes = 200; // room for ".desktop" in a file's name of 255
    const auto isUnfit = [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return c == '/' || byte < 0x20 || byte == 0x7F;
    };
    return !text.empty() && text.size() <= maximumBytes && text.front() != '.' &&
           std::none_of(text.begin(), text.end(), isUnfit);
}

std::vector<std::string> allIdentifiers(std::string_view identifier) {
    std::vector<std::string> result{std::string(identifier)};
    for (const KnownApplication& each : knownApplications()) {
        if (each.identifier != identifier && !contains(each.otherNames, identifier))
            continue;
        if (each.identifier != identifier)
            result.emplace_back(each.identifier);
        for (const std::string_view name : each.otherNames)
            if (name != identifier)
                result.emplace_back(name);
    }
    return result;
}

std::optional<std::string> identifierOfProgram(std::string_view fileName) {
    for (const KnownApplication& each : knownApplications())
        if (contains(each.programs, fileName))
            return std::string(each.identifier);
    return std::nullopt;
}

std::optional<std::string> identifierOfJavaProgram(const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments)
        for (const JavaArgument& each : javaArguments)
            if (each.isWhole ? argument == each.text : argument.starts_with(each.text))
                return std::string(each.identifier);
    return std::nullopt;
}

} // namespace tidewright
