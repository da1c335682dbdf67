// The files of the folders home/ and tools/ beside this one, which the build puts into the program.
#pragma once

#include <span>
#include <string_view>

namespace tidewright {

struct EmbeddedFile {
    std::string_view path; ///< relative to the folder
    std::string_view text;
};

/// The text files of a sample home: its manifests and settings. "{{home}}" stands for its path.
std::span<const EmbeddedFile> homeFiles();

/// The scripts that stand in for a developer's tools.
std::span<const EmbeddedFile> toolFiles();

} // namespace tidewright
