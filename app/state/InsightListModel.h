// What matters after the last scan, in the order of its weight.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/RowModel.h"

namespace tidewright {

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class InsightListModel : public RecordModel<Insight> {
    Q_OBJECT
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY limitChanged)
    Q_PROPERTY(int total READ total NOTIFY totalsChanged)
    Q_PROPERTY(int notableCount READ notableCount NOTIFY totalsChanged)
    Q_PROPERTY(bool hasMore READ hasMore NOTIFY hasMoreChanged)

public:
    enum class Role {
        insightID = Qt::UserRole,
        severity, ///< "tip", "notice", "warning" or "critical"
        symbolName,
        title,
        message,
        gainBytes,
        gainText,    ///< empty where nothing is gained
        actionTitle, ///< empty where there is nothing to do
    };
    Q_ENUM(Role)

    explicit InsightListModel(AppModel& model, QObject* parent = nullptr);

    /// At most so many rows; below 0, as at first: all.
    int limit() const { return m_limit; }
    void setLimit(int limit);

    int total() const { return m_totals.all; }            ///< shown or not
    int notableCount() const { return m_totals.notable; } ///< of all but tips
    bool hasMore() const { return m_hasMore; }            ///< than the limit lets be shown

    /// Never shows the insight with this id; the totals count it all the same.
    void leaveOut(std::string insightID);

    /// Does what the insight proposes.
    Q_INVOKABLE void perform(int row);

Q_SIGNALS:
    void limitChanged();
    void totalsChanged();
    void hasMoreChanged();

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const Insight& insight) const override { return insight.id; }

private:
    struct Totals {
        int all = 0;
        int notable = 0;
        bool operator==(const Totals&) const = default;
    };

    void takeReport();
    void showFirst(const Records& insights);

    QPointer<AppModel> m_model;
    int m_limit = -1;
    std::optional<std::string> m_leftOut; ///< an insight's id
    Totals m_totals;
    bool m_hasMore = false;
};

} // namespace tidewright
