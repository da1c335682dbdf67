// A small, always fresh picture of the volume and the Trash, and the only notifications that the
// program sends.
#pragma once

#include "app/platform/Notifications.h"
#include "app/state/SettingsStore.h"
#include "app/state/Workers.h"
#include "core/model/DiskSpace.h"

#include <QSet>
#include <QTimer>

namespace tidewright {

/// What the monitor asks of the machine.
struct DiskMonitorSystem {
    std::function<Result<DiskSpace, SystemError>()> readDisk; ///< on the main thread
    /// On another thread; absent when the Trash can't be read.
    std::function<std::optional<Int64>(const CancelToken&)> readTrashSize;
    std::function<Date()> now;
    /// Posts, and tells later on the main thread whether it was accepted.
    std::function<void(const Notification&, std::function<void(bool)>)> post;
    /// Has the function called whenever the system has woken up, while the object exists.
    std::function<void(QObject*, std::function<void()>)> onWakeUp;

    /// The machine of the user whose process this is.
    static DiskMonitorSystem current();
};

/// Main thread only.
class DiskMonitor : public QObject {
    Q_OBJECT

public:
    /// All but the parent must outlive this.
    DiskMonitor(SettingsStore& settings,
                DefaultsStore& defaults,
                Workers& workers,
                DiskMonitorSystem system,
                QObject* parent = nullptr);
    ~DiskMonitor() override;

    /// From now on measures at once, every 15 minutes, and when the system has woken up. A second
    /// call does nothing.
    void start();

    /// Measures, stores and maybe notifies. `done` is called at the end, unless this is gone by
    /// then.
    void refresh(std::function<void()> done = {});

    /// By the thresholds as they are now; good while the disk is not known.
    DiskSpace::Health health() const;
    const std::optional<DiskSpace>& disk() const { return m_disk; }
    const std::optional<Int64>& trashBytes() const { return m_trashBytes; }
    const std::optional<Date>& lastChecked() const { return m_lastChecked; }

Q_SIGNALS:
    void diskChanged();
    void trashBytesChanged();
    void lastCheckedChanged();
    /// Also when a threshold was changed.
    void healthChanged();

private:
    void setDisk(std::optional<DiskSpace> disk);
    void endRefresh(std::optional<Int64> trashBytes, const std::function<void()>& done);
    void updateHealth();
    std::optional<Notification> aboutSpace() const;
    std::optional<Notification> aboutTrash() const;
    void notifyIfNeeded(const std::function<void()>& done);
    void post(const std::optional<Notification>& notification, std::function<void()> done);
    bool isQuiet(const QString& id) const;

    SettingsStore& m_settings;
    DefaultsStore& m_defaults;
    Workers& m_workers;
    DiskMonitorSystem m_system;
    std::optional<DiskSpace> m_disk;
    std::optional<Int64> m_trashBytes;
    std::optional<Date> m_lastChecked;
    DiskSpace::Health m_lastHealth = DiskSpace::Health::good; ///< that was told
    QTimer m_timer{this};
    bool m_isStarted = false;
    QSet<QString> m_posting; ///< notifications on their way
    CancelSource m_cancel;   ///< of what is being measured when this ends
};

} // namespace tidewright
