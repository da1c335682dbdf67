#include "core/model/RequirementKind.h"

namespace tidewright {

std::string_view title(RequirementKind kind) {
    constexpr std::array<std::string_view, 9> titles{"Gradle",    "NDK",         "Build tools",
                                                     "CMake",     "compileSdk",  "System image",
                                                     "Simulator", "iOS runtime", "Node"};
    return titles.at(static_cast<std::size_t>(kind));
}

} // namespace tidewright
