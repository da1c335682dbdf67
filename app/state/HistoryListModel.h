// Past cleanups, newest first.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/RowModel.h"

namespace tidewright {

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class HistoryListModel : public RecordModel<HistoryEntry> {
    Q_OBJECT
    Q_PROPERTY(tidewright::ByteCount totalFreed READ totalFreed NOTIFY entriesChanged)
    Q_PROPERTY(QString cleanups READ cleanups NOTIFY entriesChanged)
    Q_PROPERTY(bool hasChart READ hasChart NOTIFY entriesChanged)

public:
    enum class Role {
        entryID = Qt::UserRole,
        date,
        dateText,   ///< day and time of day
        freedBytes, ///< as measured or as estimated, whichever is more
        freedText,
        freedGigabytes, ///< the same, decimal, with fractions
        itemsText,      ///< how many items were cleaned, and how many failed
        itemCount,
        failures,
        hasLog,
    };
    Q_ENUM(Role)

    explicit HistoryListModel(AppModel& model, QObject* parent = nullptr);

    ByteCount totalFreed() const { return m_totalFreed; }
    QString cleanups() const; ///< how many there were, in words
    bool hasChart() const { return count() > 1; }

    /// Shows the cleanup's log in the file manager.
    Q_INVOKABLE void revealLog(int row);

Q_SIGNALS:
    void entriesChanged();

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const HistoryEntry& entry) const override { return entry.id; }

private:
    void takeEntries();
    static QString itemsText(const HistoryEntry& entry);

    QPointer<AppModel> m_model;
    ByteCount m_totalFreed;
};

} // namespace tidewright
