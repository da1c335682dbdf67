#include "cli/ReportText.h"

#include "cli/Layout.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace tidewright {

namespace {

constexpr std::size_t decisionColumns = 5;
constexpr std::size_t fewestReasonColumns = 30; // below, the reason stands under the title
constexpr std::string_view indent = "    ";
constexpr std::string_view gap = "  ";

Ink inkOf(Decision decision) {
    switch (decision) {
    case Decision::clean:
        return Ink::green;
    case Decision::ask:
        return Ink::yellow;
    case Decision::info:
        return Ink::blue;
    case Decision::keep:
        break;
    }
    return Ink::dim;
}

/// Where the columns of the item rows begin, the same for the whole report.
struct Columns {
    std::size_t size = 0;
    std::size_t title = 0;
    std::optional<std::size_t> reason; ///< absent: of any length
    bool reasonBelow = false;

    std::size_t titleStart() const {
        return indent.size() + size + gap.size() + decisionColumns + gap.size();
    }
    std::size_t reasonStart() const {
        return reasonBelow ? titleStart() : titleStart() + title + gap.size();
    }
};

Columns columnsFor(const ScanReport& report, std::optional<std::size_t> terminalColumns) {
    Columns columns;
    for (const ScanItem& item : report.items) {
        columns.size = std::max(columns.size, displayWidth(formattedBytes(item.sizeBytes)));
        columns.title = std::max(columns.title, displayWidth(titleOf(item)));
    }
    if (!terminalColumns)
        return columns;
    const std::size_t left = *terminalColumns - std::min(*terminalColumns, columns.titleStart());
    // The reason has the greater part of a wide window; in a narrow one it goes below.
    columns.title = std::min(columns.title, std::max<std::size_t>(left * 2 / 5, 16));
    columns.reasonBelow = left < columns.title + gap.size() + fewestReasonColumns;
    if (columns.reasonBelow)
        columns.title = left;
    columns.reason = *terminalColumns - std::min(*terminalColumns - 1, columns.reasonStart());
    return columns;
}

class ReportWriter {
public:
    ReportWriter(const ScanReport& report, const Terminal& terminal)
        : m_report(report),
          m_terminal(terminal),
          m_columns(columnsFor(report, terminal.columns)) {}

    std::string write() {
        insights();
        for (const Category each : allCases<Category>())
            category(each);
        totals();
        return std::move(m_text);
    }

private:
    void line(std::string_view text = {}) { m_text.append(text).append("\n"); }

    void insights() {
        for (const Insight& insight : m_report.insights) {
            line(m_terminal.inked(Ink::bold, fitted(insight.title, 0, m_terminal)));
            m_text += indentedParagraph(insight.message, 2, m_terminal);
            line();
        }
    }

    void category(Category category) {
        const std::vector<ScanItem> items = m_report.itemsIn(category);
        if (items.empty())
            return;
        const Int64 bytes =
            m_report.total([&](const ScanItem& item) { return item.category == category; });
        line(m_terminal.inked(Ink::bold,
                              fmt::format("{}: {} in {}", title(category), formattedBytes(bytes),
                                          counted(items.size(), "item", "items"))));
        const std::string* group = nullptr;
        for (const ScanItem& item : items) {
            if (group == nullptr || *group != item.group)
                line(m_terminal.inked(Ink::dim, "  " + fitted(item.group, 2, m_terminal)));
            group = &item.group;
            row(item);
        }
        line();
    }

    void row(const ScanItem& item) {
        const std::string title =
            elidedMiddle(titleOf(item), m_terminal.columns ? m_columns.title : std::string::npos);
        const std::string_view word = rawValue(item.decision);
        std::string start = std::string(indent);
        start += rightAligned(formattedBytes(item.sizeBytes), m_columns.size);
        start += gap;
        start += m_terminal.inked(inkOf(item.decision), word);
        start += std::string(decisionColumns - word.size(), ' ');
        start += gap;
        const std::string below(m_columns.reasonStart(), ' ');
        std::vector<std::string> reason = paragraph(item.reason, m_columns.reason);
        if (m_columns.reasonBelow || reason.empty()) {
            line(start + title);
        } else {
            line(start + padded(title, m_columns.title) + std::string(gap) + reason.front());
            reason.erase(reason.begin());
        }
        for (const std::string& each : reason)
            line(below + each);
    }

    void totals() {
        const DiskSpace& disk = m_report.disk;
        if (disk.totalBytes > 0)
            m_text += indentedParagraph(fmt::format("{} of {} are free on this disk.",
                                                    formattedBytes(disk.availableBytes),
                                                    formattedBytes(disk.totalBytes)),
                                        0, m_terminal);
        m_text += indentedParagraph(freeable(), 0, m_terminal, Ink::bold);
    }

    std::string freeable() const {
        const Int64 recommended = m_report.recommendedBytes();
        const Int64 optional = m_report.optionalBytes();
        if (m_report.items.empty())
            return "Nothing to clean up was found.";
        if (recommended == 0 && optional == 0)
            return "Nothing can be freed now; the reasons stand above.";
        if (optional == 0)
            return fmt::format("{} can be freed, all of it recommended.",
                               formattedBytes(recommended));
        if (recommended == 0)
            return fmt::format("{} can be freed, all of it your call.", formattedBytes(optional));
        return fmt::format("{} can be freed: {} recommended, {} your call.",
                           formattedBytes(recommended + optional), formattedBytes(recommended),
                           formattedBytes(optional));
    }

    const ScanReport& m_report;
    const Terminal& m_terminal;
    Columns m_columns;
    std::string m_text;
};

} // namespace

std::string reportText(const ScanReport& report, const Terminal& terminal) {
    return ReportWriter(report, terminal).write();
}

} // namespace tidewright
