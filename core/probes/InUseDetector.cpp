#include "core/probes/InUseDetector.h"

#include "core/platform/RunningApplications.h"
#include "core/probes/Simctl.h"
#include "core/support/ChildTask.h"
#include "core/support/MainThread.h"
#include "core/support/Pattern.h"
#include "core/support/Text.h"

namespace tidewright {

namespace {

using namespace std::chrono_literals;

constexpr Duration psTimeLimit = 15s;

} // namespace

InUseSnapshot InUseDetector::snapshot(const CancelToken& cancel) const {
    ChildTask<std::vector<std::string>> lines([&] { return processCommandLines(cancel); });
    ChildTask<std::vector<Simctl::Device>> devices([&] { return Simctl::devices(runner, cancel); });

    InUseSnapshot snapshot;
    snapshot.runningBundleIdentifiers = runningBundleIdentifiers();
    snapshot.processCommandLines = lines.await();
    snapshot.runningAVDs = runningAVDs(snapshot.processCommandLines);
    for (Simctl::Device& device : devices.await())
        if (device.isBooted())
            snapshot.bootedSimulators.push_back(std::move(device));
    return snapshot;
}

std::set<std::string> InUseDetector::runningBundleIdentifiers() {
    std::set<std::string> identifiers;
    runOnMainThread([&] { identifiers = tidewright::runningBundleIdentifiers(); });
    return identifiers;
}

std::vector<std::string> InUseDetector::processCommandLines(const CancelToken& cancel) const {
    const auto result =
        runner.run("/bin/ps", {"-x", "-o", "args="}, std::nullopt, psTimeLimit, cancel);
    return result && result->succeeded() ? nonEmptyLines(result->output)
                                         : std::vector<std::string>();
}

std::set<std::string> InUseDetector::runningAVDs(const std::vector<std::string>& commandLines) {
    static const Pattern emulatorName(R"((?:-avd|@)\s*([A-Za-z0-9_.\-]+))");
    std::set<std::string> names;
    for (const std::string& line : commandLines) {
        if (!contains(line, "qemu-system") && !contains(line, "/emulator/emulator"))
            continue;
        if (const auto match = emulatorName.firstMatch(line))
            names.insert(match->at(1));
    }
    return names;
}

} // namespace tidewright
