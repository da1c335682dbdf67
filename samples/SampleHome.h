// Builds a believable home folder of a developer who has worked for years, so that everything can
// be tried out without risking a file of anybody's: projects with real manifests, clutter of every
// kind, and stand-ins for the developer's tools. What it holds is told by HomeContents and by the
// files below home/ and tools/; here is only how it is made.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/CancelToken.h"
#include "core/support/Date.h"
#include "core/support/Result.h"
#include "core/support/URL.h"

#include <string>
#include <string_view>

namespace tidewright {

struct SampleHomeError {
    enum class Kind { failed, cancelled };
    Kind kind = Kind::failed;
    std::string sentence; ///< for the user; empty for a cancellation
};

struct SampleHome {
    /// Sizes are this share of those in real life, with the large file and what a scan only shows
    /// from some size on at their least: a home of less than 2 GB.
    static constexpr double defaultScale = 0.001;
    static constexpr double largestScale = 1000;

    /// Where the stand-in tools lie, a folder in which tools are looked for. They find the home by
    /// their own place in it, and refuse to touch anything outside.
    static constexpr std::string_view toolFolder = ".volta/bin";
    /// The home's temporary folder, to be named by `TMPDIR` while it is tried out.
    static constexpr std::string_view temporaryFolder = ".tmp";

    URL folder = {};             ///< not there yet, but the folder that holds it is; or empty
    double scale = defaultScale; ///< above 0, at most `largestScale`
    Date now = currentDate();    ///< all ages count back from here

    /// How much room it takes, roughly.
    Int64 bytes() const;

    /// Makes it. Files are allocated, not written. Refuses a folder that holds something, a file
    /// system in memory, and one with too little room. After a failure or a cancellation nothing
    /// that was made is left. Blocks for a second or so.
    Result<void, SampleHomeError> build(const CancelToken& cancel = CancelToken()) const;
};

} // namespace tidewright
