#include "core/platform/SystemLog.h"

#include "core/support/Text.h"

#include <fmt/format.h>

#include <sys/uio.h>
#include <syslog.h>
#include <unistd.h>

#define SD_JOURNAL_SUPPRESS_LOCATION // the place would be this file for every entry
#include <systemd/sd-journal.h>

#include <array>
#include <cerrno>
#include <cstdlib>

namespace tidewright {

namespace {

// systemd-journald.service(8). Without it the library sends nothing and reports success.
const char* const journalSocket = "/run/systemd/journal/socket";

int priority(LogLevel level) {
    switch (level) {
    case LogLevel::debug:
        return LOG_DEBUG;
    case LogLevel::info:
        return LOG_INFO;
    case LogLevel::notice:
        return LOG_NOTICE;
    case LogLevel::error:
        break;
    }
    return LOG_ERR;
}

/// Fields of the program's own beside those of systemd.journal-fields(7).
bool sendToJournal(LogLevel level, const Logger& logger, const std::string& message) {
    if (access(journalSocket, W_OK) != 0)
        return false;
    std::array<std::string, 5> fields = {
        "MESSAGE=" + message,
        fmt::format("PRIORITY={}", priority(level)),
        "SYSLOG_IDENTIFIER=tidewright",
        "TIDEWRIGHT_SUBSYSTEM=" + logger.subsystem,
        "TIDEWRIGHT_CATEGORY=" + logger.category,
    };
    std::array<iovec, fields.size()> vectors{};
    for (std::size_t i = 0; i < fields.size(); ++i)
        vectors[i] = {fields[i].data(), fields[i].size()};
    return sd_journal_sendv(vectors.data(), static_cast<int>(vectors.size())) == 0;
}

bool isWantedOnStandardError(LogLevel level) {
    if (level == LogLevel::notice || level == LogLevel::error)
        return true;
    const char* const wish = std::getenv("TIDEWRIGHT_LOG"); // NOLINT(concurrency-mt-unsafe)
    return wish != nullptr && wish[0] != '\0';
}

/// In one write where the system takes it, so that the lines of several threads stay whole.
void writeToStandardError(std::string_view line) {
    while (!line.empty()) {
        const ssize_t count = write(STDERR_FILENO, line.data(), line.size());
        if (count > 0)
            line.remove_prefix(static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return;
    }
}

} // namespace

void Logger::log(LogLevel level, std::string_view message) const {
    const std::string text = printable(message);
    if (sendToJournal(level, *this, text) || !isWantedOnStandardError(level))
        return;
    writeToStandardError(fmt::format("tidewright: [{} {}] {}\n", subsystem, category, text));
}

} // namespace tidewright
