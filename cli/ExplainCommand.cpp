#include "cli/ExplainCommand.h"

#include "cli/ExitStatus.h"
#include "cli/Scanning.h"
#include "core/model/Coding.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace tidewright {

namespace {

constexpr std::size_t labelColumns = 12;

std::string methodText(const CleanMethod& method) {
    if (const auto* command = std::get_if<CleanMethod::Command>(&method.choice)) {
        const std::string line = command->command.displayString();
        return command->command.fallbackToRemove
                   ? fmt::format("Runs {}; without that tool the files are removed.", line)
                   : fmt::format("Runs {}.", line);
    }
    if (const auto* manual = std::get_if<CleanMethod::Manual>(&method.choice))
        return manual->text;
    return method.isTrash() ? "Moves it to the Trash." : "Removes it.";
}

std::string decisionText(Decision decision) {
    switch (decision) {
    case Decision::clean:
        return "clean: recommended";
    case Decision::ask:
        return "ask: your call";
    case Decision::keep:
        return "keep: it stays";
    case Decision::info:
        break;
    }
    return "info: shown for information only";
}

class ExplanationWriter {
public:
    explicit ExplanationWriter(const Terminal& terminal) : m_terminal(terminal) {}

    /// A label and behind it the text, in as many lines as it takes.
    void entry(std::string_view label, std::string_view text) {
        if (text.empty())
            return;
        std::vector<std::string> lines{printable(text)};
        if (m_terminal.columns)
            lines = wrapped(printable(text), *m_terminal.columns - labelColumns);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const std::string start =
                fmt::format("{:{}}", i == 0 ? label : std::string_view(), labelColumns);
            m_text += m_terminal.inked(Ink::dim, start) + lines[i] + "\n";
        }
    }

    void title(std::string_view text) {
        m_text += m_terminal.inked(Ink::bold, printable(text)) + "\n";
    }

    std::string text() && { return std::move(m_text); }

private:
    const Terminal& m_terminal;
    std::string m_text;
};

} // namespace

std::string explanationText(const ScanItem& item, const Terminal& terminal) {
    ExplanationWriter writer(terminal);
    writer.title(item.title);
    writer.entry("Id", item.id);
    writer.entry("Group", fmt::format("{}, {}", title(item.category), item.group));
    writer.entry("Version", item.version.value_or(""));
    writer.entry("Size", formattedBytes(item.sizeBytes));
    writer.entry("Decision", decisionText(item.decision));
    writer.entry("Risk", title(item.risk));
    writer.entry("Why", item.reason);
    writer.entry("In use by", item.inUseBy.value_or(""));
    writer.entry("What it is", item.whatItIs);
    writer.entry("Afterwards", item.afterEffect);
    writer.entry("How", methodText(item.method));
    writer.entry("Last used", item.lastUsed ? iso8601Text(*item.lastUsed) : "");
    for (const URL& url : item.urls)
        writer.entry(&url == &item.urls.front() ? "Where" : "", url.path());
    return std::move(writer).text();
}

int runExplain(const ScanOptions& options, const std::string& id, bool json) {
    const auto report = scanForCommand(options);
    if (!report)
        return report.error();
    // On the command line an id can hold only what JSON shows of a name that is not UTF-8.
    const auto item = std::ranges::find_if((*report)->items, [&](const ScanItem& each) {
        return each.id == id || repairedUTF8(each.id) == id;
    });
    if (item == (*report)->items.end())
        return usageError(
            fmt::format("no item has the id \"{}\"; tidewright scan --json shows all ids.", id));
    if (json)
        return printJson(encode(*item, commandLineStyle));
    return printResult(explanationText(*item, terminalOf(stdout)));
}

} // namespace tidewright
