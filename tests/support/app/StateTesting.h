// The program's state for a test: a model of its own on a temporary home, whose scans find what the
// test has prepared.
#pragma once

#include "app/state/AppModel.h"
#include "tests/support/TempHome.h"

#include <memory>
#include <string>

namespace tidewright::test {

/// A disk that nothing is wrong with, a Trash that can't be read, the real time, and posts that are
/// refused.
DiskMonitorSystem inertMonitorSystem();

/// An environment in this home that touches nothing outside of it, runs no tool and knows no rule.
/// Its scans find an empty report.
AppEnvironment inertEnvironment(const URL& home);

/// An item to begin with: one that may be cleaned, at a path of its own in a home.
ScanItem testItem(Category category, const std::string& key, Int64 sizeBytes = 2'000'000);

/// What an AppModel stands on, and the model. The parts are public: a test may take from them what
/// it needs, and end the model before the rest by `model.reset()`.
struct TestState {
    /// The environment's `scan` is replaced by one that finds what `scanned` was given.
    explicit TestState(const std::function<void(AppEnvironment&)>& adjust = {});

    /// Has the model scan and find this report, and returns when it has it.
    void scanned(ScanReport report);

    TempHome home;
    DefaultsStore defaults; ///< in a file of the home
    Workers workers;
    std::shared_ptr<const ScanReport> prepared; ///< what the next scan finds
    std::unique_ptr<AppModel> model;
};

} // namespace tidewright::test
