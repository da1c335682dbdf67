#include "core/platform/FileInfo.h"

#include "core/platform/posix/FileDescriptor.h"

#include <fcntl.h>
#include <unistd.h>

namespace tidewright {

bool fileExists(const URL& url) { return access(url.path().c_str(), F_OK) == 0; }

bool isExecutableFile(const URL& url) { return access(url.path().c_str(), X_OK) == 0; }

bool isReadableFile(const URL& url) { return access(url.path().c_str(), R_OK) == 0; }

bool canOpenForReading(const URL& url) {
    // Without O_NONBLOCK a pipe would be waited for.
    const FileDescriptor file(open(url.path().c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return static_cast<bool>(file);
}

} // namespace tidewright
