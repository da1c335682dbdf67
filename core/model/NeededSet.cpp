#include "core/model/NeededSet.h"

#include "core/support/Collation.h"
#include "core/support/Lists.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace tidewright {

void NeededSet::add(RequirementKind kind, const std::string& version, const std::string& neededBy) {
    const std::string key = trimmed(version);
    if (!key.empty())
        storage[kind][key].insert(neededBy);
}

bool NeededSet::contains(RequirementKind kind, const std::string& version) const {
    const auto versions = storage.find(kind);
    return versions != storage.end() && versions->second.contains(version);
}

std::vector<std::string> NeededSet::owners(RequirementKind kind, const std::string& version) const {
    if (!contains(kind, version))
        return {};
    const auto& owners = storage.at(kind).at(version);
    return {owners.begin(), owners.end()};
}

std::vector<std::string> NeededSet::versions(RequirementKind kind) const {
    std::vector<std::string> result;
    if (isEmpty(kind))
        return result;
    for (const auto& [version, owners] : storage.at(kind))
        result.push_back(version);
    std::ranges::stable_sort(result, [](const std::string& a, const std::string& b) {
        return standardCompare(a, b) < 0;
    });
    return result;
}

bool NeededSet::isEmpty(RequirementKind kind) const {
    const auto versions = storage.find(kind);
    return versions == storage.end() || versions->second.empty();
}

std::string NeededSet::ownerSummary(RequirementKind kind, const std::string& version) const {
    return summarize(owners(kind, version));
}

std::string NeededSet::summarize(const std::vector<std::string>& texts) {
    if (texts.size() < 4)
        return joinedWithAnd(texts);
    return fmt::format("{}, {} and {} more", texts[0], texts[1], texts.size() - 2);
}

} // namespace tidewright
