#include "core/probes/SystemAccess.h"

#include "core/platform/Directory.h"
#include "core/scan/DirectorySizer.h"

namespace tidewright::SystemAccess {

namespace {

constexpr const char* privacyDatabase = "Library/Application Support/com.apple.TCC/TCC.db";
constexpr const char* trash = ".Trash";
constexpr const char* safari = "Library/Safari";

} // namespace

bool hasFullDiskAccess(const URL& home) {
    if (canOpenForReading(home.appending(privacyDatabase)))
        return true;
    return readDirectory(home.appending(trash)).has_value() &&
           isReadableFile(home.appending(safari));
}

std::optional<Int64> trashSize(const URL& home, const CancelToken& cancel) {
    const URL folder = home.appending(trash);
    if (!readDirectory(folder))
        return std::nullopt;
    return DirectorySizer().size(folder, cancel);
}

} // namespace tidewright::SystemAccess
