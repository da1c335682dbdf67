#include "core/cleaning/AuditLog.h"

#include "core/support/Json.h"
#include "core/support/LocalTime.h"

#include <fmt/format.h>

#include <algorithm>

namespace tidewright {

namespace {

/// "clean-2026-03-01T10-30-00.jsonl", without the colons that some systems forbid in names.
std::string fileName(Date date) {
    std::string time = localTimeText(date);
    std::ranges::replace(time, ':', '-');
    return fmt::format("clean-{}.jsonl", time);
}

std::string joinedPaths(const std::vector<URL>& urls) {
    std::string paths;
    for (const URL& url : urls) {
        if (&url != &urls.front())
            paths += '|';
        paths += url.path();
    }
    return paths;
}

/// The object in one line, with its line end.
std::string lineText(const std::map<std::string, std::string>& line) {
    std::string text;
    // A slash can only stand inside of a text.
    for (const char c : jsonText(Json(line), JsonLayout::compact)) {
        if (c == '/')
            text += '\\';
        text += c;
    }
    return text + '\n';
}

} // namespace

AuditLog::AuditLog(const URL& directory, Date date) {
    if (auto file = LogFile::create(directory.appending(fileName(date))))
        m_file = std::move(*file);
}

std::optional<URL> AuditLog::fileURL() const {
    return m_file ? std::optional(m_file->url()) : std::nullopt;
}

void AuditLog::write(std::map<std::string, std::string> line) {
    if (!m_file)
        return;
    line["time"] = iso8601Text(currentDate());
    (void)m_file->append(lineText(line)); // the log goes on with the next line
}

void AuditLog::record(const ScanItem& item, const CleanOutcome& outcome) {
    std::map<std::string, std::string> line{
        {"event", "item"},
        {"id", item.id},
        {"paths", joinedPaths(item.urls)},
        {"bytes", std::to_string(outcome.bytes)},
        {"method", std::string(item.method.label())},
        {"result", std::string(outcome.status.word())},
    };
    if (const auto* method = std::get_if<CleanMethod::Command>(&item.method.choice))
        line["command"] = method->command.displayString();
    if (const auto reason = outcome.status.reason())
        line["reason"] = *reason;
    write(std::move(line));
}

} // namespace tidewright
