#include "cli/Scanning.h"

#include "cli/ExitStatus.h"
#include "cli/Interrupt.h"
#include "cli/ProgressBar.h"
#include "cli/Terminal.h"

#include <fmt/format.h>

namespace tidewright {

namespace {

/// Scans with a bar until the end, which after a cancellation is that of all its threads.
void scan(CommandState& state, const CancelToken& cancel) {
    AppModel& model = state.model();
    ProgressBar bar(stderr);
    const QObject shown;
    QObject::connect(&model, &AppModel::scanStateChanged, &shown, [&] {
        if (const auto* scanning = std::get_if<ScanState::Scanning>(&model.scanState().choice))
            bar.show(scanning->progress);
    });
    const CancelCallback onCancel =
        cancel.onCancel([&state, &model] { state.post([&model] { model.cancelScan(); }); });
    model.scan();
    CommandState::runUntil([&] { return !model.isScanning(); });
    if (cancel.isCancelled())
        state.waitForWork();
}

} // namespace

Result<std::shared_ptr<const ScanReport>, int> scanForCommand(CommandState& state,
                                                              const CancelToken& cancel) {
    scan(state, cancel);
    const AppModel& model = state.model();
    if (const auto* failed = std::get_if<ScanState::Failed>(&model.scanState().choice)) {
        writeAll(stderr, fmt::format("tidewright: {}\n", failed->sentence));
        return Failure(failedStatus);
    }
    if (!cancel.isCancelled() && model.report())
        return model.report();
    writeAll(stderr, "The scan was stopped. Nothing was changed.\n");
    return Failure(interruptedStatus);
}

Result<std::shared_ptr<const ScanReport>, int> scanForCommand(const ScanOptions& options) {
    const Interrupt interrupt; // until what is under way has ended
    const auto state = CommandState::make(options);
    if (!state)
        return Failure(usageError(state.error()));
    return scanForCommand(**state, interrupt.token());
}

Result<std::vector<Project>, int> findProjectsForCommand(CommandState& state) {
    const Interrupt interrupt;
    auto found = state.model().scanner().findProjects(interrupt.token());
    if (!interrupt.token().isCancelled())
        return std::move(found.projects);
    writeAll(stderr, "The search for projects was stopped.\n");
    return Failure(interruptedStatus);
}

} // namespace tidewright
