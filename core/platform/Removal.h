// Removing an approved item for good. Nothing else in the program deletes what a user has.
//
// Everything goes relative to the open folder in which the item was judged. Links are removed and
// never followed, no other file system is entered, and trees of any depth and width are survived
// with few descriptors and little memory. All of it blocks; any number may run at once.
#pragma once

#include "core/platform/ApprovedPath.h"
#include "core/platform/FileActionError.h"

namespace tidewright {

enum class Presence { there, gone };

/// Whether the item is there. Fails where nobody can tell, and when something else stands there
/// than what was judged.
Result<Presence, FileActionError> presence(const ApprovedPath& item);

/// Tries once to remove the item with everything in it. What can't be removed is passed over, the
/// rest goes, and the first obstacle is the error. An item that is gone already is a success.
Result<void, FileActionError> removeOnce(const ApprovedPath& item);

/// Gives the owner all permissions on everything in the item, as far as that is allowed, so that a
/// second attempt may succeed. Links are left alone, and so are files that have another name, which
/// may lie elsewhere.
void makeWritable(const ApprovedPath& item);

/// Whether the item is an application bundle or holds one. Bundles and other packages inside are
/// not entered.
bool containsAppBundle(const ApprovedPath& item);

} // namespace tidewright
