#include "core/platform/Process.h"

#include "core/platform/ProcessExit.h"
#include "core/platform/posix/FileDescriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>

extern char** environ; // NOLINT: POSIX leaves its declaration to the program

namespace tidewright {

namespace {

using Clock = std::chrono::steady_clock;

ProcessError launchFailure(int code) {
    return {ProcessError::Kind::launchFailed, SystemError{code, {}, {}}.reason()};
}

/// The arguments of posix_spawn that must be freed.
class SpawnActions {
public:
    SpawnActions() {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawnattr_init(&m_attributes);
    }
    ~SpawnActions() {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;

    /// The error of the first step that failed, else 0.
    int prepare(const ProcessRequest& request, int output, int errorOutput) {
        int error =
            posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        const auto then = [&](int result) { error = error != 0 ? error : result; };
        then(posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO));
        then(posix_spawn_file_actions_adddup2(&m_actions, errorOutput, STDERR_FILENO));
        if (request.workingDirectory)
            then(posix_spawn_file_actions_addchdir_np(&m_actions,
                                                      request.workingDirectory->path().c_str()));
        short flags = POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
#ifdef POSIX_SPAWN_CLOEXEC_DEFAULT // macOS
        flags = static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT);
#else
        then(posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1));
#endif
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        then(posix_spawnattr_setsigmask(&m_attributes, &none));
        then(posix_spawnattr_setsigdefault(&m_attributes, &all));
        then(posix_spawnattr_setpgroup(&m_attributes, 0));
        then(posix_spawnattr_setflags(&m_attributes, flags));
        return error;
    }

    const posix_spawn_file_actions_t* actions() const { return &m_actions; }
    const posix_spawnattr_t* attributes() const { return &m_attributes; }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

/// A started program and the read ends of what it writes.
struct Child {
    pid_t id = 0;
    FileDescriptor output;
    FileDescriptor errorOutput;
    FileDescriptor exit; ///< readable once the program has ended

    /// The program is not reaped while this may be called, so its id names no one else.
    void terminate() const { kill(-id, SIGTERM); }

    bool hasEnded() const {
        pollfd waiting{exit.get(), POLLIN, 0};
        return poll(&waiting, 1, 0) > 0;
    }

    /// Waits for the end; the exit status, or the signal's number.
    int reap() const {
        int status = 0;
        while (waitpid(id, &status, 0) < 0 && errno == EINTR) {
        }
        return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
    }
};

Result<Child, ProcessError> launch(const ProcessRequest& request) {
    auto output = makePipe();
    auto errorOutput = makePipe();
    if (!output || !errorOutput)
        return Failure(launchFailure(output ? errorOutput.error().code : output.error().code));

    SpawnActions spawn;
    if (const int error =
            spawn.prepare(request, output->writeEnd.get(), errorOutput->writeEnd.get()))
        return Failure(launchFailure(error));

    std::vector<std::string> arguments{request.executable.path()};
    arguments.insert(arguments.end(), request.arguments.begin(), request.arguments.end());
    std::vector<std::string> environment;
    for (const auto& [name, value] : request.environment)
        environment.push_back(name + "=" + value);

    Child child;
    const int error =
        posix_spawn(&child.id, request.executable.path().c_str(), spawn.actions(),
                    spawn.attributes(), pointers(arguments).data(), pointers(environment).data());
    if (error != 0)
        return Failure(launchFailure(error));
    child.output = std::move(output->readEnd);
    child.errorOutput = std::move(errorOutput->readEnd);
    auto exit = openProcessExit(child.id);
    if (!exit) {
        child.terminate();
        child.reap();
        return Failure(launchFailure(exit.error().code));
    }
    child.exit = FileDescriptor(*exit);
    return child;
}

/// Appends what is there to `buffer`; false at the end of the pipe.
bool readSome(const FileDescriptor& pipe, std::string& buffer) {
    std::array<char, 64 * 1024> bytes; // NOLINT: filled by read
    const ssize_t count = read(pipe.get(), bytes.data(), bytes.size());
    if (count > 0)
        buffer.append(bytes.data(), static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && errno == EINTR);
}

/// Milliseconds for poll, rounded up, -1 for "without limit".
int pollLimit(std::optional<Clock::time_point> deadline) {
    if (!deadline)
        return -1;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, 3'600'000));
}

/// A limit below nothing counts as nothing: from one far below, the time left can't be told.
Clock::time_point deadlineAfter(Duration timeout) {
    const auto now = Clock::now();
    timeout = std::max(timeout, Duration::zero());
    return timeout < Clock::time_point::max() - now
               ? now + std::chrono::duration_cast<Clock::duration>(timeout)
               : Clock::time_point::max();
}

/// Collects the output of one child until it has ended or both pipes are closed.
class Collector {
public:
    explicit Collector(Child& child) : m_child(child) {}

    enum class Until { exit, pipesClosed };

    /// False when `deadline` came first.
    bool collect(Until until, std::optional<Clock::time_point> deadline) {
        while (until == Until::exit || m_child.output || m_child.errorOutput) {
            // A negative descriptor is passed over by poll.
            std::array<pollfd, 3> waiting{
                pollfd{m_child.output.get(), POLLIN, 0},
                pollfd{m_child.errorOutput.get(), POLLIN, 0},
                pollfd{until == Until::exit ? m_child.exit.get() : -1, POLLIN, 0}};
            const int ready = poll(waiting.data(), waiting.size(), pollLimit(deadline));
            if (ready > 0 && waiting[2].revents != 0)
                return true;
            if (ready > 0 && waiting[0].revents != 0 && !readSome(m_child.output, result.output))
                m_child.output.reset();
            if (ready > 0 && waiting[1].revents != 0 &&
                !readSome(m_child.errorOutput, result.errorOutput))
                m_child.errorOutput.reset();
            if (deadline && Clock::now() >= *deadline)
                return m_child.hasEnded();
        }
        return true;
    }

    ProcessOutput result;

private:
    Child& m_child;
};

} // namespace

Environment processEnvironment() {
    Environment result;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        const std::size_t equals = text.find('=');
        if (equals != std::string_view::npos)
            result.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    return result;
}

Result<ProcessOutput, ProcessError> runProcess(const ProcessRequest& request,
                                               const CancelToken& cancel) {
    const auto deadline = deadlineAfter(request.timeout);
    Result<Child, ProcessError> child = launch(request);
    if (!child)
        return Failure(child.error());

    Collector collector(*child);
    bool ended = false;
    {
        // Gone before the child is reaped, so that the signal can't reach a stranger.
        const CancelCallback onCancel = cancel.onCancel([&] { child->terminate(); });
        ended = collector.collect(Collector::Until::exit, deadline) && !cancel.isCancelled();
        if (ended) {
            collector.collect(Collector::Until::pipesClosed, std::nullopt);
        } else {
            child->terminate();
            collector.collect(Collector::Until::exit, std::nullopt);
        }
    }
    collector.result.exitCode = child->reap();
    if (!ended)
        return Failure(ProcessError{ProcessError::Kind::timedOut, {}});
    return std::move(collector.result);
}

} // namespace tidewright
