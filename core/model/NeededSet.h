// Which versions of which toolchain parts are needed, and by whom.
#pragma once

#include "core/model/RequirementKind.h"

namespace tidewright {

struct NeededSet {
    /// Per kind and version the owners, each a text meant for a sentence: a project's name,
    /// "emulator Pixel_8", "booted iPhone 16".
    std::map<RequirementKind, std::map<std::string, std::set<std::string>>> storage;

    /// White space around the version is dropped; without a version nothing is added.
    void add(RequirementKind kind, const std::string& version, const std::string& neededBy);
    /// Exactly this text: versions are not normalised.
    bool contains(RequirementKind kind, const std::string& version) const;
    /// In plain string order; empty for what nobody needs.
    std::vector<std::string> owners(RequirementKind kind, const std::string& version) const;
    /// In numeric order, so that 9.0 comes before 10.0.
    std::vector<std::string> versions(RequirementKind kind) const;
    /// Whether nothing declares a version of this kind.
    bool isEmpty(RequirementKind kind) const;

    /// The owners as a sentence names them.
    std::string ownerSummary(RequirementKind kind, const std::string& version) const;
    /// Up to three texts as a list of the user's language, of more the first two and how many
    /// others there are: "A, B and 3 more".
    static std::string summarize(const std::vector<std::string>& texts);

    bool operator==(const NeededSet&) const = default;
    static constexpr auto fields() { return std::tuple{field("storage", &NeededSet::storage)}; }
};

} // namespace tidewright
