// Keeps the program running for as long as its user can reach it.
#pragma once

#include "app/tray/TrayHost.h"

#include <QTimer>

namespace tidewright {

/// Main thread only, after the QApplication. Where the desktop has a place for a status item, the
/// program goes on without a window; elsewhere it ends with its last one, and the log says so once.
class Residency : public QObject {
    Q_OBJECT

public:
    /// `host` must outlive this.
    explicit Residency(TrayHost& host);

private:
    void follow();
    void sayThatThereIsNoPlace();

    TrayHost& m_host;
    QTimer m_start; ///< in which a desktop may still be starting
    bool m_hasSaid = false;
};

} // namespace tidewright
