// Everything that a rule may read, and the questions it asks of the disk. Nothing here can fail or
// change anything: what can't be read counts as absent.
#pragma once

#include "core/model/AndroidEnvironment.h"
#include "core/model/InUseSnapshot.h"
#include "core/model/NeededSet.h"
#include "core/model/Project.h"
#include "core/model/Simctl.h"
#include "core/probes/ShellRunner.h"
#include "core/scan/ScanSettings.h"

namespace tidewright {

struct ScanContext {
    URL home; ///< every path of a rule is built from it, never from the environment
    URL temporaryDirectory;
    ScanSettings settings;
    std::vector<Project> projects;
    NeededSet needed;
    InUseSnapshot inUse;
    AndroidEnvironment android;
    std::vector<Simctl::Device> simulatorDevices;
    std::vector<Simctl::Runtime> simulatorRuntimes;
    ShellRunner runner;
    Date now;           ///< the one clock value of a scan, for all ages
    CancelToken cancel; ///< to be handed to the runner

    /// `home` with a relative path of one or several components behind it.
    URL path(std::string_view relativePath) const;

    /// Whether something is there; links are followed.
    bool exists(const URL& url) const;

    /// Whether the location itself is a folder; a link to one is not.
    bool isDirectory(const URL& url) const;

    /// When the contents of the location itself were last changed.
    std::optional<Date> modificationDate(const URL& url) const;

    /// Whole calendar days from a date to `now` in the user's time zone; absent for no date.
    std::optional<int> days(std::optional<Date> since) const;

    /// The entries of a folder without those whose name begins with ".", in the standard order of
    /// their names.
    std::vector<URL> children(const URL& folder) const;
};

} // namespace tidewright
