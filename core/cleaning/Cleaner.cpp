#include "core/cleaning/Cleaner.h"

#include "core/cleaning/AuditLog.h"
#include "core/cleaning/Verifier.h"
#include "core/platform/Trash.h"
#include "core/platform/Volumes.h"
#include "core/probes/InUseDetector.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace tidewright {

namespace {

using namespace std::chrono_literals;

constexpr Duration commandTimeLimit = 900s;
constexpr std::size_t itemsAtOnce = 3;
constexpr std::size_t charactersOfOutput = 300;

DiskSpace spaceOr(const DiskSpace& otherwise, const URL& home) {
    return volumeCapacity(home).map(diskSpace).value_or(otherwise);
}

/// Every location of the item, with `act`, up to the first that fails.
template <class Act>
std::optional<std::string> firstFailure(const std::vector<ApprovedPath>& paths, Act act) {
    for (const ApprovedPath& path : paths)
        if (const auto done = act(path); !done)
            return done.error().errorDescription();
    return std::nullopt;
}

std::string failureText(const ShellCommand& command, const ShellResult& result) {
    const std::string& said = result.errorOutput.empty() ? result.output : result.errorOutput;
    return fmt::format("`{}` exited with {}. {}", command.displayString(), result.exitCode,
                       lastCharacters(trimmed(said), charactersOfOutput));
}

/// One item on its way through one of the methods.
class ItemRun {
public:
    using Status = CleanOutcome::Status;

    ItemRun(const Cleaner& cleaner, const ScanItem& item) : m_cleaner(cleaner), m_item(item) {}

    Status operator()(const CleanMethod::Manual&) const {
        return Status::skipped("This one is done by hand.");
    }

    Status operator()(const CleanMethod::Remove&) const {
        return checked([](const std::vector<ApprovedPath>& paths) {
            const auto failure = firstFailure(paths, &Cleaner::remove);
            return failure ? Status::failed(*failure) : Status::cleaned();
        });
    }

    Status operator()(const CleanMethod::Trash&) const {
        return checked([](const std::vector<ApprovedPath>& paths) {
            const auto failure = firstFailure(paths, &moveToTrash);
            return failure ? Status::failed(*failure) : Status::movedToTrash();
        });
    }

    /// The tool takes no path of ours, so there is nothing to check.
    Status operator()(const CleanMethod::Command& method) const {
        const ShellCommand& command = method.command;
        // What is under way is let to its end: a tool that is stopped may leave its cache broken.
        const auto result = m_cleaner.runner.run(command, commandTimeLimit, CancelToken());
        if (result)
            return result->succeeded() ? Status::cleaned()
                                       : Status::failed(failureText(command, *result));
        const ShellError& error = result.error();
        if (error.kind != ShellError::Kind::toolNotFound || !command.fallbackToRemove ||
            m_item.urls.empty())
            return Status::failed(error.errorDescription());
        m_cleaner.logger.log(LogLevel::notice, command.tool + " missing, removing paths directly");
        return (*this)(CleanMethod::Remove());
    }

private:
    template <class Act>
    Status checked(Act act) const {
        const auto paths = m_cleaner.validate(m_item);
        if (paths)
            return act(*paths);
        const std::string sentence = paths.error().errorDescription();
        m_cleaner.logger.error(fmt::format("Policy refused {}: {}", m_item.id, sentence));
        return Status::skipped(sentence);
    }

    const Cleaner& m_cleaner;
    const ScanItem& m_item;
};

/// The items of one cleanup on their way, and what came of those that ended.
class CleanRun {
public:
    CleanRun(const Cleaner& cleaner,
             const std::function<void(CleanEvent)>& deliver,
             const CancelToken& cancel,
             AuditLog& log)
        : m_cleaner(cleaner),
          m_deliver(deliver),
          m_cancel(cancel),
          m_log(log),
          m_inUse(InUseDetector{cleaner.runner}.snapshot(CancelToken())) {}

    void oneByOne(const std::vector<const ScanItem*>& items) {
        for (const ScanItem* item : items) {
            if (m_cancel.isCancelled())
                return;
            begin(*item);
            end(*item, m_cleaner.execute(*item, m_inUse));
        }
    }

    /// A few at once. Beginnings and ends are this thread's alone.
    void together(const std::vector<const ScanItem*>& items) {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<std::size_t> finished;
        std::map<std::size_t, ChildTask<CleanOutcome>> running;
        std::size_t next = 0;
        const auto add = [&] {
            if (next == items.size() || m_cancel.isCancelled())
                return;
            const std::size_t index = next++;
            begin(*items[index]);
            running.try_emplace(index, [&, index] {
                CleanOutcome outcome = m_cleaner.execute(*items[index], m_inUse);
                const std::lock_guard lock(mutex);
                finished.push_back(index);
                changed.notify_one();
                return outcome;
            });
        };
        for (std::size_t i = 0; i < itemsAtOnce; ++i)
            add();
        while (!running.empty()) {
            std::unique_lock lock(mutex);
            changed.wait(lock, [&] { return !finished.empty(); });
            const auto task = running.find(finished.front());
            finished.pop_front();
            lock.unlock();
            end(*items[task->first], task->second.await());
            running.erase(task);
            add();
        }
    }

    std::vector<CleanOutcome> takeOutcomes() { return std::move(m_outcomes); }

private:
    void begin(const ScanItem& item) { m_deliver({CleanEvent::Started{item.id, item.title}}); }

    void end(const ScanItem& item, CleanOutcome outcome) {
        m_log.record(item, outcome);
        m_outcomes.push_back(outcome);
        m_deliver({CleanEvent::Finished{std::move(outcome)}});
    }

    const Cleaner& m_cleaner;
    const std::function<void(CleanEvent)>& m_deliver;
    const CancelToken& m_cancel;
    AuditLog& m_log;
    InUseSnapshot m_inUse; ///< of the beginning of the cleanup, never of the scan
    std::vector<CleanOutcome> m_outcomes;
};

} // namespace

std::string CleanError::errorDescription() const {
    if (const auto* error = std::get_if<FileActionError>(&choice))
        return error->errorDescription();
    return std::get<AppManagementRequired>(choice).name +
           " contains an app bundle, and macOS only lets apps with App Management permission "
           "delete those. Turn on Tidewright in System Settings → Privacy & Security → App "
           "Management, then clean again.";
}

CleanStream Cleaner::clean(std::vector<ScanItem> items) const {
    return CleanStream([cleaner = *this, items = std::move(items)](
                           const CleanStream::Deliver& deliver, const CancelToken& cancel) {
        cleaner.run(items, deliver, cancel);
    });
}

void Cleaner::run(const std::vector<ScanItem>& items,
                  const std::function<void(CleanEvent)>& deliver,
                  const CancelToken& cancel) const {
    CleanSummary summary;
    summary.diskBefore = spaceOr(DiskSpace(), home);
    AuditLog log(logDirectory, currentDate());
    log.write({{"event", "start"},
               {"items", std::to_string(items.size())},
               {"available", std::to_string(summary.diskBefore.availableBytes)}});

    std::vector<const ScanItem*> commands;
    std::vector<const ScanItem*> others;
    for (const ScanItem& item : items) {
        const bool isCommand = std::holds_alternative<CleanMethod::Command>(item.method.choice);
        (isCommand ? commands : others).push_back(&item);
    }
    CleanRun cleanRun(*this, deliver, cancel, log);
    cleanRun.oneByOne(commands); // each is a tool that works on shared caches
    cleanRun.together(others);

    summary.outcomes = cleanRun.takeOutcomes();
    summary.diskAfter = spaceOr(summary.diskBefore, home);
    summary.verification = Verifier{home, needed}.run();
    log.write({{"event", "finish"},
               {"available", std::to_string(summary.diskAfter.availableBytes)},
               {"gain", std::to_string(summary.measuredGain())}});
    for (const VerificationCheck& check : summary.verification)
        if (!check.passed)
            log.write(
                {{"event", "verify-failed"}, {"check", check.name}, {"detail", check.detail}});
    summary.logFile = log.fileURL();
    summary.date = currentDate();
    deliver({CleanEvent::Completed{std::move(summary)}});
}

CleanOutcome Cleaner::execute(const ScanItem& item, const InUseSnapshot& inUse) const {
    const auto outcome = [&](CleanOutcome::Status status) {
        return CleanOutcome{item.id, item.title, std::move(status), item.sizeBytes};
    };
    if (!isSelectable(item.decision))
        return outcome(CleanOutcome::Status::skipped("Tidewright recommends keeping this."));
    if (item.owner) {
        InUseSnapshot now;
        now.runningBundleIdentifiers = InUseDetector::runningBundleIdentifiers();
        now.processCommandLines = inUse.processCommandLines;
        if (now.isRunning(*item.owner))
            return outcome(CleanOutcome::Status::skipped(item.owner->displayName + " is running."));
    }
    return outcome(std::visit(ItemRun(*this, item), item.method.choice));
}

Result<std::vector<ApprovedPath>, PolicyViolation> Cleaner::validate(const ScanItem& item) const {
    return policy.validate(item.urls, item.isProjectItem);
}

Result<void, CleanError> Cleaner::remove(const ApprovedPath& path) {
    const auto before = presence(path);
    if (!before)
        return Failure(CleanError{before.error()});
    if (*before == Presence::gone)
        return {};
    if (!removeOnce(path)) {
        makeWritable(path);
        if (const auto again = removeOnce(path); !again) {
            if (containsAppBundle(path))
                return Failure(CleanError{CleanError::AppManagementRequired{path.name()}});
            return Failure(CleanError{again.error()});
        }
    }
    const auto after = presence(path);
    if (!after)
        return Failure(CleanError{after.error()});
    if (*after == Presence::there)
        return Failure(CleanError{
            FileActionError{FileActionError::Kind::stillThere, {0, "remove", path.url().path()}}});
    return {};
}

} // namespace tidewright
