// Cooperative cancellation: a source that asks, tokens that are looked at, callbacks that wake.
//
// A token travels as the last argument of whatever may take long. Nothing is killed from outside.
// (The stop tokens of the standard library are missing from the C++ libraries of today's Macs.)
#pragma once

#include <functional>
#include <memory>

namespace tidewright {

class CancelState;

/// Runs a function once when the token is cancelled, on the thread that cancels; at once if it
/// already is. Destroying it waits for a running function, and nothing runs afterwards. The
/// function must be short and must not destroy or make callbacks of the same token.
class CancelCallback {
public:
    CancelCallback(std::shared_ptr<CancelState> state, std::function<void()> function);
    ~CancelCallback();
    CancelCallback(const CancelCallback&) = delete;
    CancelCallback& operator=(const CancelCallback&) = delete;

private:
    std::shared_ptr<CancelState> m_state;
    std::function<void()> m_function;
    friend class CancelState;
};

/// Copied freely, looked at from any thread.
class CancelToken {
public:
    /// A token that nobody cancels.
    CancelToken();

    bool isCancelled() const;
    [[nodiscard]] CancelCallback onCancel(std::function<void()> function) const;

private:
    friend class CancelSource;
    explicit CancelToken(std::shared_ptr<CancelState> state) : m_state(std::move(state)) {}
    std::shared_ptr<CancelState> m_state;
};

/// The owner of the request. Cancelling is final; from any thread, not from a signal handler.
class CancelSource {
public:
    CancelSource();
    void cancel();
    CancelToken token() const { return CancelToken(m_state); }

private:
    std::shared_ptr<CancelState> m_state;
};

} // namespace tidewright
