#include "tests/support/gui/QmlScene.h"

#include "app/controls/SymbolImageProvider.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlExtensionPlugin>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

Q_IMPORT_QML_PLUGIN(Tidewright_ControlsPlugin)

namespace tidewright::test {

namespace {

void collect(QQuickItem* item, std::vector<QQuickItem*>& items) {
    if (!item->isVisible())
        return;
    items.push_back(item);
    for (QQuickItem* child : item->childItems())
        collect(child, items);
}

QString accessibleName(QQuickItem* item) {
    QAccessibleInterface* known = QmlScene::accessible(item);
    return known == nullptr ? QString() : known->text(QAccessible::Name);
}

QPoint centreOf(QQuickItem* item) {
    return item->mapToScene(QRectF({}, item->size()).center()).toPoint();
}

} // namespace

QmlScene::QmlScene()
    : m_messages(std::make_unique<LoggedMessages>()),
      m_engine(std::make_unique<QQmlEngine>()) {
    m_engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine->addImageProvider(SymbolImageProvider::name(), new SymbolImageProvider);
    QQmlComponent module(m_engine.get()); // so that there is a Theme already
    module.setData("import QtQml; import Tidewright.Controls; QtObject {}", {});
}

QmlScene::~QmlScene() {
    if (m_window != nullptr)
        m_window->hide();
    m_root.reset();
    m_ownWindow.reset();
    m_engine.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(takeMessages(), "") << "Qt had something to say";
}

Theme& QmlScene::theme() {
    return *m_engine->singletonInstance<Theme*>(qmlTypeId("Tidewright.Controls", 1, 0, "Theme"));
}

bool QmlScene::load(const QByteArray& qml, QSize size, const QVariantMap& properties) {
    QQmlComponent component(m_engine.get());
    component.setData(qml, QUrl(QStringLiteral("scene.qml")));
    return show(component, size, properties);
}

bool QmlScene::load(const QUrl& url, QSize size, const QVariantMap& properties) {
    QQmlComponent component(m_engine.get(), url);
    return show(component, size, properties);
}

bool QmlScene::loadFromModule(const char* module,
                              const char* type,
                              QSize size,
                              const QVariantMap& properties) {
    const QByteArray qml = QByteArray("import ") + module + "\n" + type + " {}\n";
    return load(qml, size, properties);
}

bool QmlScene::show(QQmlComponent& component, QSize size, const QVariantMap& properties) {
    if (component.isReady()) // Qt 6.4 would crash
        m_root.reset(component.createWithInitialProperties(properties));
    if (m_root == nullptr) {
        ADD_FAILURE() << component.errorString().toStdString();
        return false;
    }
    m_window = qobject_cast<QQuickWindow*>(m_root.get());
    if (m_window == nullptr) {
        auto* item = qobject_cast<QQuickItem*>(m_root.get());
        if (item == nullptr) {
            ADD_FAILURE() << "The QML makes neither a window nor an item.";
            return false;
        }
        m_ownWindow = std::make_unique<QQuickWindow>();
        m_window = m_ownWindow.get();
        m_window->setColor(theme().window());
        if (size.isValid())
            item->setSize(size);
        item->setParentItem(m_window->contentItem());
        m_window->resize(item->size().toSize());
    } else if (size.isValid()) {
        m_window->resize(size);
    }
    m_window->show();
    m_window->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(m_window));
    EXPECT_TRUE(QTest::qWaitForWindowActive(m_window));
    settle();
    return true;
}

std::vector<QQuickItem*> QmlScene::shownItems() const {
    std::vector<QQuickItem*> items;
    if (m_window != nullptr)
        collect(m_window->contentItem(), items);
    return items;
}

QQuickItem* QmlScene::find(const std::function<bool(QQuickItem&)>& fits) const {
    for (QQuickItem* item : shownItems())
        if (fits(*item))
            return item;
    return nullptr;
}

bool QmlScene::hasItem(const char* objectName) const {
    const QString name = QString::fromUtf8(objectName);
    return find([&](QQuickItem& item) { return item.objectName() == name; }) != nullptr;
}

QQuickItem* QmlScene::item(const char* objectName) {
    const QString name = QString::fromUtf8(objectName);
    QQuickItem* found = find([&](QQuickItem& item) { return item.objectName() == name; });
    if (found == nullptr)
        ADD_FAILURE() << "No item \"" << objectName << "\" is shown.";
    return found;
}

bool QmlScene::hasNamed(const char* name) const {
    const QString wanted = QString::fromUtf8(name);
    return find([&](QQuickItem& item) { return accessibleName(&item) == wanted; }) != nullptr;
}

QQuickItem* QmlScene::named(const char* name) {
    const QString wanted = QString::fromUtf8(name);
    QQuickItem* found = find([&](QQuickItem& item) { return accessibleName(&item) == wanted; });
    if (found == nullptr)
        ADD_FAILURE() << "Nothing that is called \"" << name << "\" is shown.";
    return found;
}

bool QmlScene::hasText(const char* text) const {
    const QString wanted = QString::fromUtf8(text);
    return find([&](QQuickItem& item) {
               return item.inherits("QQuickText") && item.property("text").toString() == wanted;
           }) != nullptr;
}

void QmlScene::moveTo(QQuickItem* item) {
    if (item == nullptr)
        return;
    // From beside it: the pointer may be there from another test, and then nothing would move.
    QTest::mouseMove(m_window, centreOf(item) + QPoint(1, 1));
    QTest::mouseMove(m_window, centreOf(item));
    settle();
}

void QmlScene::click(QQuickItem* item, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
    if (item == nullptr)
        return;
    QTest::mouseClick(m_window, button, modifiers, centreOf(item));
    settle();
}

void QmlScene::doubleClick(QQuickItem* item) {
    if (item == nullptr)
        return;
    QTest::mouseDClick(m_window, Qt::LeftButton, {}, centreOf(item));
    settle();
}

void QmlScene::clickAt(QPoint point, Qt::MouseButton button) {
    QTest::mouseClick(m_window, button, {}, point);
    settle();
}

void QmlScene::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(m_window, key, modifiers);
    settle();
}

void QmlScene::type(const char* text) {
    for (const QChar letter : QString::fromUtf8(text))
        QTest::keyClick(m_window, letter.toLatin1());
    settle();
}

void QmlScene::scroll(QQuickItem* item, int steps) {
    if (item == nullptr)
        return;
    constexpr int notch = 120; // in eighths of a degree, as Qt counts
    const QPointF point = centreOf(item);
    QWheelEvent event(point, m_window->mapToGlobal(point), {}, QPoint(0, steps * notch),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_window, &event);
    settle();
}

QAccessibleInterface* QmlScene::accessible(QQuickItem* item) {
    return item == nullptr ? nullptr : QAccessible::queryAccessibleInterface(item);
}

bool QmlScene::act(QQuickItem* item, const QString& action) {
    QAccessibleInterface* known = accessible(item);
    QAccessibleActionInterface* actions = known == nullptr ? nullptr : known->actionInterface();
    if (actions == nullptr || !actions->actionNames().contains(action)) {
        ADD_FAILURE() << "A reader can't do \"" << action.toStdString() << "\".";
        return false;
    }
    actions->doAction(action);
    settle();
    return true;
}

bool QmlScene::pressByReader(QQuickItem* item) {
    return act(item, QAccessibleActionInterface::pressAction());
}

bool QmlScene::wait(const std::function<bool()>& condition, int milliseconds) {
    return QTest::qWaitFor(condition, milliseconds);
}

void QmlScene::settle() { QCoreApplication::processEvents(); }

QImage QmlScene::picture() {
    QImage all = m_window->grabWindow();
    all.setDevicePixelRatio(m_window->effectiveDevicePixelRatio());
    return all;
}

QImage QmlScene::picture(QQuickItem* item) {
    const QImage all = picture();
    const double ratio = all.devicePixelRatio();
    const QRectF part = item->mapRectToScene(QRectF({}, item->size()));
    return all.copy(QRectF(part.topLeft() * ratio, part.size() * ratio).toAlignedRect());
}

std::string QmlScene::takeMessages() {
    const std::string all = m_messages->text();
    return all.substr(std::exchange(m_taken, all).size());
}

} // namespace tidewright::test
