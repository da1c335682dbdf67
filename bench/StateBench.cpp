// What the state costs on the main thread with a report of 10,000 items, all of one category: the
// sums, and what the list of items does for a click and a keystroke. The target is below 1 ms for
// each sum, toggle, filter and search.

#include "app/state/ScreenModels.h"
#include "tests/support/app/StateTesting.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>
#include <fmt/format.h>

namespace tidewright::bench {
namespace {

constexpr int itemCount = 10'000;
constexpr Category category = Category::javascript;

ScanReport bigReport() {
    ScanReport report;
    for (int i = 0; i < itemCount; ++i) {
        ScanItem item = test::testItem(category, fmt::format("projects/app-{}/node_modules", i), i);
        item.title = fmt::format("app-{} build output", (i * 7919) % itemCount);
        item.version = fmt::format("{}.{}.0", i % 20, i % 7);
        item.group = fmt::format("Group {}", i / 500);
        item.decision = static_cast<Decision>(i % 4);
        item.reason = fmt::format("No project has needed version {} for {} days, and it comes back "
                                  "with the next build when it is asked for again.",
                                  *item.version, i % 300);
        report.items.push_back(std::move(item));
    }
    return report;
}

/// Without every other item of a report, as after a cleanup of half of it.
ScanReport halved(ScanReport report) {
    std::erase_if(report.items, [i = 0](const ScanItem&) mutable { return ++i % 2 == 0; });
    return report;
}

struct Bench {
    test::TestState state;
    ItemListModel* items = nullptr;

    Bench() {
        state.scanned(bigReport());
        items = new ItemListModel(*state.model, category, currentDate, state.model.get());
    }
    AppModel& app() { return *state.model; }
};

void selectedBytes(benchmark::State& state) {
    Bench bench;
    for (auto _ : state)
        benchmark::DoNotOptimize(bench.app().selectedBytes());
}

void reclaimable(benchmark::State& state) {
    Bench bench;
    for (auto _ : state)
        benchmark::DoNotOptimize(bench.app().reclaimable(category));
}

/// As a click on a row's tick box does.
void toggle(benchmark::State& state) {
    Bench bench;
    int row = 0;
    bool on = false;
    for (auto _ : state) {
        bench.items->setSelected(row, on);
        row = (row + 8) % itemCount;
        on = row == 0 ? !on : on;
    }
}

/// The same with all that the main window shows, details of an item among it.
void toggleInWindow(benchmark::State& state) {
    Bench bench;
    const ScreenModels models(bench.app());
    bench.items->setFocusedRow(0);
    int row = 0;
    bool on = false;
    for (auto _ : state) {
        bench.items->setSelected(row, on);
        row = (row + 8) % itemCount;
        on = row == 0 ? !on : on;
    }
}

/// As for a list that hears of a selection made elsewhere.
void toggleElsewhere(benchmark::State& state) {
    Bench bench;
    const ScanItem item = bench.app().report()->items.front();
    bool on = false;
    for (auto _ : state) {
        bench.app().setSelected(item, on);
        on = !on;
    }
}

void filter(benchmark::State& state) {
    Bench bench;
    int next = 0;
    for (auto _ : state)
        bench.items->setFilter(static_cast<ItemListModel::Filter>(++next % 3));
}

/// The keystrokes of a search, each of which finds something else, and its end.
void search(benchmark::State& state) {
    Bench bench;
    const std::vector<QString> searches{
        QStringLiteral("b"),       QStringLiteral("bu"),    QStringLiteral("buil"),
        QStringLiteral("build o"), QStringLiteral("build"), QStringLiteral("for 29"),
        QStringLiteral("zzz"),     QStringLiteral("e q"),   QString(),
    };
    std::size_t next = 0;
    bench.items->setSearch(searches[next]);
    for (auto _ : state)
        bench.items->setSearch(searches[++next % searches.size()]);
}

/// The first search after a scan, which prepares the texts.
void firstSearch(benchmark::State& state) {
    Bench bench;
    for (auto _ : state) {
        state.PauseTiming();
        ItemListModel items(bench.app(), category);
        state.ResumeTiming();
        items.setSearch(QStringLiteral("build"));
    }
}

/// The first sort by title after a scan, which prepares the keys.
void firstSort(benchmark::State& state) {
    Bench bench;
    for (auto _ : state) {
        state.PauseTiming();
        ItemListModel items(bench.app(), category);
        state.ResumeTiming();
        items.sort(static_cast<int>(ItemListModel::Column::item));
    }
}

/// A letter typed in the list, which finds the last row.
void typeAhead(benchmark::State& state) {
    Bench bench;
    bench.items->setSearch(QStringLiteral("build")); // prepares the texts
    for (auto _ : state)
        benchmark::DoNotOptimize(bench.items->rowStartingWith(QStringLiteral("nowhere"), 0));
}

void sortBy(benchmark::State& state, ItemListModel::Column column) {
    Bench bench;
    for (auto _ : state) {
        bench.items->sort(static_cast<int>(column));
        state.PauseTiming();
        bench.items->sort(-1);
        state.ResumeTiming();
    }
}

/// The turn in which the list takes a report: one without every other item, and the whole again.
void takeReport(benchmark::State& state) {
    Bench bench;
    const ScanReport whole = bigReport();
    const ScanReport half = halved(whole);
    bool isWhole = true;
    std::chrono::steady_clock::time_point start;
    QObject context;
    for (auto _ : state) {
        isWhole = !isWhole;
        delete bench.items;
        // Of all that hear of the report, the list is put between two that take the time.
        const auto before = QObject::connect(&bench.app(), &AppModel::reportChanged, &context,
                                             [&] { start = std::chrono::steady_clock::now(); });
        bench.items = new ItemListModel(bench.app(), category, currentDate, &bench.app());
        const auto after = QObject::connect(&bench.app(), &AppModel::reportChanged, &context, [&] {
            state.SetIterationTime(
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        });
        bench.state.scanned(isWhole ? whole : half);
        QObject::disconnect(before);
        QObject::disconnect(after);
    }
}

void makeModel(benchmark::State& state) {
    Bench bench;
    for (auto _ : state)
        benchmark::DoNotOptimize(ItemListModel(bench.app(), category).count());
}

} // namespace
} // namespace tidewright::bench

int main(int argumentCount, char** arguments) {
    using namespace tidewright;
    const QCoreApplication application(argumentCount, arguments);
    const auto add = [](const char* name, auto function) {
        return benchmark::RegisterBenchmark(name, function)->Unit(benchmark::kMicrosecond);
    };
    add("selectedBytes", bench::selectedBytes);
    add("reclaimable", bench::reclaimable);
    add("toggle", bench::toggle);
    add("toggleInWindow", bench::toggleInWindow);
    add("toggleElsewhere", bench::toggleElsewhere);
    add("filter", bench::filter);
    add("search", bench::search);
    add("firstSearch", bench::firstSearch);
    add("firstSort", bench::firstSort);
    add("typeAhead", bench::typeAhead);
    add("sort/item",
        [](benchmark::State& state) { bench::sortBy(state, ItemListModel::Column::item); });
    add("sort/size",
        [](benchmark::State& state) { bench::sortBy(state, ItemListModel::Column::size); });
    add("takeReport", bench::takeReport)->UseManualTime()->Iterations(20);
    add("makeModel", bench::makeModel);
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
