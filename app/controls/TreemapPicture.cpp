#include "app/controls/TreemapPicture.h"

#include "app/controls/SymbolPicture.h"
#include "app/controls/TickMark.h"

#include <QAccessible>
#include <QLocale>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace tidewright {

namespace {

constexpr double padding = 8; ///< left and right of words
constexpr double paddingAbove = 6;
constexpr double lineSpacing = 1;
constexpr double narrowestWords = 32;
constexpr double tickSize = 14;
constexpr double tickRadius = 4;
constexpr double tickMargin = 6;
constexpr double smallTickMargin = 5;
constexpr double tickSpacing = 2; ///< to words, beyond the padding
constexpr double symbolSize = 11;
constexpr double symbolSpacing = 4;
constexpr double smallestMark = 10; ///< around a current row that is smaller

/// With more, each frame would take too long.
constexpr int mostMoving = 600;

QRectF between(const QRectF& from, const QRectF& to, double share) {
    const auto part = [&](double start, double end) { return start + (end - start) * share; };
    return {part(from.x(), to.x()), part(from.y(), to.y()), part(from.width(), to.width()),
            part(from.height(), to.height())};
}

double shorterSide(const QRectF& place) { return std::min(place.width(), place.height()); }

QHash<QString, QColor> colorsOf(const QVariantMap& colors) {
    QHash<QString, QColor> found;
    for (auto each = colors.begin(); each != colors.end(); ++each)
        found.insert(each.key(), each->value<QColor>());
    return found;
}

QColor colorFor(const QHash<QString, QColor>& colors, const QString& kind) {
    const auto found = colors.constFind(kind);
    return found == colors.constEnd() ? colors.value(QString()) : *found;
}

} // namespace

TreemapPicture::TreemapPicture(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAcceptHoverEvents(true);
    connect(this, &TreemapPicture::rolesChanged, this, &TreemapPicture::invalidate);
    connect(this, &TreemapPicture::fontsChanged, this, [this] {
        m_nameMetrics = QFontMetricsF(m_nameFont);
        m_sizeMetrics = QFontMetricsF(m_sizeFont);
        invalidate();
    });
    connect(this, &TreemapPicture::looksChanged, this, [this] {
        m_symbols.clear();
        m_colors = {colorsOf(m_kindColors), colorsOf(m_grounds), colorsOf(m_tickedGrounds)};
        updateAll();
    });
}

// --- The model

void TreemapPicture::setModel(QAbstractItemModel* model) {
    if (m_model == model)
        return;
    if (m_model)
        m_model->disconnect(this);
    m_model = model;
    if (m_model) {
        using Model = QAbstractItemModel;
        connect(model, &Model::modelReset, this, &TreemapPicture::invalidate);
        connect(model, &Model::layoutChanged, this, &TreemapPicture::invalidate);
        connect(model, &Model::rowsInserted, this, &TreemapPicture::invalidate);
        connect(model, &Model::rowsRemoved, this, &TreemapPicture::invalidate);
        connect(model, &Model::rowsMoved, this, &TreemapPicture::invalidate);
        connect(model, &Model::dataChanged, this, &TreemapPicture::takeData);
        connect(model, &QObject::destroyed, this, &TreemapPicture::invalidate);
    }
    invalidate();
    Q_EMIT modelChanged();
}

void TreemapPicture::invalidate() {
    m_hasOldRows = true;
    m_isStale = true;
    polish();
}

void TreemapPicture::takeData(const QModelIndex& first,
                              const QModelIndex& last,
                              const QList<int>& roles) {
    if (m_hasOldRows)
        return;
    if (roles != QList<int>{m_roles.ticked}) {
        invalidate();
        return;
    }
    for (int row = first.row(); row <= last.row(); ++row) {
        m_rows[static_cast<std::size_t>(row)].isTicked = value(row, m_roles.ticked).toBool();
        if (m_isShown[static_cast<std::size_t>(row)])
            updateRow(row);
    }
    ++m_revision;
    Q_EMIT changed();
}

QVariant TreemapPicture::value(int row, int role) const {
    if (!m_model || role < 0 || row < 0 || row >= m_model->rowCount())
        return {};
    return m_model->data(m_model->index(row, 0), role);
}

QString TreemapPicture::name(int row) const {
    QStringList parts;
    for (const int role : m_roles.names)
        if (const QString part = text(row, role); !part.isEmpty())
            parts << part;
    return parts.join(QLatin1Char(' '));
}

// --- The layout

void TreemapPicture::updatePolish() { layOut(); }

void TreemapPicture::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() == oldGeometry.size())
        return;
    m_isResized = true;
    m_isStale = true;
    polish();
}

void TreemapPicture::layOut() {
    if (!std::exchange(m_isStale, false))
        return;
    const Places former = std::exchange(m_isResized, false) ? Places() : placesByKey();
    if (std::exchange(m_hasOldRows, false)) {
        takeRoles();
        takeRows();
    }
    placeRows();
    takeLabels();
    moveFrom(former);
    ++m_revision;
    updateAll();
    Q_EMIT changed();
    Q_EMIT placesMoved();
    if (m_pointer)
        setHoveredRow(rowAt(m_pointer->x(), m_pointer->y()));
    if (!m_from.empty())
        Q_EMIT moveAsked();
}

void TreemapPicture::takeRoles() {
    m_roles = {};
    if (!m_model)
        return;
    const QHash<int, QByteArray> names = m_model->roleNames();
    const auto number = [&](const QString& name) {
        return name.isEmpty() ? -1 : names.key(name.toUtf8(), -1);
    };
    m_roles.size = number(m_sizeRole);
    m_roles.sizeText = number(m_sizeTextRole);
    for (const QString& each : m_nameRoles)
        m_roles.names << number(each);
    m_roles.key = number(m_keyRole);
    m_roles.kind = number(m_kindRole);
    m_roles.kindTitle = number(m_kindTitleRole);
    m_roles.kindSymbol = number(m_kindSymbolRole);
    m_roles.note = number(m_noteRole);
    m_roles.ticked = number(m_tickedRole);
    m_roles.tickable = number(m_tickableRole);
}

void TreemapPicture::takeRows() {
    const int count = m_model ? m_model->rowCount() : 0;
    m_sizes.resize(static_cast<std::size_t>(count));
    m_rows.assign(m_sizes.size(), {});
    for (int row = 0; row < count; ++row) {
        m_sizes[static_cast<std::size_t>(row)] = value(row, m_roles.size).toLongLong();
        m_rows[static_cast<std::size_t>(row)].isTicked = value(row, m_roles.ticked).toBool();
    }
}

void TreemapPicture::placeRows() {
    // The half of the gap that is left around the outermost places is cut off.
    const QRectF area = boundingRect().adjusted(-gap / 2, -gap / 2, gap / 2, gap / 2);
    m_layout = treemapLayout(m_sizes, boundingRect().isEmpty() ? QRectF() : area, thinnest + gap);
    if (boundingRect().isEmpty())
        m_layout.shown = 0;
    m_isShown.assign(m_sizes.size(), false);
    for (int i = 0; i < m_layout.shown; ++i) {
        const int row = m_layout.order[static_cast<std::size_t>(i)];
        m_isShown[static_cast<std::size_t>(row)] = true;
        m_rows[static_cast<std::size_t>(row)].kind = text(row, m_roles.kind);
    }
}

void TreemapPicture::takeLabels() {
    m_labels.clear();
    for (Row& each : m_rows)
        each.label = -1;
    for (int i = 0; i < m_layout.shown; ++i) {
        const int row = m_layout.order[static_cast<std::size_t>(i)];
        Label label = labelFor(row, drawn(m_layout.places[static_cast<std::size_t>(row)]).size());
        if (label.name.isEmpty())
            continue;
        m_rows[static_cast<std::size_t>(row)].label = static_cast<int>(m_labels.size());
        m_labels.push_back(std::move(label));
    }
    const auto small = static_cast<int>(m_layout.order.size()) - m_layout.shown;
    m_restText =
        small == 1 ? tr("1 smaller item") : tr("%1 smaller items").arg(QLocale().toString(small));
}

TreemapPicture::Label TreemapPicture::labelFor(int row, const QSizeF& size) const {
    const double width = size.width() - 2 * padding;
    const double height = size.height() - 2 * paddingAbove;
    if (width < narrowestWords || height < m_nameMetrics.height())
        return {};
    // Whether it is ticked or not, so that no words move.
    const double beside = isTickable(row) ? tickSize + tickSpacing : 0;
    if (width - beside < narrowestWords)
        return {};
    Label label;
    label.name = m_nameMetrics.elidedText(name(row), Qt::ElideRight, width - beside);
    if (height < m_nameMetrics.height() + lineSpacing + m_sizeMetrics.height())
        return label;
    label.size = text(row, m_roles.sizeText);
    const double sizeWidth = m_sizeMetrics.horizontalAdvance(label.size);
    if (sizeWidth > width)
        label.size.clear();
    else if (sizeWidth + symbolSize + symbolSpacing <= width)
        label.symbolName = text(row, m_roles.kindSymbol);
    return label;
}

// --- Movement

TreemapPicture::Places TreemapPicture::placesByKey() const {
    Places places;
    if (m_keyRole.isEmpty() || m_layout.shown > mostMoving)
        return places;
    for (std::size_t row = 0; row < m_keys.size(); ++row)
        if (m_isShown[row])
            places[m_keys[row]] = shownPlace(static_cast<int>(row));
    return places;
}

/// What is new grows from its middle; what has gone is covered.
void TreemapPicture::moveFrom(const Places& former) {
    m_from.clear();
    m_keys.clear();
    m_share = 1;
    if (m_roles.key < 0 || m_layout.shown > mostMoving)
        return;
    m_keys.resize(m_rows.size());
    std::vector<QRectF> from(m_rows.size());
    bool isMoved = false;
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        if (!m_isShown[row])
            continue;
        m_keys[row] = value(static_cast<int>(row), m_roles.key).toByteArray();
        const QRectF& place = m_layout.places[row];
        const auto found = former.find(m_keys[row]);
        from[row] = found == former.end() ? QRectF(place.center(), QSizeF()) : found->second;
        isMoved = isMoved || from[row] != place;
    }
    if (!former.empty() && isMoved)
        m_from = std::move(from);
}

void TreemapPicture::setShare(double share) {
    if (m_share == share)
        return;
    m_share = share;
    if (m_share >= 1)
        m_from.clear();
    updateAll();
    Q_EMIT placesMoved();
}

// --- Where rows are

bool TreemapPicture::hasPlace(int row) const {
    return row >= 0 && row < count() && !m_layout.places[static_cast<std::size_t>(row)].isNull();
}

bool TreemapPicture::isInRest(int row) const {
    return hasPlace(row) && !m_isShown[static_cast<std::size_t>(row)];
}

QRectF TreemapPicture::drawn(const QRectF& place) const {
    const auto whole = [](double edge) { return std::round(edge); };
    const double left = whole(place.left()) + gap / 2;
    const double top = whole(place.top()) + gap / 2;
    return {left, top, std::max(whole(place.right()) - gap / 2 - left, 0.0),
            std::max(whole(place.bottom()) - gap / 2 - top, 0.0)};
}

QRectF TreemapPicture::shownPlace(int row) const {
    const QRectF& place = m_layout.places[static_cast<std::size_t>(row)];
    if (m_from.empty() || m_share >= 1)
        return place;
    return between(m_from[static_cast<std::size_t>(row)], place, m_share);
}

int TreemapPicture::spokenRow(int index) const {
    const bool isSpoken = index >= 0 && index < spokenCount();
    return isSpoken ? m_layout.order[static_cast<std::size_t>(index)] : -1;
}

QRectF TreemapPicture::placeOf(int row) const {
    return hasPlace(row) ? m_layout.places[static_cast<std::size_t>(row)] : QRectF();
}

QRectF TreemapPicture::markedPlace(int row) const {
    if (!hasPlace(row))
        return {};
    QRectF place = drawn(isInRest(row) ? placeOf(row) : shownPlace(row));
    const double aside = std::max(smallestMark - place.width(), 0.0) / 2;
    const double above = std::max(smallestMark - place.height(), 0.0) / 2;
    place.adjust(-aside, -above, aside, above);
    place.moveLeft(std::clamp(place.left(), 0.0, std::max(width() - place.width(), 0.0)));
    place.moveTop(std::clamp(place.top(), 0.0, std::max(height() - place.height(), 0.0)));
    return place;
}

int TreemapPicture::rowAt(double x, double y) {
    layOut();
    if (!boundingRect().contains(x, y))
        return -1;
    const auto found = std::ranges::find_if(m_layout.order, [&](int row) {
        return m_layout.places[static_cast<std::size_t>(row)].contains(x, y);
    });
    return found == m_layout.order.end() ? -1 : *found;
}

int TreemapPicture::largestRow() {
    layOut();
    return m_layout.order.empty() ? -1 : m_layout.order.front();
}

int TreemapPicture::smallestRow() {
    layOut();
    return m_layout.order.empty() ? -1 : m_layout.order.back();
}

int TreemapPicture::rowBeyond(Qt::Edge edge) {
    layOut();
    if (!hasPlace(m_currentRow))
        return largestRow();
    return treemapNeighbour(m_layout.places, m_currentRow, edge);
}

void TreemapPicture::setCurrentRow(int row) {
    if (m_currentRow == row)
        return;
    m_currentRow = row;
    Q_EMIT currentRowChanged();
    Q_EMIT placesMoved();
}

// --- The pointer

void TreemapPicture::hoverEnterEvent(QHoverEvent* event) { hoverMoveEvent(event); }

void TreemapPicture::hoverMoveEvent(QHoverEvent* event) {
    m_pointer = event->position();
    setHoveredRow(rowAt(m_pointer->x(), m_pointer->y()));
}

void TreemapPicture::hoverLeaveEvent(QHoverEvent*) {
    m_pointer.reset();
    setHoveredRow(-1);
}

void TreemapPicture::setHoveredRow(int row) {
    if (m_hoveredRow == row)
        return;
    updateRow(std::exchange(m_hoveredRow, row));
    updateRow(row);
    Q_EMIT hoveredRowChanged();
}

/// Not by update(): a part that is updated afterwards would take its place.
void TreemapPicture::updateAll() { update(boundingRect().toAlignedRect()); }

void TreemapPicture::updateRow(int row) {
    if (hasPlace(row))
        update((isInRest(row) ? m_layout.rest : shownPlace(row)).toAlignedRect());
}

// --- What is said

bool TreemapPicture::isTicked(int row) const { return value(row, m_roles.ticked).toBool(); }

bool TreemapPicture::isTickable(int row) const { return value(row, m_roles.tickable).toBool(); }

QString TreemapPicture::spokenName(int row) const {
    QStringList parts{name(row), text(row, m_roles.sizeText), text(row, m_roles.kindTitle)};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QString TreemapPicture::note(int row) const { return text(row, m_roles.note); }

QString TreemapPicture::tip(int row) const {
    QStringList figures{text(row, m_roles.sizeText), text(row, m_roles.kindTitle)};
    figures.removeAll(QString());
    QStringList lines{name(row), figures.join(QStringLiteral(" · ")), note(row)};
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}

void TreemapPicture::tellFocus(QQuickItem* item) const {
    QAccessibleEvent event(item, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

// --- The drawing

void TreemapPicture::paint(QPainter* painter) {
    // Of what is hovered or ticked, only that part is drawn anew.
    const QRectF part = painter->hasClipping() ? painter->clipBoundingRect() : boundingRect();
    painter->setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < m_layout.shown; ++i) {
        const int row = m_layout.order[static_cast<std::size_t>(i)];
        if (shownPlace(row).intersects(part))
            paintRow(*painter, row);
    }
    if (m_layout.rest.intersects(part))
        paintRest(*painter);
}

void TreemapPicture::fill(QPainter& painter, const QRectF& place, const QColor& color) const {
    if (shorterSide(place) < 3 * radius) {
        painter.fillRect(place.toRect(), color); // whole pixels are many times quicker
        return;
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(place, radius, radius);
}

void TreemapPicture::paintRow(QPainter& painter, int row) {
    const QRectF place = drawn(shownPlace(row));
    if (place.isEmpty())
        return;
    const Row& shown = m_rows[static_cast<std::size_t>(row)];
    fill(painter, place, colorFor(shown.isTicked ? m_colors.ticked : m_colors.grounds, shown.kind));
    if (row == m_hoveredRow)
        fill(painter, place, m_hoverColor);
    if (shown.isTicked)
        paintTick(painter, place);
    if (shown.label >= 0)
        paintLabel(painter, m_labels[static_cast<std::size_t>(shown.label)], place, row);
}

void TreemapPicture::paintTick(QPainter& painter, const QRectF& place) const {
    const double room = shorterSide(place) - tickSize;
    if (room < 2 * smallTickMargin)
        return;
    const double margin = std::min(tickMargin, room / 2);
    const QRectF box(place.right() - margin - tickSize, place.top() + margin, tickSize, tickSize);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_tickGround);
    painter.drawRoundedRect(box, tickRadius, tickRadius);
    TickMark::paint(painter, box, m_tickColor);
}

void TreemapPicture::paintLabel(QPainter& painter,
                                const Label& label,
                                const QRectF& place,
                                int row) {
    const bool isMoving = m_share < 1;
    if (isMoving) {
        painter.save();
        painter.setClipRect(place, Qt::IntersectClip);
    }
    const double left = place.left() + padding;
    double top = place.top() + paddingAbove;
    painter.setFont(m_nameFont);
    painter.setPen(m_nameColor);
    painter.drawText(QPointF(left, top + m_nameMetrics.ascent()), label.name);
    if (!label.size.isEmpty()) {
        top += m_nameMetrics.height() + lineSpacing;
        double beside = 0;
        if (!label.symbolName.isEmpty()) {
            const QString& kind = m_rows[static_cast<std::size_t>(row)].kind;
            const QImage& image = symbol(label.symbolName, colorFor(m_colors.kinds, kind));
            const double above = std::round((m_sizeMetrics.height() - symbolSize) / 2);
            painter.drawImage(QRectF(left, top + above, symbolSize, symbolSize), image);
            beside = symbolSize + symbolSpacing;
        }
        painter.setFont(m_sizeFont);
        painter.setPen(m_sizeColor);
        painter.drawText(QPointF(left + beside, top + m_sizeMetrics.ascent()), label.size);
    }
    if (isMoving)
        painter.restore();
}

void TreemapPicture::paintRest(QPainter& painter) const {
    const QRectF place = drawn(m_layout.rest);
    if (place.isEmpty())
        return;
    fill(painter, place, m_restColor);
    if (isInRest(m_hoveredRow))
        fill(painter, place, m_hoverColor);
    if (place.width() - 2 * padding < m_sizeMetrics.horizontalAdvance(m_restText) ||
        place.height() - 2 * paddingAbove < m_sizeMetrics.height())
        return;
    painter.setFont(m_sizeFont);
    painter.setPen(m_sizeColor);
    painter.drawText(
        QPointF(place.left() + padding, place.top() + paddingAbove + m_sizeMetrics.ascent()),
        m_restText);
}

const QImage& TreemapPicture::symbol(const QString& name, const QColor& color) {
    const double ratio = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1;
    const int side = static_cast<int>(std::lround(symbolSize * ratio));
    const auto [found, isNew] = m_symbols.try_emplace({name, color.rgb(), side});
    if (isNew)
        found->second = symbolPicture(name, {side, side}, color);
    return found->second;
}

} // namespace tidewright
