// The system starts an application once and then brings it to the front, which Qt's application
// makes known by its state.
#include "app/platform/SingleInstance.h"

namespace tidewright {

bool becomeOnlyInstance(QObject*, std::function<void()>) { return true; }

} // namespace tidewright
