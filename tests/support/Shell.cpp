#include "tests/support/Shell.h"

#include "tests/support/Program.h"

#include <fmt/ranges.h>
#include <gtest/gtest.h>

namespace tidewright::test {

ProcessOutput runTool(const URL& home, const std::vector<std::string>& words) {
    Environment environment = environmentOf(home);
    environment["PATH"] = processEnvironment()["PATH"];
    const auto output = runProcess(
        {URL("/usr/bin/env"), words, environment, home, std::chrono::seconds(30)}, CancelToken());
    EXPECT_TRUE(output) << fmt::format("{} did not end", fmt::join(words, " "));
    return output.value_or(ProcessOutput{.exitCode = -1, .output = {}, .errorOutput = {}});
}

std::string answerOfTool(const URL& home, const std::vector<std::string>& words) {
    const ProcessOutput output = runTool(home, words);
    EXPECT_EQ(output.exitCode, 0) << fmt::format("{}", fmt::join(words, " "));
    EXPECT_EQ(output.errorOutput, "");
    return output.output;
}

} // namespace tidewright::test
