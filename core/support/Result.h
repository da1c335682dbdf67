// The return type of everything that can fail, and the error of a failed system call.
#pragma once

#include <tl/expected.hpp>

#include <string>

namespace tidewright {

template <class T, class E>
using Result = tl::expected<T, E>;

/// Makes the failure side of a Result: `return Failure(error);`
template <class E>
tl::unexpected<std::decay_t<E>> Failure(E&& error) {
    return tl::unexpected<std::decay_t<E>>(std::forward<E>(error));
}

/// A call of the operating system that failed.
struct SystemError {
    int code = 0;          ///< `errno`
    std::string operation; ///< what was tried, as a verb: "open", "list"
    std::string path;      ///< what it was tried on, as bytes; may be empty

    /// The system's own words for `code`, for instance "Permission denied".
    std::string reason() const;
    /// A sentence for the user: operation, path and reason.
    std::string sentence() const;

    bool operator==(const SystemError&) const = default;
};

} // namespace tidewright
