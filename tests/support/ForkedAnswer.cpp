#include "tests/support/ForkedAnswer.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace tidewright::test {

namespace {

constexpr int unprepared = 99;

} // namespace

std::optional<std::string> forkedAnswer(bool (*prepare)(),
                                        const std::function<std::string()>& check) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        ADD_FAILURE() << "no pipe";
        return std::string();
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        if (!prepare())
            _exit(unprepared);
        const std::string answer = check();
        const ssize_t written = write(ends[1], answer.data(), answer.size());
        _exit(written == static_cast<ssize_t>(answer.size()) ? 0 : 1);
    }
    close(ends[1]);
    std::string answer;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(ends[0], buffer.data(), buffer.size())) > 0;)
        answer.append(buffer.data(), static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == unprepared)
        return std::nullopt;
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the child ended with " << status;
    return answer;
}

} // namespace tidewright::test
