// What is drawn anew on every frame while somebody can see it, and not at all otherwise.
#pragma once

#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

namespace tidewright {

/// Main thread. It moves while it wants to and can be seen: it and its window are shown, the window
/// is not minimised, and it is not scrolled out of its surroundings.
class MovingItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ANONYMOUS

    Q_PROPERTY(bool reduceMotion READ reduceMotion WRITE setReduceMotion NOTIFY reduceMotionChanged)

public:
    /// Seconds since any beginning; never goes back.
    using Clock = std::function<double()>;

    explicit MovingItem(QQuickItem* parent = nullptr);
    ~MovingItem() override;

    bool reduceMotion() const { return m_reduceMotion; }
    void setReduceMotion(bool reduceMotion);

    bool isMoving() const { return m_isMoving; }

    /// In place of the system's steady clock.
    void setClock(Clock clock);

Q_SIGNALS:
    void reduceMotionChanged();
    void movingChanged();

protected:
    double now() const { return m_clock(); }
    virtual bool wantsToMove() const { return true; }
    /// To be called when what `wantsToMove` says has changed.
    void updateMotion();
    /// Seen for the first time, or again.
    virtual void appeared() {}

    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    class Ticks;

    bool canBeSeen() const;
    void followWindow(QQuickWindow* window);
    void tick();

    Clock m_clock;
    std::unique_ptr<Ticks> m_ticks;
    QMetaObject::Connection m_frames;
    bool m_reduceMotion = false;
    bool m_isSeen = false;
    bool m_isMoving = false;
    double m_drawnAt = 0; ///< by the system's clock
};

} // namespace tidewright
