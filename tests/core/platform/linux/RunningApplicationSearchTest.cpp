#include "core/platform/linux/RunningApplicationSearch.h"

#include "core/model/AppMatcher.h"
#include "core/platform/RunningApplications.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

#include <functional>

namespace tidewright {
namespace {

using test::TempHome;
using testing::AllOf;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

using Identifiers = std::set<std::string>;

constexpr std::uint32_t me = 1000;
constexpr std::uint32_t someoneElse = 1001;

const std::string loginGroups = "0::/user.slice/user-1000.slice/session-3.scope\n";

std::string groupsOfUnit(const std::string& unit) {
    return "0::/user.slice/user-1000.slice/user@1000.service/app.slice/" + unit + "\n";
}

/// A process as proc(5) shows it.
struct Process {
    int id = 0;
    std::string name; ///< of 15 bytes at most, whatever the program likes it to be
    std::vector<std::string> arguments;
    std::string executable; ///< where the link "exe" leads; empty: it can't be read
    std::string controlGroups = loginGroups;
    std::uint32_t user = me;
    std::string flatpakInfo = {};
};

std::string commandLine(const std::vector<std::string>& arguments) {
    std::string text;
    for (const std::string& argument : arguments)
        text.append(argument).push_back('\0');
    return text;
}

void record(const TempHome& tree, const Process& process) {
    const std::string folder = std::to_string(process.id);
    tree.file(folder + "/comm", process.name + "\n");
    tree.file(folder + "/cmdline", commandLine(process.arguments));
    tree.file(folder + "/cgroup", process.controlGroups);
    tree.file(folder + "/status",
              fmt::format("Name:\t{}\nUmask:\t0022\nState:\tS (sleeping)\nTgid:\t{}\nPid:\t{}\n"
                          "PPid:\t1\nUid:\t{}\t{}\t{}\t{}\nGid:\t100\t100\t100\t100\n",
                          process.name, process.id, process.id, process.user, process.user,
                          process.user, process.user));
    if (!process.executable.empty())
        tree.link(folder + "/exe", process.executable);
    if (!process.flatpakInfo.empty())
        tree.file(folder + "/root/.flatpak-info", process.flatpakInfo);
}

Identifiers found(const std::vector<Process>& processes) {
    const TempHome tree;
    for (const Process& process : processes)
        record(tree, process);
    return findRunningApplications(tree.url(), me);
}

std::string plist(const std::string& identifier) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
           "<key>CFBundleIdentifier</key><string>" +
           identifier + "</string></dict></plist>\n";
}

TEST(RunningApplicationSearch, RecognisesWhatMatchersLookFor) {
    struct Case {
        std::string name;
        Process process;
        AppMatcher expected;
    };
    const std::vector<Case> cases = {
        {"a browser from the desktop",
         {4711,
          "firefox",
          {"/usr/lib/firefox/firefox"},
          "/usr/lib/firefox/firefox",
          groupsOfUnit("app-gnome-firefox-4711.scope")},
         AppMatcher::firefox},
        {"the same from a terminal",
         {4712, "firefox-esr", {"firefox-esr"}, "/usr/lib/firefox-esr/firefox-esr"},
         AppMatcher::firefox},
        {"by its scope alone",
         {4713,
          "wrapper",
          {"/opt/wrapper"},
          "/opt/wrapper",
          groupsOfUnit("app-gnome-org.mozilla.firefox-4713.scope")},
         AppMatcher::firefox},
        {"a snap, by its scope alone",
         {4714,
          "wrapper",
          {"/opt/wrapper"},
          "/opt/wrapper",
          "0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
          "snap.firefox.firefox-2b5c8a4e-0f6d-4c0e-9a51-6d1f2e3a4b5c.scope\n"},
         AppMatcher::firefox},
        {"under a service",
         {4715,
          "code",
          {"/bin/sh", "-c", "x"},
          "/usr/bin/dash",
          groupsOfUnit("app-com.visualstudio.code@9f2b.service")},
         AppMatcher::vsCode},
        {"an editor",
         {4716, "code", {"/usr/share/code/code", "."}, "/usr/share/code/code"},
         AppMatcher::vsCode},
        {"a browser that was updated while it runs",
         {4717, "chrome", {"browser"}, "/opt/google/chrome/chrome (deleted)"},
         AppMatcher::chrome},
        {"a program whose link can't be read",
         {4718, "chrome", {"/opt/google/chrome/google-chrome", "--flag"}, ""},
         AppMatcher::chrome},
        {"a title in place of the arguments",
         {4719, "chrome", {"/opt/google/chrome/chrome --type=renderer --lang=a/b"}, ""},
         AppMatcher::chrome},
        {"a login under another name",
         {4720, "brave", {"anything"}, "/opt/brave.com/brave/brave"},
         AppMatcher::brave},
        {"a Flatpak by its scope",
         {4721,
          "bwrap",
          {"bwrap", "--args", "42"},
          "/usr/bin/bwrap",
          groupsOfUnit("app-flatpak-com.brave.Browser-2345.scope")},
         AppMatcher::brave},
        {"a Flatpak by its facts",
         {4722,
          "cobalt",
          {"/app/cobalt"},
          "/app/cobalt",
          loginGroups,
          me,
          "[Application]\nname=com.google.AndroidStudio\nruntime=runtime/org.freedesktop.Sdk\n\n"
          "[Instance]\nname=none\n"},
         AppMatcher::androidStudio},
        {"the launcher of the new kind",
         {4723, "studio", {"/opt/android-studio/bin/studio"}, "/opt/android-studio/bin/studio"},
         AppMatcher::androidStudio},
        {"the launcher script",
         {4724, "studio.sh", {"/bin/sh", "/opt/android-studio/bin/studio.sh"}, "/usr/bin/dash"},
         AppMatcher::androidStudio},
        {"the Java machine of the old kind",
         {4725,
          "java",
          {"/opt/android-studio/jbr/bin/java", "-classpath", "/opt/android-studio/lib/app.jar",
           "-Didea.vendor.name=Google", "-Didea.paths.selector=AndroidStudio2023.1",
           "com.intellij.idea.Main"},
          "/opt/android-studio/jbr/bin/java"},
         AppMatcher::androidStudio},
    };
    for (const Case& each : cases)
        for (const std::string& identifier : each.expected.bundleIdentifiers)
            EXPECT_THAT(found({each.process}), Contains(identifier)) << each.name;
}

TEST(RunningApplicationSearch, GivesAllNamesOfAnApplicationAndPassesOnUnknownOnes) {
    EXPECT_EQ(found({{1, "code", {"code"}, "/usr/share/code/code"}}),
              (Identifiers{"code", "code_code", "com.microsoft.VSCode", "com.visualstudio.code"}));
    EXPECT_EQ(
        found({{1, "x", {"x"}, "/usr/bin/x", groupsOfUnit("app-org.kde.dolphin@a.service")},
               {2, "y", {"y"}, "/usr/bin/y", groupsOfUnit("app-org.example.Editor-7.scope")}}),
        (Identifiers{"org.kde.dolphin", "org.example.Editor"}));
}

TEST(RunningApplicationSearch, RecognisesProgramsInApplicationBundles) {
    const TempHome home;
    home.file("Applications/Paint.app/Contents/Info.plist", plist("org.example.Paint"));
    home.file("Applications/Paint.app/Contents/Helpers/Brush.app/Contents/Info.plist",
              plist("org.example.Paint.Brush"));
    home.folder("Applications/Empty.app/Contents/MacOS");
    const std::string paint = home.path("Applications/Paint.app/Contents/MacOS/Paint").path();
    const std::string brush =
        home.path("Applications/Paint.app/Contents/Helpers/Brush.app/Contents/MacOS/Brush").path();
    const std::string empty = home.path("Applications/Empty.app/Contents/MacOS/Empty").path();

    EXPECT_EQ(found({{1, "Paint", {"Paint"}, paint}}), Identifiers{"org.example.Paint"});
    EXPECT_EQ(found({{1, "Paint", {paint}, ""}}), Identifiers{"org.example.Paint"});
    EXPECT_EQ(found({{1, "Paint", {"/bin/sh", paint, "-x"}, "/usr/bin/dash"}}),
              Identifiers{"org.example.Paint"});
    EXPECT_EQ(found({{1, "Brush", {"Brush"}, brush}}),
              (Identifiers{"org.example.Paint", "org.example.Paint.Brush"}));

    EXPECT_THAT(found({{1, "Empty", {"Empty"}, empty}}), IsEmpty());
    EXPECT_THAT(found({{1, "cat", {"cat", paint}, "/usr/bin/cat"}}), IsEmpty());
    EXPECT_THAT(found({{1, "sh", {"sh", "-c", paint}, "/usr/bin/dash"}}), IsEmpty());
    EXPECT_THAT(found({{1, "x", {"x.app/Contents/MacOS/x"}, ""}}), IsEmpty());
}

TEST(RunningApplicationSearch, LeavesLookAlikesOut) {
    const std::vector<std::pair<std::string, Process>> cases = {
        {"a script of that name",
         {1, "code", {"/bin/bash", "/home/user/bin/code"}, "/usr/bin/bash"}},
        {"a script of that name, called from its folder",
         {1, "python3", {"python3", "code"}, "/usr/bin/python3.11"}},
        {"a file of that name being edited",
         {1, "vim", {"vim", "code", "firefox", "chrome", "studio.sh"}, "/usr/bin/vim.basic"}},
        {"a folder of that name", {1, "server", {"/opt/code/server"}, "/opt/code/server"}},
        {"a longer name", {1, "code-server", {"code-server"}, "/usr/lib/code-server/code-server"}},
        {"the name in another case", {1, "Code", {"Code"}, "/home/user/bin/Code"}},
        {"the name as the process's name only", {1, "firefox", {"sleep", "9"}, "/usr/bin/sleep"}},
        {"a driver of a browser",
         {1, "chromedriver", {"chromedriver", "--port=9515"}, "/usr/bin/chromedriver"}},
        {"a browser's crash reporter",
         {1,
          "chrome_crashpad",
          {"/opt/google/chrome/chrome_crashpad_handler"},
          "/opt/google/chrome/chrome_crashpad_handler"}},
        {"another tool of the same vendor",
         {1, "java", {"java", "-jar", "/opt/android-studio/lib/studio.jar"}, "/usr/bin/java"}},
        {"a Gradle daemon of the editor",
         {1,
          "java",
          {"/opt/android-studio/jbr/bin/java", "-cp", "/home/user/.gradle/lib/gradle-launcher.jar",
           "org.gradle.launcher.daemon.bootstrap.GradleDaemon", "8.7"},
          "/opt/android-studio/jbr/bin/java"}},
        {"another program with that argument",
         {1, "grep", {"grep", "-Didea.vendor.name=Google"}, "/usr/bin/grep"}},
        {"another IDE",
         {1,
          "java",
          {"java", "-Didea.paths.selector=CLion2023.1", "-Didea.vendor.name=JetBrains"},
          "/opt/clion/jbr/bin/java"}},
        {"a service of the system",
         {1, "firefox-sync", {"x"}, "/usr/bin/x", "0::/system.slice/firefox.service\n"}},
        {"a kernel thread", {2, "kthreadd", {}, "", "0::/\n"}},
        {"a title that only mentions it", {1, "x", {"sshd: firefox --x"}, "/usr/sbin/sshd"}},
        {"an empty argument", {1, "x", {""}, "/usr/bin/x"}},
        {"a replaced program whose name only begins so",
         {1, "code2", {"code2"}, "/home/user/code2 (deleted)"}},
        {"facts of a Flatpak runtime, no application",
         {1,
          "sh",
          {"sh"},
          "/usr/bin/sh",
          loginGroups,
          me,
          "[Runtime]\nname=org.mozilla.firefox\n"}},
        {"facts that would lead elsewhere",
         {1, "sh", {"sh"}, "/usr/bin/sh", loginGroups, me, "[Application]\nname=../../etc\n"}},
        {"facts without a name",
         {1, "sh", {"sh"}, "/usr/bin/sh", loginGroups, me, "[Application]\nname=\n"}},
    };
    for (const auto& [name, process] : cases)
        EXPECT_THAT(found({process}), IsEmpty()) << name;
}

TEST(RunningApplicationSearch, CountsProcessesOfThisUserOnly) {
    Process firefox{7,
                    "firefox",
                    {"firefox"},
                    "/usr/lib/firefox/firefox",
                    groupsOfUnit("app-org.mozilla.firefox-7.scope"),
                    someoneElse,
                    "[Application]\nname=org.mozilla.firefox\n"};
    EXPECT_THAT(found({firefox}), IsEmpty());
    firefox.user = 0;
    EXPECT_THAT(found({firefox}), IsEmpty());
    firefox.user = 10000;
    EXPECT_THAT(found({firefox}), IsEmpty());
    firefox.user = me;
    EXPECT_THAT(found({firefox}), Contains("org.mozilla.firefox"));
}

TEST(RunningApplicationSearch, TakesOnlyNumbersForProcesses) {
    const TempHome tree;
    for (const char* const name : {"self", "thread-self", "7a", "-7", "7 ", ".7"}) {
        record(tree, {7, "firefox", {"firefox"}, "/usr/lib/firefox/firefox"});
        ASSERT_EQ(rename(tree.path("7").path().c_str(), tree.path(name).path().c_str()), 0) << name;
    }
    EXPECT_THAT(findRunningApplications(tree.url(), me), IsEmpty());
}

TEST(RunningApplicationSearch, SurvivesAProcessThatLosesItsFilesMidway) {
    const Process chrome{7, "chrome", {"chrome"}, "/opt/google/chrome/chrome"};
    const Process vanishing{8,
                            "firefox",
                            {"firefox"},
                            "/usr/lib/firefox/firefox",
                            groupsOfUnit("app-org.mozilla.firefox-8.scope"),
                            me,
                            "[Application]\nname=org.mozilla.firefox\n"};
    for (const char* const lost : {"comm", "cmdline", "cgroup", "exe", "root/.flatpak-info"}) {
        const TempHome tree;
        record(tree, chrome);
        record(tree, vanishing);
        ASSERT_EQ(unlink(tree.path("8").appending(lost).path().c_str()), 0) << lost;
        EXPECT_THAT(findRunningApplications(tree.url(), me),
                    AllOf(Contains("com.google.Chrome"), Contains("org.mozilla.firefox")))
            << lost;
    }
    const TempHome tree;
    record(tree, chrome);
    tree.folder("9");    // its files are gone already
    tree.file("10", ""); // no folder
    tree.link("11", "gone");
    EXPECT_THAT(findRunningApplications(tree.url(), me), Contains("com.google.Chrome"));
}

TEST(RunningApplicationSearch, SurvivesOddEntries) {
    const Process chrome{7, "chrome", {"chrome"}, "/opt/google/chrome/chrome"};
    const std::vector<std::pair<std::string, std::function<void(const TempHome&)>>> cases = {
        {"folders in place of files",
         [](const TempHome& tree) {
             tree.file("8/status", "Uid:\t1000\t1000\t1000\t1000\n");
             for (const char* const name : {"8/cmdline", "8/cgroup", "8/root/.flatpak-info"})
                 tree.folder(name);
         }},
        {"a file in place of the link",
         [](const TempHome& tree) {
             record(tree, {8, "x", {"x"}, ""});
             tree.file("8/exe", "firefox");
         }},
        {"a pipe in the sandbox's root",
         [](const TempHome& tree) {
             record(tree, {8, "x", {"x"}, "/usr/bin/x"});
             tree.folder("8/root");
             const URL pipe = tree.path("8/root/.flatpak-info");
             ASSERT_EQ(mkfifo(pipe.path().c_str(), 0600), 0);
         }},
        {"a damaged status",
         [](const TempHome& tree) {
             record(tree, {8, "x", {"firefox"}, "/usr/bin/x"});
             tree.file("8/status", "Uid:\tnobody\nUid\nUid:\t99999999999999999999\n");
         }},
        {"text that is not UTF-8",
         [](const TempHome& tree) {
             record(tree,
                    {8, "\xFF\xFE", {"\xFF\xFE/\xC0"}, "/\xFF\xC0/\x80", "0::/\xFF\xFE\n\xC0\n"});
         }},
        {"no line end anywhere",
         [](const TempHome& tree) {
             record(tree, {8,
                           "x",
                           {"x"},
                           "/usr/bin/x",
                           std::string(300'000, 'a'),
                           me,
                           std::string(300'000, '[')});
         }},
    };
    for (const auto& [name, arrange] : cases) {
        const TempHome tree;
        record(tree, chrome);
        arrange(tree);
        const auto identifiers = findRunningApplications(tree.url(), me);
        EXPECT_THAT(identifiers, Contains("com.google.Chrome")) << name;
        EXPECT_THAT(identifiers, Not(Contains("org.mozilla.firefox"))) << name;
    }
}

TEST(RunningApplicationSearch, ReadsCommandLinesOfAnyLength) {
    std::vector<std::string> arguments{"/opt/android-studio/jbr/bin/java"};
    arguments.resize(40'000, "-Dsome.property=" + std::string(60, 'x'));
    arguments.emplace_back("-Didea.vendor.name=Google");
    EXPECT_THAT(found({{7, "java", arguments, "/opt/android-studio/jbr/bin/java"}}),
                Contains("com.google.android.studio"));
    // More than any system allows: then the program alone counts.
    EXPECT_THAT(found({{7, "code", {"x", std::string(9'000'000, 'x')}, "/usr/share/code/code"}}),
                Contains("com.microsoft.VSCode"));
}

TEST(RunningApplicationSearch, FindsNothingWhereThereAreNoProcesses) {
    const TempHome tree;
    EXPECT_THAT(findRunningApplications(tree.url(), me), IsEmpty());
    EXPECT_THAT(findRunningApplications(tree.path("missing"), me), IsEmpty());
    EXPECT_THAT(findRunningApplications(tree.file("file"), me), IsEmpty());
    EXPECT_THAT(findRunningApplications(URL(), me), IsEmpty());
}

TEST(RunningApplications, CanBeAskedOnThisSystem) {
    EXPECT_THAT(runningBundleIdentifiers(), Not(Contains("")));
}

} // namespace
} // namespace tidewright
