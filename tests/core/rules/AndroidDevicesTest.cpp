#include "core/rules/AndroidDevices.h"

#include "tests/support/RuleTesting.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace tidewright::test {

namespace {

using namespace std::chrono_literals;
using enum Decision;

constexpr auto day = 24h;

/// What each item of these rules has unless told otherwise.
ScanItem item(std::string ruleID, std::vector<URL> urls) {
    return usualItem(Category::android, std::move(ruleID), std::move(urls));
}

struct Machine {
    TempHome home;
    ScanContext context;

    Machine() {
        context.home = home.url();
        context.android.avdHome = home.path(".android/avd");
        context.now = now;
    }
    /// An emulator whose folder isn't made.
    AndroidEnvironment::AVD avd(const std::string& name,
                                std::optional<std::string> image = std::nullopt) {
        context.android.avds.push_back({name, home.path(".android/avd/" + name + ".avd"),
                                        home.path(".android/avd/" + name + ".ini"),
                                        std::move(image)});
        return context.android.avds.back();
    }
    void needGradle(const std::string& version, const std::string& owner) {
        context.needed.add(RequirementKind::gradle, version, owner);
    }
    void run(std::string commandLine) {
        context.inUse.processCommandLines.push_back(std::move(commandLine));
    }
    template <class Rule>
    void expect(const std::vector<ScanItem>& expected) const {
        expectItems(scanWith<Rule>(context), expected);
    }
};

// What is left alone

class AndroidDevicesLeaveAlone : public testing::TestWithParam<LeftAlone> {};

TEST_P(AndroidDevicesLeaveAlone, ThisHome) {
    Machine machine;
    make(machine.home, GetParam(), "x");
    // Everything else would be cleaned.
    machine.needGradle("1.0", "app");
    machine.context.android.studioDataDirectories = {"AndroidStudio2030.1"};
    if (GetParam().scan == scanWith<AVDSnapshotsRule>)
        machine.avd("Pixel");
    expectItems(GetParam().scan(machine.context), {});
}

const LeftAlone leftAlone[] = {
    {.name = "EmulatorWithoutSnapshots",
     .scan = scanWith<AVDSnapshotsRule>,
     .files = {".android/avd/Pixel.avd/userdata-qemu.img", ".android/avd/Pixel.avd/snapshot"},
     .folders = {".android/avd/Pixel.avd/snapshots2", ".android/avd/Pixel.avd/data/snapshots",
                 ".android/avd/snapshots", ".android/avd/Other.avd/snapshots"}},
    {.name = "EmulatorThatIsGone", .scan = scanWith<AVDSnapshotsRule>},
    {.name = "EmulatorThatIsAFile",
     .scan = scanWith<AVDSnapshotsRule>,
     .files = {".android/avd/Pixel.avd"}},
    {.name = "SnapshotsThatAreAFile",
     .scan = scanWith<AVDSnapshotsRule>,
     .files = {".android/avd/Pixel.avd/snapshots"}},
    {.name = "SnapshotsThatLieElsewhere",
     .scan = scanWith<AVDSnapshotsRule>,
     .folders = {"elsewhere"},
     .links = {{".android/avd/Pixel.avd/snapshots", "../../../elsewhere"}}},
    {.name = "EmulatorsThatTheEnvironmentDoesNotKnow",
     .scan = scanWith<AVDRule>,
     .folders = {".android/avd/Pixel.avd/snapshots"}},
    {.name = "GradleCachesOfNoVersion",
     .scan = scanWith<GradleVersionCacheRule>,
     .folders = {".gradle/caches/journal-1", ".gradle/caches/jars-9", ".gradle/caches/modules-2",
                 ".gradle/caches/build-cache-1", ".gradle/caches/transforms-4",
                 ".gradle/caches/v8.7", ".gradle/caches/.8.7", ".gradle/caches/-8.7",
                 ".gradle/caches/ 8.7", ".gradle/8.7", ".gradle2/caches/8.7", "caches/8.7",
                 ".gradle/caches/modules-2/8.7"}},
    {.name = "GradleCachesThatAreNoFolders",
     .scan = scanWith<GradleVersionCacheRule>,
     .files = {".gradle/caches/8.7", ".gradle/caches/8.8.lock"},
     .folders = {"elsewhere"},
     .links = {{".gradle/caches/8.9", "../../elsewhere"}, {".gradle/caches/8.10", "gone"}}},
    {.name = "FileInPlaceOfGradleCaches",
     .scan = scanWith<GradleVersionCacheRule>,
     .files = {".gradle/caches"}},
    {.name = "WhatIsNoGradleDistribution",
     .scan = scanWith<GradleWrapperDistRule>,
     .folders = {".gradle/wrapper/dists/gradle-8.7-src",
                 ".gradle/wrapper/dists/gradle-8.7-docs",
                 ".gradle/wrapper/dists/gradle-8.7",
                 ".gradle/wrapper/dists/gradle-8.7-bin2",
                 ".gradle/wrapper/dists/gradle-8.7-bin-2",
                 ".gradle/wrapper/dists/gradle-8.7-bin ",
                 ".gradle/wrapper/dists/my-gradle-8.7-bin",
                 ".gradle/wrapper/dists/gradle--bin",
                 ".gradle/wrapper/dists/gradle-8.7-BIN",
                 ".gradle/wrapper/dists/Gradle-8.7-all",
                 ".gradle/wrapper/dists/gradle-v8.7-bin",
                 ".gradle/wrapper/dists/gradle-.8-bin",
                 ".gradle/wrapper/dists/gradle-8.7-milestone-1-bin",
                 ".gradle/wrapper/dists/gradle-8.7-rc--1-bin",
                 ".gradle/wrapper/dists/gradle-8.7-rc-bin",
                 ".gradle/wrapper/dists/gradle-8.7-rc-1-rc-2-bin",
                 ".gradle/wrapper/dists/gradle-8.9-20240601000000+0000-bin",
                 ".gradle/wrapper/dists/gradle 8.7-bin",
                 ".gradle/wrapper/dists/.gradle-8.7-bin",
                 ".gradle/wrapper/dists/8.7",
                 ".gradle/wrapper/gradle-8.7-bin",
                 ".gradle/wrapper/dists/deeper/gradle-8.7-bin",
                 "wrapper/dists/gradle-8.7-bin"},
     .links = {}},
    {.name = "FileInPlaceOfGradleDistributions",
     .scan = scanWith<GradleWrapperDistRule>,
     .files = {".gradle/wrapper/dists"}},
    {.name = "OtherFoldersOfDaemons",
     .scan = scanWith<GradleDaemonLogsRule>,
     .folders = {".gradle/daemon2", ".gradle/daemons", ".gradle/notifications", ".gradle/native",
                 ".kotlin/sessions", ".kotlin/daemon.old", "daemon", ".konan/daemon"},
     .links = {{".gradle/daemon", "gone"}, {".kotlin/daemon", "../gone"}}},
    {.name = "OtherFoldersOfGoogle",
     .scan = scanWith<AndroidStudioLeftoversRule>,
     .folders = {"Library/Caches/Google/GoogleChrome", "Library/Caches/Google/Chrome",
                 "Library/Caches/Google/androidstudio2023.3",
                 "Library/Caches/Google/Android Studio",
                 "Library/Caches/Google/MyAndroidStudio2023.3",
                 "Library/Caches/Google/.AndroidStudio2023.3",
                 "Library/Caches/Google/Chrome/AndroidStudio2023.3",
                 "Library/Application Support/Google/DriveFS",
                 "Library/Logs/Google/GoogleSoftwareUpdateAgent",
                 "Library/Caches/AndroidStudio2023.3", "Library/Logs/AndroidStudio2023.3",
                 "Library/Preferences/Google/AndroidStudio2023.3", "Google/AndroidStudio2023.3",
                 "Library/Caches/JetBrains/AndroidStudio2023.3", ".AndroidStudio4.1/config"},
     .links = {{"Library/Application Support/Google2", "gone"}}},
    {.name = "FilesInPlaceOfGooglesFolders",
     .scan = scanWith<AndroidStudioLeftoversRule>,
     .files = {"Library/Caches/Google", "Library/Application Support/Google",
               "Library/Logs/Google"}},
    {.name = "WhatIsNoHeapDump",
     .scan = scanWith<HeapDumpRule>,
     .files = {"hprof", ".hprof", "java_pid123.hprof.gz", "java_pid123.HPROF", "java_pid123.hprof ",
               "java_pid123.hprof2", "java_pid123.xhprof", "java_error_in_studio.log",
               ".java_pid123.hprof", "java_pid123hprof", "java_pid123.hprof."}},
    {.name = "HeapDumpsElsewhere",
     .scan = scanWith<HeapDumpRule>,
     .files = {"Documents/java_pid123.hprof", "Downloads/a.hprof", "Desktop/a.hprof"}},
};

INSTANTIATE_TEST_SUITE_P(All,
                         AndroidDevicesLeaveAlone,
                         testing::ValuesIn(leftAlone),
                         [](const auto& each) { return each.param.name; });

TEST(AndroidDeviceRules, FoldersThatMayNotBeListedGiveNothing) {
    Machine machine;
    machine.home.setMode("", 0755);
    machine.home.folder(".gradle/caches/8.7");
    machine.home.folder(".gradle/wrapper/dists/gradle-8.7-bin");
    machine.home.folder("Library/Logs/Google/AndroidStudio2023.3");
    const auto count = [&] {
        return fmt::format("{} {} {}", scanWith<GradleVersionCacheRule>(machine.context).size(),
                           scanWith<GradleWrapperDistRule>(machine.context).size(),
                           scanWith<AndroidStudioLeftoversRule>(machine.context).size());
    };
    EXPECT_EQ(asOrdinaryUser(count), "1 1 1");
    for (const char* folder : {".gradle/caches", ".gradle/wrapper/dists", "Library/Logs/Google"})
        machine.home.setMode(folder, 0);
    EXPECT_EQ(asOrdinaryUser(count), "0 0 0");
}

// Emulators

ScanItem snapshotsOf(const AndroidEnvironment::AVD& avd) {
    ScanItem expected = item("android.avdSnapshots", {avd.directory.appending("snapshots")});
    expected.group = "Emulator quick-boot snapshots";
    expected.title = avd.name + " snapshots";
    expected.reason = "Snapshots only make the next boot faster.";
    expected.whatItIs =
        "Saved RAM state that lets the emulator resume instantly instead of booting.";
    expected.afterEffect = "The next boot of " + avd.name +
                           " is a cold boot (about 30–60 s), then a new snapshot is saved.";
    return expected;
}

ScanItem emulator(const AndroidEnvironment::AVD& avd,
                  std::optional<Date> lastUsed,
                  const std::string& used) {
    ScanItem expected = item("android.avd", {avd.directory, avd.iniFile});
    expected.group = "Emulators";
    expected.title = avd.name;
    expected.version = avd.systemImage;
    expected.risk = Risk::check;
    expected.decision = ask;
    expected.reason = used + "Emulators are devices, so Tidewright never removes them on its own.";
    expected.whatItIs = "A whole Android virtual device: its storage, installed apps and settings.";
    expected.afterEffect = "The emulator disappears from Device Manager. Recreate it from Android "
                           "Studio if you need it again.";
    expected.lastUsed = lastUsed;
    return expected;
}

TEST(AVDSnapshotsRule, OneItemForEachEmulatorThatHasSome) {
    Machine machine;
    const auto pixel = machine.avd("Pixel_8", "android-34/google_apis");
    machine.avd("Plain");
    const auto tablet = machine.avd("Täb");
    machine.home.file(".android/avd/Pixel_8.avd/snapshots/default_boot/ram.bin");
    machine.home.folder(".android/avd/Plain.avd");
    machine.home.folder(".android/avd/Täb.avd/snapshots");
    machine.expect<AVDSnapshotsRule>({snapshotsOf(pixel), snapshotsOf(tablet)});
}

TEST(AVDRule, AnEmulatorIsAnItemWhateverItsFolderHolds) {
    Machine machine;
    const auto gone = machine.avd("gone", "android-34/google_apis");
    const auto file = machine.avd("file");
    machine.home.file(".android/avd/file.avd");
    machine.home.setModified(".android/avd/file.avd", now - 2 * day);
    machine.expect<AVDRule>({emulator(gone, std::nullopt, ""),
                             emulator(file, now - 2 * day, "Last used 2 days ago. ")});
    machine.expect<AVDSnapshotsRule>({});
}

TEST(AVDRule, LastUseIsTheFirstDateThatExists) {
    Machine machine;
    const auto pixel = machine.avd("Pixel_8");
    const std::string folder = ".android/avd/Pixel_8.avd";
    const auto expectDays = [&](int days) {
        machine.home.setModified(folder, now - 7 * day);
        machine.expect<AVDRule>(
            {emulator(pixel, now - days * day, fmt::format("Last used {} days ago. ", days))});
    };
    machine.home.file(folder + "/config.ini");
    machine.home.file(folder + "/userdata.img");
    machine.home.file(".android/avd/Pixel_8.ini");
    expectDays(7);
    machine.home.file(folder + "/userdata-qemu.img");
    machine.home.setModified(folder + "/userdata-qemu.img", now - 5 * day);
    expectDays(5);
    machine.home.file(folder + "/userdata-qemu.img.qcow2");
    machine.home.setModified(folder + "/userdata-qemu.img.qcow2", now - 9 * day);
    expectDays(9); // the first, not the latest
}

TEST(AVDRule, NoAgeMakesAnEmulatorARecommendation) {
    struct Age {
        std::chrono::seconds age;
        std::string used;
    };
    const Age ages[] = {
        {0h, "today"},
        {23h + 59min, "today"},
        {day, "yesterday"},
        {2 * day - 1s, "yesterday"},
        {2 * day, "2 days ago"},
        {30 * day, "30 days ago"},
        {4000 * day, "4000 days ago"},
        {-1h, "today"},
        {-2 * day, "-2 days ago"},
    };
    Machine machine;
    const auto pixel = machine.avd("Pixel_8", "android-34/google_apis");
    machine.home.folder(".android/avd/Pixel_8.avd");
    for (const Age& each : ages) {
        machine.home.setModified(".android/avd/Pixel_8.avd", now - each.age);
        machine.expect<AVDRule>({emulator(pixel, now - each.age, "Last used " + each.used + ". ")});
    }
}

TEST(AVDRule, OnlyTheEmulatorThatRunsIsKeptAndSoAreItsSnapshots) {
    Machine machine;
    const auto pixel = machine.avd("Pixel_8");
    const auto copy = machine.avd("Pixel_8_2");
    for (const char* name : {"Pixel_8", "Pixel_8_2"}) {
        machine.home.folder(fmt::format(".android/avd/{}.avd/snapshots", name));
        machine.home.setModified(fmt::format(".android/avd/{}.avd", name), now);
    }
    machine.context.inUse.runningAVDs = {"Pixel_8", "Pixel", "pixel_8_2", ""};
    machine.run("qemu-system-aarch64 -avd Pixel_8_2"); // only the names count
    machine.expect<AVDSnapshotsRule>(
        {kept(snapshotsOf(pixel), "Emulator Pixel_8 is running.", "Emulator Pixel_8"),
         snapshotsOf(copy)});
    machine.expect<AVDRule>(
        {kept(emulator(pixel, now, ""), "Emulator Pixel_8 is running.", "Emulator Pixel_8"),
         emulator(copy, now, "Last used today. ")});
}

// Gradle

ScanItem versionCache(const Machine& machine,
                      const std::string& version,
                      Decision decision,
                      std::string reason) {
    ScanItem expected =
        item("gradle.versionCache", {machine.home.path(".gradle/caches/" + version)});
    expected.group = "Gradle caches";
    expected.title = "Gradle cache";
    expected.version = version;
    expected.decision = decision;
    expected.reason = std::move(reason);
    expected.whatItIs = "Transformed dependencies and build cache for one Gradle version.";
    expected.afterEffect =
        "The first build with Gradle " + version + " is slower while the cache is rebuilt.";
    return expected;
}

ScanItem distribution(const Machine& machine,
                      const std::string& name,
                      const std::string& version,
                      Decision decision,
                      std::string reason) {
    ScanItem expected =
        item("gradle.wrapperDist", {machine.home.path(".gradle/wrapper/dists/" + name)});
    expected.group = "Gradle distributions";
    expected.title = "Gradle distribution";
    expected.version = version;
    expected.decision = decision;
    expected.reason = std::move(reason);
    expected.whatItIs = "The downloaded Gradle " + version + " program used by the Gradle wrapper.";
    expected.afterEffect =
        "Downloaded again (about 150 MB) the next time a project uses Gradle " + version + ".";
    return expected;
}

const std::string noGradleDeclared = "No project on this Mac declares a Gradle version, so "
                                     "Tidewright can't confirm this one is unused.";

/// With 8.7 and 8.10 as cache and as distribution.
struct GradleMachine : Machine {
    GradleMachine() {
        for (const char* version : {"8.10", "8.7"}) {
            home.folder(fmt::format(".gradle/caches/{}", version));
            home.folder(fmt::format(".gradle/wrapper/dists/gradle-{}-bin", version));
        }
    }
};

TEST(GradleRules, AskWhenNoProjectDeclaresGradle) {
    GradleMachine machine;
    machine.context.needed.add(RequirementKind::ndk, "8.7", "app");
    machine.expect<GradleVersionCacheRule>({versionCache(machine, "8.7", ask, noGradleDeclared),
                                            versionCache(machine, "8.10", ask, noGradleDeclared)});
    machine.expect<GradleWrapperDistRule>(
        {distribution(machine, "gradle-8.7-bin", "8.7", ask, noGradleDeclared),
         distribution(machine, "gradle-8.10-bin", "8.10", ask, noGradleDeclared)});
}

TEST(GradleRules, KeepWhatProjectsNeedAndCleanTheOthers) {
    GradleMachine machine;
    machine.needGradle("8.10", "shop");
    machine.needGradle("8.7.1", "game"); // not 8.7
    const std::string unused = "No project uses Gradle 8.7. Projects need 8.7.1, 8.10.";
    machine.expect<GradleVersionCacheRule>(
        {versionCache(machine, "8.7", clean, unused),
         versionCache(machine, "8.10", keep, "Needed by shop.")});
    machine.expect<GradleWrapperDistRule>(
        {distribution(machine, "gradle-8.7-bin", "8.7", clean, unused),
         distribution(machine, "gradle-8.10-bin", "8.10", keep, "Needed by shop.")});
}

TEST(GradleRules, ARunningDaemonKeepsItsVersionWhereNothingElseDoes) {
    GradleMachine machine;
    machine.needGradle("8.10", "shop");
    for (const char* version : {"8.7", "8.10"})
        machine.run(fmt::format("java -cp /home/.gradle/wrapper/dists/gradle-{}-bin/x/lib.jar "
                                "org.gradle.launcher.daemon.bootstrap.GradleDaemon {}",
                                version, version));
    const std::string runs = "A Gradle 8.7 daemon is running.";
    machine.expect<GradleVersionCacheRule>(
        {kept(versionCache(machine, "8.7", clean, ""), runs, "Gradle daemon"),
         versionCache(machine, "8.10", keep, "Needed by shop.")});
    // A distribution names nobody.
    machine.expect<GradleWrapperDistRule>(
        {kept(distribution(machine, "gradle-8.7-bin", "8.7", clean, ""), runs, std::nullopt),
         distribution(machine, "gradle-8.10-bin", "8.10", keep, "Needed by shop.")});
}

TEST(GradleRules, ARunningDaemonKeepsWhatWouldBeAskedFor) {
    GradleMachine machine;
    machine.run("java GradleDaemon /home/.gradle/caches/8.10/x");
    const std::string runs = "A Gradle 8.10 daemon is running.";
    machine.expect<GradleVersionCacheRule>(
        {versionCache(machine, "8.7", ask, noGradleDeclared),
         kept(versionCache(machine, "8.10", ask, ""), runs, "Gradle daemon")});
    machine.expect<GradleWrapperDistRule>(
        {distribution(machine, "gradle-8.7-bin", "8.7", ask, noGradleDeclared),
         kept(distribution(machine, "gradle-8.10-bin", "8.10", ask, ""), runs, std::nullopt)});
}

TEST(GradleRules, DaemonsOfOtherVersionsKeepNothing) {
    GradleMachine machine;
    machine.needGradle("1.0", "app");
    machine.run("java GradleDaemon /dists/gradle-8.7.1-bin/lib.jar");
    machine.run("java GradleWorkerMain /dists/gradle-8.7-bin/lib.jar");
    machine.run("java GradleDaemon 8.7");
    for (const ScanItem& each : scanWith<GradleVersionCacheRule>(machine.context))
        EXPECT_EQ(each.decision, clean) << each.reason;
    for (const ScanItem& each : scanWith<GradleWrapperDistRule>(machine.context))
        EXPECT_EQ(each.decision, clean) << each.reason;
}

TEST(GradleVersionCacheRule, FoldersThatBeginWithADigitAreVersions) {
    Machine machine;
    std::vector<ScanItem> expected;
    for (const char* name : {"0", "5.6.4", "8.10-rc-1", "9 copy"}) {
        machine.home.folder(fmt::format(".gradle/caches/{}", name));
        expected.push_back(versionCache(machine, name, ask, noGradleDeclared));
    }
    machine.expect<GradleVersionCacheRule>(expected);
}

TEST(GradleWrapperDistRule, ReadsTheVersionFromTheName) {
    Machine machine;
    std::vector<ScanItem> expected;
    for (const auto& [name, version] : {
             std::pair{"gradle-4-all", "4"},
             std::pair{"gradle-8.7-all", "8.7"},
             std::pair{"gradle-8.7-bin", "8.7"},
             std::pair{"gradle-8.7.-bin", "8.7."},
             std::pair{"gradle-8.10-rc-1-bin", "8.10-rc-1"},
             std::pair{"gradle-8.10-rc2-all", "8.10-rc2"},
         }) {
        machine.home.folder(fmt::format(".gradle/wrapper/dists/{}", name));
        expected.push_back(distribution(machine, name, version, ask, noGradleDeclared));
    }
    auto found = scanWith<GradleWrapperDistRule>(machine.context);
    std::ranges::sort(found, {}, &ScanItem::id);
    std::ranges::sort(expected, {}, &ScanItem::id);
    expectItems(found, expected);
}

TEST(GradleWrapperDistRule, ACandidateIsNotItsRelease) {
    Machine machine;
    machine.home.folder(".gradle/wrapper/dists/gradle-8.10-rc-1-bin");
    machine.needGradle("8.10", "app");
    machine.expect<GradleWrapperDistRule>(
        {distribution(machine, "gradle-8.10-rc-1-bin", "8.10-rc-1", clean,
                      "No project uses Gradle 8.10-rc-1. Projects need 8.10.")});
}

ScanItem daemonLogs(std::vector<URL> urls) {
    ScanItem expected = item("gradle.daemonLogs", std::move(urls));
    expected.group = "Gradle daemon logs";
    expected.title = "Gradle and Kotlin daemon logs";
    expected.reason = "Logs only.";
    expected.whatItIs = "Log files and registries written by background Gradle and Kotlin daemons.";
    expected.afterEffect = "Nothing; daemons write fresh logs next time.";
    expected.owner = AppMatcher{"Gradle daemon", {}, {"GradleDaemon", "gradle-launcher"}};
    return expected;
}

TEST(GradleDaemonLogsRule, OneItemHoldsTheFoldersThatExist) {
    Machine machine;
    const URL kotlin = machine.home.folder(".kotlin/daemon");
    machine.expect<GradleDaemonLogsRule>({daemonLogs({kotlin})});
    const URL gradle = machine.home.folder(".gradle/daemon");
    machine.expect<GradleDaemonLogsRule>({daemonLogs({gradle, kotlin})});
}

TEST(GradleDaemonLogsRule, AreKeptWhileADaemonRuns) {
    Machine machine;
    const ScanItem idle = daemonLogs({machine.home.folder(".gradle/daemon")});
    machine.run("java KotlinCompileDaemon");
    machine.run("java gradledaemon /x/gradle-8.7-bin/");
    machine.expect<GradleDaemonLogsRule>({idle});
    for (const char* line : {"java org.gradle.launcher.daemon.bootstrap.GradleDaemon 8.7",
                             "java -cp gradle-launcher-8.7.jar"}) {
        machine.context.inUse.processCommandLines = {line};
        machine.expect<GradleDaemonLogsRule>(
            {kept(idle, "A Gradle daemon is running.", "Gradle daemon")});
    }
}

// Android Studio

enum class Place { caches, settings, logs };

ScanItem studioFolder(const Machine& machine,
                      Place place,
                      const std::string& name,
                      Decision decision,
                      std::string reason) {
    const char* const folder = place == Place::caches     ? "Library/Caches/Google/"
                               : place == Place::settings ? "Library/Application Support/Google/"
                                                          : "Library/Logs/Google/";
    ScanItem expected =
        item("androidStudio.leftovers", {URL(machine.context.home.path() + "/" + folder + name)});
    expected.group = place == Place::caches     ? "Android Studio caches"
                     : place == Place::settings ? "Android Studio settings"
                                                : "Android Studio logs";
    expected.title = name;
    expected.risk = place == Place::settings ? Risk::low : Risk::safe;
    expected.decision = decision;
    expected.reason = std::move(reason);
    expected.whatItIs =
        place == Place::caches     ? "Indexes and caches for one Android Studio version."
        : place == Place::settings ? "Settings and plugins of one Android Studio version."
                                   : "IDE logs of one Android Studio version.";
    expected.afterEffect = "Nothing for the installed version. Old settings were already imported "
                           "when you upgraded.";
    return expected;
}

/// With the folders of two versions in all three places.
struct StudioMachine : Machine {
    StudioMachine() {
        for (const char* folder :
             {"Library/Logs/Google", "Library/Application Support/Google", "Library/Caches/Google"})
            for (const char* name : {"AndroidStudio2024.1", "AndroidStudio2023.3"})
                home.folder(fmt::format("{}/{}", folder, name));
        home.folder("Library/Caches/Google/Chrome");
    }
    /// The items of all places, for an old and a new version.
    std::vector<ScanItem> items(Decision oldDecision,
                                const std::string& oldReason,
                                Decision newDecision,
                                const std::string& newCachesReason,
                                const std::string& newReason) const {
        std::vector<ScanItem> result;
        for (const Place place : {Place::caches, Place::settings, Place::logs}) {
            result.push_back(
                studioFolder(*this, place, "AndroidStudio2023.3", oldDecision, oldReason));
            result.push_back(studioFolder(*this, place, "AndroidStudio2024.1", newDecision,
                                          place == Place::caches ? newCachesReason : newReason));
        }
        return result;
    }
};

TEST(AndroidStudioLeftoversRule, CleansOlderVersionsAndKeepsTheInstalledOne) {
    StudioMachine machine;
    machine.context.android.studioDataDirectories = {"AndroidStudio2024.1"};
    machine.expect<AndroidStudioLeftoversRule>(machine.items(
        clean, "From an older Android Studio. The installed version is AndroidStudio2024.1.", keep,
        "Belongs to the installed Android Studio. Use File → Invalidate Caches instead of "
        "deleting.",
        "Belongs to the installed Android Studio."));
}

TEST(AndroidStudioLeftoversRule, NamesAllInstalledVersionsInOrder) {
    StudioMachine machine;
    machine.context.android.studioDataDirectories = {"androidstudio2024.1", "AndroidStudio2025.1",
                                                     "AndroidStudioPreview2025.2"};
    const std::string reason =
        "From an older Android Studio. The installed version is AndroidStudio2025.1, "
        "AndroidStudioPreview2025.2, androidstudio2024.1.";
    machine.expect<AndroidStudioLeftoversRule>(machine.items(clean, reason, clean, reason, reason));
}

TEST(AndroidStudioLeftoversRule, AsksWhenNoAndroidStudioIsInstalled) {
    StudioMachine machine;
    machine.run("/Applications/Android Studio.app/Contents/MacOS/studio");
    const std::string reason =
        "Android Studio doesn't seem to be installed. Remove if you no longer use it.";
    machine.expect<AndroidStudioLeftoversRule>(machine.items(ask, reason, ask, reason, reason));
}

TEST(AndroidStudioLeftoversRule, OnlyTheFolderOfCachesIsOneHoweverTheHomeIsCalled) {
    Machine machine;
    machine.context.home = machine.home.path("Caches");
    machine.home.folder("Caches/Library/Logs/Google/AndroidStudio2024.1");
    machine.context.android.studioDataDirectories = {"AndroidStudio2024.1"};
    machine.expect<AndroidStudioLeftoversRule>(
        {studioFolder(machine, Place::logs, "AndroidStudio2024.1", keep,
                      "Belongs to the installed Android Studio.")});
}

// Heap dumps

TEST(HeapDumpRule, FindsDumpsAtTheTopOfTheHome) {
    Machine machine;
    std::vector<ScanItem> expected;
    for (const char* name : {"a.b.hprof", "java_error_in_studio.hprof", "java_pid123.hprof"}) {
        const Date modified = now - 3 * day;
        ScanItem dump = item("ide.heapDumps", {machine.home.file(name, "JAVA PROFILE 1.0.2")});
        machine.home.setModified(name, modified);
        dump.group = "Crash heap dumps";
        dump.title = name;
        dump.reason = "Memory dump written when an IDE crashed.";
        dump.whatItIs = "A Java heap dump, usually from Android Studio running out of memory.";
        dump.afterEffect =
            "Nothing, unless you planned to send it to JetBrains or Google for analysis.";
        dump.lastUsed = modified;
        expected.push_back(dump);
    }
    machine.expect<HeapDumpRule>(expected);
}

} // namespace

} // namespace tidewright::test
