// The events of a cleanup, on their way from the thread that cleans to the one that listens.
#pragma once

#include "core/model/CleanSummary.h"
#include "core/support/ChildTask.h"

#include <functional>

namespace tidewright {

struct CleanEvent {
    struct Started {
        std::string itemID;
        std::string title;
        bool operator==(const Started&) const = default;
    };
    struct Finished {
        CleanOutcome outcome;
        bool operator==(const Finished&) const = default;
    };
    struct Completed {
        CleanSummary summary;
        bool operator==(const Completed&) const = default;
    };
    std::variant<Started, Finished, Completed> choice;

    bool operator==(const CleanEvent&) const = default;
};

/// An unbounded queue with one reader. Movable.
///
/// Destroying it cancels the cleanup and waits until that has done its last steps: what is under
/// way ends, nothing further begins.
class CleanStream {
public:
    using Deliver = std::function<void(CleanEvent)>;

    /// Starts `work` on a thread of its own; what it delivers can be read here, until it returns.
    explicit CleanStream(std::function<void(const Deliver&, const CancelToken&)> work);
    ~CleanStream();
    CleanStream(CleanStream&&) noexcept;
    CleanStream& operator=(CleanStream&&) = delete;

    /// Waits for the next event; absent at the end.
    std::optional<CleanEvent> next();

    /// Cancels the cleanup and ends the stream for its reader: what was delivered before can still
    /// be read, what comes later can't, `completed` included. From any thread.
    void cancel();

    /// Has the cleanup begin nothing further; everything it says can be read, `completed` included.
    /// From any thread.
    void windUp();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace tidewright
