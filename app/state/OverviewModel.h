// What the overview says at its top: the scan, the disk, and what was or can be freed.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/RowModel.h"

namespace tidewright {

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class OverviewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasReport READ hasReport NOTIFY scanChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY scanChanged)
    Q_PROPERTY(QString scanMessage READ scanMessage NOTIFY scanChanged)
    Q_PROPERTY(double scanFraction READ scanFraction NOTIFY scanChanged)
    Q_PROPERTY(QString scanFailure READ scanFailure NOTIFY scanChanged)
    Q_PROPERTY(QString scanTitle READ scanTitle NOTIFY scanChanged)
    Q_PROPERTY(QString breakdownSubtitle READ breakdownSubtitle NOTIFY scanChanged)
    Q_PROPERTY(QString health READ health NOTIFY diskChanged)
    Q_PROPERTY(QString healthTitle READ healthTitle NOTIFY diskChanged)
    Q_PROPERTY(QString healthSymbol READ healthSymbol NOTIFY diskChanged)
    Q_PROPERTY(bool isDiskKnown READ isDiskKnown NOTIFY diskChanged)
    Q_PROPERTY(double usedFraction READ usedFraction NOTIFY diskChanged)
    Q_PROPERTY(QString usedText READ usedText NOTIFY diskChanged)
    Q_PROPERTY(QString availableText READ availableText NOTIFY diskChanged)
    Q_PROPERTY(QString totalText READ totalText NOTIFY diskChanged)
    Q_PROPERTY(QString orbLabel READ orbLabel NOTIFY diskChanged)
    Q_PROPERTY(double freeableFraction READ freeableFraction NOTIFY capacityChanged)
    Q_PROPERTY(QString capacityLabel READ capacityLabel NOTIFY capacityChanged)
    Q_PROPERTY(tidewright::ByteCount selected READ selected NOTIFY figuresChanged)
    Q_PROPERTY(tidewright::ByteCount optional READ optional NOTIFY figuresChanged)
    Q_PROPERTY(tidewright::ByteCount freed READ freed NOTIFY figuresChanged)
    Q_PROPERTY(bool hasFreed READ hasFreed NOTIFY figuresChanged)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY figuresChanged)
    Q_PROPERTY(QString reviewTitle READ reviewTitle NOTIFY figuresChanged)
    Q_PROPERTY(
        bool asksForFullDiskAccess READ asksForFullDiskAccess NOTIFY asksForFullDiskAccessChanged)

public:
    explicit OverviewModel(AppModel& model, QObject* parent = nullptr);

    bool hasReport() const { return m_scan.hasReport; }
    bool isScanning() const { return m_scan.isRunning; }
    const QString& scanMessage() const { return m_scan.message; } ///< empty unless it scans
    double scanFraction() const { return m_scan.fraction; }       ///< from 0 to 1
    const QString& scanFailure() const { return m_scan.failure; } ///< empty unless it failed
    QString scanTitle() const;
    /// Of the last scan; empty where there is no report.
    const QString& breakdownSubtitle() const { return m_scan.breakdown; }

    QString health() const; ///< "good", "low" or "critical"
    QString healthTitle() const;
    QString healthSymbol() const;
    bool isDiskKnown() const { return m_disk.isKnown; }
    double usedFraction() const; ///< from 0 to 1; 0 where it is not known
    QString usedText() const;
    QString availableText() const;
    QString totalText() const; ///< what stands below the available size
    QString orbLabel() const;

    /// The part of the disk that the selection takes, at most what is used; 0 where the disk is not
    /// known.
    double freeableFraction() const { return m_capacity.freeableFraction; }
    const QString& capacityLabel() const { return m_capacity.label; }

    ByteCount selected() const { return m_figures.selected; }
    ByteCount optional() const { return m_figures.optional; } ///< of the items to ask about
    ByteCount freed() const { return m_figures.freed; }       ///< by all cleanups
    bool hasFreed() const { return m_figures.freed.bytes >= 1; }
    /// Whether a review has something to show, which may be of no size.
    bool hasSelection() const { return m_figures.hasSelection; }
    QString reviewTitle() const;

    bool asksForFullDiskAccess() const { return m_asksForFullDiskAccess; }

Q_SIGNALS:
    void scanChanged();
    void diskChanged();
    void capacityChanged();
    void figuresChanged();
    void asksForFullDiskAccessChanged();

private:
    struct Scan {
        bool hasReport = false;
        bool isRunning = false;
        QString message;
        double fraction = 0;
        QString failure;
        QString breakdown;
        bool operator==(const Scan&) const = default;
    };
    struct Disk {
        bool isKnown = false;
        DiskSpace space;
        DiskSpace::Health health = DiskSpace::Health::good;
        bool operator==(const Disk&) const = default;
    };
    struct Capacity {
        double freeableFraction = 0;
        QString label;
        bool operator==(const Capacity&) const = default;
    };
    struct Figures {
        ByteCount selected;
        ByteCount optional;
        ByteCount freed;
        bool hasSelection = false;
        bool operator==(const Figures&) const = default;
    };

    void takeReport();
    void takeScan();
    void takeDisk();
    void takeFigures();
    void takeAccess();
    void updateCapacity();
    QString breakdown() const;

    QPointer<AppModel> m_model;
    Scan m_scan;
    QString m_breakdown; ///< of the last scan, which progress does not change
    Disk m_disk;
    Capacity m_capacity;
    Figures m_figures;
    bool m_asksForFullDiskAccess = false;
};

} // namespace tidewright
