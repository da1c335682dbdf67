// What the orb's animation costs: the processor time of a window that shows nothing else, drawn by
// the processor on no screen.
//
//     orb-bench [seconds]                      at 100 %
//     QT_SCALE_FACTOR=2 orb-bench [seconds]    at 200 %
#include "app/controls/DiskOrb.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>
#include <fmt/format.h>

#include <cstdlib>
#include <ctime>

namespace {

void passSeconds(double seconds) {
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication application(argumentCount, arguments);
    const double seconds = argumentCount > 1 ? std::atof(arguments[1]) : 5;

    QQuickWindow window;
    window.resize(1180, 760);
    tidewright::DiskOrb orb(window.contentItem());
    orb.setSize({210, 210});
    orb.setUsedFraction(0.74);
    int frames = 0;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&] { ++frames; });
    window.show();
    passSeconds(2); // until it is full

    const auto measure = [&](const char* what) {
        frames = 0;
        const std::clock_t before = std::clock();
        QElapsedTimer timer;
        timer.start();
        passSeconds(seconds);
        const double passed = static_cast<double>(timer.elapsed()) / 1000;
        const double used = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
        fmt::print("{} at {} x: {:.1f} frames a second, {:.2f} % of one core\n", what,
                   window.effectiveDevicePixelRatio(), frames / passed, 100 * used / passed);
    };
    measure("waves");
    orb.setReduceMotion(true);
    passSeconds(0.2);
    measure("at rest");
    return 0;
}
