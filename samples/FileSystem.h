// The few things that a sample home asks of the file system and that each system names differently.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Date.h"

#include <string>

namespace tidewright {

/// Gives an open, empty file so many bytes on disk without writing them. Returns 0, or the `errno`
/// of a file system that can't or has no room.
int allocate(int descriptor, Int64 bytes);

/// Whether the folder lies on a file system that keeps its files in memory.
bool isInMemory(const std::string& folder);

/// Sets when an entry came into its folder, where the system keeps that, and nothing elsewhere.
void setDateAdded(const std::string& path, Date date);

/// `date` as system calls take it.
timespec timespecOf(Date date);

} // namespace tidewright
