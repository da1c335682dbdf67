#include "app/state/Workers.h"

#include <QCoreApplication>
#include <QEvent>

namespace tidewright {

/// What the event loop knows of this. The functions themselves don't go through Qt: what passes
/// between threads is seen to be guarded by one mutex of ours.
class Workers::Loop : public QObject {
public:
    explicit Loop(Workers& workers) : m_workers(workers) {}

    void wake() { QCoreApplication::postEvent(this, new QEvent(QEvent::User)); }

protected:
    void customEvent(QEvent*) override { m_workers.runNext(); }

private:
    Workers& m_workers;
};

Workers::Workers()
    : m_loop(std::make_unique<Loop>(*this)),
      m_mainThread([this](std::function<void()> function) { post(std::move(function)); }) {}

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
    m_loop->wake();
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
