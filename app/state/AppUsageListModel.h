// Installed applications: those that were not used lately, or all.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/RowModel.h"

namespace tidewright {

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class AppUsageListModel : public RecordModel<AppUsage> {
    Q_OBJECT
    Q_PROPERTY(bool showAll READ showAll WRITE setShowAll NOTIFY showAllChanged)
    Q_PROPERTY(tidewright::ByteCount shown READ shown NOTIFY shownChanged)

public:
    enum class Role {
        path = Qt::UserRole,
        name,
        lastUsed,     ///< a date, invalid where it is not known
        addedOn,      ///< the same
        lastUsedText, ///< how long ago, or that it never was
        sizeBytes,
        sizeText,
    };
    Q_ENUM(Role)

    explicit AppUsageListModel(AppModel& model,
                               std::function<Date()> now = currentDate,
                               QObject* parent = nullptr);

    bool showAll() const { return m_showAll; }
    void setShowAll(bool showAll);
    ByteCount shown() const { return m_shown; } ///< of all rows

    /// Shows the application in the file manager.
    Q_INVOKABLE void reveal(int row);

Q_SIGNALS:
    void showAllChanged();
    void shownChanged();

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const AppUsage& app) const override { return app.url.path(); }

private:
    void takeReport();
    void showApps(const Records& apps);
    EmptyText emptyText() const;
    QString lastUsedText(const AppUsage& app) const;

    QPointer<AppModel> m_model;
    std::function<Date()> m_now;
    bool m_showAll = false;
    bool m_isScanned = false;
    qint64 m_unusedAppDays = 0; ///< idle for so long counts as unused
    ByteCount m_shown;
};

} // namespace tidewright
