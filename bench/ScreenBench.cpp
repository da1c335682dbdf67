// How long one event holds the main thread at most with the real window on it, drawn by the
// processor alone: while 10,000 rows are scrolled through, ticked, sorted and searched, as a table
// and as a map, and while a scan and a cleanup tell of themselves. The target is below 16 ms, a
// frame.
#include "app/screens/AppWindows.h"
#include "tests/support/app/StateTesting.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <ctime>

namespace tidewright::bench {
namespace {

constexpr int itemCount = 10'000;

double threadSeconds() {
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Times each event in time of the processor, since others work on the machine too. The outermost
/// counts: an event may be sent within another.
class TimedApplication : public QGuiApplication {
public:
    using QGuiApplication::QGuiApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        if (m_isInside)
            return QGuiApplication::notify(receiver, event);
        m_isInside = true;
        const double start = threadSeconds();
        const bool result = QGuiApplication::notify(receiver, event);
        const double passed = threadSeconds() - start;
        m_isInside = false;
        times.push_back(passed);
        return result;
    }

    std::vector<double> times;

private:
    bool m_isInside = false;
};

TimedApplication& application() {
    static int count = 1;
    static char name[] = "screen-bench";
    static char* arguments[] = {name, nullptr};
    static TimedApplication instance(count, arguments);
    return instance;
}

void settle() {
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
}

void runUntil(const std::function<bool()>& holds) {
    while (!holds())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// The window on the category's screen, with that many items found.
class Screen {
public:
    Screen() {
        application();
        std::vector<ScanItem> items;
        for (int i = 0; i < itemCount; ++i) {
            const std::string key = std::to_string(i);
            ScanItem item = test::testItem(Category::system, key, 1000 * (i * 7919 % 10'007));
            item.group = fmt::format("Group {}", i / 40);
            item.title = fmt::format("Item {}", i * 7919 % 10'007);
            item.urls = {m_state.home.file(".cache/" + key, "x")};
            items.push_back(std::move(item));
        }
        m_report.items = std::move(items);
        m_state.scanned(m_report);
        m_models = std::make_unique<ScreenModels>(*m_state.model);
        m_windows = std::make_unique<AppWindows>(*m_models);
        m_windows->mainWindow().show();
        m_state.model->setDestinationName(QStringLiteral("system"));
        settle();
        auto* const page = m_windows->mainWindow().property("page").value<QQuickItem*>();
        m_items = page->property("items").value<ItemListModel*>();
        m_items->setFocusedRow(0);
        m_windows->mainWindow().requestActivate();
        runUntil([this] { return m_windows->mainWindow().isActive(); });
        page->forceActiveFocus();
        settle();
        application().times.clear();
    }

    AppModel& model() { return *m_state.model; }
    ItemListModel& items() { return *m_items; }
    void press(Qt::Key key) {
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_windows->mainWindow(), &down);
        settle();
    }

    /// In place of the table.
    void showMap() {
        m_models->showMap(true);
        settle();
        m_windows->mainWindow().property("page").value<QQuickItem*>()->forceActiveFocus();
        settle();
        application().times.clear();
    }
    void moveTo(QPoint point) {
        QMouseEvent move(QEvent::MouseMove, point, point, Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&m_windows->mainWindow(), &move);
        settle();
    }
    void resize(QSize size) {
        m_windows->mainWindow().resize(size);
        settle();
    }

    void report(benchmark::State& state) {
        std::vector<double>& times = application().times;
        std::ranges::sort(times);
        const auto at = [&](double share) {
            return 1000 *
                   times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
        };
        state.counters["longestMilliseconds"] = at(1);
        state.counters["99percent"] = at(0.99);
        state.counters["events"] = static_cast<double>(times.size());
    }

private:
    test::TestState m_state;
    ScanReport m_report;
    std::unique_ptr<ScreenModels> m_models;
    std::unique_ptr<AppWindows> m_windows;
    ItemListModel* m_items = nullptr;
};

void scrollByKeys(benchmark::State& state, Qt::Key key) {
    Screen screen;
    for (auto _ : state) {
        for (int i = 0; i < 200; ++i)
            screen.press(key);
    }
    state.counters["row"] = screen.items().focusedRow();
    screen.report(state);
}

void sort(benchmark::State& state) {
    Screen screen;
    for (auto _ : state) {
        for (int column = 1; column <= 3; ++column) {
            for (int click = 0; click < 3; ++click) {
                screen.items().cycleSort(column);
                settle();
            }
        }
    }
    screen.report(state);
}

void search(benchmark::State& state) {
    Screen screen;
    for (auto _ : state) {
        for (const char* const text : {"1", "12", "123", "12", "1", ""}) {
            screen.items().setSearch(QString::fromLatin1(text));
            settle();
        }
    }
    screen.report(state);
}

void tick(benchmark::State& state) {
    Screen screen;
    for (auto _ : state) {
        for (int row = 0; row < 200; ++row) {
            screen.items().setSelected(row, row % 2 == 0);
            settle();
        }
    }
    screen.report(state);
}

void mapKeys(benchmark::State& state) {
    Screen screen;
    screen.showMap();
    screen.press(Qt::Key_Home);
    for (auto _ : state) {
        for (int i = 0; i < 100; ++i)
            screen.press(i % 2 == 0 ? Qt::Key_Right : Qt::Key_Down);
    }
    state.counters["row"] = screen.items().focusedRow();
    screen.report(state);
}

void mapHover(benchmark::State& state) {
    Screen screen;
    screen.showMap();
    for (auto _ : state) {
        for (int i = 0; i < 100; ++i)
            screen.moveTo({300 + 4 * i, 200 + 3 * i});
    }
    screen.report(state);
}

void mapTick(benchmark::State& state) {
    Screen screen;
    screen.showMap();
    for (auto _ : state) {
        for (int row = 0; row < 200; ++row) {
            screen.items().setSelected(row, row % 2 == 0);
            settle();
        }
    }
    screen.report(state);
}

void mapSearch(benchmark::State& state) {
    Screen screen;
    screen.showMap();
    for (auto _ : state) {
        for (const char* const text : {"1", "12", "123", "12", "1", ""}) {
            screen.items().setSearch(QString::fromLatin1(text));
            settle();
        }
    }
    screen.report(state);
}

void mapResize(benchmark::State& state) {
    Screen screen;
    screen.showMap();
    for (auto _ : state) {
        for (int i = 0; i < 20; ++i)
            screen.resize({1180 + 7 * i, 760 + 5 * i});
    }
    screen.report(state);
}

void rescan(benchmark::State& state) {
    Screen screen;
    for (auto _ : state) {
        screen.model().scan();
        runUntil([&] { return !screen.model().isScanning(); });
        settle();
    }
    screen.report(state);
}

void clean(benchmark::State& state) {
    Screen screen;
    for (auto _ : state) {
        screen.model().reviewSelection();
        settle();
        screen.model().startCleaning();
        runUntil(
            [&] { return screen.model().session()->phase() == CleaningSession::Phase::finished; });
        settle();
    }
    screen.report(state);
}

BENCHMARK_CAPTURE(scrollByKeys, rows, Qt::Key_Down)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(scrollByKeys, pages, Qt::Key_PageDown)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(sort)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(search)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(tick)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(mapKeys)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(mapHover)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(mapTick)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(mapSearch)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(mapResize)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(rescan)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(clean)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
} // namespace tidewright::bench

int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
