// An owned file descriptor.
#pragma once

#include "core/support/Result.h"

#include <utility>

namespace tidewright {

/// Closes its descriptor; movable, -1 when it has none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    ~FileDescriptor() { reset(); }
    FileDescriptor(FileDescriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            m_descriptor = std::exchange(other.m_descriptor, -1);
        }
        return *this;
    }

    int get() const { return m_descriptor; }
    explicit operator bool() const { return m_descriptor >= 0; }
    int release() { return std::exchange(m_descriptor, -1); }
    void reset();

private:
    int m_descriptor = -1;
};

struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

/// Both ends are closed on exec and stand above the three standard descriptors.
Result<Pipe, SystemError> makePipe();

} // namespace tidewright
