#include "app/controls/MovingItem.h"

#include <QAbstractAnimation>
#include <QQuickWindow>

#include <chrono>
#include <utility>

namespace tidewright {

namespace {

// A screen may have more frames a second than the 60 that are enough here.
constexpr double shortestFrame = 0.010; // seconds

double steadySeconds() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sinceStart).count();
}

QRectF shownPartOf(const QQuickItem& item) {
    QRectF shown = item.mapRectToScene(item.boundingRect());
    shown &= QRectF({}, item.window()->size());
    for (const QQuickItem* ancestor = item.parentItem(); ancestor != nullptr;
         ancestor = ancestor->parentItem()) {
        if (ancestor->clip())
            shown &= ancestor->mapRectToScene(ancestor->clipRect());
    }
    return shown;
}

bool isClear(const QQuickItem* item) {
    for (; item != nullptr; item = item->parentItem())
        if (item->opacity() <= 0)
            return true;
    return false;
}

} // namespace

/// Goes by the rhythm of Qt's animations, which is that of the window's frames.
class MovingItem::Ticks : public QAbstractAnimation {
public:
    explicit Ticks(MovingItem& item) : m_item(item) {}
    int duration() const override { return -1; }

protected:
    void updateCurrentTime(int) override { m_item.tick(); }

private:
    MovingItem& m_item;
};

MovingItem::MovingItem(QQuickItem* parent)
    : QQuickPaintedItem(parent),
      m_clock(steadySeconds),
      m_ticks(std::make_unique<Ticks>(*this)) {
    followWindow(window());
}

MovingItem::~MovingItem() { disconnect(m_frames); }

void MovingItem::setReduceMotion(bool reduceMotion) {
    if (reduceMotion == m_reduceMotion)
        return;
    m_reduceMotion = reduceMotion;
    Q_EMIT reduceMotionChanged();
    updateMotion();
    update();
}

void MovingItem::setClock(Clock clock) { m_clock = std::move(clock); }

bool MovingItem::canBeSeen() const {
    if (window() == nullptr || !isVisible() || !window()->isExposed())
        return false;
    return !window()->windowStates().testFlag(Qt::WindowMinimized) &&
           !shownPartOf(*this).isEmpty() && !isClear(this);
}

void MovingItem::updateMotion() {
    const bool isSeen = canBeSeen();
    if (isSeen && !std::exchange(m_isSeen, isSeen))
        appeared();
    m_isSeen = isSeen;

    const bool isMoving = m_isSeen && !m_reduceMotion && wantsToMove();
    if (isMoving == m_isMoving)
        return;
    m_isMoving = isMoving;
    if (isMoving)
        m_ticks->start();
    else
        m_ticks->stop();
    Q_EMIT movingChanged();
}

void MovingItem::tick() {
    updateMotion();
    const double time = steadySeconds();
    if (!m_isMoving || time - m_drawnAt < shortestFrame)
        return;
    m_drawnAt = time;
    update();
}

void MovingItem::followWindow(QQuickWindow* window) {
    disconnect(m_frames);
    // It comes to be seen, by scrolling for example, only where the window is drawn anew.
    if (window != nullptr)
        m_frames = connect(window, &QQuickWindow::afterAnimating, this, &MovingItem::updateMotion);
}

void MovingItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemSceneChange)
        followWindow(data.window);
    if (change == ItemSceneChange || change == ItemVisibleHasChanged)
        updateMotion();
}

} // namespace tidewright
