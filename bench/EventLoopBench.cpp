// How long the main thread is held at most by one event while a scan and a cleanup are under way:
// no screen can be drawn meanwhile. The target is below 16 ms, a frame.

#include "app/state/ItemListModel.h"
#include "app/state/SessionListModel.h"
#include "bench/BigHome.h"
#include "core/scan/RuleCatalog.h"
#include "tests/support/app/StateTesting.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

#include <ctime>

namespace tidewright::bench {
namespace {

double threadSeconds() {
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Times each event. The time of the processor is told apart, since others work on the machine too.
class TimedApplication : public QCoreApplication {
public:
    using QCoreApplication::QCoreApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        const auto start = std::chrono::steady_clock::now();
        const double processorStart = threadSeconds();
        const bool result = QCoreApplication::notify(receiver, event);
        const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
        longest = std::max(longest, passed.count());
        longestOfProcessor = std::max(longestOfProcessor, threadSeconds() - processorStart);
        ++events;
        return result;
    }

    double longest = 0;
    double longestOfProcessor = 0;
    double events = 0;
};

TimedApplication& application() {
    static int count = 1;
    static char name[] = "event-loop-bench";
    static char* arguments[] = {name, nullptr};
    static TimedApplication instance(count, arguments);
    return instance;
}

void runUntil(const std::function<bool()>& holds) {
    while (!holds())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void report(benchmark::State& state) {
    state.counters["longestMilliseconds"] = 1'000 * application().longest;
    state.counters["ofProcessor"] = 1'000 * application().longestOfProcessor;
    state.counters["events"] = application().events;
    application().longest = 0;
    application().longestOfProcessor = 0;
    application().events = 0;
}

void scan(benchmark::State& state) {
    application();
    test::TestState held([](AppEnvironment& environment) {
        environment.home = bigHome();
        environment.rules = RuleCatalog::all();
        environment.scan = [](const DiskScanner& scanner, const DiskScanner::Progress& progress,
                              const CancelToken& cancel) {
            return scanner.scan(progress, cancel).map_error([](ScanCancelled) {
                return ScanFailure{};
            });
        };
    });
    const ItemListModel shown(*held.model, Category::javascript);
    for (auto _ : state) {
        held.model->scan();
        runUntil([&] { return !held.model->isScanning(); });
    }
    state.counters["items"] = static_cast<double>(held.model->report()->items.size());
    report(state);
}

void clean(benchmark::State& state) {
    constexpr int count = 10'000;
    application();
    test::TestState held;
    const ItemListModel shown(*held.model, Category::system);
    const SessionListModel reviewed(*held.model);
    for (auto _ : state) {
        state.PauseTiming();
        ScanReport found;
        for (int i = 0; i < count; ++i) {
            const std::string name = std::to_string(i);
            ScanItem item = test::testItem(Category::system, name);
            item.urls = {held.home.file(".cache/" + name, "x")};
            found.items.push_back(std::move(item));
        }
        held.scanned(std::move(found));
        state.ResumeTiming();
        held.model->reviewSelection();
        held.model->startCleaning();
        runUntil(
            [&] { return held.model->session()->phase() == CleaningSession::Phase::finished; });
    }
    state.counters["left"] = static_cast<double>(held.model->report()->items.size());
    report(state);
}

BENCHMARK(scan)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(clean)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
} // namespace tidewright::bench

BENCHMARK_MAIN();
