// A sphere of glass with as much liquid in it as the disk is full.
#pragma once

#include "app/controls/MovingItem.h"
#include "app/controls/OrbLiquid.h"

#include <QImage>
#include <QString>

#include <optional>

namespace tidewright {

/// It fills up from empty when it is first seen, and goes to another level from the one that it
/// shows. Where motion is reduced it stands still at its level.
class DiskOrb : public MovingItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(
        double usedFraction READ usedFraction WRITE setUsedFraction NOTIFY usedFractionChanged)
    /// good, low or critical
    Q_PROPERTY(QString health READ health WRITE setHealth NOTIFY healthChanged)
    Q_PROPERTY(bool isDark READ isDark WRITE setDark NOTIFY darkChanged)
    /// Whether it is drawn anew on every frame.
    Q_PROPERTY(bool running READ isMoving NOTIFY movingChanged)

public:
    explicit DiskOrb(QQuickItem* parent = nullptr);

    double usedFraction() const { return m_transition.to; }
    void setUsedFraction(double fraction);
    QString health() const { return m_health; }
    void setHealth(const QString& health);
    bool isDark() const { return m_isDark; }
    void setDark(bool isDark);

    /// The level that is shown now, and the time of its waves in seconds.
    double level() const;
    double time() const;

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void usedFractionChanged();
    void healthChanged();
    void darkChanged();

protected:
    void appeared() override;

private:
    /// What the pictures below were drawn for.
    struct Look {
        int side = 0; ///< in the pixels of the screen
        bool isDark = false;
        QString health;
        int surface = 0; ///< from the top, in pixels

        bool operator==(const Look&) const = default;
    };

    void preparePictures(const Look& look);

    LevelTransition m_transition;
    std::optional<double> m_start; ///< when it was first seen
    QString m_health = QStringLiteral("good");
    bool m_isDark = false;

    Look m_look;
    QImage m_gloss; ///< in front of everything
    QImage m_empty; ///< the orb without liquid
    QImage m_full;  ///< and with liquid in all of it
};

} // namespace tidewright
