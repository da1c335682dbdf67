#include "cli/CleanText.h"

#include "cli/Layout.h"
#include "core/support/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <numeric>

namespace tidewright {

namespace {

// In the order of the review; what is done by hand is never among the items.
const CleanMethod reviewedMethods[] = {CleanMethod::command({}), CleanMethod::remove(),
                                       CleanMethod::trash()};
constexpr std::size_t markColumns = 4; // "  ! " before what needs attention
constexpr std::string_view gap = "  ";
constexpr std::size_t outcomeColumns = 7;
constexpr std::size_t locationsShown = 8;
constexpr std::size_t fewestTitleColumns = 16;

Int64 bytesOf(const std::vector<ScanItem>& items) {
    return std::accumulate(items.begin(), items.end(), Int64{0},
                           [](Int64 sum, const ScanItem& item) { return sum + item.sizeBytes; });
}

std::size_t sizeColumns(const std::vector<ScanItem>& items) {
    std::size_t columns = 0;
    for (const ScanItem& item : items)
        columns = std::max(columns, displayWidth(formattedBytes(item.sizeBytes)));
    return columns;
}

bool needsAttention(const ScanItem& item) { return item.risk >= Risk::check || item.isProjectItem; }

std::string attentionSentence(std::size_t count) {
    if (count == 1)
        return "1 item is personal data, a device or project files. Check it below.";
    return fmt::format("{} items are personal data, devices or project files. Check them below.",
                       count);
}

std::string detailOf(const ScanItem& item) {
    const auto* command = std::get_if<CleanMethod::Command>(&item.method.choice);
    return command == nullptr ? item.afterEffect : command->command.displayString();
}

/// The title, and behind it the group where the title does not tell that: a cache of a project is
/// called like the project.
std::string titleLine(const ScanItem& item, std::size_t columnsTaken, const Terminal& terminal) {
    const std::string title = titleOf(item);
    if (contains(lowercased(item.title), lowercased(item.group)) ||
        contains(lowercased(item.group), lowercased(item.title)))
        return fitted(title, columnsTaken, terminal) + "\n";
    const std::string group = fmt::format(" ({})", printable(item.group));
    const std::size_t taken = columnsTaken + displayWidth(group);
    if (terminal.columns && taken + fewestTitleColumns > *terminal.columns)
        return fitted(title, columnsTaken, terminal) + "\n";
    return fitted(title, taken, terminal) + terminal.inked(Ink::dim, group) + "\n";
}

/// The same of an item that is known by its id.
std::string titleLine(const std::string& id,
                      const std::string& title,
                      const std::vector<ScanItem>& items,
                      std::size_t columnsTaken,
                      const Terminal& terminal) {
    const auto item = std::ranges::find(items, id, &ScanItem::id);
    return item == items.end() ? fitted(title, columnsTaken, terminal) + "\n"
                               : titleLine(*item, columnsTaken, terminal);
}

class ReviewWriter {
public:
    ReviewWriter(const std::vector<ScanItem>& items, const Terminal& terminal)
        : m_items(items),
          m_terminal(terminal),
          m_sizeColumns(sizeColumns(items)) {}

    std::string write() {
        m_text = indentedParagraph("Review cleanup", 0, m_terminal, Ink::bold);
        const auto count = std::ranges::count_if(m_items, needsAttention);
        if (count > 0)
            m_text += indentedParagraph(attentionSentence(static_cast<std::size_t>(count)), 0,
                                        m_terminal, Ink::yellow);
        for (const CleanMethod& method : reviewedMethods)
            group(method);
        figures();
        m_text += indentedParagraph(
            "Every path is checked against Tidewright's safety rules again before it's touched.", 0,
            m_terminal, Ink::dim);
        return std::move(m_text);
    }

private:
    void group(const CleanMethod& method) {
        std::vector<ScanItem> items;
        std::ranges::copy_if(m_items, std::back_inserter(items), [&](const ScanItem& item) {
            return item.method.choice.index() == method.choice.index();
        });
        if (items.empty())
            return;
        m_text += "\n";
        m_text += indentedParagraph(fmt::format("{}: {} in {}", method.label(),
                                                formattedBytes(bytesOf(items)),
                                                counted(items.size(), "item", "items")),
                                    0, m_terminal, Ink::bold);
        for (const ScanItem& item : items)
            row(item);
    }

    void row(const ScanItem& item) {
        const bool attention = needsAttention(item);
        const std::size_t textStart = markColumns + m_sizeColumns + gap.size();
        m_text += attention ? m_terminal.inked(Ink::yellow, "  ! ") : "    ";
        m_text += rightAligned(formattedBytes(item.sizeBytes), m_sizeColumns);
        m_text += gap;
        m_text += titleLine(item, textStart, m_terminal);
        if (const std::string detail = detailOf(item); !detail.empty())
            m_text += indentedParagraph(detail, textStart, m_terminal,
                                        attention ? Ink::yellow : Ink::dim);
        if (attention || hasTwin(item))
            locations(item, textStart);
    }

    bool hasTwin(const ScanItem& item) const {
        return std::ranges::count_if(m_items, [&](const ScanItem& each) {
                   return each.group == item.group && titleOf(each) == titleOf(item);
               }) > 1;
    }

    void locations(const ScanItem& item, std::size_t indentation) {
        const std::size_t shown = std::min(item.urls.size(), locationsShown);
        for (std::size_t i = 0; i < shown; ++i)
            m_text += indentedParagraph(item.urls[i].path(), indentation, m_terminal);
        if (shown < item.urls.size())
            m_text += indentedParagraph(fmt::format("and {} more: tidewright explain {}",
                                                    item.urls.size() - shown, item.id),
                                        indentation, m_terminal);
    }

    void figures() {
        const Int64 all = bytesOf(m_items);
        Int64 trash = 0;
        for (const ScanItem& item : m_items)
            if (item.method.isTrash())
                trash += item.sizeBytes;
        m_text += "\n";
        figure(all, "to free", Ink::bold);
        if (all > trash)
            figure(all - trash, "deleted or cleaned by tools", Ink::plain);
        if (trash > 0)
            figure(trash, "moved to Trash", Ink::plain);
    }

    void figure(Int64 bytes, std::string_view words, Ink ink) {
        const std::size_t columns = displayWidth(formattedBytes(bytesOf(m_items)));
        const std::string size =
            rightAligned(formattedBytes(bytes), std::max(columns, m_sizeColumns) + markColumns);
        m_text += m_terminal.inked(ink, size + std::string(gap) + std::string(words)) + "\n";
    }

    const std::vector<ScanItem>& m_items;
    const Terminal& m_terminal;
    std::size_t m_sizeColumns;
    std::string m_text;
};

Ink inkOf(const CleanOutcome::Status& status) {
    return status.isSuccess() ? Ink::green : Ink::yellow;
}

std::string reasonText(const CleanOutcome::Status& status) {
    const bool skipped = std::holds_alternative<CleanOutcome::Status::Skipped>(status.choice);
    return (skipped ? "Skipped: " : "Failed: ") + status.reason().value_or("");
}

std::string toolchainText(const std::vector<VerificationCheck>& checks, const Terminal& terminal) {
    constexpr std::size_t indentation = 2;
    constexpr std::size_t wordColumns = 6;
    std::size_t nameColumns = 0;
    for (const VerificationCheck& check : checks)
        nameColumns = std::max(nameColumns, displayWidth(printable(check.name)));
    std::string text = "\n" + terminal.inked(Ink::bold, "Toolchain check") + "\n";
    for (const VerificationCheck& check : checks) {
        const std::string_view word = check.passed ? "passed" : "failed";
        const std::string rest = fmt::format("{}  {}", padded(printable(check.name), nameColumns),
                                             printable(check.detail));
        text += std::string(indentation, ' ') +
                terminal.inked(check.passed ? Ink::green : Ink::yellow, word) + std::string(gap) +
                fitted(rest, indentation + wordColumns + gap.size(), terminal) + "\n";
    }
    return text;
}

std::string notCleanedText(const CleanSummary& summary,
                           const std::vector<ScanItem>& items,
                           const Terminal& terminal) {
    const std::size_t columns = sizeColumns(items);
    const std::size_t textStart = markColumns + columns + gap.size();
    std::string text;
    for (const CleanOutcome& outcome : summary.outcomes) {
        if (outcome.status.isSuccess())
            continue;
        text += std::string(markColumns, ' ') +
                rightAligned(formattedBytes(outcome.bytes), columns) + std::string(gap) +
                titleLine(outcome.itemID, outcome.title, items, textStart, terminal) +
                indentedParagraph(reasonText(outcome.status), textStart, terminal, Ink::yellow);
    }
    if (text.empty())
        return text;
    return "\n" + terminal.inked(Ink::bold, "Not cleaned") + "\n" + text;
}

} // namespace

std::string reviewText(const std::vector<ScanItem>& items, const Terminal& terminal) {
    return ReviewWriter(items, terminal).write();
}

std::string questionText(const std::vector<ScanItem>& items) {
    return fmt::format("Clean {} and free {}? [y/N] ", counted(items.size(), "item", "items"),
                       formattedBytes(bytesOf(items)));
}

std::string verdictsText(const std::vector<ItemVerdict>& verdicts,
                         const std::vector<ScanItem>& items,
                         const Terminal& terminal) {
    constexpr std::size_t textStart = 11; // behind "  allowed  "
    std::string text = terminal.inked(Ink::bold, "Path check") + "\n";
    for (const ItemVerdict& verdict : verdicts) {
        text += verdict.allowed ? "  " + terminal.inked(Ink::green, "allowed") + "  "
                                : "  " + terminal.inked(Ink::yellow, "refused") + "  ";
        text += titleLine(verdict.id, verdict.title, items, textStart, terminal);
        if (verdict.sentence)
            text += indentedParagraph(*verdict.sentence, textStart, terminal, Ink::yellow);
    }
    const auto allowed = std::ranges::count_if(verdicts, &ItemVerdict::allowed);
    return text + "\n" +
           indentedParagraph(fmt::format("{} of {} would be cleaned. Nothing was touched.", allowed,
                                         counted(verdicts.size(), "item", "items")),
                             0, terminal, Ink::bold);
}

std::string cleaningLine(std::size_t finished,
                         std::size_t total,
                         const std::vector<std::string>& running) {
    return printable(fmt::format("Cleaning {} of {}: {}", std::min(finished + 1, total), total,
                                 fmt::join(running, ", ")));
}

std::string outcomeLine(const CleanOutcome& outcome,
                        const std::vector<ScanItem>& items,
                        const Terminal& terminal) {
    const std::size_t columns = sizeColumns(items);
    return terminal.inked(inkOf(outcome.status), padded(outcome.status.word(), outcomeColumns)) +
           std::string(gap) + rightAligned(formattedBytes(outcome.bytes), columns) +
           std::string(gap) +
           titleLine(outcome.itemID, outcome.title, items,
                     outcomeColumns + columns + 2 * gap.size(), terminal);
}

std::string resultText(const CleanSummary& summary,
                       const std::vector<ScanItem>& items,
                       const Terminal& terminal) {
    std::string text = "\n" + indentedParagraph(summary.headline(), 0, terminal, Ink::bold);
    text += indentedParagraph(summary.explanation(), 0, terminal);
    if (!summary.verification.empty())
        text += toolchainText(summary.verification, terminal);
    text += notCleanedText(summary, items, terminal);
    if (!summary.logFile)
        return text + "\nNo audit log could be written.\n";
    // In one piece whatever the width, so that it can be copied.
    return text + "\nAudit log:\n" + printable(summary.logFile->path()) + "\n";
}

} // namespace tidewright
