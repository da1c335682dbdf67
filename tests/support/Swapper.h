// Somebody who changes a tree all the time while it is judged and removed.
#pragma once

#include "core/support/URL.h"

#include <atomic>
#include <cstddef>
#include <thread>
#include <utility>
#include <vector>

namespace tidewright::test {

/// Puts two entries in each other's place, over and over again, in a thread of its own, while an
/// attack is under way.
class Swapper {
public:
    using Pair = std::pair<URL, URL>;
    using Target = std::vector<Pair>; ///< all of them are swapped in turn

    Swapper();
    ~Swapper();
    Swapper(const Swapper&) = delete;
    Swapper& operator=(const Swapper&) = delete;

    /// Returns when the first target is under attack.
    void attack(std::vector<Target> targets);
    /// Goes on to another target; does not wait.
    void aim(std::size_t target) { m_aim = target; }
    /// Returns when the attack is over, with how often two were swapped. Each pair stands as it did
    /// at first, unless one of the two is gone.
    std::size_t rest();

private:
    enum class Phase { resting, beginning, attacking, ending, over };

    void run();
    void attackTargets();
    void attackTarget(std::size_t index);
    bool swap(const Pair& pair);
    void waitFor(Phase phase) const;

    std::atomic<Phase> m_phase = Phase::resting;
    std::atomic<std::size_t> m_aim = 0;
    std::vector<Target> m_targets; ///< changed while resting only
    std::size_t m_swaps = 0;       ///< read while resting only
    std::thread m_thread;
};

} // namespace tidewright::test
