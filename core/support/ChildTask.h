// Structured concurrency: work on other threads that never outlives the scope that started it.
//
// Children share only what does not change; results are written by the one owner. There is no pool
// and no detached thread. Functions given to these must not throw.
#pragma once

#include "core/support/CancelToken.h"
#include "core/support/Require.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace tidewright {

/// Starts a function on a thread of its own; joined at the latest by the destructor. Where the
/// system has no thread left, the function runs at once on the calling thread.
template <class T>
class ChildTask {
public:
    template <class Function>
    explicit ChildTask(Function function) {
        const auto work = [this, function] { m_result.emplace(function()); };
        try {
            m_thread = std::thread(work);
        } catch (const std::system_error&) {
            work();
        }
    }
    ~ChildTask() { join(); }
    ChildTask(const ChildTask&) = delete;
    ChildTask& operator=(const ChildTask&) = delete;

    /// Waits for the function's end and hands over its result; once.
    T await() {
        join();
        require(m_result.has_value(), "a child task is awaited once");
        T result = std::move(*m_result);
        m_result.reset();
        return result;
    }

private:
    void join() {
        if (m_thread.joinable())
            m_thread.join();
    }

    std::optional<T> m_result;
    std::thread m_thread;
};

/// Calls `work(index)` for each index below `count` on at most `width` threads, and
/// `deliver(index, result)` on the calling thread in order of completion. After a cancellation no
/// index is started any more; those under way are delivered. Returns when all children have ended.
template <class Work, class Deliver>
void forEachLimited(
    std::size_t width, std::size_t count, const CancelToken& cancel, Work work, Deliver deliver) {
    using Value = decltype(work(std::size_t{}));
    std::atomic<std::size_t> cursor = 0;
    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<std::pair<std::size_t, Value>> finished;
    std::size_t running = std::min(width, count);

    const auto child = [&] {
        while (!cancel.isCancelled()) {
            const std::size_t index = cursor.fetch_add(1, std::memory_order_relaxed);
            if (index >= count)
                break;
            Value value = work(index);
            const std::lock_guard lock(mutex);
            finished.emplace_back(index, std::move(value));
            arrived.notify_one();
        }
        const std::lock_guard lock(mutex);
        --running;
        arrived.notify_one();
        return true;
    };
    std::deque<ChildTask<bool>> children;
    for (std::size_t i = 0; i < std::min(width, count); ++i)
        children.emplace_back(child);

    std::unique_lock lock(mutex);
    while (true) {
        arrived.wait(lock, [&] { return !finished.empty() || running == 0; });
        if (finished.empty())
            break;
        auto [index, value] = std::move(finished.front());
        finished.pop_front();
        lock.unlock();
        deliver(index, std::move(value));
        lock.lock();
    }
}

} // namespace tidewright
