// Lists in sentences.
#pragma once

#include <string>
#include <vector>

namespace tidewright {

/// "A", "A and B", "A, B, and C": the list form of the user's language. Empty for no texts.
std::string joinedWithAnd(const std::vector<std::string>& texts);

} // namespace tidewright
