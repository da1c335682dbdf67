// What removing three big items costs, beside `rm -rf` of the same: time as a ratio, and memory at
// the peak.

#include "core/cleaning/PathPolicy.h"
#include "core/platform/Removal.h"
#include "core/support/Require.h"

#include <fmt/format.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

namespace tidewright::bench {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 5;
constexpr int filesInTree = 66'667;
constexpr int filesInFolder = 8;
constexpr int foldersInPackage = 12;
constexpr std::size_t mostBytesInFile = 20'000;

/// A home with three folders of packages, as package managers leave them.
class Home {
public:
    Home() {
        std::string pattern = "/var/tmp/tidewright-bench-XXXXXX";
        require(mkdtemp(pattern.data()) != nullptr, "a folder can be made in /var/tmp");
        m_url = URL(pattern);
        for (int i = 0; i < 3; ++i)
            m_items.push_back(m_url.appending(fmt::format("work/{}/node_modules", i)));
    }
    ~Home() {
        std::error_code ignored;
        fs::remove_all(m_url.path(), ignored);
    }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

    const URL& url() const { return m_url; }
    const std::vector<URL>& items() const { return m_items; }

    /// The same trees every time, written to the disk.
    void makeItems() const {
        for (const URL& item : m_items)
            makeTree(item.path());
        sync();
    }

private:
    static void makeTree(const fs::path& root) {
        std::mt19937 random(1);
        const std::string contents(mostBytesInFile, 'c');
        fs::path folder;
        for (int file = 0; file < filesInTree; ++file) {
            if (file % filesInFolder == 0) {
                folder = root / folderOf(file / filesInFolder);
                fs::create_directories(folder);
            }
            // Small ones mostly, a few large ones.
            const double share = static_cast<double>(random()) / std::mt19937::max();
            const auto bytes =
                static_cast<std::streamsize>(mostBytesInFile * share * share * share);
            std::ofstream(folder / fmt::format("module-{}.js", file)).write(contents.data(), bytes);
        }
    }

    /// Up to six levels deep.
    static std::string folderOf(int number) {
        std::string path = fmt::format("package-{}", number / foldersInPackage);
        for (int inner = number % foldersInPackage; inner > 0; inner /= 2)
            path += inner % 2 == 0 ? "/lib" : "/node_modules";
        return fmt::format("{}/{}", path, number % foldersInPackage);
    }

    URL m_url;
    std::vector<URL> m_items;
};

bool removeThreeAtOnce(const Home& home) {
    const PathPolicy policy(home.url(), home.url().appending("temporary"), {}, {});
    std::array<bool, 3> areDone{};
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < areDone.size(); ++i)
        threads.emplace_back([&, i] {
            const auto approved = policy.validate(home.items()[i], true);
            areDone[i] = approved && removeOnce(*approved);
        });
    for (std::thread& thread : threads)
        thread.join();
    return std::ranges::find(areDone, false) == areDone.end();
}

[[noreturn]] void replaceWithRm(const std::string& path) {
    execlp("rm", "rm", "-rf", path.c_str(), nullptr);
    _exit(127);
}

struct Cost {
    double seconds = 0;
    double megabytes = 0; ///< at the peak
};

double peakMegabytes(const rusage& usage) {
#ifdef __APPLE__
    return static_cast<double>(usage.ru_maxrss) / 1e6; // in bytes there
#else
    return static_cast<double>(usage.ru_maxrss) * 1024 / 1e6;
#endif
}

/// Of a child process, which must succeed.
template <class Work>
Cost costOf(const Work& work) {
    const auto start = Clock::now();
    const pid_t child = fork();
    if (child == 0)
        _exit(work() ? 0 : 1);
    int status = 0;
    rusage usage = {};
    require(wait4(child, &status, 0, &usage) == child && status == 0, "the removal succeeds");
    return {std::chrono::duration<double>(Clock::now() - start).count(), peakMegabytes(usage)};
}

Cost costOfOurs(const Home& home) {
    return costOf([&] { return removeThreeAtOnce(home); });
}

Cost costOfRm(const Home& home) {
    Cost total;
    for (const URL& item : home.items()) {
        const Cost cost = costOf([&]() -> bool { replaceWithRm(item.path()); });
        total.seconds += cost.seconds;
        total.megabytes = std::max(total.megabytes, cost.megabytes);
    }
    return total;
}

template <class Function>
double median(std::vector<Cost> costs, const Function& value) {
    std::ranges::sort(costs, {}, value);
    return value(costs[costs.size() / 2]);
}

void measure() {
    const Home home;
    std::vector<Cost> ours;
    std::vector<Cost> peer;
    for (int round = 0; round < rounds; ++round) {
        for (const bool isOurs : {round % 2 == 0, round % 2 != 0}) {
            home.makeItems();
            const Cost cost = isOurs ? costOfOurs(home) : costOfRm(home);
            (isOurs ? ours : peer).push_back(cost);
            fmt::print(stderr, "{:6} {:.3f} s, {:.1f} MB\n", isOurs ? "ours" : "rm -rf",
                       cost.seconds, cost.megabytes);
        }
    }
    const double oursSeconds = median(ours, [](const Cost& cost) { return cost.seconds; });
    const double peerSeconds = median(peer, [](const Cost& cost) { return cost.seconds; });
    fmt::print("medians: ours {:.3f} s, rm -rf {:.3f} s, ratio {:.2f}; peak {:.1f} MB\n",
               oursSeconds, peerSeconds, oursSeconds / peerSeconds,
               median(ours, [](const Cost& cost) { return cost.megabytes; }));
}

} // namespace
} // namespace tidewright::bench

int main() { tidewright::bench::measure(); }
