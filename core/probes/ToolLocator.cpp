#include "core/probes/ToolLocator.h"

#include "core/platform/Directory.h"
#include "core/support/Collation.h"
#include "core/support/Text.h"

#include <fmt/ranges.h>

#include <algorithm>

namespace tidewright {

namespace {

// "~" stands for the home folder; the newest node of nvm comes between the two lists.
constexpr std::array packageManagerFolders{
    "/opt/homebrew/bin",
    "/opt/homebrew/sbin",
    "/usr/local/bin",
};
constexpr std::array otherFolders{
    "~/.local/share/fnm/aliases/default/bin",
    "~/.volta/bin",
    "~/.bun/bin",
    "~/.yarn/bin",
    "~/Library/pnpm",
    "~/.rbenv/shims",
    "~/.gem/bin",
    "/usr/bin",
    "/bin",
    "/usr/sbin",
    "/sbin",
};
constexpr const char* nvmVersions = ".nvm/versions/node";

std::string expanded(std::string_view folder, const URL& home) {
    if (folder.starts_with("~/"))
        return home.path() + std::string(folder.substr(1));
    return std::string(folder);
}

/// The tools of the newest version that nvm has installed, by numeric order of the folders' names.
std::optional<std::string> newestNvmNode(const URL& home) {
    const URL versions = home.appending(nvmVersions);
    const auto entries = readDirectory(versions);
    if (!entries || entries->empty())
        return std::nullopt;
    const auto newest =
        std::ranges::max_element(*entries, [](const DirectoryEntry& a, const DirectoryEntry& b) {
            return standardCompare(a.name, b.name) < 0;
        });
    return versions.appending(newest->name).appending("bin").path();
}

} // namespace

ToolLocator::ToolLocator(const URL& home, const Environment& processEnvironment) {
    const auto add = [this](std::string folder) {
        if (std::ranges::find(searchPath, folder) == searchPath.end())
            searchPath.push_back(std::move(folder));
    };
    for (const char* folder : packageManagerFolders)
        add(folder);
    if (auto node = newestNvmNode(home))
        add(std::move(*node));
    for (const char* folder : otherFolders)
        add(expanded(folder, home));
    const auto path = processEnvironment.find("PATH");
    if (path == processEnvironment.end())
        return;
    for (std::string& folder : splitDroppingEmpty(path->second, ':'))
        add(std::move(folder));
}

std::optional<URL> ToolLocator::locate(const std::string& tool) const {
    if (tool.starts_with('/'))
        return isExecutableFile(URL(tool)) ? std::optional(URL(tool)) : std::nullopt;
    for (const std::string& folder : searchPath) {
        const URL candidate(folder + "/" + tool);
        if (isExecutableFile(candidate))
            return candidate;
    }
    return std::nullopt;
}

Environment ToolLocator::environment() const {
    Environment result = processEnvironment();
    result["PATH"] = fmt::format("{}", fmt::join(searchPath, ":"));
    return result;
}

} // namespace tidewright
