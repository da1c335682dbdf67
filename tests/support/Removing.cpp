#include "tests/support/Removing.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>

namespace tidewright::test {

ApprovedPath approvedPath(const TempHome& home, const URL& item) {
    return approvedPaths(home, {item}).front();
}

std::vector<ApprovedPath> approvedPaths(const TempHome& home, const std::vector<URL>& items) {
    auto approved = PathPolicy(home.url(), home.path("temporary"), {}, {}).validate(items, false);
    EXPECT_TRUE(approved) << approved.error().errorDescription();
    return std::move(approved.value());
}

std::string outcome(const Result<void, FileActionError>& result) {
    if (result)
        return "done";
    constexpr std::array kinds{"system", "replaced", "mounted", "stillThere"};
    const FileActionError& error = result.error();
    return fmt::format("{} {} ({})", kinds.at(static_cast<std::size_t>(error.kind)),
                       error.cause.path, error.cause.reason());
}

std::string namesUnder(const URL& folder) {
    namespace fs = std::filesystem;
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder.path()))
        names.push_back(entry.path().lexically_relative(folder.path()).string());
    std::ranges::sort(names);
    return fmt::format("{}", fmt::join(names, " "));
}

} // namespace tidewright::test
