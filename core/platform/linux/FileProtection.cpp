#include "core/platform/FileProtection.h"

namespace tidewright {

bool protectsUserFiles() { return false; }

} // namespace tidewright
