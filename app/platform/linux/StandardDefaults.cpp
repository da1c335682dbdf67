#include "app/platform/StandardDefaults.h"

#include "core/platform/StandardFolders.h"

namespace tidewright {

std::unique_ptr<QSettings> standardDefaults() {
    const URL folder = userConfigDirectory(homeDirectory());
    return std::make_unique<QSettings>(
        QString::fromStdString(folder.appending("Tidewright/Tidewright.conf").path()),
        QSettings::IniFormat);
}

} // namespace tidewright
