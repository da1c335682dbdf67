// The tests of what is drawn: on no screen, and by the processor alone.
#include <QAccessible>
#include <QGuiApplication>
#include <gtest/gtest.h>

int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication application(argumentCount, arguments);
    QAccessible::setActive(true); // as where a reader listens
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
