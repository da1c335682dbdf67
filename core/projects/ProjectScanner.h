// Finds the user's projects and, on the same walk, large files. Reads folders, file facts and a few
// small manifests, and writes nothing.
#pragma once

#include "core/model/LargeFile.h"
#include "core/model/Project.h"
#include "core/projects/PackageManifest.h"
#include "core/support/CancelToken.h"

namespace tidewright {

struct ProjectScanner {
    struct Result {
        std::vector<Project> projects;     ///< by name
        std::vector<LargeFile> largeFiles; ///< largest first
    };

    /// The names of all entries of a folder, links and unreadable ones included.
    using Names = std::set<std::string>;

    std::vector<URL> roots;
    int maxDepth = 0;             ///< a root is at 0; folders below this depth are not entered
    Int64 largeFileThreshold = 0; ///< allocated bytes from which a file is large

    /// Never fails: what can't be read holds nothing. Links are never followed or counted. After a
    /// cancellation the result holds what was found so far. Blocks.
    Result scan(const CancelToken& cancel) const;

    /// The project that a folder with these entries is, if any; without its requirements.
    static std::optional<Project> detectProject(const URL& folder, const Names& names);

    /// The folder's name, with its parent's before it where it says nothing by itself: "shop/app".
    static std::string displayName(const URL& folder);

    /// From the manifest, else from the lock files.
    static std::optional<std::string> packageManager(const PackageManifest& manifest,
                                                     const Names& names);

    /// When one of the files or folders that work on a project touches was last changed.
    static std::optional<Date> lastActivity(const URL& folder);
};

} // namespace tidewright
