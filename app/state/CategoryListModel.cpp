#include "app/state/CategoryListModel.h"

namespace tidewright {

namespace {

bool isTidy(const CategoryTile& tile) { return tile.reclaimable < 1; }

} // namespace

CategoryListModel::CategoryListModel(AppModel& model, QObject* parent)
    : RecordModel(QMetaEnum::fromType<Role>(), {}, parent),
      m_model(&model) {
    connect(&model, &AppModel::reportChanged, this, &CategoryListModel::takeReport);
    connect(&model, &AppModel::selectionChanged, this, &CategoryListModel::update);
    takeReport();
}

void CategoryListModel::open(int row) {
    if (m_model && hasRow(row))
        m_model->setDestination(Destination::category(record(row).category));
}

QVariant CategoryListModel::value(std::size_t position, int role) const {
    const CategoryTile& tile = (*records())[position];
    const QString title = shownText(tidewright::title(tile.category));
    switch (static_cast<Role>(role)) {
    case Role::category:
        return shownText(rawValue(tile.category));
    case Role::title:
        return title;
    case Role::symbolName:
        return shownText(symbolName(tile.category));
    case Role::headline:
        return tidewright::isTidy(tile) ? tr("All tidy") : sizeText(tile.reclaimable);
    case Role::isTidy:
        return tidewright::isTidy(tile);
    case Role::caption:
        return (tidewright::isTidy(tile) ? tr("%1 kept on purpose") : tr("selected · %1 kept"))
            .arg(sizeText(tile.kept));
    case Role::hint:
        return tr("Shows %1 items").arg(title);
    }
    return {};
}

void CategoryListModel::takeReport() {
    m_kept.assign(allCases<Category>().size(), 0);
    if (m_model->report())
        for (const ScanItem& item : m_model->report()->items)
            if (item.decision == Decision::keep)
                m_kept.at(static_cast<std::size_t>(item.category)) += item.sizeBytes;
    update();
}

void CategoryListModel::update() {
    std::vector<CategoryTile> tiles;
    for (const Category category : allCases<Category>())
        tiles.push_back({category, m_model->reclaimable(category),
                         m_kept.at(static_cast<std::size_t>(category))});
    const auto shown = std::make_shared<const std::vector<CategoryTile>>(std::move(tiles));
    show(shown, allOf(shown));
}

} // namespace tidewright
