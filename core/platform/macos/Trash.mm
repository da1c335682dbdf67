#include "core/platform/Trash.h"

#import "core/platform/macos/Conversion.h"
#include "core/platform/posix/StandingItem.h"

#include <cerrno>

namespace tidewright {

// The file manager takes a path alone, so the item is looked at immediately before.
Result<void, FileActionError> moveToTrash(const ApprovedPath& item) {
    constexpr const char* operation = "move to the Trash";
    const auto standing = standingItem(item);
    if (!standing)
        return Failure(standing.error());
    if (!*standing)
        return Failure(
            FileActionError{FileActionError::Kind::system, {ENOENT, operation, item.url().path()}});
    @autoreleasepool {
        // By its real folder, in which there is no link that could be led elsewhere.
        const URL place = (*item.folder())->path().appending(item.name());
        NSError* error = nil;
        if ([NSFileManager.defaultManager trashItemAtURL:foundationURL(place)
                                        resultingItemURL:nil
                                                   error:&error])
            return {};
        return Failure(FileActionError{FileActionError::Kind::notTrashed,
                                       systemErrorFrom(error, operation, item.url())});
    }
}

} // namespace tidewright
