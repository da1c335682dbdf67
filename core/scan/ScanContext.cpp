#include "core/scan/ScanContext.h"

#include "core/platform/Directory.h"
#include "core/platform/FileInfo.h"
#include "core/support/CalendarDays.h"
#include "core/support/Collation.h"

#include <algorithm>

namespace tidewright {

URL ScanContext::path(std::string_view relativePath) const { return home.appending(relativePath); }

bool ScanContext::exists(const URL& url) const { return fileExists(url); }

bool ScanContext::isDirectory(const URL& url) const {
    const auto info = fileInfo(url, Links::dontFollow);
    return info && info->kind == FileKind::directory;
}

std::optional<Date> ScanContext::modificationDate(const URL& url) const {
    const auto info = fileInfo(url, Links::dontFollow);
    return info ? std::optional(info->modified) : std::nullopt;
}

std::optional<int> ScanContext::days(std::optional<Date> since) const {
    return since ? std::optional(wholeDays(*since, now)) : std::nullopt;
}

std::vector<URL> ScanContext::children(const URL& folder) const {
    auto entries = readDirectory(folder).value_or(std::vector<DirectoryEntry>{});
    std::erase_if(entries, [](const DirectoryEntry& entry) { return entry.name.starts_with('.'); });
    std::ranges::stable_sort(entries, [](const DirectoryEntry& a, const DirectoryEntry& b) {
        return standardCompare(a.name, b.name) < 0;
    });
    std::vector<URL> urls;
    for (const DirectoryEntry& entry : entries)
        urls.push_back(folder.appending(entry.name));
    return urls;
}

} // namespace tidewright
