// What a screen may ask of the program as a whole: another window, or the end.
#pragma once

#include <QObject>

namespace tidewright {

/// Main thread only. Who makes the windows listens.
class Shell : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    // A screen calls these like functions.
    void openMainWindow(); ///< before all other windows
    void openSettings();
    void showAbout();
    void quit();
};

} // namespace tidewright
