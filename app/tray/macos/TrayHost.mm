// There is always a menu bar.
#include "app/tray/TrayHost.h"

namespace tidewright {

TrayHost::TrayHost(QObject* parent) : QObject(parent), m_isAvailable(true) {}

void TrayHost::look() {}

} // namespace tidewright
