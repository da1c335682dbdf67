#include "tests/support/Swapper.h"

#include <fcntl.h>
#include <stdio.h> // renameat2 and its flags

namespace tidewright::test {

Swapper::Swapper() : m_thread([this] { run(); }) {}

Swapper::~Swapper() {
    m_phase = Phase::over;
    m_thread.join();
}

void Swapper::attack(std::vector<Target> targets) {
    m_targets = std::move(targets);
    m_swaps = 0;
    m_aim = 0;
    m_phase = Phase::beginning;
    waitFor(Phase::attacking);
}

std::size_t Swapper::rest() {
    m_phase = Phase::ending;
    waitFor(Phase::resting);
    return m_swaps;
}

void Swapper::waitFor(Phase phase) const {
    while (m_phase != phase)
        std::this_thread::yield();
}

void Swapper::run() {
    while (m_phase != Phase::over) {
        if (m_phase == Phase::beginning)
            attackTargets();
        std::this_thread::yield();
    }
}

void Swapper::attackTargets() {
    do {
        attackTarget(m_aim);
    } while (m_phase == Phase::attacking);
    m_phase = Phase::resting;
}

void Swapper::attackTarget(std::size_t index) {
    const Target& target = m_targets[index];
    std::vector<bool> areSwapped(target.size());
    const auto swapEach = [&](bool onlyBack) {
        for (std::size_t i = 0; i < target.size(); ++i)
            if ((!onlyBack || areSwapped[i]) && swap(target[i]))
                areSwapped[i] = !areSwapped[i];
    };
    swapEach(false);
    if (m_phase == Phase::beginning)
        m_phase = Phase::attacking;
    while (m_phase == Phase::attacking && m_aim == index)
        swapEach(false);
    swapEach(true);
}

bool Swapper::swap(const Pair& pair) {
    const bool isDone = renameat2(AT_FDCWD, pair.first.path().c_str(), AT_FDCWD,
                                  pair.second.path().c_str(), RENAME_EXCHANGE) == 0;
    m_swaps += isDone ? 1 : 0;
    return isDone;
}

} // namespace tidewright::test
