// Messages of the system that appear on the user's desktop.
#pragma once

#include <functional>
#include <string>

namespace tidewright {

struct Notification {
    std::string id; ///< a later notification of the same id takes the place of the earlier one
    std::string title;
    std::string body;

    bool operator==(const Notification&) const = default;
};

/// Has the system ask the user, once, whether this program may show notifications; an answer is not
/// waited for, and a refusal is no error. Nothing where systems do not ask. Main thread.
void askToPostNotifications();

/// Shows a notification with the system's usual sound, without waiting for it. Later, on the main
/// thread, `done` hears whether the system has taken it; not where there is no desktop, or the user
/// does not want any. Main thread.
void postNotification(const Notification& notification, std::function<void(bool)> done);

} // namespace tidewright
