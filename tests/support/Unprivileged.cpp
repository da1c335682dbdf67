#include "tests/support/Unprivileged.h"

#include <gtest/gtest.h>

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace tidewright::test {

namespace {

constexpr unsigned nobody = 65534;
constexpr int couldNotDropRights = 99;

bool dropRights() {
    if (geteuid() != 0)
        return true;
    return setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0;
}

} // namespace

std::string asOrdinaryUser(const std::function<std::string()>& check) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        ADD_FAILURE() << "no pipe";
        return {};
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        if (!dropRights())
            _exit(couldNotDropRights);
        const std::string answer = check();
        const bool written =
            write(ends[1], answer.data(), answer.size()) == static_cast<ssize_t>(answer.size());
        _exit(written ? 0 : 1);
    }
    close(ends[1]);
    std::string answer;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(ends[0], buffer.data(), buffer.size())) > 0;)
        answer.append(buffer.data(), static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the child ended with " << status;
    return answer;
}

} // namespace tidewright::test
