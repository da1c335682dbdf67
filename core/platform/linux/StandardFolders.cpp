#include "core/platform/StandardFolders.h"

#include <cstdlib>
#include <optional>

namespace tidewright {

namespace {

/// An absolute path in the environment; a relative one is to be ignored, by the XDG Base Directory
/// Specification.
std::optional<URL> folderInEnvironment(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody sets it
    if (value == nullptr || value[0] != '/')
        return std::nullopt;
    return URL(value).standardized();
}

URL stateFolder(const URL& home) {
    return folderInEnvironment("XDG_STATE_HOME").value_or(home.appending(".local/state"));
}

} // namespace

URL temporaryDirectory() { return folderInEnvironment("TMPDIR").value_or(URL("/tmp")); }

URL userDataDirectory(const URL& home) {
    return folderInEnvironment("XDG_DATA_HOME").value_or(home.appending(".local/share"));
}

URL userConfigDirectory(const URL& home) {
    return folderInEnvironment("XDG_CONFIG_HOME").value_or(home.appending(".config"));
}

URL auditLogDirectory(const URL& home) { return stateFolder(home).appending("Tidewright/Logs"); }

} // namespace tidewright
