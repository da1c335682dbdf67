#include "core/platform/Volumes.h"

#import "core/platform/macos/Conversion.h"

namespace tidewright {

namespace {

std::optional<Int64> bytesFrom(NSNumber* number) {
    if (number == nil)
        return std::nullopt;
    return number.longLongValue;
}

} // namespace

Result<VolumeCapacity, SystemError> volumeCapacity(const URL& url) {
    @autoreleasepool {
        NSArray<NSURLResourceKey>* keys = @[
            NSURLVolumeTotalCapacityKey, NSURLVolumeAvailableCapacityForImportantUsageKey,
            NSURLVolumeAvailableCapacityKey
        ];
        NSError* error = nil;
        NSDictionary<NSURLResourceKey, id>* values =
            [foundationURL(url) resourceValuesForKeys:keys error:&error];
        if (values == nil)
            return Failure(systemErrorFrom(error, "read the capacity of", url));
        return VolumeCapacity{.total = bytesFrom(values[NSURLVolumeTotalCapacityKey]),
                              .availableForImportantUsage = bytesFrom(
                                  values[NSURLVolumeAvailableCapacityForImportantUsageKey]),
                              .available = bytesFrom(values[NSURLVolumeAvailableCapacityKey])};
    }
}

} // namespace tidewright
