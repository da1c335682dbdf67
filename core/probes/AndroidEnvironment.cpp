#include "core/probes/AndroidEnvironment.h"

namespace tidewright {

// Not built yet: there is no SDK and no emulator.
AndroidEnvironment AndroidEnvironment::discover(const URL& home,
                                                const std::map<std::string, std::string>&) {
    AndroidEnvironment environment;
    environment.avdHome = home.appending(".android/avd");
    return environment;
}

} // namespace tidewright
