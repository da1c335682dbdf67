#include "core/model/ScanReport.h"

#include <algorithm>
#include <iterator>

namespace tidewright {

std::vector<ScanItem> ScanReport::itemsIn(Category category) const {
    std::vector<ScanItem> result;
    std::ranges::copy_if(items, std::back_inserter(result),
                         [&](const ScanItem& item) { return item.category == category; });
    return result;
}

Int64 ScanReport::total(const std::function<bool(const ScanItem&)>& holds) const {
    Int64 sum = 0;
    for (const ScanItem& item : items)
        if (holds(item))
            sum += item.sizeBytes;
    return sum;
}

Int64 ScanReport::recommendedBytes() const {
    return total([](const ScanItem& item) { return item.decision == Decision::clean; });
}

Int64 ScanReport::optionalBytes() const {
    return total([](const ScanItem& item) { return item.decision == Decision::ask; });
}

} // namespace tidewright
