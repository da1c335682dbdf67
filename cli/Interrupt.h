// Ctrl-C: the first asks the command to end, a second one ends the program at once.
#pragma once

#include "core/support/CancelToken.h"

namespace tidewright {

/// The exit status of an interrupted command: 128 and the number of SIGINT, as shells count.
inline constexpr int interruptedStatus = 130;

/// While it exists, the first SIGINT or SIGTERM cancels its token. One at a time.
class Interrupt {
public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    CancelToken token() const;

private:
    struct Watch;
    std::unique_ptr<Watch> m_watch;
};

} // namespace tidewright
