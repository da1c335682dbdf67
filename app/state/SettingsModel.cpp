#include "app/state/SettingsModel.h"

#include "core/platform/FileInfo.h"
#include "core/platform/FileReplacement.h"

#include <cerrno>

namespace tidewright {

namespace {

constexpr auto appManagementSettings =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_AppBundles";

using Store = SettingsStore;

std::vector<Threshold> diskThresholds() {
    return {{QT_TRANSLATE_NOOP("tidewright::ThresholdListModel", "Warn below %1 GB free"),
             &Store::lowSpaceGB, &Store::setLowSpaceGB, &Store::lowSpaceGBChanged, 5, 200, 5},
            {QT_TRANSLATE_NOOP("tidewright::ThresholdListModel", "Critical below %1 GB free"),
             &Store::criticalSpaceGB, &Store::setCriticalSpaceGB, &Store::criticalSpaceGBChanged, 1,
             100, 1},
            {QT_TRANSLATE_NOOP("tidewright::ThresholdListModel", "Large Trash above %1 GB"),
             &Store::largeTrashGB, &Store::setLargeTrashGB, &Store::largeTrashGBChanged, 1, 100,
             1}};
}

std::vector<Threshold> ageThresholds() {
    return {
        {QT_TRANSLATE_NOOP("tidewright::ThresholdListModel", "Projects are dormant after %1 days"),
         &Store::dormantProjectDays, &Store::setDormantProjectDays,
         &Store::dormantProjectDaysChanged, 14, 365, 7},
        {QT_TRANSLATE_NOOP("tidewright::ThresholdListModel", "Apps are unused after %1 days"),
         &Store::unusedAppDays, &Store::setUnusedAppDays, &Store::unusedAppDaysChanged, 30, 720,
         15},
        {QT_TRANSLATE_NOOP("tidewright::ThresholdListModel", "Downloads are old after %1 days"),
         &Store::oldDownloadDays, &Store::setOldDownloadDays, &Store::oldDownloadDaysChanged, 7,
         365, 7}};
}

constexpr PathList rootsList{&Store::projectRoots, &Store::setProjectRoots,
                             &Store::projectRootsChanged};
constexpr PathList exclusionsList{&Store::exclusions, &Store::setExclusions,
                                  &Store::exclusionsChanged};

Result<void, SystemError> makeFolderThere(const URL& folder) {
    if (auto made = makeFolder(folder); !made)
        return made;
    const auto info = fileInfo(folder, Links::follow);
    if (!info)
        return Failure(info.error());
    if (info->kind != FileKind::directory)
        return Failure(SystemError{ENOTDIR, "open", folder.path()});
    return {};
}

} // namespace

SettingsModel::SettingsModel(AppModel& model, QObject* parent)
    : QObject(parent),
      m_model(&model),
      m_launchAtLogin(model.environment().opensAtLogin()),
      m_showFreeSpaceInMenuBar(model.settings().showFreeSpaceInMenuBar()),
      m_notificationsEnabled(model.settings().notificationsEnabled()),
      m_showsPermissions(model.environment().protectsUserFiles),
      m_diskThresholds(model, tidewright::diskThresholds()),
      m_ageThresholds(model, tidewright::ageThresholds()),
      m_projectRoots(model, rootsList, tr("Your whole home folder")),
      m_exclusions(model, exclusionsList, tr("No exclusions")) {
    connect(&model.settings(), &SettingsStore::showFreeSpaceInMenuBarChanged, this, [this] {
        m_showFreeSpaceInMenuBar = m_model->settings().showFreeSpaceInMenuBar();
        Q_EMIT showFreeSpaceInMenuBarChanged();
    });
    connect(&model.settings(), &SettingsStore::notificationsEnabledChanged, this, [this] {
        m_notificationsEnabled = m_model->settings().notificationsEnabled();
        Q_EMIT notificationsEnabledChanged();
    });
}

void SettingsModel::setLaunchAtLogin(bool on) {
    if (!m_model)
        return;
    showLoginError({});
    const auto changed = m_model->environment().setOpensAtLogin(on);
    if (!changed)
        showLoginError(shownText(changed.error()));
    showLaunchAtLogin(changed ? on : m_model->environment().opensAtLogin());
}

void SettingsModel::showLaunchAtLogin(bool on) {
    if (m_launchAtLogin == on)
        return;
    m_launchAtLogin = on;
    Q_EMIT launchAtLoginChanged();
}

void SettingsModel::showLoginError(const QString& sentence) {
    if (m_loginError == sentence)
        return;
    m_loginError = sentence;
    Q_EMIT loginErrorChanged();
}

void SettingsModel::setShowFreeSpaceInMenuBar(bool on) {
    if (m_model)
        m_model->settings().setShowFreeSpaceInMenuBar(on);
}

void SettingsModel::setNotificationsEnabled(bool on) {
    if (!m_model)
        return;
    const bool isTurnedOn = on && !m_notificationsEnabled;
    m_model->settings().setNotificationsEnabled(on);
    if (isTurnedOn)
        m_model->environment().askToPostNotifications();
}

void SettingsModel::openAppManagementSettings() {
    if (m_model)
        m_model->environment().openLocation(appManagementSettings);
}

void SettingsModel::showAuditLogs() {
    if (!m_model)
        return;
    const URL& folder = m_model->environment().auditLogDirectory;
    const auto made = makeFolderThere(folder);
    if (made)
        m_model->environment().openLocation(folder.path());
    showLogsError(made ? QString()
                       : tr("The folder of the audit logs, %1, could not be made (%2). See that "
                            "you may write in the folders above it, then try again.")
                             .arg(shownText(folder.path()), shownText(made.error().reason())));
}

void SettingsModel::showLogsError(const QString& sentence) {
    if (m_logsError == sentence)
        return;
    m_logsError = sentence;
    Q_EMIT logsErrorChanged();
}

void SettingsModel::checkSystem() {
    if (!m_model)
        return;
    m_model->checkFullDiskAccess();
    showLaunchAtLogin(m_model->environment().opensAtLogin());
}

} // namespace tidewright
