#include "core/insights/AppUsageScanner.h"

#include "core/platform/Applications.h"
#include "core/platform/Directory.h"
#include "core/platform/ResolvedLinks.h"
#include "core/platform/StandardFolders.h"
#include "core/support/ChildTask.h"
#include "core/support/Text.h"

#include <algorithm>
#include <iterator>

namespace tidewright {

namespace {

constexpr std::size_t width = 6; // applications that are measured at a time
constexpr const char* applicationExtension = "app";
constexpr const char* applicationSuffix = ".app";
constexpr const char* systemFolder = "/System/";

/// Without hidden entries; none where it can't be read.
std::vector<URL> entriesOf(const URL& folder) {
    std::vector<URL> entries;
    for (const DirectoryEntry& entry :
         readDirectory(folder).value_or(std::vector<DirectoryEntry>{}))
        if (!entry.name.starts_with('.'))
            entries.push_back(folder.appending(entry.name));
    return entries;
}

bool isApplication(const URL& url) { return url.pathExtension() == applicationExtension; }

bool isOfTheSystem(const URL& application) {
    return resolvedLinks(application).value_or(application).path().starts_with(systemFolder);
}

} // namespace

AppUsageScanner::AppUsageScanner(const URL& home) : folders(applicationFolders(home)) {}

std::vector<AppUsage> AppUsageScanner::scan(const DirectorySizer& sizer,
                                            const CancelToken& cancel) const {
    std::vector<URL> applications;
    for (const URL& folder : folders)
        std::ranges::move(apps(folder), std::back_inserter(applications));

    std::vector<AppUsage> found;
    forEachLimited(
        width, applications.size(), cancel,
        [&](std::size_t index) { return usage(applications[index], sizer, cancel); },
        [&](std::size_t, std::optional<AppUsage> app) {
            if (app)
                found.push_back(std::move(*app));
        });
    sortLargestFirst(found);
    return found;
}

std::vector<URL> AppUsageScanner::apps(const URL& folder) {
    std::vector<URL> found;
    for (const URL& entry : entriesOf(folder)) {
        if (isApplication(entry))
            found.push_back(entry);
        else
            std::ranges::copy_if(entriesOf(entry), std::back_inserter(found), isApplication);
    }
    return found;
}

std::optional<AppUsage> AppUsageScanner::usage(const URL& application,
                                               const DirectorySizer& sizer,
                                               const CancelToken& cancel) {
    if (isOfTheSystem(application))
        return std::nullopt;
    ApplicationFacts facts = applicationFacts(application);
    return AppUsage{.url = application,
                    .name = removing(applicationSuffix, facts.displayName),
                    .bundleIdentifier = std::move(facts.bundleIdentifier),
                    .lastUsed = facts.lastUsed,
                    .addedOn = facts.addedOn,
                    .sizeBytes = sizer.size(application, cancel)};
}

void AppUsageScanner::sortLargestFirst(std::vector<AppUsage>& apps) {
    std::ranges::stable_sort(apps, std::ranges::greater{}, &AppUsage::sizeBytes);
}

} // namespace tidewright
