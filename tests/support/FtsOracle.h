// The walk of a tree that every size is compared with: the C library's own.
#pragma once

#include "core/platform/TreeSize.h"

namespace tidewright::test {

struct FtsSum {
    Int64 bytes = 0;
    std::uint64_t visits = 0; ///< entries that the walk delivered, a folder twice
};

/// The allocated bytes of a tree by `fts`, which stays on the root's device and follows no link.
/// Slow and simple on purpose. Paths longer than the system takes are beyond it: what lies deeper
/// is missing from the sum.
FtsSum ftsTreeSize(const URL& root, SeenInodes& seen, const CancelToken& cancel = CancelToken());

/// The same for a root on its own.
Int64 ftsTreeSize(const URL& root);

/// The allocated bytes of one entry, of a link and not of what it leads to; 0 where there is none.
Int64 allocatedBytes(const URL& url);

} // namespace tidewright::test
