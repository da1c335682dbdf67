#include "samples/FileSystem.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#ifdef __APPLE__
#include <sys/attr.h>
#include <sys/mount.h>
#else
#include <linux/magic.h>
#include <sys/vfs.h>
#endif

namespace tidewright {

#ifdef __APPLE__

int allocate(int descriptor, Int64 bytes) {
    fstore_t room = {};
    room.fst_flags = F_ALLOCATEALL;
    room.fst_posmode = F_PEOFPOSMODE;
    room.fst_length = bytes;
    if (fcntl(descriptor, F_PREALLOCATE, &room) == -1 || ftruncate(descriptor, bytes) != 0)
        return errno;
    return 0;
}

bool isInMemory(const std::string& folder) {
    struct statfs volume = {};
    return statfs(folder.c_str(), &volume) == 0 && std::string_view(volume.f_fstypename) == "tmpfs";
}

void setDateAdded(const std::string& path, Date date) {
    attrlist attributes = {};
    attributes.bitmapcount = ATTR_BIT_MAP_COUNT;
    attributes.commonattr = ATTR_CMN_ADDEDTIME;
    timespec time = timespecOf(date);
    // A volume without such a date has nothing to set.
    setattrlist(path.c_str(), &attributes, &time, sizeof time, FSOPT_NOFOLLOW);
}

#else

// Not posix_fallocate, which writes zeros where the file system can't allocate.
int allocate(int descriptor, Int64 bytes) {
    return fallocate(descriptor, 0, 0, bytes) == 0 ? 0 : errno;
}

bool isInMemory(const std::string& folder) {
    struct statfs volume = {};
    return statfs(folder.c_str(), &volume) == 0 &&
           (volume.f_type == TMPFS_MAGIC || volume.f_type == RAMFS_MAGIC);
}

void setDateAdded(const std::string&, Date) {}

#endif

timespec timespecOf(Date date) {
    constexpr Int64 second = 1'000'000; // in microseconds
    const Int64 micros = date.time_since_epoch().count();
    const Int64 wholeSeconds = micros >= 0 ? micros / second : (micros - second + 1) / second;
    return {static_cast<time_t>(wholeSeconds),
            static_cast<long>((micros - wholeSeconds * second) * 1000)};
}

} // namespace tidewright
