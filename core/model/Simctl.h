// Simulators and simulator runtimes, as Xcode's own tool tells of them.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Fields.h"

namespace tidewright::Simctl {

struct Device {
    std::string udid;
    std::string name;
    std::string state;        ///< "Booted", "Shutdown" and so on, as the tool says
    bool isAvailable = false; ///< false when the runtime is gone
    std::optional<std::string> dataPath;
    std::optional<Int64> dataPathSize;
    std::optional<Date> lastBootedAt;
    /// The key under which the device was listed; not part of the device's own coded form.
    std::string runtimeIdentifier;

    bool isBooted() const { return state == "Booted"; }

    bool operator==(const Device&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("udid", &Device::udid),
                          field("name", &Device::name),
                          field("state", &Device::state),
                          field("isAvailable", &Device::isAvailable),
                          field("dataPath", &Device::dataPath),
                          field("dataPathSize", &Device::dataPathSize),
                          field("lastBootedAt", &Device::lastBootedAt),
                          uncodedField(&Device::runtimeIdentifier)};
    }
};

struct Runtime {
    std::string identifier;
    std::string version; ///< "18.2"
    std::optional<std::string> build;
    std::optional<std::string> runtimeIdentifier; ///< what devices are listed under
    std::optional<std::string> platformIdentifier;
    std::optional<Int64> sizeBytes;
    std::optional<bool> deletable;
    std::optional<Date> lastUsedAt;
    std::optional<std::string> state;

    /// "iOS", "watchOS", "tvOS", "visionOS", or "Simulator" for a platform that is not known.
    std::string_view platformName() const;

    bool operator==(const Runtime&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("identifier", &Runtime::identifier),
                          field("version", &Runtime::version),
                          field("build", &Runtime::build),
                          field("runtimeIdentifier", &Runtime::runtimeIdentifier),
                          field("platformIdentifier", &Runtime::platformIdentifier),
                          field("sizeBytes", &Runtime::sizeBytes),
                          field("deletable", &Runtime::deletable),
                          field("lastUsedAt", &Runtime::lastUsedAt),
                          field("state", &Runtime::state)};
    }
};

} // namespace tidewright::Simctl
