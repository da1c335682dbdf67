#include "tests/support/MountNamespace.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace tidewright::test {

namespace {

constexpr int refused = 98;

bool writeTo(const char* path, const std::string& text) {
    const int file = open(path, O_WRONLY | O_CLOEXEC);
    const bool written = write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(file);
    return written;
}

/// Root may simply do it; anybody else may in a user namespace, where there is no other user.
bool enterNamespace() {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(CLONE_NEWNS) == 0)
        return true;
    return unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && writeTo("/proc/self/setgroups", "deny") &&
           writeTo("/proc/self/uid_map", fmt::format("0 {} 1", user)) &&
           writeTo("/proc/self/gid_map", fmt::format("0 {} 1", group));
}

bool keepsMountsToItself() {
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

std::optional<std::string> withOwnMounts(const std::function<std::string()>& check) {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        if (!enterNamespace() || !keepsMountsToItself())
            _exit(refused);
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
    if (WIFEXITED(status) && WEXITSTATUS(status) == refused)
        return std::nullopt;
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the child ended with " << status;
    return answer;
}

bool mountMemory(const URL& folder) {
    return mount("none", folder.path().c_str(), "tmpfs", 0, nullptr) == 0;
}

bool mountAgain(const URL& existing, const URL& place) {
    return mount(existing.path().c_str(), place.path().c_str(), nullptr, MS_BIND, nullptr) == 0;
}

} // namespace tidewright::test
