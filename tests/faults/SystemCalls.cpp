#include "tests/faults/SystemCalls.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 22> names{
    "open",     "openat", "openat2",    "fdopendir", "readdir", "fstat", "fstatat", "statx",
    "unlinkat", "unlink", "renameat2",  "renameat",  "mkdirat", "mkdir", "write",   "ftruncate",
    "fchmodat", "chmod",  "readlinkat", "fchmod",    "fsync",   "rename"};

std::array<std::atomic<std::size_t>, names.size()> callCounts{};
std::atomic<bool> isWatching = false;
std::atomic<std::size_t> faultyIndex = names.size();
std::atomic<std::size_t> firstFault = 0;
std::atomic<std::size_t> lastFault = 0;
std::atomic<int> faultError = 0;
std::atomic<bool> failed = false;

constexpr std::size_t indexOf(std::string_view name) {
    std::size_t index = 0;
    while (names.at(index) != name)
        ++index;
    return index;
}

/// Counts a call; true when it is to fail, with errno set.
bool fails(std::size_t index) {
    if (!isWatching)
        return false;
    const std::size_t number = ++callCounts.at(index);
    if (index != faultyIndex || number < firstFault || number > lastFault)
        return false;
    failed = true;
    errno = faultError;
    return true;
}

/// The C library's function of this name.
template <class Function>
Function real(const char* name) {
    const auto function = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
    if (function == nullptr) {
        std::fprintf(stderr, "The C library has no %s.\n", name);
        std::abort();
    }
    return function;
}

} // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name,cert-dcl50-cpp)
extern "C" {

int open(const char* path, int flags, ...) {
    if (fails(indexOf("open")))
        return -1;
    va_list list;
    va_start(list, flags);
    const mode_t mode = va_arg(list, mode_t);
    va_end(list);
    static const auto next = real<int (*)(const char*, int, ...)>("open");
    return next(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
    if (fails(indexOf("openat")))
        return -1;
    va_list list;
    va_start(list, flags);
    const mode_t mode = va_arg(list, mode_t);
    va_end(list);
    static const auto next = real<int (*)(int, const char*, int, ...)>("openat");
    return next(folder, path, flags, mode);
}

// openat2 has no function of its own.
long syscall(long number, ...) noexcept {
    if (number == SYS_openat2 && fails(indexOf("openat2")))
        return -1;
    va_list list;
    va_start(list, number);
    const long a = va_arg(list, long);
    const long b = va_arg(list, long);
    const long c = va_arg(list, long);
    const long d = va_arg(list, long);
    const long e = va_arg(list, long);
    const long f = va_arg(list, long);
    va_end(list);
    static const auto next = real<long (*)(long, ...)>("syscall");
    return next(number, a, b, c, d, e, f);
}

DIR* fdopendir(int folder) {
    if (fails(indexOf("fdopendir")))
        return nullptr;
    static const auto next = real<DIR* (*)(int)>("fdopendir");
    return next(folder);
}

dirent* readdir(DIR* stream) {
    if (fails(indexOf("readdir")))
        return nullptr;
    static const auto next = real<dirent* (*)(DIR*)>("readdir");
    return next(stream);
}

int fstat(int file, struct stat* status) noexcept {
    if (fails(indexOf("fstat")))
        return -1;
    static const auto next = real<int (*)(int, struct stat*)>("fstat");
    return next(file, status);
}

int fstatat(int folder, const char* name, struct stat* status, int flags) noexcept {
    if (fails(indexOf("fstatat")))
        return -1;
    static const auto next = real<int (*)(int, const char*, struct stat*, int)>("fstatat");
    return next(folder, name, status, flags);
}

int statx(
    int folder, const char* name, int flags, unsigned int mask, struct statx* facts) noexcept {
    if (fails(indexOf("statx")))
        return -1;
    static const auto next =
        real<int (*)(int, const char*, int, unsigned int, struct statx*)>("statx");
    return next(folder, name, flags, mask, facts);
}

int unlinkat(int folder, const char* name, int flags) noexcept {
    if (fails(indexOf("unlinkat")))
        return -1;
    static const auto next = real<int (*)(int, const char*, int)>("unlinkat");
    return next(folder, name, flags);
}

int unlink(const char* path) noexcept {
    if (fails(indexOf("unlink")))
        return -1;
    static const auto next = real<int (*)(const char*)>("unlink");
    return next(path);
}

int renameat2(
    int from, const char* name, int to, const char* newName, unsigned int flags) noexcept {
    if (fails(indexOf("renameat2")))
        return -1;
    static const auto next =
        real<int (*)(int, const char*, int, const char*, unsigned int)>("renameat2");
    return next(from, name, to, newName, flags);
}

int renameat(int from, const char* name, int to, const char* newName) noexcept {
    if (fails(indexOf("renameat")))
        return -1;
    static const auto next = real<int (*)(int, const char*, int, const char*)>("renameat");
    return next(from, name, to, newName);
}

int mkdirat(int folder, const char* name, mode_t mode) noexcept {
    if (fails(indexOf("mkdirat")))
        return -1;
    static const auto next = real<int (*)(int, const char*, mode_t)>("mkdirat");
    return next(folder, name, mode);
}

int mkdir(const char* path, mode_t mode) noexcept {
    if (fails(indexOf("mkdir")))
        return -1;
    static const auto next = real<int (*)(const char*, mode_t)>("mkdir");
    return next(path, mode);
}

ssize_t write(int file, const void* bytes, size_t count) {
    if (fails(indexOf("write")))
        return -1;
    static const auto next = real<ssize_t (*)(int, const void*, size_t)>("write");
    return next(file, bytes, count);
}

int ftruncate(int file, off_t length) noexcept {
    if (fails(indexOf("ftruncate")))
        return -1;
    static const auto next = real<int (*)(int, off_t)>("ftruncate");
    return next(file, length);
}

int fchmodat(int folder, const char* name, mode_t mode, int flags) noexcept {
    if (fails(indexOf("fchmodat")))
        return -1;
    static const auto next = real<int (*)(int, const char*, mode_t, int)>("fchmodat");
    return next(folder, name, mode, flags);
}

int chmod(const char* path, mode_t mode) noexcept {
    if (fails(indexOf("chmod")))
        return -1;
    static const auto next = real<int (*)(const char*, mode_t)>("chmod");
    return next(path, mode);
}

int fchmod(int file, mode_t mode) noexcept {
    if (fails(indexOf("fchmod")))
        return -1;
    static const auto next = real<int (*)(int, mode_t)>("fchmod");
    return next(file, mode);
}

ssize_t readlinkat(int folder, const char* path, char* buffer, size_t size) noexcept {
    if (fails(indexOf("readlinkat")))
        return -1;
    static const auto next = real<ssize_t (*)(int, const char*, char*, size_t)>("readlinkat");
    return next(folder, path, buffer, size);
}

int fsync(int file) {
    if (fails(indexOf("fsync")))
        return -1;
    static const auto next = real<int (*)(int)>("fsync");
    return next(file);
}

int rename(const char* path, const char* newPath) noexcept {
    if (fails(indexOf("rename")))
        return -1;
    static const auto next = real<int (*)(const char*, const char*)>("rename");
    return next(path, newPath);
}

} // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name,cert-dcl50-cpp)

namespace tidewright::test {

const std::vector<std::string>& faultyCalls() {
    static const std::vector<std::string> all(names.begin(), names.end());
    return all;
}

SystemCalls::SystemCalls() : SystemCalls(Fault{}) {}

SystemCalls::SystemCalls(const Fault& fault) {
    for (auto& count : callCounts)
        count = 0;
    faultyIndex = fault.call.empty() ? names.size() : indexOf(fault.call);
    firstFault = fault.first;
    lastFault = fault.first + fault.count - 1;
    faultError = fault.error;
    failed = false;
    isWatching = true;
}

SystemCalls::~SystemCalls() { isWatching = false; }

std::map<std::string, std::size_t> SystemCalls::counts() const {
    std::map<std::string, std::size_t> result;
    for (std::size_t i = 0; i < names.size(); ++i)
        result[std::string(names.at(i))] = callCounts.at(i);
    return result;
}

bool SystemCalls::hasFailed() const { return failed; }

} // namespace tidewright::test
