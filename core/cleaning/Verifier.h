// Proves after a cleanup that nothing the user's projects still need has gone. It repairs nothing.
#pragma once

#include "core/model/CleanSummary.h"
#include "core/model/NeededSet.h"
#include "core/platform/Process.h"

namespace tidewright {

struct Verifier {
    URL home;
    NeededSet needed;

    /// Looks at the Android SDK as it is on disk now: needed versions, images of emulators, the
    /// debug bridge. Empty where there is no SDK. Only reads; blocks for as long as that takes.
    std::vector<VerificationCheck> run() const { return run(processEnvironment()); }

    /// The same with other environment variables than this process's.
    std::vector<VerificationCheck> run(const Environment& environment) const;
};

} // namespace tidewright
