// Which versions of which toolchain parts are needed, and by whom.
#pragma once

#include "core/model/RequirementKind.h"

namespace tidewright {

struct NeededSet {
    /// Per kind and version the owners, each a text meant for a sentence: a project's name,
    /// "emulator Pixel_8", "booted iPhone 16".
    std::map<RequirementKind, std::map<std::string, std::set<std::string>>> storage;

    bool operator==(const NeededSet&) const = default;
    static constexpr auto fields() { return std::tuple{field("storage", &NeededSet::storage)}; }
};

} // namespace tidewright
