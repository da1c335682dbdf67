#include "tests/support/MountNamespace.h"

#include "tests/support/ForkedAnswer.h"

#include <fmt/format.h>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace tidewright::test {

namespace {

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

bool takeOwnMounts() {
    return enterNamespace() && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

std::optional<std::string> withOwnMounts(const std::function<std::string()>& check) {
    return forkedAnswer(takeOwnMounts, check);
}

bool mountMemory(const URL& folder) {
    return mount("none", folder.path().c_str(), "tmpfs", 0, nullptr) == 0;
}

bool mountAgain(const URL& existing, const URL& place) {
    return mount(existing.path().c_str(), place.path().c_str(), nullptr, MS_BIND, nullptr) == 0;
}

} // namespace tidewright::test
