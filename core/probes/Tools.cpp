#include "core/probes/Tools.h"

#include "core/platform/FileInfo.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace tidewright {

namespace {

constexpr const char* sampleMark = ".sample-home/about.txt";
constexpr std::array systemFolders{"/usr/bin", "/bin", "/usr/sbin", "/sbin"};

} // namespace

bool isSampleHome(const URL& home) {
    const auto info = fileInfo(home.appending(sampleMark), Links::dontFollow);
    return info && info->kind == FileKind::regular;
}

ToolLocator confinedTo(const URL& home, const ToolLocator& tools) {
    ToolLocator confined;
    std::ranges::copy_if(tools.searchPath, std::back_inserter(confined.searchPath),
                         [&](const std::string& folder) {
                             return URL(folder).standardized().isInside(home.standardized());
                         });
    confined.searchPath.insert(confined.searchPath.end(), systemFolders.begin(),
                               systemFolders.end());
    return confined;
}

ShellRunner runnerFor(const URL& home, const Environment& environment) {
    const ToolLocator tools(home, environment);
    return {isSampleHome(home) ? confinedTo(home, tools) : tools};
}

} // namespace tidewright
