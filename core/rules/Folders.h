// Questions that several rules ask of folders.
#pragma once

#include "core/scan/ScanContext.h"

#include <span>

namespace tidewright {

/// The children of a folder that are folders themselves, in the order of ScanContext::children.
std::vector<URL> childFolders(const ScanContext& context, const URL& folder);

/// Those of the relative paths below `parent` that exist, in their order.
std::vector<URL> existingPaths(const ScanContext& context,
                               const URL& parent,
                               std::span<const std::string_view> relativePaths);

/// By last path component in numeric order, highest first: "10.0.0" before "9.0.0". Stable.
std::vector<URL> sortedByVersionDescending(std::vector<URL> folders);

} // namespace tidewright
