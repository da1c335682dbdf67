// Asks Xcode's own tool for simulators and runtimes. A machine without Xcode has none.
#pragma once

#include "core/model/Simctl.h"
#include "core/probes/ShellRunner.h"

namespace tidewright::Simctl {

/// All devices; empty when the tool is missing, fails, takes more than 30 seconds, or answers
/// anything that does not decode as a whole.
std::vector<Device> devices(const ShellRunner& runner, const CancelToken& cancel);

/// All runtimes, under the same conditions.
std::vector<Runtime> runtimes(const ShellRunner& runner, const CancelToken& cancel);

/// Reads the answer of `simctl list devices -j`; empty if any one device does not decode.
std::vector<Device> parseDevices(std::string_view json);

/// Reads the answer of `simctl runtime list -j`; empty if any one runtime does not decode.
std::vector<Runtime> parseRuntimes(std::string_view json);

} // namespace tidewright::Simctl
