#include "tests/support/FtsOracle.h"

#include <fts.h>
#include <sys/stat.h>

#include <array>
#include <memory>

namespace tidewright::test {

namespace {

constexpr Int64 bytesPerBlock = 512;
constexpr std::uint64_t visitsPerCancelCheck = 8192;

bool isCounted(const FTSENT& entry) {
    switch (entry.fts_info) {
    case FTS_D: // counted on the way back
    case FTS_DC:
    case FTS_DNR:
    case FTS_ERR:
    case FTS_NS:
    case FTS_NSOK:
        return false;
    default:
        return entry.fts_statp != nullptr;
    }
}

bool isFirstVisit(const struct stat& status, SeenInodes& seen) {
    return status.st_nlink < 2 || S_ISDIR(status.st_mode) || seen.insert(status.st_ino).second;
}

} // namespace

FtsSum ftsTreeSize(const URL& root, SeenInodes& seen, const CancelToken& cancel) {
    std::string path = root.path();
    std::array<char*, 2> roots{path.data(), nullptr};
    const std::unique_ptr<FTS, decltype(&fts_close)> walk(
        fts_open(roots.data(), FTS_PHYSICAL | FTS_NOCHDIR | FTS_XDEV, nullptr), fts_close);
    FtsSum sum;
    if (!walk)
        return sum;
    while (const FTSENT* entry = fts_read(walk.get())) {
        if (++sum.visits % visitsPerCancelCheck == 0 && cancel.isCancelled())
            break;
        if (isCounted(*entry) && isFirstVisit(*entry->fts_statp, seen))
            sum.bytes += entry->fts_statp->st_blocks * bytesPerBlock;
    }
    return sum;
}

Int64 ftsTreeSize(const URL& root) {
    SeenInodes seen;
    return ftsTreeSize(root, seen).bytes;
}

Int64 allocatedBytes(const URL& url) {
    struct stat status = {};
    return lstat(url.path().c_str(), &status) == 0 ? status.st_blocks * bytesPerBlock : 0;
}

} // namespace tidewright::test
