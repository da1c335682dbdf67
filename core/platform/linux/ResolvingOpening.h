// Opening with limits on where the way may lead.
#pragma once

#include "core/platform/posix/FileDescriptor.h"

#include <cstdint>

namespace tidewright {

/// openat2(2), for which the C library has no function; Linux has it from 5.6 on. Closed on exec;
/// errno tells why there is none.
FileDescriptor openResolving(int parent, const char* path, int flags, std::uint64_t resolve);

/// Whether it failed because the call is missing: an old kernel, or a sandbox that does not know
/// it.
bool isOpenResolvingMissing(int error);

/// What stands under `name` in the folder `parent`: EXDEV where something is mounted there, and no
/// link is followed (ELOOP or ENOTDIR, or with O_PATH the link itself). On every kernel.
FileDescriptor openOnSameMount(int parent, const char* name, int flags);

} // namespace tidewright
