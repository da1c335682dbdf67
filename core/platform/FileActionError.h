// Why an approved item was not removed, or not moved to the Trash.
#pragma once

#include "core/support/Result.h"
#include "core/support/URL.h"

namespace tidewright {

struct FileActionError {
    enum class Kind {
        system,     ///< a call failed
        replaced,   ///< not what was judged stands there now
        mounted,    ///< another disk, or a piece of one, is mounted there
        notTrashed, ///< the Trash can't take it, for which `cause` has the item's path and a code
        stillThere  ///< removed without an error, and yet there
    };
    Kind kind = Kind::system;
    SystemError cause; ///< its path is the first that was in the way

    /// A sentence for the user.
    std::string errorDescription() const;

    bool operator==(const FileActionError&) const = default;
};

} // namespace tidewright
