// Work of the program's state on other threads, and its way back to the main thread.
//
// State lives on the main thread and is never touched elsewhere: work on another thread sends back
// functions, which the event loop runs one at a time in the order in which they were sent.
#pragma once

#include "core/support/ChildTask.h"
#include "core/support/MainThread.h"

#include <QPointer>

#include <functional>
#include <map>

namespace tidewright {

/// Made on the main thread before the state and destroyed after it; one at a time.
class Workers {
public:
    Workers();
    /// Waits until all work has ended, and serves it meanwhile. Whoever started work cancels it.
    ~Workers();
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    /// Starts `work` on a thread of its own; on the main thread. It must not throw.
    void start(std::function<void()> work);

    /// Whether all work has ended; on the main thread.
    bool isIdle() const { return m_tasks.empty(); }

    /// From any thread: runs `function` soon on the main thread.
    void post(std::function<void()> function);

    /// From any thread: runs `function` soon on the main thread, if `receiver` exists then.
    template <class Receiver>
    void deliver(QPointer<Receiver> receiver, std::function<void(Receiver&)> function) {
        post([receiver = std::move(receiver), function = std::move(function)] {
            if (receiver)
                function(*receiver);
        });
    }

private:
    class Loop;

    void runNext();

    std::unique_ptr<Loop> m_loop;
    std::mutex m_mutex;
    std::condition_variable m_posted;
    std::deque<std::function<void()>> m_functions;
    std::map<int, ChildTask<bool>> m_tasks; ///< touched by the main thread alone
    int m_lastTask = 0;
    MainThreadScope m_mainThread;
};

} // namespace tidewright
