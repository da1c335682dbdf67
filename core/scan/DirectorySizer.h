// How many bytes of disk locations really occupy. The one way in which anything is measured.
#pragma once

#include "core/model/ScanItem.h"
#include "core/support/CancelToken.h"

#include <functional>

namespace tidewright {

/// A plain value without state: every call walks the disk again. Allocated sizes (blocks), links
/// not followed, one device per root; see platform/TreeSize.h for the rules of the walk.
struct DirectorySizer {
    /// Told after each measured item how many of how many are done; on the calling thread.
    using Progress = std::function<void(std::size_t done, std::size_t total)>;

    /// The bytes under one location; 0 where there is nothing that may be read.
    Int64 size(const URL& url, const CancelToken& cancel = CancelToken()) const;

    /// The bytes under several locations; a file with links from two of them counts once. Files
    /// with several links are told apart by their inode number alone.
    Int64 size(const std::vector<URL>& urls, const CancelToken& cancel = CancelToken()) const;

    /// Fills in `sizeBytes` of each item whose size is to be measured, with at most `width` walks
    /// at a time; `width` is not negative. After a cancellation the walks under way end soon and
    /// the other items stay at 0.
    std::vector<ScanItem> measure(std::vector<ScanItem> items,
                                  int width,
                                  const Progress& progress,
                                  const CancelToken& cancel) const;
};

} // namespace tidewright
