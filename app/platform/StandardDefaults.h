// Where this system keeps the settings of its users.
#pragma once

#include <QSettings>

#include <memory>

namespace tidewright {

/// The user's own store for this program; on Linux the file `Tidewright.conf` in the folder of the
/// user's configuration.
std::unique_ptr<QSettings> standardDefaults();

} // namespace tidewright
