#include "core/platform/FileProtection.h"

namespace tidewright {

bool protectsUserFiles() { return true; }

} // namespace tidewright
