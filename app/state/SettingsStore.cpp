#include "app/state/SettingsStore.h"

#include "core/support/Require.h"

namespace tidewright {

namespace {

constexpr QLatin1StringView lowSpaceKey{"lowSpaceGB"};
constexpr QLatin1StringView criticalSpaceKey{"criticalSpaceGB"};
constexpr QLatin1StringView largeTrashKey{"largeTrashGB"};
constexpr QLatin1StringView dormantProjectKey{"dormantProjectDays"};
constexpr QLatin1StringView unusedAppKey{"unusedAppDays"};
constexpr QLatin1StringView oldDownloadKey{"oldDownloadDays"};
constexpr QLatin1StringView menuBarKey{"showFreeSpaceInMenuBar"};
constexpr QLatin1StringView notificationsKey{"notificationsEnabled"};

const QVariantMap& registeredDefaults() {
    static const QVariantMap defaults{
        {lowSpaceKey, 25},  {criticalSpaceKey, 10}, {largeTrashKey, 5},  {dormantProjectKey, 60},
        {unusedAppKey, 90}, {oldDownloadKey, 30},   {menuBarKey, false}, {notificationsKey, true},
    };
    return defaults;
}

/// A slash at the end only says that a folder is meant.
URL urlOf(std::string path) {
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return URL(std::move(path));
}

std::vector<URL> urlsOf(const std::vector<std::string>& paths) {
    std::vector<URL> urls;
    for (const std::string& path : paths)
        urls.push_back(urlOf(path));
    return urls;
}

std::vector<std::string> pathsOf(const std::vector<URL>& urls) {
    std::vector<std::string> paths;
    for (const URL& url : urls)
        paths.push_back(url.path());
    return paths;
}

/// Whether there is anything to tell.
template <class T>
bool assign(T& field, T value) {
    if (field == value)
        return false;
    field = std::move(value);
    return true;
}

} // namespace

Int64 bytesOfGigabytes(Int64 gigabytes) {
    Int64 bytes = 0;
    require(!__builtin_mul_overflow(gigabytes, gigabyte, &bytes), "a threshold fits into bytes");
    return bytes;
}

SettingsStore::SettingsStore(DefaultsStore& defaults, QObject* parent)
    : QObject(parent),
      m_defaults(defaults) {
    defaults.registerDefaults(registeredDefaults());
    m_lowSpaceGB = defaults.integer(lowSpaceKey);
    m_criticalSpaceGB = defaults.integer(criticalSpaceKey);
    m_largeTrashGB = defaults.integer(largeTrashKey);
    m_dormantProjectDays = defaults.integer(dormantProjectKey);
    m_unusedAppDays = defaults.integer(unusedAppKey);
    m_oldDownloadDays = defaults.integer(oldDownloadKey);
    m_projectRoots = urlsOf(defaults.texts(projectRootsKey));
    m_exclusions = urlsOf(defaults.texts(exclusionsKey));
    m_showFreeSpaceInMenuBar = defaults.boolean(menuBarKey);
    m_notificationsEnabled = defaults.boolean(notificationsKey);
}

void SettingsStore::setLowSpaceGB(qint64 value) {
    m_defaults.setInteger(lowSpaceKey, value);
    if (assign(m_lowSpaceGB, value))
        Q_EMIT lowSpaceGBChanged();
}

void SettingsStore::setCriticalSpaceGB(qint64 value) {
    m_defaults.setInteger(criticalSpaceKey, value);
    if (assign(m_criticalSpaceGB, value))
        Q_EMIT criticalSpaceGBChanged();
}

void SettingsStore::setLargeTrashGB(qint64 value) {
    m_defaults.setInteger(largeTrashKey, value);
    if (assign(m_largeTrashGB, value))
        Q_EMIT largeTrashGBChanged();
}

void SettingsStore::setDormantProjectDays(qint64 value) {
    m_defaults.setInteger(dormantProjectKey, value);
    if (assign(m_dormantProjectDays, value))
        Q_EMIT dormantProjectDaysChanged();
}

void SettingsStore::setUnusedAppDays(qint64 value) {
    m_defaults.setInteger(unusedAppKey, value);
    if (assign(m_unusedAppDays, value))
        Q_EMIT unusedAppDaysChanged();
}

void SettingsStore::setOldDownloadDays(qint64 value) {
    m_defaults.setInteger(oldDownloadKey, value);
    if (assign(m_oldDownloadDays, value))
        Q_EMIT oldDownloadDaysChanged();
}

void SettingsStore::setProjectRoots(std::vector<URL> roots) {
    m_defaults.setTexts(projectRootsKey, pathsOf(roots));
    if (assign(m_projectRoots, std::move(roots)))
        Q_EMIT projectRootsChanged();
}

void SettingsStore::setExclusions(std::vector<URL> exclusions) {
    m_defaults.setTexts(exclusionsKey, pathsOf(exclusions));
    if (assign(m_exclusions, std::move(exclusions)))
        Q_EMIT exclusionsChanged();
}

void SettingsStore::setShowFreeSpaceInMenuBar(bool value) {
    m_defaults.setBoolean(menuBarKey, value);
    if (assign(m_showFreeSpaceInMenuBar, value))
        Q_EMIT showFreeSpaceInMenuBarChanged();
}

void SettingsStore::setNotificationsEnabled(bool value) {
    m_defaults.setBoolean(notificationsKey, value);
    if (assign(m_notificationsEnabled, value))
        Q_EMIT notificationsEnabledChanged();
}

ScanSettings SettingsStore::scanSettings() const {
    return {.dormantProjectDays = m_dormantProjectDays,
            .unusedAppDays = m_unusedAppDays,
            .oldDownloadDays = m_oldDownloadDays,
            .lowSpaceThreshold = bytesOfGigabytes(m_lowSpaceGB),
            .criticalSpaceThreshold = bytesOfGigabytes(m_criticalSpaceGB),
            .largeTrashThreshold = bytesOfGigabytes(m_largeTrashGB),
            .projectRoots = m_projectRoots,
            .exclusions = m_exclusions};
}

} // namespace tidewright
