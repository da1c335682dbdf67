#include "core/insights/InsightEngine.h"

#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>

namespace tidewright {

namespace {

using std::string_view;
using Action = Insight::Action;
using Destination = Insight::Destination;
using Severity = Insight::Severity;

constexpr const char* trashRule = "system.trash";
constexpr const char* snapshotsRule = "system.localSnapshots";
constexpr double noticeableShareOfFreeSpace = 0.2;

bool isToClean(const ScanItem& item) { return item.decision == Decision::clean; }

/// Items that are worth a sentence together.
struct ItemGroup {
    const char* id;
    Severity severity;
    const char* symbolName;
    const char* title;   ///< with their size
    const char* message; ///< with their number, and with days where a setting is about them
    const char* actionTitle;
    Int64 atLeast;
    std::vector<string_view> ruleIDs = {};           ///< empty: those of any rule
    std::optional<Category> category = std::nullopt; ///< absent: of any
    std::optional<Decision> decision = std::nullopt; ///< absent: any
    Int64 ScanSettings::*days = nullptr;
    std::optional<Destination> destination = std::nullopt; ///< absent: the review of the items

    bool holds(const ScanItem& item) const {
        return (ruleIDs.empty() || std::ranges::find(ruleIDs, item.ruleID) != ruleIDs.end()) &&
               (!category || item.category == *category) &&
               (!decision || item.decision == *decision);
    }
};

const ItemGroup itemGroups[] = {
    {.id = "downloads.old",
     .severity = Severity::notice,
     .symbolName = "arrow.down.circle",
     .title = "Old installers in Downloads ({})",
     .message = "{} disk images, packages and archives older than {} days. They go to the Trash, "
                "so you can put them back.",
     .actionTitle = "Review downloads",
     .atLeast = 500 * megabyte,
     .ruleIDs = {"system.oldDownloads"},
     .days = &ScanSettings::oldDownloadDays},
    {.id = "android.toolchains",
     .severity = Severity::notice,
     .symbolName = "square.stack.3d.up.slash",
     .title = "Unused Android toolchains ({})",
     .message = "{} SDK packages and Gradle versions that none of your projects or emulators "
                "reference.",
     .actionTitle = "Review toolchains",
     .atLeast = 500 * megabyte,
     .ruleIDs = {"android.systemImage", "android.ndk", "android.buildTools", "android.cmake",
                 "gradle.versionCache", "gradle.wrapperDist"},
     .decision = Decision::clean},
    {.id = "ide.leftovers",
     .severity = Severity::tip,
     .symbolName = "clock.arrow.circlepath",
     .title = "Leftovers from old IDE versions ({})",
     .message = "Caches, settings and device symbols from Android Studio and Xcode versions you've "
                "already upgraded from.",
     .actionTitle = "Review leftovers",
     .atLeast = 300 * megabyte,
     .ruleIDs = {"androidStudio.leftovers", "xcode.deviceSupport", "ide.heapDumps"},
     .decision = Decision::clean},
    {.id = "js.caches",
     .severity = Severity::tip,
     .symbolName = "shippingbox",
     .title = "Package manager caches ({})",
     .message = "npm, Yarn, Bun and Metro caches. Everything downloads again on the next install.",
     .actionTitle = "Review caches",
     .atLeast = gigabyte,
     .category = Category::javascript,
     .decision = Decision::clean},
    {.id = "xcode.derivedData",
     .severity = Severity::tip,
     .symbolName = "hammer",
     .title = "Xcode DerivedData is {}",
     .message = "Build products for {} Xcode projects. They rebuild on the next build.",
     .actionTitle = "Review DerivedData",
     .atLeast = 5 * gigabyte,
     .ruleIDs = {"xcode.derivedData"},
     .decision = Decision::clean},
    {.id = "ios.runtimes",
     .severity = Severity::tip,
     .symbolName = "iphone.gen3",
     .title = "Simulator runtimes nothing uses ({})",
     .message = "{} runtimes that no project script or booted simulator needs.",
     .actionTitle = "Review runtimes",
     .atLeast = gigabyte,
     .ruleIDs = {"ios.runtime"},
     .decision = Decision::ask},
    {.id = "projects.dormant",
     .severity = Severity::tip,
     .symbolName = "moon.zzz",
     .title = "Dormant projects hold {}",
     .message = "{} projects haven't changed in {}+ days. Their node_modules can be reinstalled "
                "later. Projects are only cleaned if you pick them.",
     .actionTitle = "Show projects",
     .atLeast = gigabyte,
     .ruleIDs = {"project.nodeModules"},
     .decision = Decision::ask,
     .days = &ScanSettings::dormantProjectDays,
     .destination = Destination::projects},
};

struct Selection {
    std::vector<std::string> ids;
    Int64 bytes = 0;
};

template <class Holds>
Selection selected(const std::vector<ScanItem>& items, Holds holds) {
    Selection selection;
    for (const ScanItem& item : items) {
        if (!holds(item))
            continue;
        selection.ids.push_back(item.id);
        selection.bytes += item.sizeBytes;
    }
    return selection;
}

const ScanItem* firstOfRule(const std::vector<ScanItem>& items, string_view ruleID) {
    const auto found = std::ranges::find(items, ruleID, &ScanItem::ruleID);
    return found == items.end() ? nullptr : &*found;
}

std::optional<Insight> aboutSpace(Int64 available,
                                  const Selection& toClean,
                                  const ScanSettings& settings) {
    Insight insight{.id = "space.critical",
                    .severity = Severity::critical,
                    .symbolName = "exclamationmark.octagon.fill",
                    .title = "Your disk is almost full",
                    .message = fmt::format(
                        "Only {} left. Builds, simulators and macOS updates fail below this. {} "
                        "can be freed without touching your projects.",
                        formattedBytes(available), formattedBytes(toClean.bytes)),
                    .estimatedGain = toClean.bytes,
                    .actionTitle = "Review safe cleanup",
                    .action = Action::review(toClean.ids)};
    if (available < settings.criticalSpaceThreshold)
        return insight;
    if (available >= settings.lowSpaceThreshold)
        return std::nullopt;
    insight.id = "space.low";
    insight.severity = Severity::warning;
    insight.symbolName = "externaldrive.badge.exclamationmark";
    insight.title = "Free space is getting low";
    insight.message = fmt::format("{} free. A native React Native build needs several GB of "
                                  "scratch space. {} can be freed safely.",
                                  formattedBytes(available), formattedBytes(toClean.bytes));
    return insight;
}

/// The less space is left, the sooner and the louder.
std::optional<Severity> severityOfTrash(Int64 bytes, Int64 available, Int64 largeTrash) {
    if (available >= 1 &&
        static_cast<double>(bytes) > noticeableShareOfFreeSpace * static_cast<double>(available))
        return Severity::warning;
    return bytes >= largeTrash ? std::optional(Severity::notice) : std::nullopt;
}

std::optional<Insight> aboutTrash(Int64 available,
                                  const std::vector<ScanItem>& items,
                                  const ScanSettings& settings) {
    const ScanItem* trash = firstOfRule(items, trashRule);
    if (trash == nullptr)
        return std::nullopt;
    const auto severity =
        severityOfTrash(trash->sizeBytes, available, settings.largeTrashThreshold);
    if (!severity)
        return std::nullopt;
    return Insight{
        .id = "trash.large",
        .severity = *severity,
        .symbolName = "trash.fill",
        .title = fmt::format("Your Trash is holding {}", formattedBytes(trash->sizeBytes)),
        .message = "Deleted files keep using space until the Trash is emptied. Look through it "
                   "first if you're not sure what's in there.",
        .estimatedGain = trash->sizeBytes,
        .actionTitle = "Empty Trash…",
        .action = Action::review({trash->id})};
}

std::optional<Insight> aboutGroup(const ItemGroup& group,
                                  const std::vector<ScanItem>& items,
                                  const ScanSettings& settings) {
    Selection selection = selected(items, [&](const ScanItem& item) { return group.holds(item); });
    if (selection.bytes < group.atLeast)
        return std::nullopt;
    const Int64 days = group.days == nullptr ? 0 : settings.*group.days;
    return Insight{.id = group.id,
                   .severity = group.severity,
                   .symbolName = group.symbolName,
                   .title = fmt::format(fmt::runtime(group.title), formattedBytes(selection.bytes)),
                   .message = fmt::format(fmt::runtime(group.message), selection.ids.size(), days),
                   .estimatedGain = selection.bytes,
                   .actionTitle = group.actionTitle,
                   .action = group.destination ? Action::open(*group.destination)
                                               : Action::review(std::move(selection.ids))};
}

std::optional<Insight> aboutUnusedApps(const std::vector<AppUsage>& apps,
                                       Int64 unusedDays,
                                       Date now) {
    std::size_t count = 0;
    Int64 bytes = 0;
    for (const AppUsage& app : apps) {
        if (app.idleDays(now).value_or(0) < unusedDays)
            continue;
        ++count;
        bytes += app.sizeBytes;
    }
    if (count == 0)
        return std::nullopt;
    return Insight{
        .id = "apps.unused",
        .severity = Severity::tip,
        .symbolName = "app.badge.clock",
        .title = fmt::format("{} {} not opened in {}+ days", count, count == 1 ? "app" : "apps",
                             unusedDays),
        .message = fmt::format("Together {}. Tidewright never removes apps; look through them and "
                               "uninstall the ones you don't need.",
                               formattedBytes(bytes)),
        .estimatedGain = bytes,
        .actionTitle = "See apps",
        .action = Action::open(Destination::apps)};
}

std::optional<Insight> aboutSnapshots(const std::vector<ScanItem>& items) {
    const ScanItem* snapshots = firstOfRule(items, snapshotsRule);
    if (snapshots == nullptr)
        return std::nullopt;
    return Insight{.id = "system.snapshots",
                   .severity = Severity::tip,
                   .symbolName = "clock.badge",
                   .title = capitalized(snapshots->title),
                   .message = "Local Time Machine snapshots show up as \"System Data\". macOS "
                              "frees them on its own when space is low.",
                   .estimatedGain = 0,
                   .actionTitle = "Review",
                   .action = Action::review({snapshots->id})};
}

std::optional<Insight> aboutLargeFiles(const std::vector<LargeFile>& files) {
    if (files.empty())
        return std::nullopt;
    Int64 bytes = 0;
    for (const LargeFile& file : files)
        bytes += file.sizeBytes;
    return Insight{.id = "files.large",
                   .severity = Severity::tip,
                   .symbolName = "doc.badge.ellipsis",
                   .title = files.size() == 1
                                ? "A file larger than 1 GB"
                                : fmt::format("{} files larger than 1 GB", files.size()),
                   .message = fmt::format("Together {} in your folders. Shown for review only.",
                                          formattedBytes(bytes)),
                   .estimatedGain = 0,
                   .actionTitle = "See files",
                   .action = Action::open(Destination::apps)};
}

Insight allIsWell(Int64 available, Int64 bytesToClean) {
    return {.id = "healthy",
            .severity = Severity::tip,
            .symbolName = "checkmark.seal.fill",
            .title = "Your Mac is in good shape",
            .message =
                fmt::format("{} free. {}", formattedBytes(available),
                            bytesToClean == 0 ? "Nothing urgent to clean."
                                              : fmt::format("{} more can still be freed safely.",
                                                            formattedBytes(bytesToClean))),
            .estimatedGain = bytesToClean,
            .actionTitle = std::nullopt,
            .action = Action::none()};
}

} // namespace

std::vector<Insight> InsightEngine::insights(const DiskSpace& disk,
                                             const std::vector<ScanItem>& items,
                                             const std::vector<AppUsage>& apps,
                                             const std::vector<LargeFile>& largeFiles,
                                             Date now) const {
    const Int64 available = disk.availableBytes;
    const Selection toClean = selected(items, isToClean);
    std::vector<Insight> result;
    const auto add = [&](std::optional<Insight> insight) {
        if (insight)
            result.push_back(std::move(*insight));
    };
    add(aboutSpace(available, toClean, settings));
    add(aboutTrash(available, items, settings));
    for (const ItemGroup& group : itemGroups)
        add(aboutGroup(group, items, settings));
    add(aboutUnusedApps(apps, settings.unusedAppDays, now));
    add(aboutSnapshots(items));
    add(aboutLargeFiles(largeFiles));
    if (std::ranges::all_of(result, [](const Insight& i) { return i.severity == Severity::tip; }))
        add(allIsWell(available, toClean.bytes));
    std::ranges::stable_sort(result, std::ranges::greater{}, [](const Insight& insight) {
        return std::tuple{insight.severity, insight.estimatedGain};
    });
    return result;
}

} // namespace tidewright
