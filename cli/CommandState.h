// The program's state on behalf of one command, with the event loop that it lives on.
#pragma once

#include "app/state/AppModel.h"

#include <QCoreApplication>

namespace tidewright {

/// What holds for this run only.
struct ScanOptions {
    std::vector<std::string> roots;      ///< where projects are looked for, instead of the saved
    std::vector<std::string> exclusions; ///< locations to leave alone, besides the saved
};

/// One at a time, on the main thread.
class CommandState {
public:
    /// The error is a sentence for the user.
    static Result<std::unique_ptr<CommandState>, std::string> make(const ScanOptions& options = {});
    /// Waits for the end of what is under way.
    ~CommandState();
    CommandState(const CommandState&) = delete;
    CommandState& operator=(const CommandState&) = delete;

    AppModel& model() { return *m_model; }
    DefaultsStore& defaults() { return m_defaults; }

    /// From any thread: runs `function` soon on the main thread.
    void post(std::function<void()> function) { m_workers.post(std::move(function)); }

    /// Runs the event loop until `holds`, which is asked whenever something has happened.
    static void runUntil(const std::function<bool()>& holds);
    /// Runs it until all that was started on other threads has ended.
    void waitForWork();

private:
    CommandState();

    QCoreApplication m_application;
    Workers m_workers;
    DefaultsStore m_defaults;
    std::unique_ptr<AppModel> m_model;
};

} // namespace tidewright
