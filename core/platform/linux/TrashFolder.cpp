#include "core/platform/linux/TrashFolder.h"

#include "core/platform/SystemLog.h"
#include "core/platform/TreeSize.h"
#include "core/support/LocalTime.h"
#include "core/support/PercentEncoding.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <set>
#include <string_view>

namespace tidewright {

namespace {

constexpr mode_t folderForUser = 0700;
constexpr mode_t fileForUser = 0600;
constexpr std::string_view infoSuffix = ".trashinfo";
constexpr const char* sizesFile = "directorysizes";
constexpr std::size_t maximumSizesBytes = 16'000'000; // a larger cache is begun anew

std::string infoName(const std::string& name) { return name + std::string(infoSuffix); }

/// A real folder, never what a link leads to; made where it is missing.
FileDescriptor openOrMake(int parent, const char* name) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor folder(openat(parent, name, flags));
    if (folder || errno != ENOENT)
        return folder;
    if (mkdirat(parent, name, folderForUser) != 0 && errno != EEXIST)
        return {};
    return FileDescriptor(openat(parent, name, flags));
}

void makeFoldersTo(const std::string& path) {
    for (std::size_t end = 0; end != std::string::npos;) {
        end = path.find('/', end + 1);
        mkdir(path.substr(0, end).c_str(), folderForUser); // what is really missing shows later
    }
}

/// All zeros where it can't be told, which permits nothing here.
struct stat statusOf(const FileDescriptor& file) {
    struct stat status = {};
    fstat(file.get(), &status);
    return status;
}

bool isUsersOwn(const FileDescriptor& folder) {
    struct stat status = {};
    return fstat(folder.get(), &status) == 0 && status.st_uid == geteuid();
}

void logOnce(const std::string& message) {
    static std::mutex mutex;
    static std::set<std::string> logged;
    const std::lock_guard lock(mutex);
    if (logged.insert(message).second)
        Logger{"com.tidewright.core", "clean"}.error(message);
}

int notTrusted(const URL& folder) {
    logOnce(folder.path() + " is not used as a Trash: it is a link, is not this user's own, or "
                            "lets others remove what is in it.");
    return EPERM;
}

int reasonAgainst(const URL& folder) {
    return errno == ENOTDIR || errno == ELOOP ? notTrusted(folder) : errno;
}

/// With slashes as they are.
std::string encoded(std::string_view path) { return percentEncoded(path, "/"); }

/// The first `bytes` bytes of a name at most, with no character of UTF-8 cut in two.
std::string shortened(const std::string& name, std::size_t bytes) {
    if (name.size() <= bytes)
        return name;
    constexpr std::size_t longestTail = 3; // of a character
    const auto continuesCharacter = [&](std::size_t at) {
        return (static_cast<unsigned char>(name[at]) & 0xC0U) == 0x80U;
    };
    for (std::size_t end = bytes; end > 0 && bytes - end <= longestTail; --end)
        if (!continuesCharacter(end))
            return name.substr(0, end);
    return name.substr(0, bytes); // not UTF-8
}

/// "name.txt", "name 2.txt", "name 3.txt"… with at most `bytes` bytes.
std::string nameOfCopy(const std::string& name, int copy, std::size_t bytes) {
    std::string extension = URL(name).pathExtension();
    if (!extension.empty())
        extension.insert(0, 1, '.');
    if (extension.size() > bytes / 2)
        extension.clear();
    const std::string stem = name.substr(0, name.size() - extension.size());
    const std::string ending = (copy == 1 ? "" : fmt::format(" {}", copy)) + extension;
    return shortened(stem, bytes - ending.size()) + ending;
}

/// errno tells what went wrong.
bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return false;
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/// Some file systems find no room for what was written until now.
bool closed(FileDescriptor file) { return close(file.release()) == 0 || errno == EINTR; }

bool stands(int folder, const std::string& name) {
    struct stat status = {};
    return fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

/// Not every file system can refuse to replace what stands there. The name is ours by then, for
/// every program makes the info file first, which only one can make, and nobody else may write in
/// the folder. So it is enough to look for what came there without an info file.
bool renameIntoTrash(const TrashableItem& item, int files, const std::string& name) {
    if (renameat2(item.folder, item.name.c_str(), files, name.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    if (stands(files, name)) {
        errno = EEXIST;
        return false;
    }
    return renameat(item.folder, item.name.c_str(), files, name.c_str()) == 0;
}

/// Empty for what is no regular file, or too large.
std::string contentsOf(const FileDescriptor& file) {
    if (!file || !S_ISREG(statusOf(file).st_mode))
        return {};
    std::string contents;
    std::array<char, 16 * 1024> buffer; // NOLINT: filled by read
    while (contents.size() <= maximumSizesBytes) {
        const ssize_t count = read(file.get(), buffer.data(), buffer.size());
        if (count <= 0)
            return contents;
        contents.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return {};
}

/// The third field of a line of sizes: a name, encoded. Empty for a line that is none.
std::string_view encodedName(std::string_view line) {
    const std::size_t first = line.find(' ');
    const std::size_t second = first == std::string_view::npos ? first : line.find(' ', first + 1);
    return second == std::string_view::npos ? "" : line.substr(second + 1);
}

} // namespace

struct TrashFolder::InfoFile {
    std::uint64_t inode = 0;
    std::time_t modified = 0;
};

Result<TrashFolder, int> TrashFolder::ofHome(const URL& path) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    FileDescriptor folder(open(path.path().c_str(), flags));
    if (!folder && errno == ENOENT) {
        makeFoldersTo(path.path());
        folder = FileDescriptor(open(path.path().c_str(), flags));
    }
    if (!folder)
        return Failure(errno);
    return in(std::move(folder));
}

Result<TrashFolder, int> TrashFolder::sharedAt(const MountPoint& disk) {
    const URL path = disk.path.appending(".Trash");
    const FileDescriptor all(
        openat(disk.folder.get(), ".Trash", O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!all)
        return Failure(reasonAgainst(path));
    if ((statusOf(all).st_mode & S_ISVTX) == 0)
        return Failure(notTrusted(path));
    const std::string name = fmt::format("{}", geteuid());
    FileDescriptor folder = openOrMake(all.get(), name.c_str());
    if (!folder)
        return Failure(reasonAgainst(path.appending(name)));
    if (!isUsersOwn(folder))
        return Failure(notTrusted(path.appending(name)));
    return in(std::move(folder));
}

Result<TrashFolder, int> TrashFolder::ownAt(const MountPoint& disk) {
    const std::string name = fmt::format(".Trash-{}", geteuid());
    FileDescriptor folder = openOrMake(disk.folder.get(), name.c_str());
    if (!folder)
        return Failure(reasonAgainst(disk.path.appending(name)));
    if (!isUsersOwn(folder))
        return Failure(notTrusted(disk.path.appending(name)));
    return in(std::move(folder));
}

Result<TrashFolder, int> TrashFolder::in(FileDescriptor folder) {
    TrashFolder trash;
    trash.m_folder = std::move(folder);
    trash.m_files = openOrMake(trash.m_folder.get(), "files");
    if (!trash.m_files)
        return Failure(errno);
    trash.m_info = openOrMake(trash.m_folder.get(), "info");
    if (!trash.m_info)
        return Failure(errno);
    const long longest = fpathconf(trash.m_info.get(), _PC_NAME_MAX);
    constexpr long shortest = 64; // a file system that says less is not believed
    trash.m_longestName =
        static_cast<std::size_t>(std::clamp<long>(longest, shortest, NAME_MAX)) - infoSuffix.size();
    return trash;
}

Result<void, int> TrashFolder::take(const TrashableItem& item,
                                    const std::string& originalPath) const {
    struct stat source = {};
    struct stat status = {};
    if (fstat(item.folder, &source) != 0 || fstat(item.handle, &status) != 0)
        return Failure(errno);
    if (source.st_dev != statusOf(m_files).st_dev)
        return Failure(EXDEV);
    const struct stat info = statusOf(m_info);
    if (status.st_dev == info.st_dev && status.st_ino == info.st_ino)
        return Failure(EINVAL); // it would take its own info file along

    const std::string text = fmt::format("[Trash Info]\nPath={}\nDeletionDate={}\n",
                                         encoded(originalPath), localTimeText(currentDate()));
    for (int copy = 1;; ++copy) {
        const std::string name = nameOfCopy(item.name, copy, m_longestName);
        const auto infoFile = makeInfoFile(name, text);
        if (!infoFile && infoFile.error() == EEXIST)
            continue;
        if (!infoFile)
            return Failure(infoFile.error());
        const auto moved = move(item, name);
        if (moved) {
            if (S_ISDIR(status.st_mode))
                noteSize(name, *infoFile);
            return {};
        }
        // What could not go back to its place has to keep the file that tells of that.
        const bool isLeftHere = moved.error() == ESTALE && stands(m_files.get(), name);
        if (!isLeftHere)
            removeInfoFile(name);
        if (moved.error() != EEXIST)
            return moved;
    }
}

Result<TrashFolder::InfoFile, int> TrashFolder::makeInfoFile(const std::string& name,
                                                             const std::string& text) const {
    FileDescriptor file(openat(m_info.get(), infoName(name).c_str(),
                               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, fileForUser));
    if (!file)
        return Failure(errno);
    struct stat status = {};
    if (writeAll(file.get(), text) && fstat(file.get(), &status) == 0 && closed(std::move(file)))
        return InfoFile{status.st_ino, status.st_mtime};
    const int error = errno;
    removeInfoFile(name);
    return Failure(error);
}

void TrashFolder::removeInfoFile(const std::string& name) const {
    unlinkat(m_info.get(), infoName(name).c_str(), 0);
}

Result<void, int> TrashFolder::move(const TrashableItem& item, const std::string& name) const {
    if (!renameIntoTrash(item, m_files.get(), name))
        return Failure(errno);
    struct stat meant = {};
    struct stat moved = {};
    if (fstat(item.handle, &meant) == 0 &&
        fstatat(m_files.get(), name.c_str(), &moved, AT_SYMLINK_NOFOLLOW) == 0 &&
        meant.st_dev == moved.st_dev && meant.st_ino == moved.st_ino)
        return {};
    // Something else had come to stand there; it goes back, if nothing has taken its place.
    renameat2(m_files.get(), name.c_str(), item.folder, item.name.c_str(), RENAME_NOREPLACE);
    return Failure(ESTALE);
}

/// Adds the size of a folder to the cache; those lines are dropped whose folders are gone. The file
/// is replaced as a whole, so that readers and other writers never see a part of it, and a failure
/// leaves it as it was.
void TrashFolder::noteSize(const std::string& name, const InfoFile& info) const {
    SeenInodes seen;
    const URL moved(fmt::format("/proc/self/fd/{}/{}", m_files.get(), name));
    const Int64 bytes = allocatedTreeSize(moved, seen, CancelToken());
    const std::string ownEntry = encoded(name);

    // Of two processes at once, one may lose the other's line; that is what a cache bears.
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    std::string lines;
    const FileDescriptor before(
        openat(m_folder.get(), sizesFile, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    for (const std::string& line : nonEmptyLines(contentsOf(before))) {
        const std::string_view entry = encodedName(line);
        if (!entry.empty() && entry != ownEntry && stands(m_files.get(), percentDecoded(entry)))
            lines += line + "\n";
    }
    lines += fmt::format("{} {} {}\n", bytes, info.modified, ownEntry);

    // While the info file exists, its inode is nobody else's.
    const std::string temporary = fmt::format("{}.{}", sizesFile, info.inode);
    FileDescriptor file(openat(m_folder.get(), temporary.c_str(),
                               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, fileForUser));
    if (!file)
        return;
    const bool written = writeAll(file.get(), lines) && closed(std::move(file));
    if (!written || renameat(m_folder.get(), temporary.c_str(), m_folder.get(), sizesFile) != 0)
        unlinkat(m_folder.get(), temporary.c_str(), 0);
}

} // namespace tidewright
