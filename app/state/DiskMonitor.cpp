#include "app/state/DiskMonitor.h"

#include "app/platform/WakeUp.h"
#include "core/platform/StandardFolders.h"
#include "core/probes/SystemAccess.h"

#include <fmt/format.h>

namespace tidewright {

namespace {

constexpr std::chrono::seconds interval{900};
constexpr double quietSeconds = 43'200; // twelve hours after a notification of the same id

double secondsSince1970(Date date) {
    return std::chrono::duration<double>(date.time_since_epoch()).count();
}

QString stampKey(const QString& id) { return QStringLiteral("lastNotified.") + id; }

void call(const std::function<void()>& function) {
    if (function)
        function();
}

} // namespace

DiskMonitorSystem DiskMonitorSystem::current() {
    return {.readDisk = DiskSpace::current,
            .readTrashSize =
                [home = homeDirectory()](const CancelToken& cancel) {
                    return SystemAccess::trashSize(home, cancel);
                },
            .now = currentDate,
            .post = postNotification,
            .onWakeUp = tidewright::onWakeUp};
}

DiskMonitor::DiskMonitor(SettingsStore& settings,
                         DefaultsStore& defaults,
                         Workers& workers,
                         DiskMonitorSystem system,
                         QObject* parent)
    : QObject(parent),
      m_settings(settings),
      m_defaults(defaults),
      m_workers(workers),
      m_system(std::move(system)) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(interval);
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { refresh([this] { m_timer.start(); }); });
    connect(&settings, &SettingsStore::lowSpaceGBChanged, this, &DiskMonitor::updateHealth);
    connect(&settings, &SettingsStore::criticalSpaceGBChanged, this, &DiskMonitor::updateHealth);
}

DiskMonitor::~DiskMonitor() { m_cancel.cancel(); }

void DiskMonitor::start() {
    if (m_isStarted)
        return;
    m_isStarted = true;
    m_workers.deliver<DiskMonitor>(this, [](DiskMonitor& monitor) {
        monitor.refresh([&monitor] { monitor.m_timer.start(); });
    });
    m_system.onWakeUp(this, [this] { refresh(); });
}

void DiskMonitor::refresh(std::function<void()> done) {
    const auto disk = m_system.readDisk();
    setDisk(disk ? std::optional(*disk) : std::nullopt);
    m_workers.start([&workers = m_workers, self = QPointer(this), read = m_system.readTrashSize,
                     cancel = m_cancel.token(), done = std::move(done)] {
        workers.deliver<DiskMonitor>(self, [bytes = read(cancel), done](DiskMonitor& monitor) {
            monitor.endRefresh(bytes, done);
        });
    });
}

void DiskMonitor::endRefresh(std::optional<Int64> trashBytes, const std::function<void()>& done) {
    if (m_trashBytes != trashBytes) {
        m_trashBytes = trashBytes;
        Q_EMIT trashBytesChanged();
    }
    const Date now = m_system.now();
    if (m_lastChecked != now) {
        m_lastChecked = now;
        Q_EMIT lastCheckedChanged();
    }
    notifyIfNeeded(done);
}

DiskSpace::Health DiskMonitor::health() const {
    if (!m_disk)
        return DiskSpace::Health::good;
    return m_disk->health(bytesOfGigabytes(m_settings.lowSpaceGB()),
                          bytesOfGigabytes(m_settings.criticalSpaceGB()));
}

void DiskMonitor::setDisk(std::optional<DiskSpace> disk) {
    if (m_disk == disk)
        return;
    m_disk = disk;
    Q_EMIT diskChanged();
    updateHealth();
}

void DiskMonitor::updateHealth() {
    if (health() == m_lastHealth)
        return;
    m_lastHealth = health();
    Q_EMIT healthChanged();
}

std::optional<Notification> DiskMonitor::aboutSpace() const {
    using Health = DiskSpace::Health;
    const std::string free = formattedBytes(m_disk->availableBytes);
    if (health() == Health::critical)
        return Notification{
            "space.critical", "Your disk is almost full",
            fmt::format("Only {} left. Open Tidewright to free space safely.", free)};
    if (health() == Health::low)
        return Notification{"space.low", "Free space is getting low",
                            fmt::format("{} free. Builds and simulators need room to work.", free)};
    return std::nullopt;
}

std::optional<Notification> DiskMonitor::aboutTrash() const {
    if (!m_trashBytes || *m_trashBytes < bytesOfGigabytes(m_settings.largeTrashGB()))
        return std::nullopt;
    return Notification{"trash.large",
                        fmt::format("Your Trash is holding {}", formattedBytes(*m_trashBytes)),
                        "Deleted files keep using space until the Trash is emptied."};
}

void DiskMonitor::notifyIfNeeded(const std::function<void()>& done) {
    if (!m_settings.notificationsEnabled() || !m_disk)
        return call(done);
    post(aboutSpace(), [this, done] { post(aboutTrash(), done); });
}

void DiskMonitor::post(const std::optional<Notification>& notification,
                       std::function<void()> done) {
    const QString id = notification ? QString::fromStdString(notification->id) : QString();
    // Two refreshes may overlap; what is on its way is not sent again.
    if (!notification || isQuiet(id) || m_posting.contains(id))
        return call(done);
    m_posting.insert(id);
    m_system.post(
        *notification, [self = QPointer(this), id, done = std::move(done)](bool accepted) {
            if (!self)
                return;
            self->m_posting.remove(id);
            if (accepted)
                self->m_defaults.setNumber(stampKey(id), secondsSince1970(self->m_system.now()));
            call(done);
        });
}

bool DiskMonitor::isQuiet(const QString& id) const {
    const double passed = secondsSince1970(m_system.now()) - m_defaults.number(stampKey(id));
    return !(passed > quietSeconds);
}

} // namespace tidewright
