#include "core/model/InUseSnapshot.h"

#include "core/support/Pattern.h"
#include "core/support/Text.h"

#include <algorithm>

namespace tidewright {

bool InUseSnapshot::isRunning(const AppMatcher& matcher) const {
    for (const std::string& identifier : matcher.bundleIdentifiers)
        if (runningBundleIdentifiers.contains(identifier))
            return true;
    return std::ranges::any_of(matcher.processPatterns, [this](const std::string& pattern) {
        return std::ranges::any_of(
            processCommandLines, [&](const std::string& line) { return contains(line, pattern); });
    });
}

std::optional<std::string> InUseSnapshot::processUsing(const std::string& path) const {
    for (const std::string& line : processCommandLines)
        if (contains(line, path))
            return describe(line);
    return std::nullopt;
}

std::string InUseSnapshot::describe(const std::string& commandLine) {
    static const Pattern npxPackage(R"(_npx/[^/]+/node_modules/(?:\.bin/)?((?:@[^/]+/)?[^/\s]+))");
    if (const auto match = npxPackage.firstMatch(commandLine))
        return match->at(1) + " (via npx)";
    const std::vector<std::string> words = splitDroppingEmpty(commandLine, ' ');
    return URL(words.empty() ? commandLine : words.front()).lastPathComponent();
}

bool InUseSnapshot::isGradleVersionRunning(const std::string& version) const {
    return std::ranges::any_of(processCommandLines, [&](const std::string& line) {
        return contains(line, "GradleDaemon") &&
               (contains(line, "gradle-" + version + "-") ||
                contains(line, "gradle-" + version + "/") || contains(line, "/" + version + "/"));
    });
}

} // namespace tidewright
