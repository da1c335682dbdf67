#include "core/support/MainThread.h"

#include "core/support/Require.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace tidewright {

namespace {

struct Route {
    std::thread::id mainThread;
    MainThreadPoster poster;
};

std::mutex routeMutex;
std::optional<Route> route;

std::optional<MainThreadPoster> posterFromHere() {
    const std::lock_guard lock(routeMutex);
    if (!route || route->mainThread == std::this_thread::get_id())
        return std::nullopt;
    return route->poster;
}

} // namespace

MainThreadScope::MainThreadScope(MainThreadPoster poster) {
    const std::lock_guard lock(routeMutex);
    require(!route.has_value(), "there is one way to the main thread");
    route = Route{std::this_thread::get_id(), std::move(poster)};
}

MainThreadScope::~MainThreadScope() {
    const std::lock_guard lock(routeMutex);
    route.reset();
}

void runOnMainThread(const std::function<void()>& work) {
    const auto post = posterFromHere();
    if (!post) {
        work();
        return;
    }
    std::mutex mutex;
    std::condition_variable ended;
    bool done = false;
    (*post)([&] {
        work();
        const std::lock_guard lock(mutex);
        done = true;
        ended.notify_one();
    });
    std::unique_lock lock(mutex);
    ended.wait(lock, [&] { return done; });
}

} // namespace tidewright
