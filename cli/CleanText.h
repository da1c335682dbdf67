// What people read of a cleanup: what is about to happen, what happens just now, and what became of
// it. No line is wider than the terminal; without one, lines are plain and as long as they need.
#pragma once

#include "cli/Terminal.h"
#include "core/cleaning/PathPolicy.h"
#include "core/model/CleanSummary.h"
#include "core/model/ScanItem.h"

namespace tidewright {

/// What the path policy says of an item before anything is cleaned.
struct ItemVerdict {
    std::string id;
    std::string title;
    bool allowed = false;
    std::optional<PolicyViolation::Kind> violation; ///< absent when allowed
    std::optional<std::string> sentence;            ///< absent when allowed

    static constexpr auto fields() {
        return std::tuple{field("id", &ItemVerdict::id), field("title", &ItemVerdict::title),
                          field("allowed", &ItemVerdict::allowed),
                          field("violation", &ItemVerdict::violation),
                          field("sentence", &ItemVerdict::sentence)};
    }
};

/// The items by method in the order given, and what is freed. What needs attention, and what has
/// the same title as something else, stands there with its locations.
std::string reviewText(const std::vector<ScanItem>& items, const Terminal& terminal);

/// "Clean 3 items and free 2.5 GB? [y/N] "
std::string questionText(const std::vector<ScanItem>& items);

/// The verdict on each item, in the order of the items, and how many would be cleaned.
std::string verdictsText(const std::vector<ItemVerdict>& verdicts,
                         const std::vector<ScanItem>& items,
                         const Terminal& terminal);

/// "Cleaning 3 of 12: Title, Title": what runs at the moment, in one line.
std::string cleaningLine(std::size_t finished,
                         std::size_t total,
                         const std::vector<std::string>& running);

/// One line about an item that has ended; `items` are all of this cleanup.
std::string outcomeLine(const CleanOutcome& outcome,
                        const std::vector<ScanItem>& items,
                        const Terminal& terminal);

/// What was gained, the toolchain check, what was not cleaned and why, and the audit log's place.
std::string resultText(const CleanSummary& summary,
                       const std::vector<ScanItem>& items,
                       const Terminal& terminal);

} // namespace tidewright
