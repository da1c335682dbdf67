#include "core/platform/linux/Mounts.h"

#include "core/platform/FileContents.h"
#include "core/platform/posix/FolderOpening.h"
#include "core/support/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <cstdint>
#include <string_view>

namespace tidewright {

namespace {

constexpr Int64 maximumMountsBytes = 64'000'000;

bool isOctal(std::string_view text) {
    return text.find_first_not_of("01234567") == std::string_view::npos;
}

/// The kernel writes blanks, line ends and backslashes as a backslash and three octal digits.
std::string unescaped(std::string_view text) {
    constexpr std::size_t digits = 3;
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view code = text.substr(i + 1, digits);
        if (text[i] != '\\' || code.size() < digits || !isOctal(code)) {
            result += text[i];
            continue;
        }
        result += static_cast<char>((code[0] - '0') * 64 + (code[1] - '0') * 8 + (code[2] - '0'));
        i += digits;
    }
    return result;
}

} // namespace

std::optional<std::uint64_t> mountOf(int descriptor) {
    struct statx facts = {};
    if (statx(descriptor, "", AT_EMPTY_PATH, STATX_MNT_ID, &facts) != 0)
        return std::nullopt;
    if ((facts.stx_mask & STATX_MNT_ID) != 0)
        return facts.stx_mnt_id;
    // Before Linux 5.8. Asked for a handle of no bytes, this call answers the mount alone; file
    // systems that give no handles are told by their device.
    file_handle handle = {};
    int mount = 0;
    if (name_to_handle_at(descriptor, "", &handle, &mount, AT_EMPTY_PATH) == 0 ||
        errno == EOVERFLOW)
        return static_cast<std::uint64_t>(mount);
    return makedev(facts.stx_dev_major, facts.stx_dev_minor);
}

Result<MountPoint, SystemError> mountPointOf(int folder, const URL& path) {
    MountPoint top{openFolderHandle(folder, "."), path};
    const auto mount = top.folder ? mountOf(top.folder.get()) : std::nullopt;
    while (mount && top.path.path() != "/") {
        FileDescriptor above = openFolderHandle(top.folder.get(), "..");
        const auto mountAbove = above ? mountOf(above.get()) : std::nullopt;
        if (!mountAbove)
            break;
        if (mountAbove != mount)
            return top;
        top = {std::move(above), top.path.deletingLastPathComponent()};
    }
    if (mount && top.path.path() == "/")
        return top;
    return Failure(SystemError{errno, "find the disk of", path.path()});
}

Result<std::optional<URL>, SystemError> mountInside(const URL& path) {
    // See proc_pid_mountinfo(5): the mount point is the fifth field of a line.
    constexpr std::size_t mountPointField = 4;
    const auto mounts = readFile(URL("/proc/self/mountinfo"), maximumMountsBytes);
    if (!mounts)
        return Failure(mounts.error());
    for (const std::string& line : splitDroppingEmpty(*mounts, '\n')) {
        const auto fields = splitDroppingEmpty(line, ' ');
        if (fields.size() <= mountPointField)
            continue;
        URL mountPoint(unescaped(fields[mountPointField]));
        if (mountPoint.isInside(path))
            return mountPoint;
    }
    return std::nullopt;
}

} // namespace tidewright
