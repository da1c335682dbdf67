#include "bench/BigHome.h"

#include "core/support/Require.h"

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace tidewright::bench {

namespace {

namespace fs = std::filesystem;

constexpr int filesInFolder = 10;
constexpr int folders = 100'000;
constexpr int projects = 300;
constexpr int derivedData = 1'500;
constexpr int downloads = 1'000;
constexpr int archives = 500;

class BigHome {
public:
    BigHome() {
        std::string pattern = "/var/tmp/tidewright-bench-XXXXXX";
        require(mkdtemp(pattern.data()) != nullptr, "a folder can be made in /var/tmp");
        m_url = URL(pattern);
        for (int i = 0; i < projects; ++i)
            file(fmt::format("work/{}/package.json", i),
                 R"({"dependencies": {"react-native": "0.76.5"}, "engines": {"node": ">=18"}})");
        for (int i = 0; i < downloads; ++i) {
            file(fmt::format("Downloads/installer-{}.dmg", i));
            fs::last_write_time(path(fmt::format("Downloads/installer-{}.dmg", i)),
                                fs::file_time_type::clock::now() - std::chrono::hours(24 * 90));
        }
        for (int i = 0; i < derivedData; ++i)
            file(fmt::format("Library/Developer/Xcode/DerivedData/App{}-abc/Build/x", i));
        for (int i = 0; i < archives; ++i)
            file(fmt::format("Library/Developer/Xcode/Archives/2026-01-01/App {}.xcarchive/x", i));
        // The rest is spread over the projects' sources, the caches and the products of builds.
        const int others = folders - projects - derivedData - 2 * archives;
        for (int i = 0; i < others; ++i)
            for (int each = 0; each < filesInFolder; ++each)
                file(placeOf(i) + fmt::format("/{}", each));
    }

    ~BigHome() {
        std::error_code ignored;
        fs::remove_all(m_url.path(), ignored);
    }

    BigHome(const BigHome&) = delete;
    BigHome& operator=(const BigHome&) = delete;

    const URL& url() const { return m_url; }

private:
    static std::string placeOf(int folder) {
        switch (folder % 3) {
        case 0:
            return fmt::format("work/{}/src/{}", folder % projects, folder);
        case 1:
            return fmt::format("Library/Caches/Homebrew/{}/{}", folder % 100, folder);
        default:
            return fmt::format("Library/Developer/Xcode/DerivedData/App{}-abc/Index/{}",
                               folder % derivedData, folder);
        }
    }

    fs::path path(const std::string& relative) const { return m_url.appending(relative).path(); }

    void file(const std::string& relative, std::string_view contents = {}) {
        fs::create_directories(path(relative).parent_path());
        std::ofstream(path(relative)) << contents;
    }

    URL m_url;
};

} // namespace

const URL& bigHome() {
    static const BigHome home;
    return home.url();
}

} // namespace tidewright::bench
