#include "app/state/LargeFileListModel.h"

#include "core/support/RelativeDate.h"

namespace tidewright {

LargeFileListModel::LargeFileListModel(AppModel& model, std::function<Date()> now, QObject* parent)
    : RecordModel(QMetaEnum::fromType<Role>(), {tr("File"), tr("Modified"), tr("Size")}, parent),
      m_model(&model),
      m_now(std::move(now)) {
    connect(&model, &AppModel::reportChanged, this, &LargeFileListModel::takeReport);
    takeReport();
}

void LargeFileListModel::reveal(int row) {
    if (m_model && hasRow(row))
        m_model->reveal({record(row).url});
}

QVariant LargeFileListModel::value(std::size_t position, int role) const {
    const LargeFile& file = (*records())[position];
    switch (static_cast<Role>(role)) {
    case Role::path:
        return shownText(file.url.path());
    case Role::name:
        return shownText(file.url.lastPathComponent());
    case Role::modified:
        return shownDate(file.modified);
    case Role::modifiedText:
        return file.modified ? shownText(relativeDateText(*file.modified, m_now())) : QString();
    case Role::sizeBytes:
        return QVariant::fromValue<qint64>(file.sizeBytes);
    case Role::sizeText:
        return tidewright::sizeText(file.sizeBytes);
    }
    return {};
}

void LargeFileListModel::takeReport() {
    const Records files = recordsOf(m_model->report(), &ScanReport::largeFiles);
    show(files, allOf(files));
    ByteCount shown;
    for (const LargeFile& file : *files)
        shown.bytes += file.sizeBytes;
    if (m_shown != shown) {
        m_shown = shown;
        Q_EMIT shownChanged();
    }
    setEmpty(emptyText());
}

EmptyText LargeFileListModel::emptyText() const {
    if (!m_model->report())
        return {tr("Not scanned yet"), QStringLiteral("app.dashed"),
                tr("Scan your Mac to see apps you haven't used lately.")};
    if (!rows().empty())
        return {};
    return {{}, QStringLiteral("doc"), tr("No single file over 1 GB was found in your folders.")};
}

} // namespace tidewright
