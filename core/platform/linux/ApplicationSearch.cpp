#include "core/platform/linux/ApplicationSearch.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/platform/StandardFolders.h"
#include "core/platform/linux/ApplicationBundle.h"
#include "core/platform/linux/KeyFile.h"
#include "core/platform/linux/KnownApplications.h"
#include "core/support/Text.h"

#include <algorithm>

namespace tidewright {

namespace {

constexpr Int64 maximumEntryBytes = 1'000'000;
constexpr std::string_view entryGroup = "Desktop Entry";

bool isAbsolute(std::string_view path) { return path.starts_with('/'); }

std::string value(const Environment& environment, const std::string& name) {
    const auto found = environment.find(name);
    return found == environment.end() ? "" : found->second;
}

/// "All paths set in these environment variables must be absolute", others are to be ignored.
URL userDataFolder(const URL& home, const Environment& environment) {
    const std::string folder = value(environment, "XDG_DATA_HOME");
    return isAbsolute(folder) ? URL(folder) : home.appending(".local/share");
}

std::vector<URL> systemDataFolders(const Environment& environment) {
    const std::string set = value(environment, "XDG_DATA_DIRS");
    std::vector<URL> folders;
    for (std::string& folder :
         splitDroppingEmpty(set.empty() ? "/usr/local/share:/usr/share" : set, ':'))
        if (isAbsolute(folder))
            folders.emplace_back(std::move(folder));
    return folders;
}

/// Folders that are known to be links are let through too: what counts is what is inside.
bool isBundle(const DirectoryEntry& entry) {
    return entry.name.ends_with(".app") &&
           (entry.kind == FileKind::directory || entry.kind == FileKind::symbolicLink);
}

bool isSameFile(const FileInfo& a, const FileInfo& b) {
    return a.inode == b.inode && a.device == b.device && a.modified == b.modified &&
           a.logicalBytes == b.logicalBytes;
}

/// A file that changes twice within the clock's grain looks the same.
bool mayStillChangeUnseen(const FileInfo& file) {
    return currentDate() - file.modified < std::chrono::seconds(2);
}

/// The name of an application's desktop entry; absent when it is none or counts as uninstalled.
std::optional<std::string> nameOfEntry(const std::string& text) {
    const auto is = [&](std::string_view key, std::string_view expected, std::string_view missing) {
        return keyFileValue(text, entryGroup, key).value_or(std::string(missing)) == expected;
    };
    const auto name = keyFileValue(text, entryGroup, "Name");
    if (!name || name->empty() || is("Hidden", "true", "") ||
        !is("Type", "Application", "Application"))
        return std::nullopt;
    return repairedUTF8(*name);
}

/// The first entry of a name stands for all: one that is hidden in the user's own folder uninstalls
/// the system's (Desktop Entry Specification, "Desktop File ID" and the key Hidden).
std::optional<InstalledApplication> findDesktopEntry(const std::string& identifier,
                                                     const std::vector<URL>& folders) {
    for (const URL& folder : folders) {
        const URL entry = folder.appending(identifier + ".desktop");
        const auto text = readFile(entry, maximumEntryBytes);
        if (!text)
            continue;
        const auto name = nameOfEntry(*text);
        return name ? std::optional(InstalledApplication{entry, *name}) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<InstalledApplication> findFlatpak(const std::string& identifier,
                                                const std::vector<URL>& folders) {
    for (const URL& folder : folders) {
        const URL flatpak = folder.appending(identifier);
        if (fileExists(flatpak.appending("current")))
            return InstalledApplication{flatpak, identifier};
    }
    return std::nullopt;
}

} // namespace

ApplicationFolders standardApplicationFolders(const URL& home, const Environment& environment) {
    const URL userData = userDataFolder(home, environment);
    const std::vector<URL> flatpakFolders = {userData.appending("flatpak"),
                                             URL("/var/lib/flatpak")};

    std::vector<URL> dataFolders{userData};
    for (URL& folder : systemDataFolders(environment))
        dataFolders.push_back(std::move(folder));
    for (const URL& folder : flatpakFolders)
        dataFolders.push_back(folder.appending("exports/share"));
    dataFolders.emplace_back("/var/lib/snapd/desktop");

    ApplicationFolders folders;
    folders.bundles = applicationFolders(home);
    for (const URL& folder : dataFolders)
        folders.desktopEntries.push_back(folder.appending("applications"));
    for (const URL& folder : flatpakFolders)
        folders.flatpaks.push_back(folder.appending("app"));
    return folders;
}

std::optional<InstalledApplication> ApplicationSearch::find(const std::string& identifier,
                                                            const ApplicationFolders& folders) {
    if (!isApplicationIdentifier(identifier))
        return std::nullopt;
    for (const URL& folder : folders.bundles)
        if (auto bundle = findBundle(identifier, folder))
            return bundle;
    const std::vector<std::string> names = allIdentifiers(identifier);
    for (const std::string& name : names)
        if (auto entry = findDesktopEntry(name, folders.desktopEntries))
            return entry;
    for (const std::string& name : names)
        if (auto flatpak = findFlatpak(name, folders.flatpaks))
            return flatpak;
    return std::nullopt;
}

std::optional<InstalledApplication> ApplicationSearch::findBundle(const std::string& identifier,
                                                                  const URL& folder) {
    auto entries = readDirectory(folder);
    if (!entries)
        return std::nullopt;
    std::sort(entries->begin(), entries->end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
    for (const DirectoryEntry& entry : *entries) {
        const URL bundle = folder.appending(entry.name);
        if (isBundle(entry) && currentIdentifier(bundle) == identifier)
            return InstalledApplication{bundle, repairedUTF8(entry.name)};
    }
    return std::nullopt;
}

std::optional<std::string> ApplicationSearch::currentIdentifier(const URL& bundle) {
    const auto file = fileInfo(bundleInformation(bundle), Links::follow);
    if (!file)
        return std::nullopt;
    const std::lock_guard lock(m_mutex);
    const auto known = m_identifiers.find(bundle);
    if (known != m_identifiers.end() && isSameFile(known->second.file, *file))
        return known->second.identifier;
    auto identifier = bundleIdentifier(bundle);
    if (mayStillChangeUnseen(*file))
        m_identifiers.erase(bundle);
    else
        m_identifiers.insert_or_assign(bundle, ReadIdentifier{*file, identifier});
    return identifier;
}

} // namespace tidewright
