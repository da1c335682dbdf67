#include "core/probes/InUseDetector.h"

#include "core/support/MainThread.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <thread>

namespace tidewright {

namespace {

using test::TempHome;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Names = std::set<std::string>;

constexpr const char* devices = R"({"devices":{"runtime":[
    {"udid":"A","name":"first","state":"Booted","isAvailable":true},
    {"udid":"B","name":"second","state":"Shutdown","isAvailable":true},
    {"udid":"C","name":"third","state":"booted","isAvailable":true},
    {"udid":"D","name":"fourth","state":"Booted","isAvailable":false}]}})";

InUseDetector detectorOf(const TempHome& home) { return {{ToolLocator(home.url(), {})}}; }

InUseSnapshot snapshotOfLines(std::vector<std::string> lines) {
    InUseSnapshot snapshot;
    snapshot.processCommandLines = std::move(lines);
    return snapshot;
}

/// The arguments of this process, as `ps` shows them.
std::string ownCommandLine() {
    std::ifstream stream("/proc/self/cmdline", std::ios::binary);
    std::string line{std::istreambuf_iterator<char>(stream), {}};
    std::replace(line.begin(), line.end(), '\0', ' ');
    while (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}

/// What `report` says in a place where "/bin/ps" is a script with this body.
std::optional<std::string> withPs(const TempHome& home,
                                  std::string_view body,
                                  const std::function<std::string()>& report) {
    const URL fake = home.tool("ps", body);
    return test::withOwnMounts([&]() -> std::string {
        return test::mountAgain(fake, URL("/bin/ps")) ? report() : "not mounted";
    });
}

std::string linesOf(const TempHome& home) {
    return fmt::format("{}", fmt::join(detectorOf(home).processCommandLines(CancelToken()), "|"));
}

TEST(InUseDetectorTest, EmulatorsAreFoundByTheNameInTheirCommandLine) {
    const std::vector<std::pair<std::string, Names>> cases{
        {"/sdk/emulator/qemu/darwin-aarch64/qemu-system-aarch64 -avd Pixel_7_API_34 -no-window",
         {"Pixel_7_API_34"}},
        {"/sdk/emulator/emulator -avd Pixel_7", {"Pixel_7"}},
        {"/sdk/emulator/emulator @Pixel_7", {"Pixel_7"}},
        {"/sdk/emulator/emulator @ Pixel_7", {"Pixel_7"}},
        {"/sdk/emulator/emulator -avdPixel_7", {"Pixel_7"}},
        {"/sdk/emulator/emulator -avd \t Pixel_7", {"Pixel_7"}},
        {"qemu-system-x86_64 -avd a.b-c_D9", {"a.b-c_D9"}},
        {"qemu-system-x86_64 -avd first -avd second", {"first"}},
        {"qemu-system-x86_64 -avd Größe", {"Gr"}},
        {"qemu-system-x86_64 -avd name with blanks", {"name"}},
        {"/home/me@work/emulator/emulator -avd Pixel_7", {"work"}}, // the first match
        {"/sdk/emulator/emulator -list-avds", {"s"}},
        {"/sdk/emulator/emulator", {}},
        {"/sdk/emulator/emulator -no-window", {}},
        {"qemu-system-x86_64 -avd", {}},
        {"qemu-system-x86_64 -avd \"Pixel\"", {}},
        {"/sdk/emulator/emulators -avd Pixel_7", {"Pixel_7"}},
        {"/sdk/tools/android -avd Pixel_7", {}},
        {"emulator -avd Pixel_7", {}},
        {"/sdk/Emulator/emulator -avd Pixel_7", {}},
        {"QEMU-SYSTEM -avd Pixel_7", {}},
        {"mail someone@example.com", {}},
        {"", {}},
    };
    for (const auto& [line, names] : cases)
        EXPECT_EQ(InUseDetector::runningAVDs({line}), names) << line;
}

TEST(InUseDetectorTest, EmulatorsOfAllLinesAreTakenOnceEach) {
    EXPECT_EQ(InUseDetector::runningAVDs({"qemu-system-x86_64 -avd one", "vim", "qemu-system-i386",
                                          "/sdk/emulator/emulator @two",
                                          "/sdk/emulator/emulator -avd one"}),
              (Names{"one", "two"}));
    EXPECT_EQ(InUseDetector::runningAVDs({}), Names());
}

TEST(InUseDetectorTest, ProcessesAreNamedByTheirExecutable) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"/usr/local/bin/node server.js", "node"},
        {"node", "node"},
        {"  node   --inspect", "node"},
        {"/Applications/Android Studio.app/Contents/MacOS/studio", "Android"},
        {"/usr/bin/", "bin"},
        {"-zsh", "-zsh"},
        {"/home/dev/.npm/_npx/1f2e/node_modules/.bin/expo start", "expo (via npx)"},
        {"node /home/dev/.npm/_npx/1f2e/node_modules/expo/bin/cli start", "expo (via npx)"},
        {"node /home/dev/.npm/_npx/1f2e/node_modules/@scope/name/cli.js", "@scope/name (via npx)"},
        {"node /h/.npm/_npx/1f2e/node_modules/.bin/@scope/name start", "@scope/name (via npx)"},
        {"node /home/dev/app/node_modules/expo/cli.js", "node"},
        {"", ""},
    };
    for (const auto& [line, name] : cases)
        EXPECT_EQ(InUseSnapshot::describe(line), name) << line;
}

TEST(InUseDetectorTest, FirstProcessWhoseLineHoldsAPathUsesIt) {
    const InUseSnapshot snapshot = snapshotOfLines(
        {"/bin/vim notes", "/usr/bin/node /src/a.b/server.js", "/bin/tail /src/a.b"});
    EXPECT_EQ(snapshot.processUsing("/src/a.b"), "node");
    EXPECT_EQ(snapshot.processUsing("notes"), "vim");
    EXPECT_EQ(snapshot.processUsing("/src/a.b/other"), std::nullopt);
    EXPECT_EQ(snapshot.processUsing("/src/axb"), std::nullopt);
}

TEST(InUseDetectorTest, GradleDaemonIsKnownByItsExactVersion) {
    const std::string daemon = "java -cp /h/.gradle/wrapper/dists/{}/lib org.gradle.launcher."
                               "daemon.bootstrap.GradleDaemon";
    const auto runs = [&](std::string_view folder, const std::string& version) {
        const std::string line = fmt::format(fmt::runtime(daemon), folder);
        return snapshotOfLines({"vim", line}).isGradleVersionRunning(version);
    };
    EXPECT_TRUE(runs("gradle-8.7-bin/abc", "8.7"));
    EXPECT_TRUE(runs("abc/gradle-8.7/", "8.7"));
    EXPECT_TRUE(runs("8.7", "8.7"));
    EXPECT_FALSE(runs("gradle-8.7.1-bin", "8.7"));
    EXPECT_TRUE(runs("gradle-8.7.1-bin", "8.7.1"));
    EXPECT_FALSE(runs("gradle-18.7-bin", "8.7"));
    EXPECT_FALSE(runs("gradle-8x7-bin", "8.7")) << "a dot is a dot";
    EXPECT_FALSE(snapshotOfLines({"java /dists/gradle-8.7-bin/ GradleWrapperMain"})
                     .isGradleVersionRunning("8.7"));
    EXPECT_FALSE(
        snapshotOfLines({"GradleDaemon", "/dists/gradle-8.7-bin/"}).isGradleVersionRunning("8.7"));
}

TEST(InUseDetectorTest, MatchersLookAtIdentifiersAndAtLines) {
    InUseSnapshot snapshot = snapshotOfLines({"java org.gradle.launcher.daemon.GradleDaemon 8.7"});
    snapshot.runningBundleIdentifiers = {"com.apple.dt.Xcode"};
    EXPECT_TRUE(snapshot.isRunning(AppMatcher::gradle));
    EXPECT_TRUE(snapshot.isRunning(AppMatcher::xcode));
    EXPECT_FALSE(snapshot.isRunning(AppMatcher::metro));
    EXPECT_FALSE(snapshot.isRunning(AppMatcher::androidStudio));
    EXPECT_FALSE(snapshot.isRunning(AppMatcher{"no identifier, no pattern", {}, {}}));
    snapshot.processCommandLines.clear();
    EXPECT_FALSE(snapshot.isRunning(AppMatcher::gradle));
    snapshot.runningBundleIdentifiers = {"com.apple.dt.Xcode.helper", "com.apple.dt.xcode"};
    EXPECT_FALSE(snapshot.isRunning(AppMatcher::xcode)) << "identifiers are compared whole";
}

TEST(InUseDetectorTest, CommandLinesAreThoseOfTheUsersProcesses) {
    const TempHome home;
    const std::vector<std::string> lines = detectorOf(home).processCommandLines(CancelToken());
    EXPECT_THAT(lines, Contains(ownCommandLine()));
    EXPECT_THAT(lines, Contains(HasSubstr("ps -x -o args=")));
    EXPECT_THAT(lines, Not(Contains("")));
}

TEST(InUseDetectorTest, PsIsTakenFromItsPlaceAndNotFromTheSearchPath) {
    const TempHome home;
    home.tool(".volta/bin/ps", "echo forged");
    EXPECT_THAT(detectorOf(home).processCommandLines(CancelToken()), Contains(ownCommandLine()));
}

TEST(InUseDetectorTest, LinesArriveInOrderWithoutTheEmptyOnes) {
    const TempHome home;
    const auto answer = withPs(home, R"([ "$*" = "-x -o args=" ] || exit 1
printf '/b one\n\n/a two \n\r\n\377\n/c three')",
                               [&] { return linesOf(home); });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, "/b one|/a two |\uFFFD|/c three");
}

TEST(InUseDetectorTest, ManyLinesAreAllTaken) {
    const TempHome home;
    const std::string line(200, 'x');
    std::string text;
    for (int i = 0; i < 20'000; ++i)
        text += fmt::format("{} {}\n", line, i);
    home.file("lines", text);
    const auto answer = withPs(home, "cat '" + home.path("lines").path() + "'", [&] {
        const auto lines = detectorOf(home).processCommandLines(CancelToken());
        return fmt::format("{} {}", lines.size(), lines.empty() ? "" : lines.back());
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, fmt::format("20000 {} 19999", line));
}

TEST(InUseDetectorTest, FailingPsMeansThatNothingRuns) {
    const TempHome home;
    const std::string gradle = "echo java GradleDaemon gradle-8.7-bin";
    const auto report = [&] {
        const InUseSnapshot snapshot = detectorOf(home).snapshot(CancelToken());
        return fmt::format("{} lines, Gradle {} {}", snapshot.processCommandLines.size(),
                           snapshot.isRunning(AppMatcher::gradle),
                           snapshot.isGradleVersionRunning("8.7"));
    };
    const auto answer = withPs(home, gradle, report);
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, "1 lines, Gradle true true");
    EXPECT_EQ(withPs(home, gradle + "; exit 1", report), "0 lines, Gradle false false");
    EXPECT_EQ(withPs(home, gradle + "; kill -9 $$", report), "0 lines, Gradle false false");
    const auto withoutPs = [&] {
        home.setMode("ps", 0644);
        return report();
    };
    EXPECT_EQ(withPs(home, gradle, withoutPs), "0 lines, Gradle false false");
}

TEST(InUseDetectorTest, SnapshotHoldsLinesEmulatorsAndBootedSimulators) {
    const TempHome home;
    home.tool(".volta/bin/xcrun", fmt::format("cat <<'END'\n{}\nEND", devices));
    const InUseSnapshot snapshot = detectorOf(home).snapshot(CancelToken());
    EXPECT_THAT(snapshot.processCommandLines, Contains(ownCommandLine()));
    EXPECT_EQ(snapshot.runningAVDs, InUseDetector::runningAVDs(snapshot.processCommandLines));
    EXPECT_EQ(snapshot.runningBundleIdentifiers, InUseDetector::runningBundleIdentifiers());
    std::vector<std::string> booted;
    for (const Simctl::Device& device : snapshot.bootedSimulators)
        booted.push_back(device.name + " of " + device.runtimeIdentifier);
    EXPECT_THAT(booted, ElementsAre("first of runtime", "fourth of runtime"));
}

TEST(InUseDetectorTest, SnapshotTakesTheEmulatorsFromItsLines) {
    const TempHome home;
    const auto answer = withPs(home, "echo qemu-system-x86_64 -avd Pixel_7", [&] {
        return fmt::format("{}",
                           fmt::join(detectorOf(home).snapshot(CancelToken()).runningAVDs, "|"));
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, "Pixel_7");
}

TEST(InUseDetectorTest, FailingDeviceListIsAnEmptyOne) {
    const TempHome home;
    home.tool(".volta/bin/xcrun", fmt::format("cat <<'END'\n{}\nEND\nexit 1", devices));
    const InUseSnapshot snapshot = detectorOf(home).snapshot(CancelToken());
    EXPECT_THAT(snapshot.bootedSimulators, IsEmpty());
    EXPECT_THAT(snapshot.processCommandLines, Contains(ownCommandLine()));
}

TEST(InUseDetectorTest, CancelledSnapshotReturnsSoon) {
    const TempHome home;
    home.tool(".volta/bin/xcrun", "sleep 60");
    CancelSource source;
    source.cancel();
    const auto start = std::chrono::steady_clock::now();
    const InUseSnapshot snapshot = detectorOf(home).snapshot(source.token());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(25));
    EXPECT_THAT(snapshot.bootedSimulators, IsEmpty());
}

TEST(InUseDetectorTest, ApplicationsAreAskedForOnTheMainThread) {
    int posted = 0;
    const MainThreadScope scope([&](const std::function<void()>& work) {
        ++posted;
        work();
    });
    Names identifiers;
    std::thread other([&] { identifiers = InUseDetector::runningBundleIdentifiers(); });
    other.join();
    EXPECT_EQ(posted, 1);
    EXPECT_EQ(identifiers, InUseDetector::runningBundleIdentifiers());
    EXPECT_EQ(posted, 1) << "the main thread asks by itself";
    EXPECT_FALSE(identifiers.contains(""));
}

} // namespace

} // namespace tidewright
