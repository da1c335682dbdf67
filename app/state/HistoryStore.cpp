#include "app/state/HistoryStore.h"

#include "core/model/Coding.h"
#include "core/platform/FileContents.h"
#include "core/platform/FileLock.h"
#include "core/platform/FileReplacement.h"
#include "core/support/Require.h"

#include <QUuid>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <set>

namespace tidewright {

namespace {

using Entries = std::vector<HistoryEntry>;

constexpr CodingStyle style{CodingStyle::Locations::fileURL, CodingStyle::Dates::secondsSince2001};
constexpr Int64 mostBytes = 1'000'000'000; // millions of cleanups
// Whoever has the lock only reads and writes the file.
constexpr std::chrono::seconds longestWait(1);

/// Absent where the file holds something else.
Result<std::optional<Entries>, SystemError> readEntries(const URL& file) {
    const auto text = readFile(file, mostBytes);
    if (!text)
        return Failure(text.error());
    const auto json = parseJson(*text);
    return json ? decode<Entries>(*json, style) : std::nullopt;
}

/// Those in the file and, behind them, those that only this program knows.
Entries merged(Entries inFile, const Entries& inMemory) {
    std::set<std::string> ids;
    for (const HistoryEntry& entry : inFile)
        ids.insert(entry.id);
    std::ranges::copy_if(inMemory, std::back_inserter(inFile),
                         [&](const HistoryEntry& entry) { return !ids.contains(entry.id); });
    return inFile;
}

HistoryEntry entryOf(const CleanSummary& summary) {
    const auto count = [&](auto isCounted) {
        return static_cast<Int64>(
            std::ranges::count_if(summary.outcomes, [&](const CleanOutcome& outcome) {
                return isCounted(outcome.status);
            }));
    };
    return {.id = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString(),
            .date = summary.date,
            .measuredGain = summary.measuredGain(),
            .estimatedFreed = summary.estimatedFreed(),
            .movedToTrash = summary.movedToTrash(),
            .itemCount = count([](const auto& status) { return status.isSuccess(); }),
            .failures = count([](const auto& status) {
                return std::holds_alternative<CleanOutcome::Status::Failed>(status.choice);
            }),
            .logFile = summary.logFile};
}

} // namespace

HistoryStore::HistoryStore(const URL& directory, QObject* parent)
    : QObject(parent),
      m_fileURL(directory.appending("history.json")) {
    auto entries = readEntries(m_fileURL);
    if (!entries)
        return; // normally there is no file yet
    if (*entries)
        m_entries = std::move(**entries);
    else
        m_logger.error(fmt::format("History unreadable: {} does not hold a list of past cleanups.",
                                   m_fileURL.path()));
}

void HistoryStore::record(const CleanSummary& summary) {
    m_entries.push_back(entryOf(summary));
    if (const auto saved = save(); !saved)
        m_logger.error(fmt::format("Could not save history: {}", saved.error().sentence()));
    Q_EMIT entriesChanged();
}

Result<void, SystemError> HistoryStore::save() {
    if (auto made = makeFolder(m_fileURL.deletingLastPathComponent()); !made)
        return made;
    // Where it can't be had, an entry of this very moment of another program's may get lost; that
    // is less than to lose this one for certain.
    const FileLock lock(URL(m_fileURL.path() + ".lock"), longestWait);
    if (auto ready = mergeFile(); !ready)
        return ready;
    return replaceFile(m_fileURL, jsonText(encode(m_entries, style), JsonLayout::compact));
}

Result<void, SystemError> HistoryStore::mergeFile() {
    auto inFile = readEntries(m_fileURL);
    if (!inFile && inFile.error().code == ENOENT)
        return {};
    if (!inFile) // it may well be whole, and read again another time
        return Failure(inFile.error());
    if (!*inFile)
        return putFileAside(m_fileURL, ".unreadable");
    m_entries = merged(std::move(**inFile), m_entries);
    return {};
}

Int64 HistoryStore::totalFreed() const {
    Int64 sum = 0;
    for (const HistoryEntry& entry : m_entries)
        require(!__builtin_add_overflow(sum, entry.freed(), &sum),
                "what was freed fits into bytes");
    return sum;
}

} // namespace tidewright
