#include "core/probes/Simctl.h"

#include "core/model/Coding.h"

namespace tidewright::Simctl {

namespace {

using namespace std::chrono_literals;

constexpr Duration timeLimit = 30s;

/// What the tool wrote; empty when it did not succeed.
std::string ask(const ShellRunner& runner,
                const std::vector<std::string>& arguments,
                const CancelToken& cancel) {
    const auto result = runner.run("xcrun", arguments, std::nullopt, timeLimit, cancel);
    return result && result->succeeded() ? result->output : std::string();
}

} // namespace

std::vector<Device> devices(const ShellRunner& runner, const CancelToken& cancel) {
    return parseDevices(ask(runner, {"simctl", "list", "devices", "-j"}, cancel));
}

std::vector<Runtime> runtimes(const ShellRunner& runner, const CancelToken& cancel) {
    return parseRuntimes(ask(runner, {"simctl", "runtime", "list", "-j"}, cancel));
}

std::vector<Device> parseDevices(std::string_view json) {
    const auto document = parseJson(json);
    if (!document || !document->is_object())
        return {};
    const auto byRuntime = document->find("devices");
    if (byRuntime == document->end() || !byRuntime->is_object())
        return {};
    std::vector<Device> devices;
    for (const auto& [runtime, list] : byRuntime->items()) {
        auto listed = decode<std::vector<Device>>(list, commandLineStyle);
        if (!listed)
            return {};
        for (Device& device : *listed) {
            device.runtimeIdentifier = runtime;
            devices.push_back(std::move(device));
        }
    }
    return devices;
}

std::vector<Runtime> parseRuntimes(std::string_view json) {
    const auto document = parseJson(json);
    if (!document || !document->is_object())
        return {};
    std::vector<Runtime> runtimes;
    for (const auto& [key, value] : document->items()) {
        auto runtime = decode<Runtime>(value, commandLineStyle);
        if (!runtime)
            return {};
        runtimes.push_back(std::move(*runtime));
    }
    return runtimes;
}

} // namespace tidewright::Simctl
