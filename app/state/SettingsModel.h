// What the settings window shows: the settings, the login item, and the doors to the system's own
// settings and to the audit logs.
#pragma once

#include "app/state/PathListModel.h"
#include "app/state/ThresholdListModel.h"

namespace tidewright {

/// Main thread only. When the AppModel is gone it goes on showing what it showed last, and does
/// nothing.
class SettingsModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(QString loginError READ loginError NOTIFY loginErrorChanged)
    Q_PROPERTY(bool showFreeSpaceInMenuBar READ showFreeSpaceInMenuBar WRITE
                   setShowFreeSpaceInMenuBar NOTIFY showFreeSpaceInMenuBarChanged)
    Q_PROPERTY(bool notificationsEnabled READ notificationsEnabled WRITE setNotificationsEnabled
                   NOTIFY notificationsEnabledChanged)
    Q_PROPERTY(bool showsPermissions READ showsPermissions CONSTANT)
    Q_PROPERTY(QString logsError READ logsError NOTIFY logsErrorChanged)
    Q_PROPERTY(tidewright::ThresholdListModel* diskThresholds READ diskThresholds CONSTANT)
    Q_PROPERTY(tidewright::ThresholdListModel* ageThresholds READ ageThresholds CONSTANT)
    Q_PROPERTY(tidewright::PathListModel* projectRoots READ projectRoots CONSTANT)
    Q_PROPERTY(tidewright::PathListModel* exclusions READ exclusions CONSTANT)

public:
    /// Asks the system once whether the program opens at login.
    explicit SettingsModel(AppModel& model, QObject* parent = nullptr);

    bool launchAtLogin() const { return m_launchAtLogin; }
    void setLaunchAtLogin(bool on);
    /// Why the last change failed, as a sentence; empty where it did not.
    const QString& loginError() const { return m_loginError; }

    bool showFreeSpaceInMenuBar() const { return m_showFreeSpaceInMenuBar; }
    void setShowFreeSpaceInMenuBar(bool on);
    bool notificationsEnabled() const { return m_notificationsEnabled; }
    /// Turned on, it has the system ask the user whether the program may.
    void setNotificationsEnabled(bool on);

    /// Whether this system has the permissions that the window tells of.
    bool showsPermissions() const { return m_showsPermissions; }
    /// Opens the place where the user can allow the program to change applications.
    Q_INVOKABLE void openAppManagementSettings();

    /// Opens the folder of the audit logs, which is made where it is missing.
    Q_INVOKABLE void showAuditLogs();
    /// Why they could not be shown, as a sentence; empty where they were.
    const QString& logsError() const { return m_logsError; }

    /// Finds out anew what the user may have changed elsewhere.
    Q_INVOKABLE void checkSystem();

    ThresholdListModel* diskThresholds() { return &m_diskThresholds; }
    ThresholdListModel* ageThresholds() { return &m_ageThresholds; }
    PathListModel* projectRoots() { return &m_projectRoots; }
    PathListModel* exclusions() { return &m_exclusions; }

Q_SIGNALS:
    void launchAtLoginChanged();
    void loginErrorChanged();
    void showFreeSpaceInMenuBarChanged();
    void notificationsEnabledChanged();
    void logsErrorChanged();

private:
    void showLaunchAtLogin(bool on);
    void showLoginError(const QString& sentence);
    void showLogsError(const QString& sentence);

    QPointer<AppModel> m_model;
    bool m_launchAtLogin = false;
    QString m_loginError;
    bool m_showFreeSpaceInMenuBar = false;
    bool m_notificationsEnabled = false;
    bool m_showsPermissions = false;
    QString m_logsError;
    ThresholdListModel m_diskThresholds;
    ThresholdListModel m_ageThresholds;
    PathListModel m_projectRoots;
    PathListModel m_exclusions;
};

} // namespace tidewright
