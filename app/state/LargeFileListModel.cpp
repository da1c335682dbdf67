#include "app/state/LargeFileListModel.h"

namespace tidewright {

LargeFileListModel::LargeFileListModel(AppModel& model, std::function<Date()> now, QObject* parent)
    : FoundListModel(model, {tr("File"), tr("Modified"), tr("Size")}, std::move(now), parent) {
    connect(&model, &AppModel::reportChanged, this, &LargeFileListModel::takeReport);
    takeReport();
}

void LargeFileListModel::takeReport() {
    std::vector<Found> found;
    if (const auto report = model()->report())
        for (const LargeFile& file : report->largeFiles)
            found.push_back({.url = file.url,
                             .name = file.url.lastPathComponent(),
                             .date = file.modified,
                             .addedOn = std::nullopt,
                             .sizeBytes = file.sizeBytes});
    showFound(std::move(found));
    setEmpty(emptyText());
}

EmptyText LargeFileListModel::emptyText() const {
    if (!model()->report())
        return {tr("Not scanned yet"), QStringLiteral("app.dashed"),
                tr("Scan your Mac to see apps you haven't used lately.")};
    if (!rows().empty())
        return {};
    return {{}, QStringLiteral("doc"), tr("No single file over 1 GB was found in your folders.")};
}

} // namespace tidewright
