// Whether the desktop has a place for status items, such as a system tray.
#pragma once

#include <QObject>

namespace tidewright {

/// Main thread only, after the QApplication.
class TrayHost : public QObject {
    Q_OBJECT

public:
    /// Begins to listen.
    explicit TrayHost(QObject* parent = nullptr);

    bool isAvailable() const { return m_isAvailable; }

public Q_SLOTS:
    /// Finds out anew, without waiting. A place may come and go without a word.
    void look();

Q_SIGNALS:
    void availableChanged();

private:
    void setAvailable(bool isAvailable);

    bool m_isAvailable = false;
};

} // namespace tidewright
