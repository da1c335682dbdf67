#include "cli/Interrupt.h"

#include "core/support/Require.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <thread>

namespace tidewright {

namespace {

// A handler may only touch such objects and make few calls: it writes to a pipe, whose other end a
// thread reads.
std::atomic<int> wakeEnd = -1;
std::atomic<bool> interruptedBefore = false;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void onSignal(int) {
    if (interruptedBefore.exchange(true))
        _exit(interruptedStatus);
    const char wake = 'c';
    // Nothing can be done here about a failure; a second signal still ends the program.
    [[maybe_unused]] const auto written = write(wakeEnd.load(), &wake, 1);
}

} // namespace

struct Interrupt::Watch {
    CancelSource source;
    std::array<int, 2> ends{-1, -1};
    std::array<struct sigaction, 2> previous{};
    std::thread thread;
};

Interrupt::Interrupt() : m_watch(std::make_unique<Watch>()) {
    require(wakeEnd.load() == -1, "signals are watched once");
    require(pipe(m_watch->ends.data()) == 0, "a pipe can be made at the start");
    wakeEnd = m_watch->ends[1];
    interruptedBefore = false;
    m_watch->thread = std::thread([watch = m_watch.get()] {
        char byte = 0;
        if (read(watch->ends[0], &byte, 1) == 1 && byte == 'c')
            watch->source.cancel();
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, &m_watch->previous[0]);
    sigaction(SIGTERM, &action, &m_watch->previous[1]);
}

Interrupt::~Interrupt() {
    sigaction(SIGINT, &m_watch->previous[0], nullptr);
    sigaction(SIGTERM, &m_watch->previous[1], nullptr);
    wakeEnd = -1;
    close(m_watch->ends[1]); // wakes the thread with the end of the pipe
    m_watch->thread.join();
    close(m_watch->ends[0]);
}

CancelToken Interrupt::token() const { return m_watch->source.token(); }

} // namespace tidewright
