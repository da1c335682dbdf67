// The kinds of toolchain parts that a project can need.
#pragma once

#include "core/support/Fields.h"

namespace tidewright {

enum class RequirementKind {
    gradle,
    ndk,
    buildTools,
    cmake,
    compileSdk,
    systemImage,
    simulator,
    iosRuntime,
    node,
};

template <>
struct EnumCases<RequirementKind> {
    static constexpr std::array cases{
        std::pair{RequirementKind::gradle, std::string_view("gradle")},
        std::pair{RequirementKind::ndk, std::string_view("ndk")},
        std::pair{RequirementKind::buildTools, std::string_view("buildTools")},
        std::pair{RequirementKind::cmake, std::string_view("cmake")},
        std::pair{RequirementKind::compileSdk, std::string_view("compileSdk")},
        std::pair{RequirementKind::systemImage, std::string_view("systemImage")},
        std::pair{RequirementKind::simulator, std::string_view("simulator")},
        std::pair{RequirementKind::iosRuntime, std::string_view("iosRuntime")},
        std::pair{RequirementKind::node, std::string_view("node")},
    };
};

/// The user's word for it.
std::string_view title(RequirementKind kind);

} // namespace tidewright
