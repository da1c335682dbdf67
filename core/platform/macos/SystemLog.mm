#include "core/platform/SystemLog.h"

#include <os/log.h>

#include <map>
#include <mutex>
#include <utility>

namespace tidewright {

namespace {

os_log_type_t typeOf(LogLevel level) {
    switch (level) {
    case LogLevel::debug:
        return OS_LOG_TYPE_DEBUG;
    case LogLevel::info:
        return OS_LOG_TYPE_INFO;
    case LogLevel::notice:
        return OS_LOG_TYPE_DEFAULT;
    case LogLevel::error:
        return OS_LOG_TYPE_ERROR;
    }
}

/// The system keeps every log that was ever created, so each is asked for once.
os_log_t logOf(const Logger& logger) {
    static std::mutex mutex;
    static std::map<std::pair<std::string, std::string>, os_log_t> logs;
    const std::lock_guard lock(mutex);
    auto& log = logs[{logger.subsystem, logger.category}];
    if (log == nil)
        log = os_log_create(logger.subsystem.c_str(), logger.category.c_str());
    return log;
}

} // namespace

void Logger::log(LogLevel level, std::string_view message) const {
    @autoreleasepool {
        const std::string text(message);
        os_log_with_type(logOf(*this), typeOf(level), "%{public}s", text.c_str());
    }
}

} // namespace tidewright
