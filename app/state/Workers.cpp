#include "app/state/Workers.h"

namespace tidewright {

Workers::Workers()
    : m_mainThread([this](std::function<void()> function) { post(std::move(function)); }) {}

Workers::~Workers() {
    while (!m_tasks.empty()) {
        std::unique_lock lock(m_mutex);
        m_posted.wait(lock, [this] { return !m_functions.empty(); });
        lock.unlock();
        runNext();
    }
}

void Workers::start(std::function<void()> work) {
    const int task = ++m_lastTask;
    m_tasks.try_emplace(task, [this, task, work = std::move(work)] {
        work();
        post([this, task] { m_tasks.erase(task); });
        return true;
    });
}

void Workers::post(std::function<void()> function) {
    const std::lock_guard lock(m_mutex);
    m_functions.push_back(std::move(function));
    m_posted.notify_one();
    QMetaObject::invokeMethod(
        &m_loop, [this] { runNext(); }, Qt::QueuedConnection);
}

void Workers::runNext() {
    std::unique_lock lock(m_mutex);
    if (m_functions.empty())
        return; // the destructor was quicker
    const auto function = std::move(m_functions.front());
    m_functions.pop_front();
    lock.unlock();
    function();
}

} // namespace tidewright
