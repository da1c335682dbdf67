// What every rule is to the scan: an id and one function that finds items.
#pragma once

#include "core/model/ScanItem.h"
#include "core/scan/ScanContext.h"

#include <functional>

namespace tidewright {

/// A rule knows one kind of clutter. It only reads: it never deletes, never writes, never asks the
/// user; it may run a tool that only reads, by the context's runner. It names in `owner` the
/// application that must not be running, and leaves exclusions to the scan. Rules share nothing
/// that changes, so all run at once; what they can't read gives fewer items.
struct CleanupRule {
    std::string id; ///< stable; the prefix of the ids of its items
    Category category = Category::android;
    std::string name; ///< the rule's type
    std::function<std::vector<ScanItem>(const ScanContext&)> scan;
};

/// The entry of a rule type, which has an `id` and `scan(const ScanContext&) const`.
template <class Rule>
CleanupRule cleanupRule(Rule rule, Category category, std::string name) {
    std::string id = rule.id;
    return {std::move(id), category, std::move(name),
            [rule = std::move(rule)](const ScanContext& context) { return rule.scan(context); }};
}

} // namespace tidewright
