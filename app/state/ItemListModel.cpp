#include "app/state/ItemListModel.h"

#include "app/state/Folding.h"
#include "app/state/ItemTexts.h"
#include "core/support/Collation.h"
#include "core/support/Text.h"

#include <algorithm>

namespace tidewright {

namespace {

/// What is searched of an item; the byte between the texts occurs in none.
std::string searchedText(const ScanItem& item, const Folding& fold) {
    constexpr char between = '\xff';
    std::string text = fold(item.title);
    for (const std::string_view each :
         {std::string_view(item.group), item.version ? std::string_view(*item.version) : "",
          std::string_view(item.reason)})
        text += between + fold(each);
    return text;
}

bool passes(const ScanItem& item, ItemListModel::Filter filter) {
    return filter == ItemListModel::Filter::all ||
           isSelectable(item.decision) == (filter == ItemListModel::Filter::cleanable);
}

} // namespace

ItemListModel::ItemListModel(AppModel& model,
                             Category category,
                             std::function<Date()> now,
                             QObject* parent)
    : RecordModel(
          QMetaEnum::fromType<Role>(), {QString(), tr("Item"), tr("Size"), tr("Status")}, parent),
      m_model(&model),
      m_category(category),
      m_now(std::move(now)) {
    connect(&model, &AppModel::reportChanged, this, &ItemListModel::takeReport);
    connect(&model, &AppModel::selectionChanged, this, &ItemListModel::takeSelection);
    takeReport();
}

QString ItemListModel::title() const { return shownText(tidewright::title(m_category)); }

QString ItemListModel::symbolName() const { return shownText(tidewright::symbolName(m_category)); }

QString ItemListModel::description() const { return shownText(summary(m_category)); }

void ItemListModel::setFilter(Filter filter) {
    if (m_filter == filter)
        return;
    m_filter = filter;
    refilter();
    Q_EMIT filterChanged();
}

void ItemListModel::setSearch(const QString& search) {
    if (m_search == search)
        return;
    m_search = search;
    m_needle = Folding()(search.toStdString());
    refilter();
    Q_EMIT searchChanged();
}

ItemListModel::Rows ItemListModel::sortedRows() {
    m_known.order = ordered(*records(), m_known);
    return filtered(*records(), m_known);
}

void ItemListModel::setSelected(int row, bool on) {
    if (!m_model || !hasRow(row))
        return;
    const Records kept = records(); // whoever hears of it may bring another report
    m_toggled = rows()[static_cast<std::size_t>(row)];
    m_model->setSelected(record(row), on);
    m_toggled.reset();
}

bool ItemListModel::startsWith(std::size_t position, const std::string& beginning) {
    prepareSearch(*records(), m_known);
    return m_known.searched[position].starts_with(beginning); // with the title, which comes first
}

void ItemListModel::reveal(int row) {
    if (m_model && hasRow(row))
        m_model->reveal(record(row).urls);
}

QVariant ItemListModel::value(std::size_t position, int role) const {
    const ScanItem& item = (*records())[position];
    switch (static_cast<Role>(role)) {
    case Role::itemID:
        return QByteArray::fromStdString(item.id);
    case Role::title:
        return shownText(item.title);
    case Role::version:
        return shownText(item.version.value_or(""));
    case Role::group:
        return shownText(item.group);
    case Role::sizeBytes:
        return QVariant::fromValue<qint64>(item.sizeBytes);
    case Role::sizeText:
        return tidewright::sizeText(item.sizeBytes);
    case Role::decision:
        return shownText(rawValue(item.decision));
    case Role::decisionTitle:
        return tidewright::decisionTitle(item.decision);
    case Role::decisionSymbol:
        return tidewright::decisionSymbol(item.decision);
    case Role::risk:
        return shownText(rawValue(item.risk));
    case Role::riskTitle:
        return shownText(tidewright::title(item.risk));
    case Role::reason:
        return shownText(item.reason);
    case Role::whatItIs:
        return shownText(item.whatItIs);
    case Role::afterEffect:
        return shownText(item.afterEffect);
    case Role::methodLabel:
        return shownText(item.method.label());
    case Role::howItIsCleaned:
        return tidewright::howItIsCleaned(item.method);
    case Role::manualInstructions:
        return tidewright::manualInstructions(item.method);
    case Role::inUse:
        return inUseText(item);
    case Role::lastUsed:
        return shownDate(item.lastUsed);
    case Role::locationsTitle:
        return tidewright::locationsTitle(item);
    case Role::locations:
        return firstLocations(item);
    case Role::moreLocations:
        return tidewright::moreLocations(item);
    case Role::selected:
        return static_cast<bool>(m_known.isSelected[position]);
    case Role::selectable:
        return AppModel::maySelect(item);
    }
    return {};
}

void ItemListModel::takeReport() {
    m_toggled.reset();
    takeSelection();
    const auto report = m_model->report();
    m_isScanned = report != nullptr;
    const Records items = recordsOf(report, &ScanReport::items);
    Known known;
    known.order = ordered(*items, known);
    Rows rows = filtered(*items, known);
    const auto focusedThen = positionIn(items, focusedPosition());
    show(items, std::move(rows), [&] {
        m_known = std::move(known);
        m_known.isSelected = selectionOf(*items);
        moveFocused(focusedThen);
    });
    setFigures(figuresOfCategory());
    rowsChanged();
}

/// Tells of the rows whose items are selected now and were not, or the other way round.
void ItemListModel::takeSelection() {
    const auto toggled = std::exchange(m_toggled, std::nullopt);
    std::vector<bool> isChanged(records()->size());
    Figures figures = m_figures;
    for (const std::size_t position : toggled ? Rows{*toggled} : m_known.order) {
        const ScanItem& item = (*records())[position];
        const bool isSelected = m_model->isSelected(item.id);
        if (m_known.isSelected[position] == isSelected)
            continue;
        m_known.isSelected[position] = isSelected;
        isChanged[position] = true;
        figures.selected.bytes += isSelected ? item.sizeBytes : -item.sizeBytes;
    }
    tellChanged([&](int row) { return isChanged[rows()[static_cast<std::size_t>(row)]]; },
                {static_cast<int>(Role::selected)});
    setFigures(figures);
    updateDetails();
}

void ItemListModel::refilter() {
    reset(filtered(*records(), m_known));
    rowsChanged();
}

void ItemListModel::rowsChanged() {
    Figures figures = m_figures;
    figures.shown.bytes = 0;
    for (const std::size_t position : rows())
        figures.shown.bytes += (*records())[position].sizeBytes;
    setFigures(figures);
    updateFocus();
    setEmpty(emptyText());
}

void ItemListModel::updateFocus() {
    TableModel::updateFocus();
    updateDetails();
}

void ItemListModel::updateDetails() {
    ItemDetails details;
    if (const auto position = focusedPosition(); position && focusedRow() >= 0)
        details = ItemDetails::of((*records())[*position], m_known.isSelected[*position], m_now());
    if (m_details == details)
        return;
    m_details = std::move(details);
    Q_EMIT focusedChanged();
}

void ItemListModel::setFigures(const Figures& figures) {
    if (m_figures == figures)
        return;
    m_figures = figures;
    Q_EMIT figuresChanged();
}

EmptyText ItemListModel::emptyText() const {
    if (!m_isScanned)
        return {tr("Not scanned yet"), symbolName(),
                tr("Scan your Mac to see %1 items.").arg(title())};
    if (m_known.order.empty())
        return {tr("Nothing here"), QStringLiteral("checkmark.circle"),
                tr("No %1 items were found.").arg(title())};
    if (rows().empty())
        return {{}, {}, tr("No items match this filter.")};
    return {};
}

ItemListModel::Rows ItemListModel::ordered(const std::vector<ScanItem>& items, Known& known) const {
    Rows positions;
    for (std::size_t position = 0; position < items.size(); ++position)
        if (items[position].category == m_category)
            positions.push_back(position);
    if (sortColumn() == static_cast<int>(Column::item) && known.titleKeys.empty()) {
        known.titleKeys.resize(items.size());
        for (const std::size_t position : positions)
            known.titleKeys[position] = sortKey(items[position].title);
    }
    const auto isBelow = [&](std::size_t left, std::size_t right) {
        const ScanItem& a = items[left];
        const ScanItem& b = items[right];
        switch (static_cast<Column>(sortColumn())) {
        case Column::item:
            return known.titleKeys[left] < known.titleKeys[right];
        case Column::size:
            return a.sizeBytes < b.sizeBytes;
        case Column::status:
            return a.decision < b.decision;
        case Column::selected:
            break;
        }
        return false;
    };
    arrange(positions, isBelow);
    return positions;
}

ItemListModel::Rows ItemListModel::filtered(const std::vector<ScanItem>& items,
                                            Known& known) const {
    if (!m_needle.empty())
        prepareSearch(items, known);
    Rows rows;
    std::ranges::copy_if(known.order, std::back_inserter(rows), [&](std::size_t position) {
        return passes(items[position], m_filter) &&
               (m_needle.empty() || contains(known.searched[position], m_needle));
    });
    return rows;
}

void ItemListModel::prepareSearch(const std::vector<ScanItem>& items, Known& known) {
    if (!known.searched.empty())
        return;
    const Folding fold;
    known.searched.resize(items.size());
    for (const std::size_t position : known.order)
        known.searched[position] = searchedText(items[position], fold);
}

std::vector<bool> ItemListModel::selectionOf(const std::vector<ScanItem>& items) const {
    std::vector<bool> isSelected(items.size());
    for (const std::size_t position : m_known.order)
        isSelected[position] = m_model->isSelected(items[position].id);
    return isSelected;
}

ItemListModel::Figures ItemListModel::figuresOfCategory() const {
    Figures figures = m_figures;
    figures.total = static_cast<int>(m_known.order.size());
    figures.selected = figures.optional = figures.kept = {};
    for (const std::size_t position : m_known.order) {
        const ScanItem& item = (*records())[position];
        if (m_known.isSelected[position])
            figures.selected.bytes += item.sizeBytes;
        if (item.decision == Decision::ask)
            figures.optional.bytes += item.sizeBytes;
        if (item.decision == Decision::keep)
            figures.kept.bytes += item.sizeBytes;
    }
    return figures;
}

} // namespace tidewright
