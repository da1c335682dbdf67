// The user's settings, held in memory and written through to the defaults store.
#pragma once

#include "app/state/DefaultsStore.h"
#include "core/scan/ScanSettings.h"

#include <QObject>
#include <QStringList>

namespace tidewright {

// The keys of the lists in the defaults store; those of the other settings are their properties'
// names.
inline constexpr QLatin1StringView projectRootsKey{"projectRoots"};
inline constexpr QLatin1StringView exclusionsKey{"exclusions"};

/// Main thread only. Every setter writes at once; its signal comes only when the value changed. No
/// value is clamped. Changes that others make to the store are not seen until the next start.
class SettingsStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(qint64 lowSpaceGB READ lowSpaceGB WRITE setLowSpaceGB NOTIFY lowSpaceGBChanged)
    Q_PROPERTY(qint64 criticalSpaceGB READ criticalSpaceGB WRITE setCriticalSpaceGB NOTIFY
                   criticalSpaceGBChanged)
    Q_PROPERTY(
        qint64 largeTrashGB READ largeTrashGB WRITE setLargeTrashGB NOTIFY largeTrashGBChanged)
    Q_PROPERTY(qint64 dormantProjectDays READ dormantProjectDays WRITE setDormantProjectDays NOTIFY
                   dormantProjectDaysChanged)
    Q_PROPERTY(
        qint64 unusedAppDays READ unusedAppDays WRITE setUnusedAppDays NOTIFY unusedAppDaysChanged)
    Q_PROPERTY(qint64 oldDownloadDays READ oldDownloadDays WRITE setOldDownloadDays NOTIFY
                   oldDownloadDaysChanged)
    Q_PROPERTY(bool showFreeSpaceInMenuBar READ showFreeSpaceInMenuBar WRITE
                   setShowFreeSpaceInMenuBar NOTIFY showFreeSpaceInMenuBarChanged)
    Q_PROPERTY(bool notificationsEnabled READ notificationsEnabled WRITE setNotificationsEnabled
                   NOTIFY notificationsEnabledChanged)

public:
    /// `defaults` must outlive this.
    explicit SettingsStore(DefaultsStore& defaults, QObject* parent = nullptr);

    qint64 lowSpaceGB() const { return m_lowSpaceGB; }           ///< decimal gigabytes
    qint64 criticalSpaceGB() const { return m_criticalSpaceGB; } ///< decimal gigabytes
    qint64 largeTrashGB() const { return m_largeTrashGB; }       ///< decimal gigabytes
    qint64 dormantProjectDays() const { return m_dormantProjectDays; }
    qint64 unusedAppDays() const { return m_unusedAppDays; }
    qint64 oldDownloadDays() const { return m_oldDownloadDays; }
    const std::vector<URL>& projectRoots() const { return m_projectRoots; }
    const std::vector<URL>& exclusions() const { return m_exclusions; }
    bool showFreeSpaceInMenuBar() const { return m_showFreeSpaceInMenuBar; }
    bool notificationsEnabled() const { return m_notificationsEnabled; }

    void setLowSpaceGB(qint64 value);
    void setCriticalSpaceGB(qint64 value);
    void setLargeTrashGB(qint64 value);
    void setDormantProjectDays(qint64 value);
    void setUnusedAppDays(qint64 value);
    void setOldDownloadDays(qint64 value);
    void setProjectRoots(std::vector<URL> roots);
    void setExclusions(std::vector<URL> exclusions);
    void setShowFreeSpaceInMenuBar(bool value);
    void setNotificationsEnabled(bool value);

    /// What a scan is to go by now. A threshold that no number of bytes can hold ends the program.
    ScanSettings scanSettings() const;

Q_SIGNALS:
    void lowSpaceGBChanged();
    void criticalSpaceGBChanged();
    void largeTrashGBChanged();
    void dormantProjectDaysChanged();
    void unusedAppDaysChanged();
    void oldDownloadDaysChanged();
    void projectRootsChanged();
    void exclusionsChanged();
    void showFreeSpaceInMenuBarChanged();
    void notificationsEnabledChanged();

private:
    DefaultsStore& m_defaults;
    qint64 m_lowSpaceGB = 0;
    qint64 m_criticalSpaceGB = 0;
    qint64 m_largeTrashGB = 0;
    qint64 m_dormantProjectDays = 0;
    qint64 m_unusedAppDays = 0;
    qint64 m_oldDownloadDays = 0;
    std::vector<URL> m_projectRoots;
    std::vector<URL> m_exclusions;
    bool m_showFreeSpaceInMenuBar = false;
    bool m_notificationsEnabled = false;
};

/// Decimal gigabytes in bytes. A number that bytes can't hold ends the program.
Int64 bytesOfGigabytes(Int64 gigabytes);

} // namespace tidewright
