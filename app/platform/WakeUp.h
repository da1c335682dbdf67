// Hearing that the system has woken up.
#pragma once

#include <QObject>

#include <functional>

namespace tidewright {

/// Calls `function` on the main thread each time the system resumes, for as long as `context`
/// exists. Never called where the system does not tell. Main thread.
void onWakeUp(QObject* context, std::function<void()> function);

} // namespace tidewright
