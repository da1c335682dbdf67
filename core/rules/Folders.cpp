#include "core/rules/Folders.h"

#include "core/support/Collation.h"

#include <algorithm>

namespace tidewright {

std::vector<URL> childFolders(const ScanContext& context, const URL& folder) {
    std::vector<URL> folders = context.children(folder);
    std::erase_if(folders, [&](const URL& url) { return !context.isDirectory(url); });
    return folders;
}

std::vector<URL> existingPaths(const ScanContext& context,
                               const URL& parent,
                               std::span<const std::string_view> relativePaths) {
    std::vector<URL> urls;
    for (const std::string_view path : relativePaths)
        if (const URL url = parent.appending(path); !path.empty() && context.exists(url))
            urls.push_back(url);
    return urls;
}

std::vector<URL> sortedByVersionDescending(std::vector<URL> folders) {
    std::ranges::stable_sort(folders, [](const URL& a, const URL& b) {
        return standardCompare(a.lastPathComponent(), b.lastPathComponent()) > 0;
    });
    return folders;
}

} // namespace tidewright
