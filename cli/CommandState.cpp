#include "cli/CommandState.h"

#include "app/platform/StandardDefaults.h"
#include "cli/Paths.h"

#include <clocale>

namespace tidewright {

namespace {

// Qt's own options are none of ours, so it is told the program's name alone.
int argumentCount = 1;
char programName[] = "tidewright";
char* arguments[] = {programName, nullptr};

std::vector<std::string> pathsOf(const std::vector<URL>& urls) {
    std::vector<std::string> paths;
    for (const URL& url : urls)
        paths.push_back(url.path());
    return paths;
}

/// A command speaks to the one who typed it: nothing appears on the desktop.
AppEnvironment quietEnvironment() {
    AppEnvironment environment = AppEnvironment::current();
    environment.monitorSystem.post = [](const Notification&,
                                        const std::function<void(bool)>& done) { done(false); };
    return environment;
}

} // namespace

CommandState::CommandState()
    : m_application(argumentCount, arguments),
      m_defaults(standardDefaults()) {
    // Qt takes over the user's locale; numbers are written and read in one way all the same.
    std::setlocale(LC_NUMERIC, "C");
}

CommandState::~CommandState() = default;

Result<std::unique_ptr<CommandState>, std::string> CommandState::make(const ScanOptions& options) {
    std::vector<URL> roots;
    for (const std::string& root : options.roots) {
        auto folder = existingFolder(root);
        if (!folder)
            return Failure(folder.error());
        roots.push_back(std::move(*folder));
    }
    std::unique_ptr<CommandState> state(new CommandState);
    DefaultsStore& defaults = state->m_defaults;
    if (!roots.empty())
        defaults.setArgument(projectRootsKey, pathsOf(roots));
    if (!options.exclusions.empty()) {
        std::vector<std::string> exclusions = defaults.texts(exclusionsKey);
        for (const std::string& excluded : options.exclusions)
            exclusions.push_back(absolute(excluded).path());
        defaults.setArgument(exclusionsKey, exclusions);
    }
    state->m_model = std::make_unique<AppModel>(quietEnvironment(), defaults, state->m_workers);
    return state;
}

void CommandState::runUntil(const std::function<bool()>& holds) {
    while (!holds())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void CommandState::waitForWork() {
    runUntil([this] { return m_workers.isIdle(); });
}

} // namespace tidewright
