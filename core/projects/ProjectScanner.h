// Finds the user's projects and, on the same walk, large files.
#pragma once

#include "core/model/LargeFile.h"
#include "core/model/Project.h"
#include "core/support/CancelToken.h"

namespace tidewright {

struct ProjectScanner {
    struct Result {
        std::vector<Project> projects;
        std::vector<LargeFile> largeFiles;
    };

    std::vector<URL> roots;
    int maxDepth = 0;
    Int64 largeFileThreshold = 0; ///< bytes

    /// Not built yet: finds nothing.
    Result scan(const CancelToken& cancel) const;
};

} // namespace tidewright
