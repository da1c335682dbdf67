#include "core/cleaning/CleanStream.h"

namespace tidewright {

struct CleanStream::State {
    CancelSource source;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<CleanEvent> events;
    bool ended = false; ///< nothing is added any more
    std::optional<ChildTask<bool>> task;

    void add(CleanEvent event) {
        const std::lock_guard lock(mutex);
        if (ended)
            return;
        events.push_back(std::move(event));
        changed.notify_one();
    }

    void end() {
        const std::lock_guard lock(mutex);
        ended = true;
        changed.notify_one();
    }
};

CleanStream::CleanStream(std::function<void(const Deliver&, const CancelToken&)> work)
    : m_state(std::make_unique<State>()) {
    m_state->task.emplace([state = m_state.get(), work = std::move(work)] {
        work([state](CleanEvent event) { state->add(std::move(event)); }, state->source.token());
        state->end();
        return true;
    });
}

CleanStream::CleanStream(CleanStream&&) noexcept = default;

CleanStream::~CleanStream() {
    if (m_state)
        cancel(); // the task is awaited as the state goes
}

std::optional<CleanEvent> CleanStream::next() {
    std::unique_lock lock(m_state->mutex);
    m_state->changed.wait(lock, [&] { return !m_state->events.empty() || m_state->ended; });
    if (m_state->events.empty())
        return std::nullopt;
    CleanEvent event = std::move(m_state->events.front());
    m_state->events.pop_front();
    return event;
}

void CleanStream::cancel() {
    m_state->source.cancel();
    m_state->end();
}

void CleanStream::windUp() { m_state->source.cancel(); }

} // namespace tidewright
