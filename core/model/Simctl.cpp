#include "core/model/Simctl.h"

namespace tidewright::Simctl {

namespace {

constexpr std::array platforms{
    std::pair{std::string_view("com.apple.platform.iphonesimulator"), std::string_view("iOS")},
    std::pair{std::string_view("com.apple.platform.watchsimulator"), std::string_view("watchOS")},
    std::pair{std::string_view("com.apple.platform.appletvsimulator"), std::string_view("tvOS")},
    std::pair{std::string_view("com.apple.platform.xrsimulator"), std::string_view("visionOS")},
};

} // namespace

std::string_view Runtime::platformName() const {
    for (const auto& [platform, name] : platforms)
        if (platformIdentifier == platform)
            return name;
    return "Simulator";
}

} // namespace tidewright::Simctl
