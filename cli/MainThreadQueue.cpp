#include "cli/MainThreadQueue.h"

namespace tidewright {

void MainThreadQueue::post(std::function<void()> function) {
    const std::lock_guard lock(m_mutex);
    m_functions.push_back(std::move(function));
    m_changed.notify_one();
}

void MainThreadQueue::serve() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_finished || !m_functions.empty(); });
        if (m_functions.empty())
            return;
        const auto function = std::move(m_functions.front());
        m_functions.pop_front();
        lock.unlock();
        function();
        lock.lock();
    }
}

void MainThreadQueue::finish() {
    const std::lock_guard lock(m_mutex);
    m_finished = true;
    m_changed.notify_one();
}

} // namespace tidewright
