#include "cli/Paths.h"

#include "core/platform/FileInfo.h"

#include <fmt/format.h>

#include <filesystem>

namespace tidewright {

URL absolute(const std::string& argument) {
    if (argument.starts_with('/'))
        return URL(argument).standardized();
    std::error_code error;
    const std::filesystem::path current = std::filesystem::current_path(error);
    return URL(current.string()).appending(argument).standardized();
}

Result<URL, std::string> existingFolder(const std::string& argument) {
    URL folder = absolute(argument);
    const auto info = fileInfo(folder, Links::follow);
    if (!info)
        return Failure(
            fmt::format("the folder {} can't be used: {}.", argument, info.error().reason()));
    if (info->kind != FileKind::directory)
        return Failure(fmt::format("{} is not a folder.", argument));
    return folder;
}

} // namespace tidewright
