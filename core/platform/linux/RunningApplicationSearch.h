// Which applications the processes of a user belong to.
//
// Three sources, which complement each other: the control groups of a process (ApplicationUnit.h),
// the facts that Flatpak leaves in a sandbox, and the program itself: one that is known
// (KnownApplications.h), or one inside an application bundle.
#pragma once

#include "core/support/URL.h"

#include <cstdint>
#include <set>
#include <string>

namespace tidewright {

/// The identifiers of the applications that run for `userID`, under all names by which each is
/// known. Naming one too many makes the program keep what it could clean; so where names are
/// ambiguous, every reading is in. `processes` is a file system as proc(5) describes it. Processes
/// that end meanwhile and entries that can't be read are passed over.
std::set<std::string> findRunningApplications(const URL& processes, std::uint32_t userID);

} // namespace tidewright
