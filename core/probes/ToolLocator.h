// Where a developer's tools are found.
#pragma once

#include "core/platform/Process.h"

namespace tidewright {

struct ToolLocator {
    std::vector<std::string> searchPath; ///< folders in search order; they need not exist

    ToolLocator() = default;
    /// The folders in which developers keep tools, then the entries of `PATH`, each once.
    ToolLocator(const URL& home, const Environment& processEnvironment);

    /// The executable of this name in the first folder that has one. A name that begins with "/"
    /// is taken as a path and stands for itself, if it is executable.
    std::optional<URL> locate(const std::string& tool) const;

    /// The environment of this process with `PATH` set to the search path, so that tools that call
    /// each other find each other the same way.
    Environment environment() const;
};

} // namespace tidewright
