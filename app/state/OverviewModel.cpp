#include "app/state/OverviewModel.h"

#include "core/support/DurationText.h"

#include <algorithm>
#include <cmath>

namespace tidewright {

OverviewModel::OverviewModel(AppModel& model, QObject* parent) : QObject(parent), m_model(&model) {
    connect(&model, &AppModel::reportChanged, this, &OverviewModel::takeReport);
    connect(&model, &AppModel::scanStateChanged, this, &OverviewModel::takeScan);
    connect(&model, &AppModel::selectionChanged, this, &OverviewModel::takeFigures);
    connect(&model, &AppModel::hasFullDiskAccessChanged, this, &OverviewModel::takeAccess);
    connect(&model.history(), &HistoryStore::entriesChanged, this, &OverviewModel::takeFigures);
    connect(&model.monitor(), &DiskMonitor::diskChanged, this, &OverviewModel::takeDisk);
    connect(&model.monitor(), &DiskMonitor::healthChanged, this, &OverviewModel::takeDisk);
    takeDisk();
    takeReport();
    takeAccess();
}

QString OverviewModel::scanTitle() const {
    return m_scan.hasReport ? tr("Scan Again") : tr("Scan My Mac");
}

QString OverviewModel::health() const { return shownText(rawValue(m_disk.health)); }

QString OverviewModel::healthTitle() const { return shownText(title(m_disk.health)); }

QString OverviewModel::healthSymbol() const { return shownText(symbolName(m_disk.health)); }

double OverviewModel::usedFraction() const { return m_disk.space.usedFraction(); }

QString OverviewModel::usedText() const { return sizeText(m_disk.space.usedBytes()); }

QString OverviewModel::availableText() const { return sizeText(m_disk.space.availableBytes); }

QString OverviewModel::totalText() const {
    return tr("available of %1").arg(sizeText(m_disk.space.totalBytes));
}

QString OverviewModel::orbLabel() const {
    const int percent = static_cast<int>(std::lround(usedFraction() * 100));
    return tr("Disk %1 percent full, %2").arg(percent).arg(healthTitle());
}

QString OverviewModel::reviewTitle() const {
    return tr("Review & Clean %1").arg(m_figures.selected.text());
}

void OverviewModel::takeReport() {
    m_breakdown = breakdown();
    takeScan();
    takeFigures();
}

void OverviewModel::takeScan() {
    Scan scan;
    scan.hasReport = m_model->report() != nullptr;
    scan.breakdown = m_breakdown;
    const auto& state = m_model->scanState().choice;
    if (const auto* scanning = std::get_if<ScanState::Scanning>(&state)) {
        scan.isRunning = true;
        scan.message = shownText(scanning->progress.message);
        scan.fraction = scanning->progress.fraction;
    } else if (const auto* failed = std::get_if<ScanState::Failed>(&state)) {
        scan.failure = shownText(failed->sentence);
    }
    if (m_scan == scan)
        return;
    m_scan = std::move(scan);
    Q_EMIT scanChanged();
}

QString OverviewModel::breakdown() const {
    const auto& report = m_model->report();
    if (!report)
        return {};
    return tr("Scanned %1 projects in %2")
        .arg(report->projects.size())
        .arg(shownText(durationText(report->duration)));
}

void OverviewModel::takeDisk() {
    const DiskMonitor& monitor = m_model->monitor();
    const Disk disk{.isKnown = monitor.disk().has_value(),
                    .space = monitor.disk().value_or(DiskSpace()),
                    .health = monitor.health()};
    if (m_disk == disk)
        return;
    m_disk = disk;
    Q_EMIT diskChanged();
    updateCapacity();
}

void OverviewModel::takeFigures() {
    const auto& report = m_model->report();
    const Figures figures{.selected = {m_model->selectedBytes()},
                          .optional = {report ? report->optionalBytes() : 0},
                          .freed = {m_model->history().totalFreed()},
                          .hasSelection = m_model->hasSelectedItems()};
    if (m_figures == figures)
        return;
    m_figures = figures;
    Q_EMIT figuresChanged();
    updateCapacity();
}

void OverviewModel::takeAccess() {
    if (m_asksForFullDiskAccess == m_model->asksForFullDiskAccess())
        return;
    m_asksForFullDiskAccess = m_model->asksForFullDiskAccess();
    Q_EMIT asksForFullDiskAccessChanged();
}

void OverviewModel::updateCapacity() {
    const Int64 total = m_disk.space.totalBytes;
    Capacity capacity;
    if (total >= 1)
        capacity.freeableFraction =
            std::clamp(static_cast<double>(m_figures.selected.bytes) / static_cast<double>(total),
                       0.0, usedFraction());
    if (m_disk.isKnown)
        capacity.label = tr("%1 used of %2 %3 selected to free")
                             .arg(usedText(), sizeText(total), m_figures.selected.text());
    if (m_capacity == capacity)
        return;
    m_capacity = std::move(capacity);
    Q_EMIT capacityChanged();
}

} // namespace tidewright
