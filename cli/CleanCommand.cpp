#include "cli/CleanCommand.h"

#include "cli/CleanText.h"
#include "cli/ExitStatus.h"
#include "cli/Interrupt.h"
#include "cli/Layout.h"
#include "cli/LiveLine.h"
#include "cli/Scanning.h"
#include "core/model/Coding.h"
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
        writeAll(stderr, "\nNothing was cleaned.\n");
        std::_Exit(interruptedStatus);
    });
    return isYes(answerTo(questionText(items)));
}

/// Shows what happens as it happens: what runs now on standard error, what ended on standard
/// output.
class CleaningView {
public:
    CleaningView(CleaningSession& session, bool showsOutcomes)
        : m_session(session),
          m_showsOutcomes(showsOutcomes) {
        QObject::connect(&session, &CleaningSession::stateChanged, &m_connection,
                         [this](const std::string& itemID) { show(itemID); });
    }

    ~CleaningView() { m_line.clear(); }
    CleaningView(const CleaningView&) = delete;
    CleaningView& operator=(const CleaningView&) = delete;

private:
    void show(const std::string& itemID) {
        const auto item = std::ranges::find(m_session.items(), itemID, &ScanItem::id);
        if (item == m_session.items().end())
            return;
        const CleaningSession::ItemState state = m_session.state(itemID);
        if (const auto* done = std::get_if<CleaningSession::ItemState::Done>(&state.choice))
            showOutcome({item->id, item->title, done->status, item->sizeBytes});
        else
            m_running.emplace_back(item->id, item->title);
        showLine();
    }

    void showOutcome(const CleanOutcome& outcome) {
        std::erase_if(m_running,
                      [&](const auto& running) { return running.first == outcome.itemID; });
        ++m_finished;
        m_line.clear();
        if (m_showsOutcomes)
            writeAll(stdout, outcomeLine(outcome, m_session.items(), m_terminal));
    }

    void showLine() {
        std::vector<std::string> titles;
        for (const auto& [id, title] : m_running)
            titles.push_back(title);
        if (!titles.empty())
            m_line.show(cleaningLine(m_finished, m_session.items().size(), titles));
    }

    CleaningSession& m_session;
    bool m_showsOutcomes;
    QObject m_connection;
    Terminal m_terminal = terminalOf(stdout);
    LiveLine m_line{stderr};
    std::vector<std::pair<std::string, std::string>> m_running; ///< ids and titles
    std::size_t m_finished = 0;
};

/// Cleans what the session holds. After a cancellation what is under way ends, and nothing further
/// begins.
CleanSummary clean(CommandState& state, bool json, const CancelToken& cancel) {
    CleaningSession& session = *state.model().session();
    const CleaningView view(session, !json);
    state.model().startCleaning();
    const CancelCallback onCancel =
        cancel.onCancel([&state, &session] { state.post([&session] { session.windUp(); }); });
    CommandState::runUntil([&] { return session.phase() == CleaningSession::Phase::finished; });
    return *session.summary();
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

int cleanConfirmed(CommandState& state, bool json, const CancelToken& cancel) {
    const CleanSummary summary = clean(state, json, cancel);
    const std::vector<ScanItem>& items = state.model().session()->items();
    const bool stopped = cancel.isCancelled();
    const int printed = printSummary(summary, items, json);
    if (stopped)
        writeAll(stderr, fmt::format("The cleaning was stopped; {} of {} were not begun.\n",
                                     items.size() - summary.outcomes.size(),
                                     counted(items.size(), "item", "items")));
    if (printed != doneStatus)
        return printed;
    if (stopped)
        return interruptedStatus;
    return isAllWell(summary) ? doneStatus : failedStatus;
}

/// Shows what is about to happen and asks, as far as the options say; absent when it may go on,
/// else the exit status.
std::optional<int> review(const std::vector<ScanItem>& items,
                          const CleanOptions& options,
                          const CancelToken& cancel) {
    const bool asks = !options.isConfirmed;
    if (!options.json) {
        const int printed = printResult(reviewText(items, terminalOf(stdout)) + "\n");
        if (printed != doneStatus)
            return printed;
    } else if (asks) {
        writeAll(stderr, reviewText(items, terminalOf(stderr)) + "\n");
    }
    if (!asks || isConfirmed(items, cancel))
        return std::nullopt;
    writeAll(stderr, "Nothing was cleaned.\n");
    return refusedStatus;
}

} // namespace

Result<std::vector<std::string>, std::string> idsToClean(const std::vector<ScanItem>& items,
                                                         const std::vector<std::string>& given) {
    std::vector<std::string> ids;
    for (const std::string& id : given) {
        // On the command line an id can hold only what JSON shows of a name that is not UTF-8.
        const auto item = std::ranges::find_if(items, [&](const ScanItem& each) {
            return each.id == id || repairedUTF8(each.id) == id;
        });
        if (item == items.end())
            return Failure(fmt::format(
                "no item has the id \"{}\"; tidewright scan --json shows all ids.", id));
        if (auto reason = obstacle(*item))
            return Failure(std::move(*reason));
        ids.push_back(item->id);
    }
    return ids;
}

int runClean(const ScanOptions& scanOptions, const CleanOptions& options) {
    if (options.recommended != options.ids.empty())
        return usageError("say what to clean: either --recommended, or --id with the id of an "
                          "item. See tidewright clean --help.");
    if (!options.dryRun && !options.isConfirmed && !canAsk()) {
        writeAll(stderr, "tidewright: nothing is cleaned without a confirmation, and there is no "
                         "terminal to ask on. Add --yes to confirm, or --dry-run to see what "
                         "would be cleaned.\n");
        return refusedStatus;
    }
    const Interrupt interrupt; // until what is under way has ended
    const auto state = CommandState::make(scanOptions);
    if (!state)
        return usageError(state.error());
    // A reader of the output that goes away must not end the program in the middle of an item.
    std::signal(SIGPIPE, SIG_IGN);
    const auto report = scanForCommand(**state, interrupt.token());
    if (!report)
        return report.error();
    const auto ids = idsToClean((*report)->items, options.ids);
    if (!ids)
        return usageError(ids.error());
    AppModel& model = (*state)->model();
    options.recommended ? model.reviewSelection() : model.review(*ids);
    if (model.session() == nullptr)
        return sayNothingToClean(**report, options);

    const std::vector<ScanItem>& items = model.session()->items();
    if (options.dryRun)
        return tryOut(items, model.cleaner(), options.json);
    if (const auto ended = review(items, options, interrupt.token()))
        return *ended;
    return cleanConfirmed(**state, options.json, interrupt.token());
}

} // namespace tidewright
