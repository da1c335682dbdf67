#include "app/state/PathListModel.h"

#include <algorithm>

namespace tidewright {

PathListModel::PathListModel(AppModel& model,
                             const PathList& list,
                             const QString& emptyText,
                             QObject* parent)
    : RecordModel(QMetaEnum::fromType<Role>(), {}, parent),
      m_model(&model),
      m_list(list),
      m_emptyText(emptyText),
      m_entry(model.environment().home) {
    connect(&model.settings(), list.changed, this, &PathListModel::takePaths);
    takePaths();
}

void PathListModel::takePaths() {
    const auto paths =
        std::make_shared<const std::vector<URL>>((m_model->settings().*m_list.paths)());
    show(paths, allOf(paths));
    setEmpty(paths->empty() ? EmptyText{{}, {}, m_emptyText} : EmptyText{});
}

void PathListModel::remove(int row) {
    if (!m_model || !hasRow(row))
        return;
    std::vector<URL> paths = *records();
    std::erase(paths, URL(record(row)));
    (m_model->settings().*m_list.set)(std::move(paths));
}

void PathListModel::add(const std::vector<URL>& folders) {
    if (!m_model)
        return;
    std::vector<URL> paths = *records();
    for (const URL& folder : folders)
        if (std::ranges::find(paths, folder) == paths.end())
            paths.push_back(folder);
    if (paths.size() > records()->size())
        (m_model->settings().*m_list.set)(std::move(paths));
}

void PathListModel::pick() {
    if (!m_model || m_isPicking)
        return;
    setPicking(true);
    const AppEnvironment& environment = m_model->environment();
    environment.pickFolders({tr("Add Folder").toStdString(), environment.home, m_window()},
                            [self = QPointer(this)](const auto& folders) {
                                if (self)
                                    self->endPicking(folders);
                            });
}

void PathListModel::endPicking(const std::optional<std::vector<URL>>& folders) {
    setPicking(false);
    if (folders)
        return add(*folders);
    m_entry.restart();
    Q_EMIT entryWanted();
}

void PathListModel::setPicking(bool isPicking) {
    if (m_isPicking == isPicking)
        return;
    m_isPicking = isPicking;
    Q_EMIT isPickingChanged();
}

bool PathListModel::addEntry() {
    const auto folder = m_entry.folder();
    if (folder)
        add({*folder});
    return folder.has_value();
}

QVariant PathListModel::value(std::size_t position, int role) const {
    const QString path = shownText((*records())[position].path());
    switch (static_cast<Role>(role)) {
    case Role::path:
        return path;
    case Role::removeText:
        return tr("Remove %1").arg(path);
    }
    return {};
}

} // namespace tidewright
