#include "core/platform/StandardFolders.h"

#include <cstdlib>

namespace tidewright {

URL temporaryDirectory() {
    const char* const value =
        std::getenv("TMPDIR"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    return value != nullptr && value[0] == '/' ? URL(value).standardized() : URL("/tmp");
}

} // namespace tidewright
