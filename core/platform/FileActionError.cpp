#include "core/platform/FileActionError.h"

namespace tidewright {

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
    case Kind::stillThere:
        break;
    }
    return cause.path + " is still there, although the system reported that it was removed.";
}

} // namespace tidewright
