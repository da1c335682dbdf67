#include "samples/SampleHome.h"

#include "core/platform/FileInfo.h"
#include "core/probes/Simctl.h"
#include "core/rules/Xcode.h"
#include "core/scan/DirectorySizer.h"
#include "core/scan/DiskScanner.h"
#include "core/scan/RuleCatalog.h"
#include "core/support/CalendarDays.h"
#include "core/support/Json.h"
#include "core/support/Text.h"
#include "samples/HomeContents.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <thread>

namespace tidewright::test {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

// These find nothing, and why.
const std::map<std::string, std::string> findNothing{
    {"xcode.extraInstalls", "it looks into the applications of all users, outside of the home"},
};

const std::map<std::string, std::string> bareEnvironment{{"PATH", "/usr/bin:/bin"},
                                                         {"LC_ALL", "C.UTF-8"}};

/// While it exists, the environment of this process leads nowhere but into one home.
class EnvironmentOf {
public:
    explicit EnvironmentOf(const URL& home) {
        set("TMPDIR", home.appending(SampleHome::temporaryFolder).path().c_str());
        for (const char* name : {"ANDROID_HOME", "ANDROID_SDK_ROOT", "ANDROID_AVD_HOME"})
            set(name, nullptr);
    }
    ~EnvironmentOf() {
        for (const auto& [name, value] : m_before)
            put(name.c_str(), value ? value->c_str() : nullptr);
    }
    EnvironmentOf(const EnvironmentOf&) = delete;
    EnvironmentOf& operator=(const EnvironmentOf&) = delete;

private:
    static void put(const char* name, const char* value) {
        EXPECT_EQ(value == nullptr ? unsetenv(name) : setenv(name, value, 1), 0);
    }

    void set(const char* name, const char* value) {
        const char* before = std::getenv(name);
        m_before[name] = before == nullptr ? std::nullopt : std::optional<std::string>(before);
        put(name, value);
    }

    std::map<std::string, std::optional<std::string>> m_before;
};

std::string contentsOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Every entry under a folder with what makes it up, and the text of the small ones. Not the time
/// of the last access: that of a script changes when it is run.
std::string snapshotOf(const URL& folder) {
    constexpr off_t small = 50'000;
    std::set<std::string> lines;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder.path())) {
        struct stat status = {};
        EXPECT_EQ(lstat(entry.path().c_str(), &status), 0);
        std::string text;
        if (S_ISLNK(status.st_mode))
            text = fs::read_symlink(entry.path()).string();
        else if (S_ISREG(status.st_mode) && status.st_size < small)
            text = contentsOf(entry.path());
        lines.insert(fmt::format("{} {:o} {} {} {} {} {} {}", entry.path().string(), status.st_mode,
                                 status.st_size, status.st_blocks, status.st_nlink, status.st_mtime,
                                 status.st_ctime, text));
    }
    return fmt::format("{}", fmt::join(lines, "\n"));
}

ScanSettings settings() {
    ScanSettings settings;
    settings.dormantProjectDays = 60;
    settings.unusedAppDays = 90;
    settings.oldDownloadDays = 30;
    settings.largeTrashThreshold = 5 * gigabyte;
    return settings;
}

class SampleHomeTest : public testing::Test {
protected:
    TempHome m_place;
    URL m_home = m_place.path("home");

    void build() {
        const auto built = SampleHome{.folder = m_home}.build();
        ASSERT_TRUE(built) << built.error().sentence;
    }

    ShellRunner runner() const { return {ToolLocator(m_home, bareEnvironment)}; }

    ScanReport scanned() const {
        const EnvironmentOf environment(m_home);
        const DiskScanner scanner(settings(), m_home, RuleCatalog::all(), runner());
        const auto report = scanner.scan([](const ScanProgress&) {}, CancelToken());
        EXPECT_TRUE(report);
        return report.value_or(ScanReport{});
    }

    /// Runs a stand-in, in an environment that leads elsewhere.
    ProcessOutput run(const std::string& tool, const std::string& arguments) const {
        return runIn(m_home, tool, arguments);
    }

    ProcessOutput runIn(const URL& home,
                        const std::string& tool,
                        const std::string& arguments) const {
        Environment environment = bareEnvironment;
        environment["HOME"] = m_place.url().path();
        const auto output =
            runProcess({home.appending(SampleHome::toolFolder).appending(tool),
                        splitDroppingEmpty(arguments, ' '), environment, m_place.url(), 60s},
                       CancelToken());
        EXPECT_TRUE(output) << tool << " did not run";
        return output.value_or(ProcessOutput{});
    }

    bool has(std::string_view path) const { return fs::exists(m_home.appending(path).path()); }

    std::string refusal(const URL& folder, double scale = SampleHome::defaultScale) const {
        const std::string before = snapshotOf(m_place.url());
        const auto built = SampleHome{.folder = folder, .scale = scale}.build();
        EXPECT_EQ(snapshotOf(m_place.url()), before);
        return built ? "it was built" : built.error().sentence;
    }
};

TEST_F(SampleHomeTest, EveryRuleFindsSomething) {
    build();
    std::set<std::string> found;
    for (const ScanItem& item : scanned().items)
        found.insert(item.ruleID);
    for (const CleanupRule& rule : RuleCatalog::all())
        EXPECT_EQ(found.contains(rule.id), !findNothing.contains(rule.id)) << rule.id;
}

TEST_F(SampleHomeTest, WouldShowASecondXcodeWhereApplicationsOfAllUsersAre) {
    build();
    ScanContext context;
    context.home = m_home;
    context.runner = runner();
    const auto items = ExtraXcodeRule().scanApplications(m_home.appending("Applications"), context);
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items.front().title, "Xcode_15.4");
    EXPECT_EQ(items.front().reason,
              fmt::format("Not the active Xcode ({}/Applications/Xcode.app/Contents/Developer).",
                          m_home.path()));
}

TEST_F(SampleHomeTest, DecisionsOfAllKindsOccur) {
    build();
    std::set<Decision> decisions;
    for (const ScanItem& item : scanned().items)
        decisions.insert(item.decision);
    EXPECT_EQ(decisions.size(), 4U);
}

TEST_F(SampleHomeTest, KeyItemsAreJudgedAsTheirDeveloperWould) {
    struct Case {
        std::string idSuffix; ///< what the item's id ends with
        Decision decision;
        std::string reason;
    };
    const std::vector<Case> cases{
        {"sdk/ndk/26.1.10909125", Decision::keep, "Needed by harbour."},
        {"sdk/ndk/25.1.8937393", Decision::clean, "No project uses NDK 25.1.8937393."},
        {"sdk/ndk-bundle", Decision::clean, "No project uses NDK 21.4.7075529."},
        {"build-tools/33.0.0", Decision::keep, "Needed by lighthouse."},
        {"build-tools/36.0.0-rc1", Decision::clean, "Release candidate."},
        {"cmake/3.30.5", Decision::keep, "Used by the last native build of transit-widget."},
        {"android-35/google_apis_playstore", Decision::keep, "Used by emulator Pixel_8."},
        {"android-29/google_apis", Decision::clean, "None of your 2 emulators use this image."},
        {"avd/Pixel_5.avd", Decision::ask, "Last used 95 days ago."},
        {"caches/8.5", Decision::clean, "No project uses Gradle 8.5."},
        {"Caches/Google/AndroidStudio2024.2", Decision::keep,
         "Belongs to the installed Android Studio."},
        {"Caches/Google/AndroidStudio2023.1", Decision::clean, "From an older Android Studio."},
        {"2B6F0E1C-9C1B-4E0A-8F57-1D7A3C5E9B10", Decision::ask,
         "No project script or booted simulator uses it. Last used 131 days ago."},
        {"7D1C4A92-5E3F-4B7C-A6D8-0F2E4C6A8B31", Decision::keep,
         "Needed by lighthouse (iPhone 14)."},
        {"nvm/versions/node/v18.19.0", Decision::keep,
         "Matches \"18.19.0\" required by lighthouse."},
        {"nvm/versions/node/v16.20.2", Decision::clean, "No project's .nvmrc"},
        {"fnm/node-versions/v18.17.0", Decision::keep, "Your default fnm version."},
        {"lighthouse:node_modules", Decision::ask,
         "Dormant: no changes for 214 days. Restore with `yarn install`."},
        {"harbour:node_modules", Decision::keep, "Active project, last changed 2 days ago."},
        {"Downloads/Docker-4.36.0.dmg", Decision::ask, "Downloaded 120 days ago."},
        {"com.docker.docker", Decision::info, "Docker manages this disk itself."},
    };
    build();
    const ScanReport report = scanned();
    for (const Case& each : cases) {
        const auto item = std::ranges::find_if(report.items, [&](const ScanItem& candidate) {
            return candidate.id.ends_with(each.idSuffix);
        });
        ASSERT_NE(item, report.items.end()) << each.idSuffix;
        EXPECT_EQ(item->decision, each.decision) << each.idSuffix << ": " << item->reason;
        EXPECT_THAT(item->reason, StartsWith(each.reason)) << each.idSuffix;
    }
}

TEST_F(SampleHomeTest, HasProjectsOfEveryKindAndEverythingTheyNeed) {
    build();
    const ScanReport report = scanned();
    std::set<Project::Kind> kinds;
    for (const Project& project : report.projects)
        kinds.insert(project.kind);
    EXPECT_EQ(kinds.size(), 6U);
    EXPECT_THAT(report.avdNames, testing::ElementsAre("Pixel_5", "Pixel_8"));

    const std::vector<std::pair<RequirementKind, const char*>> places{
        {RequirementKind::ndk, "ndk/{}/source.properties"},
        {RequirementKind::buildTools, "build-tools/{}/aapt2"},
        {RequirementKind::cmake, "cmake/{}/bin/cmake"},
        {RequirementKind::systemImage, "system-images/{}"},
        {RequirementKind::gradle, "../../../.gradle/caches/{}"}};
    for (const auto& [kind, place] : places) {
        EXPECT_FALSE(report.needed.versions(kind).empty());
        for (const std::string& version : report.needed.versions(kind)) {
            const std::string path = fmt::format(fmt::runtime(place), version);
            EXPECT_TRUE(has("Library/Android/sdk/" + path)) << path;
        }
    }
}

TEST_F(SampleHomeTest, TakesLessThan2GBWithALargeFileInIt) {
    build();
    const Int64 taken = DirectorySizer().size(m_home);
    EXPECT_LT(taken, 2 * gigabyte);
    EXPECT_LE(taken, SampleHome{}.bytes());
    const ScanReport report = scanned();
    ASSERT_EQ(report.largeFiles.size(), 1U);
    EXPECT_EQ(report.largeFiles.front().url,
              m_home.appending("Movies/Talk at the harbour conference.mov"));
}

TEST_F(SampleHomeTest, ItsApplicationsAreListed) {
    build();
    std::map<std::string, std::string> found;
    for (const AppUsage& app : scanned().apps) {
        if (!app.url.isInside(m_home))
            continue; // of all users of this machine
        found[app.name] = app.bundleIdentifier.value_or("none");
        EXPECT_GT(app.sizeBytes, 100'000) << app.name;
    }
    std::map<std::string, std::string> expected;
    for (const HomeContents::Application& app : HomeContents::applications())
        expected.emplace(app.name, app.identifier);
    EXPECT_EQ(found, expected);
}

TEST_F(SampleHomeTest, WhatMattersIsSaid) {
    build();
    std::map<std::string, std::string> titles;
    for (const Insight& insight : scanned().insights)
        titles[insight.id] = insight.title;
    EXPECT_THAT(titles, testing::IsSupersetOf({std::pair<const std::string, std::string>{
                                                   "healthy", "Your Mac is in good shape"},
                                               {"system.snapshots", "4 Local Snapshots"},
                                               {"files.large", "A file larger than 1 GB"}}));
}

TEST_F(SampleHomeTest, ThingsAreAsOldAsToldAndFoldersAsTheNewestThingInThem) {
    const std::vector<std::pair<std::string, int>> ages{
        {"java_error_in_studio_40211.hprof", 77},
        {"Downloads/Docker-4.36.0.dmg", 120},
        {"Developer/clients/lighthouse/package.json", 214},
        {"Developer/clients/lighthouse", 214},
        {"Developer/harbour/src", 2},
        {"Developer", 2},
        {"Developer/atlas/node_modules/typescript", 15}, // a link
        {"Library/Android/sdk/ndk", 45},
        {"Library/Android/sdk/system-images/android-31", 60}, // an empty folder
        {"Library/Developer/Xcode/iOS DeviceSupport/iPhone12,1 16.7.10 (20H350)", 420},
        {"Library/Caches/dotslash", 14},
        {"Library/Caches/Google/Chrome", 0},
    };
    build();
    for (const auto& [path, days] : ages) {
        const auto info = fileInfo(m_home.appending(path), Links::dontFollow);
        ASSERT_TRUE(info) << path;
        EXPECT_EQ(wholeDays(info->modified, currentDate()), days) << path;
    }
}

TEST_F(SampleHomeTest, AScanLeavesItUnchanged) {
    build();
    const std::string before = snapshotOf(m_home);
    scanned();
    EXPECT_EQ(snapshotOf(m_home), before);
}

TEST_F(SampleHomeTest, PathsInTextsAreThoseOfTheHome) {
    build();
    EXPECT_THAT(contentsOf(m_home.appending(".android/avd/Pixel_8.ini").path()),
                HasSubstr(fmt::format("path={}/.android/avd/Pixel_8.avd\n", m_home.path())));
    EXPECT_THAT(snapshotOf(m_home), testing::Not(HasSubstr("{{")));
}

TEST_F(SampleHomeTest, RefusesAPlaceThatIsNotEmpty) {
    m_place.file("full/.hidden", "mine");
    EXPECT_THAT(refusal(m_place.path("full")), HasSubstr("full is not empty"));
    m_place.file("file");
    EXPECT_THAT(refusal(m_place.path("file")), HasSubstr("file is not a folder."));
    m_place.link("link", "full");
    EXPECT_THAT(refusal(m_place.path("link")), HasSubstr("link is not empty"));
    EXPECT_THAT(refusal(URL("/")), HasSubstr("/ is not empty"));
    EXPECT_THAT(refusal(m_place.path("nowhere/home")), HasSubstr("No such file or directory"));
}

TEST_F(SampleHomeTest, RefusesAFileSystemInMemory) {
    const TempHome memory(TempHome::Place::memory);
    if (!memory.url().isInside(URL("/dev/shm")))
        GTEST_SKIP() << "this machine has no file system in memory";
    EXPECT_THAT(refusal(memory.url()), HasSubstr("is kept in memory"));
    EXPECT_THAT(refusal(memory.path("home")), HasSubstr("is kept in memory"));
    EXPECT_TRUE(fs::is_empty(memory.url().path()));
}

TEST_F(SampleHomeTest, RefusesADiskWithTooLittleRoom) {
    EXPECT_THAT(refusal(m_home, SampleHome::largestScale), StartsWith("There is too little room"));
}

TEST_F(SampleHomeTest, TakesAnEmptyFolderAndLeavesItWhenStopped) {
    m_place.folder("home");
    CancelSource source;
    source.cancel();
    const auto stopped = SampleHome{.folder = m_home}.build(source.token());
    ASSERT_FALSE(stopped);
    EXPECT_EQ(stopped.error().kind, SampleHomeError::Kind::cancelled);
    EXPECT_TRUE(fs::is_empty(m_home.path()));
    build();
    EXPECT_TRUE(has("Library"));
}

TEST_F(SampleHomeTest, LeavesNothingWhenStoppedInTheMiddle) {
    bool wasStopped = false;
    // Making it takes so little time that the stop may come too late.
    for (int attempt = 0; attempt < 50 && !wasStopped; ++attempt) {
        m_home = m_place.path(fmt::format("home {}", attempt));
        CancelSource source;
        std::thread stopper([&] {
            while (!has("Library/Android/sdk/cmake"))
                std::this_thread::yield();
            source.cancel();
        });
        wasStopped = !SampleHome{.folder = m_home}.build(source.token());
        stopper.join();
        EXPECT_NE(fs::exists(m_home.path()), wasStopped);
        std::error_code ignored;
        fs::remove_all(m_home.path(), ignored);
    }
    EXPECT_TRUE(wasStopped);
}

/// Runs the program by a shell that does something before.
ProcessOutput runBuilder(const TempHome& place,
                         const std::string& before,
                         const std::string& words) {
    const auto output =
        runProcess({URL("/bin/sh"),
                    {"-c", fmt::format("{} exec {} {}", before, TIDEWRIGHT_SAMPLE_HOME, words)},
                    bareEnvironment,
                    place.url(),
                    120s},
                   CancelToken());
    return output.value_or(ProcessOutput{});
}

TEST_F(SampleHomeTest, LeavesNothingWhenTheDiskFails) {
    const ProcessOutput output =
        runBuilder(m_place, "trap '' XFSZ; ulimit -f 200000;", "home"); // a file of 100 MB at most
    EXPECT_EQ(output.exitCode, 1);
    EXPECT_THAT(output.errorOutput, StartsWith("tidewright-sample-home: Could not allocate "));
    EXPECT_EQ(output.output, "");
    EXPECT_FALSE(fs::exists(m_home.path()));
}

TEST_F(SampleHomeTest, TheProgramSaysWhatItDid) {
    const ProcessOutput output = runBuilder(m_place, "", "home");
    EXPECT_EQ(output.exitCode, 0);
    EXPECT_EQ(output.errorOutput, "");
    EXPECT_EQ(output.output, fmt::format("A sample home of {} is in {}\n",
                                         formattedBytes(SampleHome{}.bytes()), m_home.path()));
    EXPECT_TRUE(has("Library"));
}

TEST_F(SampleHomeTest, TheProgramTellsWrongUsageFromFailure) {
    struct Case {
        std::string arguments;
        int status;
        std::string sentence;
    };
    const std::vector<Case> cases{
        {"", 2, "DIR is required"},
        {"one two", 2, "two"},
        {"home --scale", 2, "--scale"},
        {"home --scale many", 2, "many"},
        {"home --scale 0", 2, "--scale takes a number above 0 and up to 1000."},
        {"home --scale -1", 2, "--scale takes a number above 0 and up to 1000."},
        {"home --scale nan", 2, "--scale takes a number above 0 and up to 1000."},
        {"home --scale 1e30", 2, "--scale takes a number above 0 and up to 1000."},
        {"home --scale 1000", 1, "There is too little room"},
        {"/", 1, "/ is not empty"},
    };
    for (const Case& each : cases) {
        const ProcessOutput output = runBuilder(m_place, "", each.arguments);
        EXPECT_EQ(output.exitCode, each.status) << each.arguments;
        EXPECT_EQ(output.output, "") << each.arguments;
        EXPECT_THAT(output.errorOutput, StartsWith("tidewright-sample-home: ")) << each.arguments;
        EXPECT_THAT(output.errorOutput, HasSubstr(each.sentence)) << each.arguments;
        EXPECT_EQ(std::ranges::count(output.errorOutput, '\n'), 1) << output.errorOutput;
    }
    const ProcessOutput help = runBuilder(m_place, "", "--help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.output, HasSubstr("--scale N"));
    EXPECT_THAT(snapshotOf(m_place.url()), IsEmpty());
}

// The stand-in tools

/// A command that deletes.
struct Deletion {
    std::string tool;
    std::string arguments;
    std::string folder; ///< in which, or which itself, it deletes
    std::string gone;   ///< some of what it deletes
    std::string stays;  ///< a neighbour
};

const std::string devices = "Library/Developer/CoreSimulator/Devices/";
const std::string runtimes = "Library/Developer/CoreSimulator/Images/";
const std::string previews = "Library/Developer/Xcode/UserData/Previews/Simulator Devices";
const std::string iPhone13 = "11F4B6D8-0A2C-4E3F-8B5D-7C9E1A3F5B01";
const std::string iPhoneSE = "33B6D8FA-2C4E-4051-AD7F-9EB03C517D23";
const std::string iPhone16Pro = "66E90B2D-5F71-4384-90A2-C1E36F84A056";
const std::string iOS16 = "2B6F0E1C-9C1B-4E0A-8F57-1D7A3C5E9B10";
const std::string iOS17 = "7D1C4A92-5E3F-4B7C-A6D8-0F2E4C6A8B31";

const std::vector<Deletion>& deletions() {
    static const std::vector<Deletion> all{
        {"brew", "cleanup --prune=all", "Library/Caches/Homebrew",
         "Library/Caches/Homebrew/downloads", "Library/Caches/Google"},
        {"npm", "cache clean --force", ".npm/_cacache", ".npm/_cacache/content-v2", ".npm/_npx"},
        {"pnpm", "store prune", "Library/pnpm/store", "Library/pnpm/store/v3/files/a9",
         "Library/pnpm/store/v3/files/04/typescript"},
        {"pod", "cache clean --all", "Library/Caches/CocoaPods", "Library/Caches/CocoaPods/Pods",
         "Library/Caches/ReactNative"},
        {"xcrun", "simctl --set previews delete all", previews, previews + "/5A1E-preview",
         devices + iPhoneSE},
        {"xcrun", "simctl erase " + iPhoneSE, devices + iPhoneSE + "/data",
         devices + iPhoneSE + "/data/Containers", devices + iPhoneSE + "/record"},
        {"xcrun", "simctl delete unavailable", devices, devices + iPhone13, devices + iPhoneSE},
        {"xcrun", "simctl delete " + iPhoneSE, devices + iPhoneSE, devices + iPhoneSE,
         devices + iPhone13},
        {"xcrun", "simctl runtime delete " + iOS16, runtimes + iOS16, runtimes + iOS16,
         runtimes + iOS17},
    };
    return all;
}

TEST_F(SampleHomeTest, ToolsDeleteWhatTheRealOnesWould) {
    build();
    for (const Deletion& each : deletions()) {
        const std::string command = each.tool + " " + each.arguments;
        ASSERT_TRUE(has(each.gone) || each.gone == devices + iPhoneSE) << command;
        const ProcessOutput output = run(each.tool, each.arguments);
        EXPECT_EQ(output.exitCode, 0) << command << ": " << output.errorOutput;
        EXPECT_FALSE(has(each.gone)) << command;
        EXPECT_TRUE(has(each.stays) || each.stays == devices + iPhone13) << command;
    }
}

TEST_F(SampleHomeTest, ToolsHaveNothingToDoASecondTime) {
    build();
    for (const char* tool :
         {"brew cleanup --prune=all", "npm cache clean --force", "pnpm store prune",
          "pod cache clean --all", "xcrun simctl delete unavailable"}) {
        const std::string line = tool;
        const auto blank = line.find(' ');
        for (int time = 0; time < 2; ++time)
            EXPECT_EQ(run(line.substr(0, blank), line.substr(blank)).exitCode, 0) << line;
    }
}

TEST_F(SampleHomeTest, ToolsRefuseWhatALinkLeadsTo) {
    build();
    int number = 0;
    for (const Deletion& each : deletions()) {
        const std::string command = each.tool + " " + each.arguments;
        const URL folder(m_home.appending(each.folder).standardized());
        const URL outside = m_place.path(fmt::format("outside {}", number++));
        fs::rename(folder.path(), outside.path());
        fs::create_directory_symlink(outside.path(), folder.path());
        const std::string before = snapshotOf(outside);
        const ProcessOutput output = run(each.tool, each.arguments);
        EXPECT_NE(output.exitCode, 0) << command;
        EXPECT_THAT(output.errorOutput, HasSubstr("nothing is touched")) << command;
        EXPECT_EQ(snapshotOf(outside), before) << command;
        fs::remove(folder.path());
        fs::rename(outside.path(), folder.path());
    }
}

TEST_F(SampleHomeTest, ToolsActOnTheirOwnHomeWhateverTheEnvironmentSays) {
    build();
    // The environment's home is the folder around it.
    m_place.file("Library/Caches/Homebrew/bottle");
    m_place.file(".npm/_cacache/package");
    EXPECT_EQ(run("brew", "cleanup --prune=all").exitCode, 0);
    EXPECT_EQ(run("npm", "cache clean --force").exitCode, 0);
    EXPECT_TRUE(fs::exists(m_place.path("Library/Caches/Homebrew/bottle").path()));
    EXPECT_TRUE(fs::exists(m_place.path(".npm/_cacache/package").path()));
}

TEST_F(SampleHomeTest, ToolsRefuseAHomeThatIsNoSample) {
    build();
    m_place.file("real/Library/Caches/Homebrew/bottle");
    m_place.folder("real/.volta");
    const URL real = m_place.path("real");
    fs::copy(m_home.appending(SampleHome::toolFolder).path(),
             real.appending(SampleHome::toolFolder).path());
    for (const Deletion& each : deletions()) {
        const ProcessOutput output = runIn(real, each.tool, each.arguments);
        EXPECT_EQ(output.exitCode, 1) << each.tool;
        EXPECT_THAT(output.errorOutput, HasSubstr("works in a sample home only")) << each.tool;
    }
    EXPECT_TRUE(fs::exists(real.appending("Library/Caches/Homebrew/bottle").path()));
}

TEST_F(SampleHomeTest, ToolsRefuseWhatTheyDoNotKnow) {
    build();
    const std::string before = snapshotOf(m_home);
    const std::vector<std::pair<std::string, std::string>> commands{
        {"brew", "uninstall --force node"},
        {"npm", "install"},
        {"npm", "cache clean"},
        {"pnpm", "store prune --force"},
        {"pod", "install"},
        {"tmutil", "delete /"},
        {"tmutil", "thinlocalsnapshots /Volumes/Backup 999999999999 4"},
        {"xcode-select", "-s /Applications/Xcode.app"},
        {"xcrun", "clang"},
        {"xcrun", "simctl erase"},
        {"xcrun", "simctl erase ../../../../.ssh"},
        {"xcrun", "simctl erase NO-SUCH-DEVICE"},
        {"xcrun", "simctl erase " + iPhone16Pro}, // is booted
        {"xcrun", "simctl delete ."},
        {"xcrun", "simctl runtime delete .."},
        {"xcrun", "simctl --set /tmp delete all"},
    };
    for (const auto& [tool, arguments] : commands) {
        const ProcessOutput output = run(tool, arguments);
        EXPECT_EQ(output.exitCode, 1) << tool << " " << arguments;
        EXPECT_THAT(output.errorOutput, StartsWith(tool + ": ")) << arguments;
    }
    EXPECT_EQ(snapshotOf(m_home), before);
}

TEST_F(SampleHomeTest, SimulatorsAreListedWithWhatTheyTakeOnDisk) {
    build();
    const auto listed = Simctl::devices(runner(), CancelToken());
    ASSERT_EQ(listed.size(), 8U);
    for (const Simctl::Device& device : listed) {
        ASSERT_TRUE(device.dataPath && device.dataPathSize) << device.name;
        EXPECT_EQ(*device.dataPath, m_home.appending(devices + device.udid + "/data").path());
        EXPECT_EQ(*device.dataPathSize, DirectorySizer().size(URL(*device.dataPath)));
        EXPECT_EQ(device.isAvailable, !contains(device.runtimeIdentifier, "iOS-15")) << device.name;
        EXPECT_EQ(device.isBooted(), device.name == "iPhone 16 Pro") << device.name;
        EXPECT_EQ(device.lastBootedAt.has_value(), !contains(device.name, "iPad Pro"))
            << device.name;
    }
    const auto listedRuntimes = Simctl::runtimes(runner(), CancelToken());
    ASSERT_EQ(listedRuntimes.size(), 4U);
    for (const Simctl::Runtime& runtime : listedRuntimes)
        EXPECT_GE(runtime.sizeBytes.value_or(0), megabyte) << runtime.identifier;
}

TEST_F(SampleHomeTest, SimulatorsCanBeErasedAndLoseTheirRuntime) {
    build();
    EXPECT_EQ(run("xcrun", "simctl erase " + iPhoneSE).exitCode, 0);
    EXPECT_EQ(run("xcrun", "simctl runtime delete " + iOS16).exitCode, 0);
    EXPECT_EQ(Simctl::runtimes(runner(), CancelToken()).size(), 3U);
    const auto listed = Simctl::devices(runner(), CancelToken());
    ASSERT_EQ(listed.size(), 8U);
    for (const Simctl::Device& device : listed)
        if (device.udid == iPhoneSE) {
            EXPECT_LT(device.dataPathSize.value_or(gigabyte), megabyte);
            EXPECT_FALSE(device.isAvailable);
        }
    EXPECT_EQ(run("xcrun", "simctl delete unavailable").exitCode, 0);
    EXPECT_EQ(Simctl::devices(runner(), CancelToken()).size(), 5U);
}

TEST_F(SampleHomeTest, WithoutSimulatorsTheListsAreEmptyButWellFormed) {
    build();
    fs::remove_all(m_home.appending("Library/Developer/CoreSimulator").path());
    EXPECT_EQ(parseJson(run("xcrun", "simctl list devices -j").output),
              parseJson(R"({"devices":{}})"));
    EXPECT_EQ(parseJson(run("xcrun", "simctl runtime list -j").output), parseJson("{}"));
}

TEST_F(SampleHomeTest, ListsAreWellFormedWhateverTheHomeIsCalled) {
    m_home = m_place.path("a \"quoted\" \\ home");
    build();
    EXPECT_EQ(Simctl::devices(runner(), CancelToken()).size(), 8U);
    EXPECT_EQ(Simctl::runtimes(runner(), CancelToken()).size(), 4U);
}

TEST_F(SampleHomeTest, SnapshotsAreListedAndThinned) {
    build();
    EXPECT_THAT(run("tmutil", "listlocalsnapshots /").output,
                testing::ContainsRegex("^Snapshots for disk /:\n(com.apple.TimeMachine."
                                       "[0-9]{4}(-[0-9]{2}){2}-[0-9]{6}.local\n){4}$"));
    EXPECT_THAT(run("tmutil", "thinlocalsnapshots / 999999999999 4").output,
                StartsWith("Thinned local snapshots:\n20"));
    EXPECT_EQ(run("tmutil", "listlocalsnapshots /").output, "Snapshots for disk /:\n");
}

TEST_F(SampleHomeTest, PackagesThatAProjectUsesStayWhole) {
    build();
    EXPECT_EQ(run("pnpm", "store prune").exitCode, 0);
    const URL used = m_home.appending("Developer/atlas/node_modules/typescript/lib/tsc.js");
    const auto info = fileInfo(used, Links::follow);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->linkCount, 2U);
}

} // namespace

} // namespace tidewright::test
