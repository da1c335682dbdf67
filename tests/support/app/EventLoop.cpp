#include "tests/support/app/EventLoop.h"

#include <QCoreApplication>
#include <QTest>

namespace tidewright::test {

bool becomesTrue(const std::function<bool()>& holds) {
    constexpr int giveUpAfter = 60'000; // milliseconds
    return QTest::qWaitFor(holds, giveUpAfter);
}

void runEventLoopOnce() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

} // namespace tidewright::test
