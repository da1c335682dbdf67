#include "tests/support/CallHooks.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace {

thread_local tidewright::test::CallHooks* current = nullptr;

/// While a hook is at work, its own calls go straight to the system.
class Suspended {
public:
    Suspended() : m_hooks(std::exchange(current, nullptr)) {}
    ~Suspended() { current = m_hooks; }
    Suspended(const Suspended&) = delete;
    Suspended& operator=(const Suspended&) = delete;

    tidewright::test::CallHooks& hooks() const { return *m_hooks; }

private:
    tidewright::test::CallHooks* m_hooks;
};

template <class Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

// These stand before the C library's own in every program that uses the class.
extern "C" dirent* readdir(DIR* folder) {
    static const auto original = next<dirent*(DIR*)>("readdir");
    dirent* entry = original(folder);
    if (entry == nullptr || current == nullptr)
        return entry;
    int error = 0;
    {
        const Suspended suspended;
        if (suspended.hooks().onRead)
            error = suspended.hooks().onRead(*entry);
    }
    errno = error;
    return error == 0 ? entry : nullptr;
}

extern "C" int unlinkat(int folder, const char* name, int flags) noexcept {
    static const auto original = next<int(int, const char*, int)>("unlinkat");
    if (current == nullptr)
        return original(folder, name, flags);
    int error = 0;
    {
        const Suspended suspended;
        if (suspended.hooks().onUnlink)
            error = suspended.hooks().onUnlink(name, flags);
    }
    if (error == 0)
        return original(folder, name, flags);
    errno = error;
    return -1;
}

namespace tidewright::test {

CallHooks::CallHooks() { current = this; }
CallHooks::~CallHooks() { current = nullptr; }

} // namespace tidewright::test
