#include "core/scan/DirectorySizer.h"

#include "core/platform/TreeSize.h"
#include "core/support/ChildTask.h"
#include "core/support/Require.h"

namespace tidewright {

Int64 DirectorySizer::size(const URL& url, const CancelToken& cancel) const {
    return size(std::vector{url}, cancel);
}

Int64 DirectorySizer::size(const std::vector<URL>& urls, const CancelToken& cancel) const {
    SeenInodes seen;
    Int64 sum = 0;
    for (const URL& url : urls)
        sum += allocatedTreeSize(url, seen, cancel);
    return sum;
}

std::vector<ScanItem> DirectorySizer::measure(std::vector<ScanItem> items,
                                              int width,
                                              const Progress& progress,
                                              const CancelToken& cancel) const {
    require(width >= 0, "the number of walks at a time is not negative");
    std::vector<std::size_t> pending;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (items[i].sizeSource.isMeasured())
            pending.push_back(i);

    std::size_t done = 0;
    forEachLimited(
        static_cast<std::size_t>(width), pending.size(), cancel,
        [&](std::size_t index) { return size(items[pending[index]].urls, cancel); },
        [&](std::size_t index, Int64 bytes) {
            items[pending[index]].sizeBytes = bytes;
            progress(++done, pending.size());
        });
    return items;
}

} // namespace tidewright
