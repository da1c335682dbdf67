// What a scan of a big home costs: each rule by itself, the measuring beside one pass of `fts`, and
// the whole program with its memory at the peak.

#include "bench/BigHome.h"
#include "core/platform/TreeSize.h"
#include "core/projects/ProjectScanner.h"
#include "core/scan/RuleCatalog.h"
#include "tests/support/FtsOracle.h"

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

namespace tidewright::bench {
namespace {

using Clock = std::chrono::steady_clock;

ScanContext contextOfBigHome() {
    ScanContext context;
    context.home = bigHome();
    context.temporaryDirectory = bigHome().appending("tmp");
    context.settings.dormantProjectDays = 60;
    context.settings.oldDownloadDays = 30;
    context.projects = ProjectScanner{{bigHome()}, 6, gigabyte}.scan(CancelToken()).projects;
    context.runner = ShellRunner{ToolLocator(bigHome(), {})};
    context.now = currentDate();
    return context;
}

/// One rule on the big home; the target is below 50 ms for each, apart from the tools it runs.
void rule(benchmark::State& state, const CleanupRule& rule) {
    static const ScanContext context = contextOfBigHome();
    std::size_t items = 0;
    for (auto _ : state)
        items = rule.scan(context).size();
    state.counters["items"] = static_cast<double>(items);
}

/// Measuring the whole home, as a multiple of what one pass of fts takes for the same.
void measuring(benchmark::State& state) {
    double ours = 0;
    double peer = 0;
    for (auto _ : state) {
        const auto start = Clock::now();
        SeenInodes seen;
        const Int64 sum = allocatedTreeSize(bigHome(), seen, CancelToken());
        const auto middle = Clock::now();
        if (test::ftsTreeSize(bigHome()) != sum)
            state.SkipWithError("the two sums differ");
        ours += std::chrono::duration<double>(middle - start).count();
        peer += std::chrono::duration<double>(Clock::now() - middle).count();
    }
    state.counters["ratioToFts"] = ours / peer;
}

/// `tidewright scan --json` as a process of its own; the target is below 100 MB at the peak.
void wholeScan(benchmark::State& state) {
    double peakMegabytes = 0;
    for (auto _ : state) {
        bigHome(); // made before the process starts
        const pid_t child = fork();
        if (child == 0) {
            setenv("HOME", bigHome().path().c_str(), 1);
            if (std::freopen("/dev/null", "w", stdout) != nullptr)
                execl(TIDEWRIGHT_PROGRAM, TIDEWRIGHT_PROGRAM, "scan", "--json", nullptr);
            _exit(127);
        }
        int status = 0;
        rusage usage = {};
        if (wait4(child, &status, 0, &usage) != child || status != 0)
            state.SkipWithError("the scan failed");
#ifdef __APPLE__
        peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1e6; // in bytes there
#else
        peakMegabytes = static_cast<double>(usage.ru_maxrss) * 1024 / 1e6;
#endif
    }
    state.counters["peakMB"] = peakMegabytes;
}

} // namespace
} // namespace tidewright::bench

int main(int argumentCount, char** arguments) {
    using namespace tidewright;
    for (const CleanupRule& each : RuleCatalog::all())
        benchmark::RegisterBenchmark(("rule/" + each.id).c_str(), bench::rule, each)
            ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("measuring", bench::measuring)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(3);
    benchmark::RegisterBenchmark("wholeScan", bench::wholeScan)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1)
        ->UseRealTime();
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
