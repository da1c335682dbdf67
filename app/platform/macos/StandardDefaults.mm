#include "app/platform/StandardDefaults.h"

namespace tidewright {

std::unique_ptr<QSettings> standardDefaults() {
    // Qt makes "com.tidewright.app" of these.
    auto defaults =
        std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                    QStringLiteral("tidewright.com"), QStringLiteral("app"));
    defaults->setFallbacksEnabled(false); // other programs' settings are not ours
    return defaults;
}

} // namespace tidewright
