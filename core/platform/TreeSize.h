// The one walk that measures a tree.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/CancelToken.h"
#include "core/support/URL.h"

#include <cstdint>
#include <unordered_set>

namespace tidewright {

/// Inode numbers of files with several links that were counted before.
using SeenInodes = std::unordered_set<std::uint64_t>;

/// The allocated bytes (blocks of 512) of a tree or a single file: what a physical `fts` walk sums
/// up that stays on the root's device, counts each folder once and each file with several links at
/// its first visit. Links are counted, never followed; what can't be read adds nothing, and a root
/// that is not there gives 0. Trees of any depth are survived.
///
/// Looks at `cancel` with every 8192nd visit (a folder is visited before and after what it holds)
/// and then returns the sum so far. Blocks; any number of walks may run at once.
Int64 allocatedTreeSize(const URL& root, SeenInodes& seen, const CancelToken& cancel);

} // namespace tidewright
