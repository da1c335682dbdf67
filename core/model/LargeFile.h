// A large personal file, found while projects were looked for.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Fields.h"

namespace tidewright {

struct LargeFile {
    URL url;
    Int64 sizeBytes = 0; ///< allocated on disk
    std::optional<Date> modified;

    bool operator==(const LargeFile&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("url", &LargeFile::url), field("sizeBytes", &LargeFile::sizeBytes),
                          field("modified", &LargeFile::modified)};
    }
};

} // namespace tidewright
