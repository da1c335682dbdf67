#include "core/support/CancelToken.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

namespace tidewright {

class CancelState {
public:
    bool isCancelled() const { return m_cancelled.load(std::memory_order_acquire); }

    void cancel() {
        const std::lock_guard lock(m_mutex);
        if (m_cancelled.exchange(true, std::memory_order_acq_rel))
            return;
        for (const CancelCallback* callback : m_callbacks)
            callback->m_function();
    }

    void add(const CancelCallback* callback) {
        const std::lock_guard lock(m_mutex);
        if (isCancelled())
            callback->m_function();
        else
            m_callbacks.push_back(callback);
    }

    void remove(const CancelCallback* callback) {
        const std::lock_guard lock(m_mutex);
        std::erase(m_callbacks, callback);
    }

private:
    std::atomic<bool> m_cancelled = false;
    std::mutex m_mutex;
    std::vector<const CancelCallback*> m_callbacks;
};

CancelCallback::CancelCallback(std::shared_ptr<CancelState> state, std::function<void()> function)
    : m_state(std::move(state)),
      m_function(std::move(function)) {
    m_state->add(this);
}

CancelCallback::~CancelCallback() { m_state->remove(this); }

CancelToken::CancelToken() : m_state(std::make_shared<CancelState>()) {}

bool CancelToken::isCancelled() const { return m_state->isCancelled(); }

CancelCallback CancelToken::onCancel(std::function<void()> function) const {
    return CancelCallback(m_state, std::move(function));
}

CancelSource::CancelSource() : m_state(std::make_shared<CancelState>()) {}

void CancelSource::cancel() { m_state->cancel(); }

} // namespace tidewright
