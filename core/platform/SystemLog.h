// The system's log: `os_log` on macOS; on Linux the journal, and standard error when there is none.
#pragma once

#include <string>
#include <string_view>

namespace tidewright {

/// From least to most. Debug and info are for those who look for them: macOS keeps them in memory
/// only, and standard error gets them only when the environment sets TIDEWRIGHT_LOG.
enum class LogLevel { debug, info, notice, error };

/// A place in the log; a plain value.
struct Logger {
    std::string subsystem;
    std::string category;

    /// Any thread; never fails.
    void log(LogLevel level, std::string_view message) const;
    void info(std::string_view message) const { log(LogLevel::info, message); }
    void error(std::string_view message) const { log(LogLevel::error, message); }
};

} // namespace tidewright
