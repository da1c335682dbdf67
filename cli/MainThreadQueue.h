// A main thread that serves others while they work.
#pragma once

#include "core/support/ChildTask.h"
#include "core/support/MainThread.h"

#include <functional>

namespace tidewright {

/// Functions that other threads want to have run here.
class MainThreadQueue {
public:
    void post(std::function<void()> function);
    /// Runs what is posted until `finish` is called; on the main thread.
    void serve();
    void finish();

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_functions;
    bool m_finished = false;
};

/// Runs `work` on another thread while the calling one, the main thread, serves it.
template <class Work>
auto servedByMainThread(Work work) {
    MainThreadQueue queue;
    const MainThreadScope scope(
        [&](std::function<void()> function) { queue.post(std::move(function)); });
    ChildTask<decltype(work())> task([&] {
        auto result = work();
        queue.finish();
        return result;
    });
    queue.serve();
    return task.await();
}

} // namespace tidewright
