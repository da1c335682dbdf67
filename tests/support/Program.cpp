#include "tests/support/Program.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <thread>
#ifdef __APPLE__
#include <util.h>
#else
#include <pty.h>
#endif

namespace tidewright::test {

namespace {

using namespace std::chrono_literals;

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

[[noreturn]] void replaceWithProgram(const URL& home, const std::vector<std::string>& arguments) {
    std::vector<std::string> words{TIDEWRIGHT_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment;
    for (const auto& [name, value] : environmentOf(home))
        environment.push_back(fmt::format("{}={}", name, value));
    execve(TIDEWRIGHT_PROGRAM, pointers(words).data(), pointers(environment).data());
    _exit(127);
}

} // namespace

Environment environmentOf(const URL& home) {
    Environment environment{{"HOME", home.path()},
                            {"TMPDIR", home.appending(".tmp").path()},
                            {"PATH", "/usr/bin:/bin"},
                            {"TERM", "xterm-256color"},
                            {"LC_ALL", "C.UTF-8"}};
    // What sanitizers and coverage need from the outside.
    for (const char* name : {"ASAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"})
        if (const char* value = std::getenv(name))
            environment[name] = value;
    return environment;
}

ProcessOutput runProgram(const URL& home, std::vector<std::string> arguments, const URL& program) {
    const auto output =
        runProcess({program, std::move(arguments), environmentOf(home), home, 120s}, CancelToken());
    if (!output)
        ADD_FAILURE() << "tidewright did not run: " << output.error().reason;
    return output.value_or(ProcessOutput{});
}

TerminalRun runProgramInTerminal(const URL& home,
                                 const std::vector<std::string>& arguments,
                                 unsigned short columns,
                                 const std::vector<Typing>& typings) {
    winsize size = {};
    size.ws_col = columns;
    size.ws_row = 40;
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0)
        replaceWithProgram(home, arguments);
    TerminalRun run;
    std::array<char, 4096> buffer{};
    auto next = typings.begin();
    for (ssize_t count = 0; (count = read(terminal, buffer.data(), buffer.size())) > 0;) {
        run.output.append(buffer.data(), static_cast<std::size_t>(count));
        while (next != typings.end() && run.output.find(next->after) != std::string::npos) {
            std::this_thread::sleep_for(200ms);
            EXPECT_EQ(write(terminal, next->keys.data(), next->keys.size()),
                      static_cast<ssize_t>(next->keys.size()));
            next->then();
            ++next;
        }
    }
    close(terminal);
    int status = 0;
    waitpid(child, &status, 0);
    run.exitCode = WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
    return run;
}

} // namespace tidewright::test
