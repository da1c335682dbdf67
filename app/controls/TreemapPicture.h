// The rows of a model as a treemap: where each stands, what is drawn there, and what a reader is
// told of it.
#pragma once

#include "app/controls/TreemapLayout.h"

#include <QAbstractItemModel>
#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <algorithm>
#include <map>
#include <optional>
#include <tuple>

namespace tidewright {

/// Main thread. Changes of the model are taken over all at once before the next frame; until then
/// it shows, and answers bindings, as before. What the user does finds it up to date.
///
/// Rows whose places are too thin to be seen are drawn together. A row without any bytes has no
/// place.
class TreemapPicture : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QAbstractItemModel* model READ model WRITE setModel NOTIFY modelChanged)
    /// Names of roles. Those that the model does not have, or that are empty, show nothing.
    Q_PROPERTY(QString sizeRole MEMBER m_sizeRole NOTIFY rolesChanged)
    Q_PROPERTY(QString sizeTextRole MEMBER m_sizeTextRole NOTIFY rolesChanged)
    Q_PROPERTY(QStringList nameRoles MEMBER m_nameRoles NOTIFY rolesChanged) ///< one after another
    Q_PROPERTY(QString keyRole MEMBER m_keyRole NOTIFY rolesChanged)   ///< to know a row again
    Q_PROPERTY(QString kindRole MEMBER m_kindRole NOTIFY rolesChanged) ///< a key of the colours
    Q_PROPERTY(QString kindTitleRole MEMBER m_kindTitleRole NOTIFY rolesChanged)
    Q_PROPERTY(QString kindSymbolRole MEMBER m_kindSymbolRole NOTIFY rolesChanged)
    Q_PROPERTY(QString noteRole MEMBER m_noteRole NOTIFY rolesChanged)
    Q_PROPERTY(QString tickedRole MEMBER m_tickedRole NOTIFY rolesChanged)
    Q_PROPERTY(QString tickableRole MEMBER m_tickableRole NOTIFY rolesChanged)

    /// By kind; "" is for any other.
    Q_PROPERTY(QVariantMap kindColors MEMBER m_kindColors NOTIFY looksChanged)
    Q_PROPERTY(QVariantMap grounds MEMBER m_grounds NOTIFY looksChanged)
    Q_PROPERTY(QVariantMap tickedGrounds MEMBER m_tickedGrounds NOTIFY looksChanged)
    Q_PROPERTY(QColor hoverColor MEMBER m_hoverColor NOTIFY looksChanged) ///< over a ground
    Q_PROPERTY(QColor restColor MEMBER m_restColor NOTIFY looksChanged)
    Q_PROPERTY(QColor nameColor MEMBER m_nameColor NOTIFY looksChanged)
    Q_PROPERTY(QColor sizeColor MEMBER m_sizeColor NOTIFY looksChanged)
    Q_PROPERTY(QColor tickGround MEMBER m_tickGround NOTIFY looksChanged)
    Q_PROPERTY(QColor tickColor MEMBER m_tickColor NOTIFY looksChanged)
    Q_PROPERTY(QFont nameFont MEMBER m_nameFont NOTIFY fontsChanged)
    Q_PROPERTY(QFont sizeFont MEMBER m_sizeFont NOTIFY fontsChanged)

    Q_PROPERTY(double cornerRadius MEMBER radius CONSTANT)
    Q_PROPERTY(int count READ count NOTIFY changed)       ///< of the rows
    Q_PROPERTY(bool isBlank READ isBlank NOTIFY changed)  ///< no row has a place
    Q_PROPERTY(int revision READ revision NOTIFY changed) ///< another one whenever anything changes
    /// How many of the largest rows a reader finds one by one; none of those in the rest.
    Q_PROPERTY(int spokenCount READ spokenCount NOTIFY changed)

    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow NOTIFY currentRowChanged)
    /// As it is to be marked, large enough to be seen; null where the current row has no place.
    Q_PROPERTY(QRectF currentPlace READ currentPlace NOTIFY placesMoved)
    Q_PROPERTY(int hoveredRow READ hoveredRow NOTIFY hoveredRowChanged)
    Q_PROPERTY(QRectF hoveredPlace READ hoveredPlace NOTIFY hoveredRowChanged)
    /// How far places have come from where they were to where they are.
    Q_PROPERTY(double share READ share WRITE setShare NOTIFY placesMoved)

public:
    static constexpr int mostSpoken = 40;
    static constexpr double gap = 2;
    static constexpr double radius = 4;
    static constexpr double thinnest = 2; ///< what is narrower or lower is drawn with the rest

    explicit TreemapPicture(QQuickItem* parent = nullptr);

    QAbstractItemModel* model() const { return m_model; }
    void setModel(QAbstractItemModel* model);

    int count() const { return static_cast<int>(m_layout.places.size()); }
    bool isBlank() const { return m_layout.order.empty(); }
    int revision() const { return m_revision; }
    int spokenCount() const { return std::min(m_layout.shown, mostSpoken); }
    int currentRow() const { return m_currentRow; }
    void setCurrentRow(int row);
    QRectF currentPlace() const { return markedPlace(m_currentRow); }
    int hoveredRow() const { return m_hoveredRow; }
    QRectF hoveredPlace() const { return markedPlace(m_hoveredRow); }
    double share() const { return m_share; }
    void setShare(double share);

    /// -1 where there is none.
    Q_INVOKABLE int rowAt(double x, double y);
    Q_INVOKABLE int largestRow();
    Q_INVOKABLE int smallestRow();
    /// The row beyond that edge of the current one; the largest where no row is current.
    Q_INVOKABLE int rowBeyond(Qt::Edge edge);

    /// -1 beyond their count.
    Q_INVOKABLE int spokenRow(int index) const;
    /// Null where the row has none.
    Q_INVOKABLE QRectF placeOf(int row) const;
    Q_INVOKABLE bool isTicked(int row) const;
    Q_INVOKABLE bool isTickable(int row) const;
    /// Name, size and kind, as a reader says it.
    Q_INVOKABLE QString spokenName(int row) const;
    Q_INVOKABLE QString note(int row) const;
    /// What is shown to whom the pointer rests on it.
    Q_INVOKABLE QString tip(int row) const;
    /// Tells readers that the focus, which stays with this item, means something else now.
    Q_INVOKABLE void tellFocus(QQuickItem* item) const;

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void modelChanged();
    void rolesChanged();
    void looksChanged();
    void fontsChanged();
    void changed();
    void currentRowChanged();
    void hoveredRowChanged();
    void placesMoved();
    /// Rows have other places than before: the share is to go from 0 to 1.
    void moveAsked();

protected:
    void updatePolish() override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverMoveEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;

private:
    /// What a row looks like; those in the rest have no label.
    struct Row {
        QString kind;
        bool isTicked = false;
        int label = -1;
    };
    /// The words in a place that has room for them.
    struct Label {
        QString name;
        QString size; ///< empty where there is only room for the name
        QString symbolName;
    };
    /// The numbers of the roles; -1 for those that the model does not have.
    struct Roles {
        int size = -1;
        int sizeText = -1;
        QList<int> names;
        int key = -1;
        int kind = -1;
        int kindTitle = -1;
        int kindSymbol = -1;
        int note = -1;
        int ticked = -1;
        int tickable = -1;
    };
    /// By kind, as they are looked up most quickly.
    struct Colors {
        QHash<QString, QColor> kinds;
        QHash<QString, QColor> grounds;
        QHash<QString, QColor> ticked;
    };
    using Places = std::map<QByteArray, QRectF>;

    void invalidate();
    void layOut();
    void takeRoles();
    void takeRows();
    void placeRows();
    void takeLabels();
    Label labelFor(int row, const QSizeF& size) const;
    void takeData(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles);
    Places placesByKey() const;
    void moveFrom(const Places& former);
    void setHoveredRow(int row);
    void updateAll();
    void updateRow(int row);

    QVariant value(int row, int role) const;
    QString text(int row, int role) const { return value(row, role).toString(); }
    QString name(int row) const;
    bool hasPlace(int row) const;
    bool isInRest(int row) const;
    /// Without its share of the gap, on whole pixels.
    QRectF drawn(const QRectF& place) const;
    QRectF shownPlace(int row) const;
    QRectF markedPlace(int row) const;

    void paintRow(QPainter& painter, int row);
    void paintTick(QPainter& painter, const QRectF& place) const;
    void paintLabel(QPainter& painter, const Label& label, const QRectF& place, int row);
    void paintRest(QPainter& painter) const;
    void fill(QPainter& painter, const QRectF& place, const QColor& color) const;
    const QImage& symbol(const QString& name, const QColor& color);

    QPointer<QAbstractItemModel> m_model;
    QString m_sizeRole = QStringLiteral("sizeBytes");
    QString m_sizeTextRole = QStringLiteral("sizeText");
    QStringList m_nameRoles;
    QString m_keyRole;
    QString m_kindRole;
    QString m_kindTitleRole;
    QString m_kindSymbolRole;
    QString m_noteRole;
    QString m_tickedRole;
    QString m_tickableRole;
    QVariantMap m_kindColors;
    QVariantMap m_grounds;
    QVariantMap m_tickedGrounds;
    QColor m_hoverColor = Qt::transparent;
    QColor m_restColor = Qt::transparent;
    QColor m_nameColor = Qt::black;
    QColor m_sizeColor = Qt::black;
    QColor m_tickGround = Qt::black;
    QColor m_tickColor = Qt::white;
    QFont m_nameFont;
    QFont m_sizeFont;
    Colors m_colors;
    QFontMetricsF m_nameMetrics{m_nameFont};
    QFontMetricsF m_sizeMetrics{m_sizeFont};

    bool m_isStale = true;    ///< there is something to lay out
    bool m_hasOldRows = true; ///< the model has changed
    bool m_isResized = true;  ///< then places don't move, they are elsewhere at once
    int m_revision = 0;
    Roles m_roles;
    TreemapLayout m_layout;
    std::vector<qint64> m_sizes;    ///< by row
    std::vector<bool> m_isShown;    ///< by row: it has a place outside of the rest
    std::vector<QRectF> m_from;     ///< by row, where places move
    std::vector<QByteArray> m_keys; ///< by row, where places may move
    std::vector<Row> m_rows;
    std::vector<Label> m_labels;
    QString m_restText;
    int m_currentRow = -1;
    int m_hoveredRow = -1;
    std::optional<QPointF> m_pointer;
    double m_share = 1;
    /// By name, colour and pixels.
    std::map<std::tuple<QString, QRgb, int>, QImage> m_symbols;
};

} // namespace tidewright
