// Past cleanups, newest first, and their chart.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/HistoryChart.h"
#include "app/state/TableModel.h"

namespace tidewright {

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class HistoryListModel : public RecordModel<HistoryEntry, TableModel> {
    Q_OBJECT
    Q_PROPERTY(tidewright::ByteCount totalFreed READ totalFreed NOTIFY entriesChanged)
    Q_PROPERTY(QString cleanups READ cleanups NOTIFY entriesChanged)
    Q_PROPERTY(bool hasChart READ hasChart NOTIFY entriesChanged)
    Q_PROPERTY(double plotWidth READ plotWidth WRITE setPlotWidth NOTIFY plotWidthChanged)
    Q_PROPERTY(double dateWidth READ dateWidth WRITE setDateWidth NOTIFY dateWidthChanged)
    Q_PROPERTY(QStringList sampleDates READ sampleDates CONSTANT)
    Q_PROPERTY(QVariantList dateTicks READ dateTicks NOTIFY dateTicksChanged)
    Q_PROPERTY(QVariantList sizeTicks READ sizeTicks NOTIFY sizeTicksChanged)

public:
    enum class Role {
        entryID = Qt::UserRole,
        date,
        dateText,   ///< day and time of day
        freedBytes, ///< as measured or as estimated, whichever is more
        freedText,
        itemsText, ///< how many items were cleaned, and how many failed
        itemCount,
        failures,
        hasLog,
        barLeft, ///< in shares of the chart's plot, as the next
        barWidth,
        barBottom,
        barHeight,
    };
    Q_ENUM(Role)

    explicit HistoryListModel(AppModel& model, QObject* parent = nullptr);

    ByteCount totalFreed() const { return m_totalFreed; }
    QString cleanups() const; ///< how many there were, in words
    bool hasChart() const { return count() > 1; }

    /// Of the plot and of the widest date below it, in pixels. What the chart is laid out for.
    double plotWidth() const { return m_plotWidth; }
    void setPlotWidth(double width);
    double dateWidth() const { return m_dateWidth; }
    void setDateWidth(double width);
    QStringList sampleDates() const { return HistoryChart::sampleDates(); }
    QVariantList dateTicks() const; ///< of ChartTick, as the next
    QVariantList sizeTicks() const;
    /// The row whose bar a pointer at this place of the plot means, in shares of it; -1: none.
    Q_INVOKABLE int rowAt(double x, double y) const;

    /// Shows the cleanup's log in the file manager.
    Q_INVOKABLE void revealLog(int row);

Q_SIGNALS:
    void entriesChanged();
    void plotWidthChanged();
    void dateWidthChanged();
    void dateTicksChanged();
    void sizeTicksChanged();

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const HistoryEntry& entry) const override { return entry.id; }
    Rows sortedRows() override { return rows(); }
    bool startsWith(std::size_t, const std::string&) override { return false; } // it has no name

private:
    void takeEntries();
    HistoryChart chartOf(const std::vector<HistoryEntry>& entries) const;
    /// To be called when the rows or the room for them have changed.
    void tellChart(const HistoryChart& before);
    void layOut();
    double share(double pixels) const;
    static QString itemsText(const HistoryEntry& entry);

    QPointer<AppModel> m_model;
    ByteCount m_totalFreed;
    double m_plotWidth = 0;
    double m_dateWidth = 0;
    HistoryChart m_chart;
};

} // namespace tidewright
