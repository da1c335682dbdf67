#include "app/tray/TrayHost.h"

namespace tidewright {

void TrayHost::setAvailable(bool isAvailable) {
    if (m_isAvailable == isAvailable)
        return;
    m_isAvailable = isAvailable;
    Q_EMIT availableChanged();
}

} // namespace tidewright
