#include "core/platform/StandardFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>

namespace tidewright {

namespace {

std::optional<URL> homeInEnvironment() {
    const char* const value = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    if (value == nullptr || value[0] != '/')
        return std::nullopt;
    return URL(value).standardized();
}

std::optional<URL> homeInUserDatabase() {
    constexpr std::size_t maximumBytes = 1'000'000;
    for (std::string buffer(1024, '\0'); buffer.size() < maximumBytes;
         buffer.resize(2 * buffer.size())) {
        passwd entry = {};
        passwd* found = nullptr;
        const int error = getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
        if (error == ERANGE)
            continue;
        if (error != 0 || found == nullptr || found->pw_dir == nullptr || found->pw_dir[0] != '/')
            return std::nullopt;
        return URL(found->pw_dir).standardized();
    }
    return std::nullopt;
}

// What user databases give to those who have no home; it never exists.
const char* const noHome = "/nonexistent";

} // namespace

URL homeDirectory() {
    if (const auto home = homeInEnvironment())
        return *home;
    return homeInUserDatabase().value_or(URL(noHome));
}

std::vector<URL> applicationFolders(const URL& home) {
    return {URL("/Applications"), home.appending("Applications")};
}

} // namespace tidewright
