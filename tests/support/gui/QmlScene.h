// A window with QML in it, on no screen, and hands and eyes to try it.
//
//     QmlScene scene;
//     ASSERT_TRUE(scene.load("import Tidewright.Controls; PushButton { text: 'Scan' }", {200,
//     60})); scene.click(scene.named("Scan"));
#pragma once

#include "app/controls/Theme.h"
#include "tests/support/app/LoggedMessages.h"

#include <QImage>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QAccessibleInterface;

namespace tidewright::test {

/// Main thread; one at a time. Every message of Qt while it lives is a failure of the test, unless
/// it was taken.
class QmlScene {
public:
    QmlScene();
    ~QmlScene();
    QmlScene(const QmlScene&) = delete;
    QmlScene& operator=(const QmlScene&) = delete;

    /// To add what the QML needs before it is loaded: image providers, context properties.
    QQmlEngine& engine() { return *m_engine; }
    Theme& theme();

    /// Of QML as text, or of a file. What it makes is a window, or an item that fills one; a window
    /// keeps its own size where none is given. False, and a failure of the test, if it can't be
    /// made.
    bool load(const QByteArray& qml, QSize size = {}, const QVariantMap& properties = {});
    bool load(const QUrl& url, QSize size = {}, const QVariantMap& properties = {});
    /// Of a type of a QML module.
    bool loadFromModule(const char* module,
                        const char* type,
                        QSize size = {},
                        const QVariantMap& properties = {});

    QQuickWindow& window() { return *m_window; }
    /// What was made.
    QObject& root() { return *m_root; }

    /// All items that are shown, also those of popups, parents before children.
    std::vector<QQuickItem*> shownItems() const;
    /// By objectName. Null, and a failure of the test, where none is shown.
    QQuickItem* item(const char* objectName);
    bool hasItem(const char* objectName) const;
    /// By the name that a screen reader says.
    QQuickItem* named(const char* name);
    bool hasNamed(const char* name) const;
    /// Whether a Text shows exactly this, also one that is not said by readers.
    bool hasText(const char* text) const;

    void moveTo(QQuickItem* item);
    void click(QQuickItem* item,
               Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = {});
    void doubleClick(QQuickItem* item);
    void clickAt(QPoint point, Qt::MouseButton button = Qt::LeftButton);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void type(const char* text);
    /// `steps` notches of a wheel, downwards if negative.
    void scroll(QQuickItem* item, int steps);

    /// What a screen reader knows of an item; null where it knows nothing.
    static QAccessibleInterface* accessible(QQuickItem* item);
    /// Has a reader do what it calls `action`, as QAccessibleActionInterface::pressAction(). False,
    /// and a failure of the test, where the item has no such action.
    bool act(QQuickItem* item, const QString& action);
    bool pressByReader(QQuickItem* item);

    /// Whether it holds, now or soon: events are worked off meanwhile.
    static bool wait(const std::function<bool()>& condition, int milliseconds = 5000);
    /// Works off what is due.
    static void settle();

    QImage picture();
    /// The part of the picture that shows the item.
    QImage picture(QQuickItem* item);

    /// All messages since the last time, one a line: they are no failure then.
    std::string takeMessages();

private:
    bool show(class QQmlComponent& component, QSize size, const QVariantMap& properties);
    QQuickItem* find(const std::function<bool(QQuickItem&)>& fits) const;

    std::unique_ptr<LoggedMessages> m_messages;
    std::string m_taken;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQuickWindow> m_ownWindow; ///< around an item
    std::unique_ptr<QObject> m_root;
    QQuickWindow* m_window = nullptr;
};

} // namespace tidewright::test
