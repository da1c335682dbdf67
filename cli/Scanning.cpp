#include "cli/Scanning.h"

#include "cli/ExitStatus.h"
#include "cli/Interrupt.h"
#include "cli/MainThreadQueue.h"
#include "cli/Paths.h"
#include "cli/ProgressBar.h"
#include "cli/Tools.h"
#include "core/platform/StandardFolders.h"
#include "core/scan/RuleCatalog.h"

#include <fmt/format.h>

namespace tidewright {

namespace {

/// The thresholds that the program is delivered with.
ScanSettings factorySettings() {
    ScanSettings settings;
    settings.dormantProjectDays = 60;
    settings.unusedAppDays = 90;
    settings.oldDownloadDays = 30;
    settings.lowSpaceThreshold = 25 * gigabyte;
    settings.criticalSpaceThreshold = 10 * gigabyte;
    settings.largeTrashThreshold = 5 * gigabyte;
    return settings;
}

} // namespace

Result<DiskScanner, std::string> makeScanner(const ScanOptions& options) {
    ScanSettings settings = factorySettings();
    for (const std::string& root : options.roots) {
        auto folder = existingFolder(root);
        if (!folder)
            return Failure(folder.error());
        settings.projectRoots.push_back(std::move(*folder));
    }
    for (const std::string& excluded : options.exclusions)
        settings.exclusions.push_back(absolute(excluded));
    const URL home = homeDirectory();
    return DiskScanner(std::move(settings), home, RuleCatalog::all(),
                       runnerFor(home, processEnvironment()));
}

Result<ScanReport, int> scanForCommand(const DiskScanner& scanner, const CancelToken& cancel) {
    auto report = servedByMainThread([&] {
        ProgressBar bar(stderr);
        return scanner.scan([&](const ScanProgress& progress) { bar.show(progress); }, cancel);
    });
    if (report)
        return std::move(*report);
    fmt::print(stderr, "The scan was stopped. Nothing was changed.\n");
    return Failure(interruptedStatus);
}

Result<ScanReport, int> scanForCommand(const ScanOptions& options) {
    const auto scanner = makeScanner(options);
    if (!scanner)
        return Failure(usageError(scanner.error()));
    const Interrupt interrupt;
    return scanForCommand(*scanner, interrupt.token());
}

} // namespace tidewright
