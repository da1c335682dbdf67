// How to recognise one application or tool among what is running.
#pragma once

#include "core/support/Fields.h"

namespace tidewright {

struct AppMatcher {
    std::string displayName;                    ///< what the user reads
    std::vector<std::string> bundleIdentifiers; ///< exact identifiers
    std::vector<std::string> processPatterns;   ///< substrings of a command line

    bool operator==(const AppMatcher&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("displayName", &AppMatcher::displayName),
                          field("bundleIdentifiers", &AppMatcher::bundleIdentifiers),
                          field("processPatterns", &AppMatcher::processPatterns)};
    }

    static const AppMatcher androidStudio;
    static const AppMatcher xcode;
    static const AppMatcher simulator;
    static const AppMatcher vsCode;
    static const AppMatcher chrome;
    static const AppMatcher brave;
    static const AppMatcher firefox;
    static const AppMatcher gradle;
    static const AppMatcher metro;
    static const AppMatcher emulator;
};

} // namespace tidewright
