#include "core/cleaning/CleanStream.h"

#include <gtest/gtest.h>

#include <atomic>

namespace tidewright {
namespace {

CleanEvent started(const std::string& id) { return {CleanEvent::Started{id, id}}; }

/// Lets one thread wait for another.
class Gate {
public:
    void open() {
        const std::lock_guard lock(m_mutex);
        m_isOpen = true;
        m_changed.notify_all();
    }
    void wait() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_isOpen; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isOpen = false;
};

/// Waits for the cancellation as work does that looks at its token.
void waitUntilCancelled(const CancelToken& cancel) {
    Gate gate;
    const CancelCallback callback = cancel.onCancel([&] { gate.open(); });
    gate.wait();
}

TEST(CleanStreamTest, EventsComeInOrderAndThenTheEnd) {
    CleanStream stream([](const CleanStream::Deliver& deliver, const CancelToken&) {
        deliver(started("a"));
        deliver(started("b"));
    });
    EXPECT_EQ(stream.next(), started("a"));
    EXPECT_EQ(stream.next(), started("b"));
    EXPECT_EQ(stream.next(), std::nullopt);
    EXPECT_EQ(stream.next(), std::nullopt);
}

TEST(CleanStreamTest, ManyEventsWaitForTheReader) {
    constexpr int count = 100'000;
    CleanStream stream([](const CleanStream::Deliver& deliver, const CancelToken&) {
        for (int i = 0; i < count; ++i)
            deliver(started(std::to_string(i)));
    });
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(stream.next(), started(std::to_string(i)));
    EXPECT_EQ(stream.next(), std::nullopt);
}

TEST(CleanStreamTest, DroppingItCancelsAndWaitsForTheLastSteps) {
    std::atomic<bool> hasFinished = false;
    {
        const CleanStream stream(
            [&](const CleanStream::Deliver& deliver, const CancelToken& cancel) {
                waitUntilCancelled(cancel);
                deliver(started("late"));
                hasFinished = true;
            });
        EXPECT_FALSE(hasFinished);
    }
    EXPECT_TRUE(hasFinished);
}

TEST(CleanStreamTest, ACancelledReaderGetsWhatIsThereAndThenTheEndAtOnce) {
    Gate delivered;
    Gate maySayMore;
    std::atomic<bool> hasFinished = false;
    {
        CleanStream stream([&](const CleanStream::Deliver& deliver, const CancelToken& cancel) {
            deliver(started("early"));
            delivered.open();
            waitUntilCancelled(cancel);
            maySayMore.wait();
            deliver(started("late"));
            hasFinished = true;
        });
        delivered.wait();
        stream.cancel();
        EXPECT_EQ(stream.next(), started("early"));
        EXPECT_EQ(stream.next(), std::nullopt) << "while the work is still going on";
        maySayMore.open();
    }
    EXPECT_TRUE(hasFinished);
}

TEST(CleanStreamTest, AReaderThatWaitsIsWokenByTheCancellation) {
    Gate maySayMore;
    CleanStream stream([&](const CleanStream::Deliver&, const CancelToken&) { maySayMore.wait(); });
    {
        ChildTask<bool> reader([&] { return stream.next() == std::nullopt; });
        stream.cancel();
        EXPECT_TRUE(reader.await());
    }
    maySayMore.open();
}

TEST(CleanStreamTest, MovedItGoesOn) {
    CleanStream stream(
        [](const CleanStream::Deliver& deliver, const CancelToken&) { deliver(started("a")); });
    CleanStream moved = std::move(stream);
    EXPECT_EQ(moved.next(), started("a"));
    EXPECT_EQ(moved.next(), std::nullopt);
}

} // namespace
} // namespace tidewright
