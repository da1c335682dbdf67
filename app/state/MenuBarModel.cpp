#include "app/state/MenuBarModel.h"

#include "core/support/RelativeDate.h"

#include <fmt/format.h>

#include <cmath>

namespace tidewright {

namespace {

constexpr int insightCount = 3;
constexpr const char* allIsWell = "healthy"; // the id of the insight that says so
/// The text of a time that has just passed changes every second.
constexpr std::chrono::seconds clockInterval(1);

} // namespace

QString compactText(Int64 bytes) {
    const double gigabytes = static_cast<double>(bytes) / static_cast<double>(gigabyte);
    return shownText(gigabytes >= 10 ? fmt::format("{:.0f} GB", std::round(gigabytes))
                                     : fmt::format("{:.1f} GB", gigabytes));
}

MenuBarModel::MenuBarModel(AppModel& model, std::function<Date()> now, QObject* parent)
    : QObject(parent),
      m_model(&model),
      m_now(std::move(now)),
      m_insights(model) {
    m_insights.leaveOut(allIsWell);
    m_insights.setLimit(insightCount);
    const DiskMonitor& monitor = model.monitor();
    connect(&monitor, &DiskMonitor::diskChanged, this, &MenuBarModel::takeStatus);
    connect(&monitor, &DiskMonitor::healthChanged, this, &MenuBarModel::takeStatus);
    connect(&model.settings(), &SettingsStore::showFreeSpaceInMenuBarChanged, this,
            &MenuBarModel::takeStatus);
    connect(&monitor, &DiskMonitor::trashBytesChanged, this, &MenuBarModel::takeTrash);
    connect(&monitor, &DiskMonitor::lastCheckedChanged, this, &MenuBarModel::takeChecked);
    connect(&model, &AppModel::scanStateChanged, this, &MenuBarModel::takeAction);
    connect(&model, &AppModel::reportChanged, this, &MenuBarModel::takeAction);
    connect(&model, &AppModel::selectionChanged, this, &MenuBarModel::takeAction);
    m_clock.setInterval(clockInterval);
    connect(&m_clock, &QTimer::timeout, this, &MenuBarModel::takeChecked);
    takeStatus();
    takeTrash();
    takeChecked();
    takeAction();
}

void MenuBarModel::setWatched(bool isWatched) {
    if (isWatched == this->isWatched())
        return;
    if (isWatched) {
        takeChecked();
        m_clock.start();
    } else {
        m_clock.stop();
    }
    Q_EMIT isWatchedChanged();
}

void MenuBarModel::takeStatus() {
    const DiskMonitor& monitor = m_model->monitor();
    const std::optional<DiskSpace>& disk = monitor.disk();
    const QString word = shownText(title(monitor.health()));
    Status status;
    status.health = shownText(rawValue(monitor.health()));
    if (disk && m_model->settings().showFreeSpaceInMenuBar())
        status.pillText = compactText(disk->availableBytes);
    status.sentence = status.pillText.isEmpty()
                          ? tr("Tidewright, %1").arg(word)
                          : tr("Tidewright, %1, %2 free").arg(word, status.pillText);
    status.availableText = disk ? sizeText(disk->availableBytes) : tr("–");
    status.availableCaption = tr("available · %1").arg(word);
    if (m_status == status)
        return;
    m_status = std::move(status);
    Q_EMIT statusChanged();
}

void MenuBarModel::takeTrash() {
    const Int64 bytes = m_model->monitor().trashBytes().value_or(0);
    const QString text = bytes >= 1 ? tr("Trash holds %1").arg(sizeText(bytes)) : QString();
    if (std::exchange(m_trashText, text) != text)
        Q_EMIT trashTextChanged();
}

void MenuBarModel::takeChecked() {
    if (!m_model)
        return;
    QString text;
    if (const auto& checked = m_model->monitor().lastChecked())
        text = tr("Checked %1").arg(shownText(relativeDateText(*checked, m_now())));
    if (std::exchange(m_checkedText, text) != text)
        Q_EMIT checkedTextChanged();
}

void MenuBarModel::takeAction() {
    Action action = nextAction();
    if (m_action == action)
        return;
    m_action = std::move(action);
    Q_EMIT actionChanged();
}

MenuBarModel::Action MenuBarModel::nextAction() const {
    if (m_model->isScanning())
        return {QStringLiteral("scanning"), tr("Scanning…")};
    if (!m_model->report() || !m_model->hasSelectedItems())
        return {QStringLiteral("scan"), tr("Scan Now")};
    return {QStringLiteral("review"), tr("Review %1").arg(sizeText(m_model->selectedBytes()))};
}

} // namespace tidewright
