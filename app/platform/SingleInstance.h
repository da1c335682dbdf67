// One running program for each home folder.
#pragma once

#include <QObject>

#include <functional>

namespace tidewright {

/// Makes this program the one that runs for the home folder of the user. False where one runs
/// already, which has then been asked to come to the front. As long as `context` exists,
/// `onNextStart` is called on the main thread whenever the program was started once more. True also
/// where this can't be found out. Main thread; waits for the answer of the other program, a few
/// seconds at most.
bool becomeOnlyInstance(QObject* context, std::function<void()> onNextStart);

} // namespace tidewright
