#include "core/platform/FileActionError.h"

#include <cerrno>

namespace tidewright {

namespace {

/// In words that say more than the system's own, where those would puzzle.
std::string reasonAgainstTrash(const SystemError& cause) {
    if (cause.code == EXDEV)
        return "no Trash lies on the same disk";
    if (cause.code == EINVAL)
        return "the Trash itself lies in it";
    return cause.reason();
}

} // namespace

std::string FileActionError::errorDescription() const {
    switch (kind) {
    case Kind::system:
        return cause.sentence();
    case Kind::replaced:
        return cause.path + " was moved or replaced after it had been checked, so it was left "
                            "alone. Scan again to see what is there now.";
    case Kind::mounted:
        return cause.path + " is a disk of its own that is mounted there, so it was left alone. "
                            "Eject it, then clean again.";
    case Kind::notTrashed:
        return cause.path + " can't be moved to the Trash: " + reasonAgainstTrash(cause) +
               ". It stays where it is.";
    case Kind::stillThere:
        break;
    }
    return cause.path + " is still there, although the system reported that it was removed.";
}

} // namespace tidewright
