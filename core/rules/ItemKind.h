// What the rules share in making items: the words that are the same for all items of one kind.
#pragma once

#include "core/model/ScanItem.h"

#include <string_view>

namespace tidewright {

/// A row of a rule's table. A text that is made for each item is empty here.
struct ItemKind {
    Category category = Category::system;
    std::string_view group = {};
    std::string_view title = {};
    Risk risk = Risk::check;
    Decision decision = Decision::keep;
    std::string_view reason = {};
    std::string_view whatItIs = {};
    std::string_view afterEffect = {};
};

/// The parts of an item of this kind, to be completed by the rule. Its method is to remove.
ScanItem::Parts partsOf(const ItemKind& kind, const std::string& ruleID, std::vector<URL> urls);

} // namespace tidewright
