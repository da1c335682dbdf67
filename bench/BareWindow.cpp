// What the window's start is compared with: the least that shows something by Qt Quick.
#include <QGuiApplication>
#include <QQmlApplicationEngine>

int main(int argumentCount, char** arguments) {
    QGuiApplication application(argumentCount, arguments);
    QQmlApplicationEngine engine;
    engine.loadData("import QtQuick\nimport QtQuick.Window\n"
                    "Window { width: 1180; height: 760; visible: true\n"
                    "Text { anchors.centerIn: parent; text: 'Hello' } }");
    return QGuiApplication::exec();
}
