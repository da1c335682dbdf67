#include "cli/CleanCommand.h"

#include "cli/CleanText.h"
#include "cli/ExitStatus.h"
#include "cli/Interrupt.h"
#include "cli/Layout.h"
#include "cli/LiveLine.h"
#include "cli/MainThreadQueue.h"
#include "core/cleaning/Cleaner.h"
#include "core/model/Coding.h"
#include "core/platform/StandardFolders.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>

namespace tidewright {

namespace {

/// Why an item can't be picked; absent when it can.
std::optional<std::string> obstacle(const ScanItem& item) {
    if (item.decision == Decision::keep)
        return fmt::format("{} is kept: {}", item.title, item.reason);
    if (item.decision == Decision::info)
        return fmt::format("{} is shown for information only: {}", item.title, item.reason);
    if (const auto* manual = std::get_if<CleanMethod::Manual>(&item.method.choice))
        return fmt::format("{} is cleaned by hand: {}", item.title, manual->text);
    return std::nullopt;
}

Result<std::vector<ScanItem>, std::string> itemsWithIds(const std::vector<ScanItem>& all,
                                                        const std::vector<std::string>& ids) {
    std::vector<ScanItem> items;
    for (const std::string& id : ids) {
        // On the command line an id can hold only what JSON shows of a name that is not UTF-8.
        const auto item = std::ranges::find_if(all, [&](const ScanItem& each) {
            return each.id == id || repairedUTF8(each.id) == id;
        });
        if (item == all.end())
            return Failure(fmt::format(
                "no item has the id \"{}\"; tidewright scan --json shows all ids.", id));
        if (auto reason = obstacle(*item))
            return Failure(std::move(*reason));
        if (std::ranges::find(items, item->id, &ScanItem::id) == items.end())
            items.push_back(*item);
    }
    return items;
}

Cleaner cleanerFor(const DiskScanner& scanner, const ScanReport& report) {
    std::vector<URL> projects;
    for (const Project& project : report.projects)
        projects.push_back(project.url);
    return {PathPolicy(scanner.home, temporaryDirectory(), projects, scanner.settings.exclusions),
            scanner.runner, auditLogDirectory(scanner.home), report.needed, scanner.home};
}

/// A tool takes no path of ours; where it is missing, the paths may be removed in its place.
bool touchesPaths(const ScanItem& item, const ShellRunner& runner) {
    const auto* method = std::get_if<CleanMethod::Command>(&item.method.choice);
    return method == nullptr ||
           (method->command.fallbackToRemove && !runner.isAvailable(method->command.tool));
}

ItemVerdict verdictOn(const ScanItem& item, const Cleaner& cleaner) {
    ItemVerdict verdict{item.id, item.title, true, std::nullopt, std::nullopt};
    if (!touchesPaths(item, cleaner.runner))
        return verdict;
    if (const auto approved = cleaner.validate(item); !approved) {
        verdict.allowed = false;
        verdict.violation = approved.error().kind;
        verdict.sentence = approved.error().errorDescription();
    }
    return verdict;
}

int tryOut(const std::vector<ScanItem>& items, const Cleaner& cleaner, bool json) {
    std::vector<ItemVerdict> verdicts;
    for (const ScanItem& item : items)
        verdicts.push_back(verdictOn(item, cleaner));
    Json document = Json::object();
    document["items"] = encode(verdicts, commandLineStyle);
    const Terminal terminal = terminalOf(stdout);
    const int printed = json ? printJson(document)
                             : printResult(reviewText(items, terminal) + "\n" +
                                           verdictsText(verdicts, items, terminal));
    const bool allAllowed = std::ranges::all_of(verdicts, &ItemVerdict::allowed);
    return printed == doneStatus && !allAllowed ? failedStatus : printed;
}

int sayNothingToClean(const ScanReport& report, const CleanOptions& options) {
    if (!options.json)
        return printResult("There is nothing to clean.\n");
    if (options.dryRun)
        return printJson({{"items", Json::array()}});
    CleanSummary summary;
    summary.diskBefore = report.disk;
    summary.diskAfter = report.disk;
    summary.date = currentDate();
    return printJson(encode(summary, commandLineStyle));
}

bool isYes(const std::optional<std::string>& answer) {
    const std::string word = lowercasedASCII(trimmed(answer.value_or("")));
    return word == "y" || word == "yes";
}

/// Ctrl-C at the question ends the program, since nothing is under way.
bool isConfirmed(const std::vector<ScanItem>& items, const CancelToken& cancel) {
    const CancelCallback end = cancel.onCancel([] {
        fmt::print(stderr, "\nNothing was cleaned.\n");
        std::_Exit(interruptedStatus);
    });
    return isYes(answerTo(questionText(items)));
}

/// Shows events as they come: what runs now on standard error, what ended on standard output.
class CleaningView {
public:
    CleaningView(const std::vector<ScanItem>& items, bool showsOutcomes)
        : m_items(items),
          m_showsOutcomes(showsOutcomes) {}

    void operator()(const CleanEvent::Started& event) {
        m_running.push_back(event);
        showLine();
    }

    void operator()(const CleanEvent::Finished& event) {
        std::erase_if(m_running, [&](const CleanEvent::Started& each) {
            return each.itemID == event.outcome.itemID;
        });
        ++m_finished;
        m_line.clear();
        if (m_showsOutcomes)
            writeAll(stdout, outcomeLine(event.outcome, m_items, m_terminal));
        showLine();
    }

    void operator()(const CleanEvent::Completed& event) {
        m_line.clear();
        m_summary = event.summary;
    }

    CleanSummary takeSummary() { return std::move(m_summary); }

private:
    void showLine() {
        std::vector<std::string> titles;
        for (const CleanEvent::Started& each : m_running)
            titles.push_back(each.title);
        if (!titles.empty())
            m_line.show(cleaningLine(m_finished, m_items.size(), titles));
    }

    const std::vector<ScanItem>& m_items;
    bool m_showsOutcomes;
    Terminal m_terminal = terminalOf(stdout);
    LiveLine m_line{stderr};
    std::vector<CleanEvent::Started> m_running;
    std::size_t m_finished = 0;
    CleanSummary m_summary;
};

CleanSummary clean(const std::vector<ScanItem>& items,
                   const Cleaner& cleaner,
                   bool json,
                   const CancelToken& cancel) {
    return servedByMainThread([&] {
        CleaningView view(items, !json);
        cleaner.run(
            items, [&](const CleanEvent& event) { std::visit(view, event.choice); }, cancel);
        return view.takeSummary();
    });
}

bool isAllWell(const CleanSummary& summary) {
    return std::ranges::all_of(summary.outcomes,
                               [](const CleanOutcome& each) { return each.status.isSuccess(); }) &&
           std::ranges::all_of(summary.verification, &VerificationCheck::passed);
}

int printSummary(const CleanSummary& summary, const std::vector<ScanItem>& items, bool json) {
    if (json)
        return printJson(encode(summary, commandLineStyle));
    return printResult(resultText(summary, items, terminalOf(stdout)));
}

int cleanConfirmed(const std::vector<ScanItem>& items,
                   const Cleaner& cleaner,
                   bool json,
                   const CancelToken& cancel) {
    const CleanSummary summary = clean(items, cleaner, json, cancel);
    const bool stopped = cancel.isCancelled();
    const int printed = printSummary(summary, items, json);
    if (stopped)
        fmt::print(stderr, "The cleaning was stopped; {} of {} were not begun.\n",
                   items.size() - summary.outcomes.size(), counted(items.size(), "item", "items"));
    if (printed != doneStatus)
        return printed;
    if (stopped)
        return interruptedStatus;
    return isAllWell(summary) ? doneStatus : failedStatus;
}

} // namespace

Result<std::vector<ScanItem>, std::string> itemsToClean(const ScanReport& report,
                                                        const CleanOptions& options) {
    auto items = itemsWithIds(report.items, options.ids);
    if (!items)
        return items;
    if (options.recommended)
        std::ranges::copy_if(report.items, std::back_inserter(*items), [](const ScanItem& item) {
            return item.decision == Decision::clean && item.method.isExecutable();
        });
    std::ranges::stable_sort(*items, std::ranges::greater(), &ScanItem::sizeBytes);
    return items;
}

int runClean(const ScanOptions& scanOptions, const CleanOptions& options) {
    if (options.recommended != options.ids.empty())
        return usageError("say what to clean: either --recommended, or --id with the id of an "
                          "item. See tidewright clean --help.");
    const bool asks = !options.dryRun && !options.isConfirmed;
    if (asks && !canAsk()) {
        fmt::print(stderr, "tidewright: nothing is cleaned without a confirmation, and there is no "
                           "terminal to ask on. Add --yes to confirm, or --dry-run to see what "
                           "would be cleaned.\n");
        return refusedStatus;
    }
    const auto scanner = makeScanner(scanOptions);
    if (!scanner)
        return usageError(scanner.error());
    // A reader of the output that goes away must not end the program in the middle of an item.
    std::signal(SIGPIPE, SIG_IGN);
    const Interrupt interrupt;
    const auto report = scanForCommand(*scanner, interrupt.token());
    if (!report)
        return report.error();
    const auto items = itemsToClean(*report, options);
    if (!items)
        return usageError(items.error());
    if (items->empty())
        return sayNothingToClean(*report, options);

    const Cleaner cleaner = cleanerFor(*scanner, *report);
    if (options.dryRun)
        return tryOut(*items, cleaner, options.json);
    if (!options.json) {
        const int printed = printResult(reviewText(*items, terminalOf(stdout)) + "\n");
        if (printed != doneStatus)
            return printed;
    } else if (asks) {
        writeAll(stderr, reviewText(*items, terminalOf(stderr)) + "\n");
    }
    if (asks && !isConfirmed(*items, interrupt.token())) {
        fmt::print(stderr, "Nothing was cleaned.\n");
        return refusedStatus;
    }
    return cleanConfirmed(*items, cleaner, options.json, interrupt.token());
}

} // namespace tidewright
