// Getting work onto the main thread from anywhere, for the few questions that a system answers
// only there.
#pragma once

#include <functional>

namespace tidewright {

/// Takes a function from any thread and runs it soon on the main thread.
using MainThreadPoster = std::function<void(std::function<void()>)>;

/// Names the way to the main thread while it exists; made on the main thread by the composition
/// root before other threads start, one at a time.
class MainThreadScope {
public:
    explicit MainThreadScope(MainThreadPoster poster);
    ~MainThreadScope();
    MainThreadScope(const MainThreadScope&) = delete;
    MainThreadScope& operator=(const MainThreadScope&) = delete;
};

/// Runs `work` on the main thread and waits for its end. On the main thread itself, and where no
/// scope is in place (a test, a tool without an event loop), it runs at once on the calling thread.
void runOnMainThread(const std::function<void()>& work);

} // namespace tidewright
