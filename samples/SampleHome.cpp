#include "samples/SampleHome.h"

#include "core/platform/Volumes.h"
#include "core/support/Text.h"
#include "samples/EmbeddedFiles.h"
#include "samples/FileSystem.h"
#include "samples/HomeContents.h"

#include <fmt/format.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace tidewright {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr Int64 blockBytes = 4096;
constexpr std::string_view simulatorFolder = "Library/Developer/CoreSimulator";
constexpr mode_t readOnly = 0555;

constexpr const char* propertyList = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
    <key>CFBundleIdentifier</key>
    <string>{}</string>
    <key>CFBundleName</key>
    <string>{}</string>
    <key>CFBundlePackageType</key>
    <string>APPL</string>
    <key>CFBundleShortVersionString</key>
    <string>{}</string>
</dict>
</plist>
)";

/// A file to be made: of a size, or with a text.
struct PlannedFile {
    std::string path; ///< relative to the home
    Date modified = {};
    Int64 bytes = 0;
    std::string text = {};
    mode_t mode = 0644;
};

SampleHomeError failure(std::string sentence) {
    return {SampleHomeError::Kind::failed, std::move(sentence)};
}

SampleHomeError failureOf(const char* operation, const std::string& path, int code) {
    return failure(SystemError{code, operation, path}.sentence());
}

std::string replacing(std::string_view part, std::string_view with, std::string text) {
    for (auto place = text.find(part); place != std::string::npos;
         place = text.find(part, place + with.size()))
        text.replace(place, part.size(), with);
    return text;
}

/// Everything that a home is made of, with its dates, sizes and texts worked out.
class Plan {
public:
    Plan(const SampleHome& home, const URL& folder) : m_home(home), m_folder(folder) {
        for (const HomeContents::SizedFile& file : HomeContents::sizedFiles())
            addSized(withDate(file.path, file.days), file.bytes, file.days, file.atLeast);
        for (const HomeContents::Application& application : HomeContents::applications())
            addApplication(application);
        for (const HomeContents::SimulatorRuntime& runtime : HomeContents::simulatorRuntimes())
            addRuntime(runtime);
        for (const HomeContents::Simulator& simulator : HomeContents::simulators())
            addSimulator(simulator);
        for (const EmbeddedFile& file : homeFiles())
            addText(std::string(file.path), dateOf(file.path),
                    replacing("{{home}}", m_folder.path(), std::string(file.text)));
        for (const EmbeddedFile& file : toolFiles())
            addTool(file);
        addSnapshots();
    }

    const std::vector<PlannedFile>& files() const { return m_files; }

    Int64 bytes() const {
        Int64 blocks = 256; // for links, long folders and what the file system keeps for itself
        std::set<fs::path> folders;
        for (const PlannedFile& file : m_files) {
            blocks += std::max(file.bytes, static_cast<Int64>(file.text.size())) / blockBytes + 1;
            fs::path folder = fs::path(file.path).parent_path();
            while (folders.insert(folder).second)
                folder = folder.parent_path();
        }
        return (blocks + static_cast<Int64>(folders.size())) * blockBytes;
    }

    /// The date of what has no age of its own.
    Date dateOf(std::string_view path) const {
        const HomeContents::TextAge* innermost = nullptr;
        for (const HomeContents::TextAge& age : HomeContents::textAges())
            if (isInside(path, age.folder) &&
                (innermost == nullptr || age.folder.size() > innermost->folder.size()))
                innermost = &age;
        return daysAgo(innermost == nullptr ? 0 : innermost->days);
    }

private:
    static bool isInside(std::string_view path, std::string_view folder) {
        return folder.empty() || URL(std::string(path)).isInside(URL(std::string(folder)));
    }

    /// So many whole days ago also where a clock change makes one of them an hour shorter.
    Date daysAgo(int days) const { return m_home.now - 24h * days - 2h; }

    std::string withDate(std::string_view path, int days) const {
        constexpr std::size_t dayLength = 10; // of "2026-03-01T…"
        return replacing("{date}", iso8601Text(daysAgo(days)).substr(0, dayLength),
                         std::string(path));
    }

    void addSized(std::string path, Int64 bytes, int days, Int64 atLeast) {
        const auto scaled = static_cast<Int64>(static_cast<double>(bytes) * m_home.scale);
        m_files.push_back({.path = std::move(path),
                           .modified = daysAgo(days),
                           .bytes = std::max(scaled, atLeast)});
    }

    void addText(std::string path, Date modified, std::string text) {
        m_files.push_back({.path = std::move(path), .modified = modified, .text = std::move(text)});
    }

    void addApplication(const HomeContents::Application& application) {
        const std::string contents = fmt::format("Applications/{}.app/Contents", application.name);
        addText(contents + "/Info.plist", daysAgo(application.days),
                fmt::format(propertyList, application.identifier, application.name,
                            application.version));
        addSized(fmt::format("{}/MacOS/{}", contents, application.name), application.bytes,
                 application.days, 0);
    }

    void addRuntime(const HomeContents::SimulatorRuntime& runtime) {
        const std::string folder = fmt::format("{}/Images/{}", simulatorFolder, runtime.identifier);
        const Date lastUsed = daysAgo(runtime.lastUsedDays);
        addSized(folder + "/SimulatorRuntime.dmg", runtime.bytes, runtime.lastUsedDays, 0);
        addText(folder + "/record", lastUsed,
                fmt::format("version={}\nbuild={}\nruntimeIdentifier={}\nplatformIdentifier={}\n"
                            "lastUsedAt={}\n",
                            runtime.version, runtime.build, runtime.runtimeIdentifier,
                            runtime.platformIdentifier, iso8601Text(lastUsed)));
    }

    void addSimulator(const HomeContents::Simulator& simulator) {
        const std::string folder = fmt::format("{}/Devices/{}", simulatorFolder, simulator.udid);
        const int days = simulator.lastBootedDays.value_or(0);
        std::string record = fmt::format("name={}\nruntime={}\nstate={}\n", simulator.name,
                                         simulator.runtimeIdentifier, simulator.state);
        if (simulator.lastBootedDays)
            record += fmt::format("lastBootedAt={}\n", iso8601Text(daysAgo(days)));
        addText(folder + "/record", daysAgo(days), std::move(record));
        addSized(folder + "/data/Containers/Data/app.db", simulator.bytes, days, simulator.atLeast);
    }

    void addTool(const EmbeddedFile& file) {
        std::string path = fmt::format("{}/{}", SampleHome::toolFolder, file.path);
        const Date modified = dateOf(path);
        addText(std::move(path), modified, std::string(file.text));
        if (file.text.starts_with("#!"))
            m_files.back().mode = 0755;
    }

    /// Their names as the backup tool makes them: "2026-03-01-093000".
    void addSnapshots() {
        std::string names;
        for (const int hours : HomeContents::snapshotHours()) {
            std::string moment = iso8601Text(m_home.now - 1h * hours);
            std::ranges::replace(moment, 'T', '-');
            names += fmt::format("com.apple.TimeMachine.{}.local\n",
                                 removing(":", trimmed(moment, "Z")));
        }
        addText(".sample-home/snapshots", m_home.now, std::move(names));
    }

    const SampleHome& m_home;
    const URL& m_folder;
    std::vector<PlannedFile> m_files;
};

/// Makes what is planned. The first step that fails is the last; folders that can't be made or read
/// are told by the library's exception.
class Builder {
public:
    Builder(const Plan& plan, const URL& folder, const CancelToken& cancel)
        : m_plan(plan),
          m_folder(folder),
          m_cancel(cancel) {}

    Result<void, SampleHomeError> build() {
        for (const PlannedFile& file : m_plan.files()) {
            if (m_cancel.isCancelled())
                return Failure(SampleHomeError{SampleHomeError::Kind::cancelled, {}});
            if (auto made = makeFile(file); !made)
                return made;
        }
        if (auto linked = makeLinksAndFolders(); !linked)
            return linked;
        if (auto dated = setFolderDate(m_folder.path()); !dated)
            return Failure(dated.error());
        return closeFolders();
    }

private:
    std::string pathOf(std::string_view relativePath) const {
        return m_folder.appending(relativePath).path();
    }

    static void makeParent(const std::string& path) {
        fs::create_directories(fs::path(path).parent_path());
    }

    Result<void, SampleHomeError> makeFile(const PlannedFile& planned) const {
        const std::string path = pathOf(planned.path);
        makeParent(path);
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
            std::fopen(path.c_str(), "wbx"), [](std::FILE* open) { return std::fclose(open); });
        if (!file)
            return Failure(failureOf("make", path, errno));
        const int descriptor = fileno(file.get());
        if (const int code = planned.bytes == 0 ? 0 : allocate(descriptor, planned.bytes)) {
            if (code == EOPNOTSUPP || code == ENOSYS)
                return Failure(failure(
                    fmt::format("The file system of {} can't allocate files without writing them.",
                                m_folder.path())));
            return Failure(failureOf("allocate", path, code));
        }
        const std::size_t written =
            std::fwrite(planned.text.data(), 1, planned.text.size(), file.get());
        const timespec times[] = {timespecOf(planned.modified), timespecOf(planned.modified)};
        if (written != planned.text.size() || std::fflush(file.get()) != 0 ||
            fchmod(descriptor, planned.mode) != 0 || futimens(descriptor, times) != 0)
            return Failure(failureOf("write", path, errno));
        setDateAdded(path, planned.modified);
        return {};
    }

    Result<void, SampleHomeError> makeLinksAndFolders() const {
        for (const std::string_view folder : HomeContents::emptyFolders())
            fs::create_directories(pathOf(folder));
        for (const HomeContents::HardLink& hardLink : HomeContents::hardLinks()) {
            const std::string path = pathOf(hardLink.path);
            makeParent(path);
            if (link(pathOf(hardLink.existing).c_str(), path.c_str()) != 0)
                return Failure(failureOf("link", path, errno));
        }
        for (const HomeContents::SymbolicLink& symbolic : HomeContents::symbolicLinks()) {
            const std::string path = pathOf(symbolic.path);
            makeParent(path);
            if (symlink(std::string(symbolic.target).c_str(), path.c_str()) != 0)
                return Failure(failureOf("link", path, errno));
        }
        return {};
    }

    Result<Date, SampleHomeError> setDate(const std::string& path, Date date) const {
        const timespec times[] = {timespecOf(date), timespecOf(date)};
        if (utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW) != 0)
            return Failure(failureOf("date", path, errno));
        return date;
    }

    /// The date of a folder is that of the newest thing in it. Making an entry has changed it, so
    /// this comes after all that, and for the innermost folders first. Returns the date.
    Result<Date, SampleHomeError> setFolderDate(const std::string& folder) const {
        std::optional<Date> newest;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            const auto date = dateOf(entry);
            if (!date)
                return date;
            newest = std::max(newest.value_or(*date), *date);
        }
        return setDate(folder, newest.value_or(m_plan.dateOf(relativePath(folder))));
    }

    Result<Date, SampleHomeError> dateOf(const fs::directory_entry& entry) const {
        const std::string& path = entry.path().native();
        if (entry.is_symlink())
            return setDate(path, m_plan.dateOf(relativePath(path)));
        if (entry.is_directory())
            return setFolderDate(path);
        struct stat status = {};
        if (lstat(path.c_str(), &status) != 0)
            return Failure(failureOf("look at", path, errno));
        return Date(std::chrono::seconds(status.st_mtime));
    }

    std::string_view relativePath(const std::string& path) const {
        return std::string_view(path).substr(std::min(path.size(), m_folder.path().size() + 1));
    }

    Result<void, SampleHomeError> closeFolders() const {
        for (const std::string_view folder : HomeContents::readOnlyFolders()) {
            std::vector<std::string> paths{pathOf(folder)};
            for (const fs::directory_entry& entry : fs::recursive_directory_iterator(paths.front()))
                if (entry.is_directory())
                    paths.push_back(entry.path().native());
            for (const std::string& path : paths)
                if (chmod(path.c_str(), readOnly) != 0)
                    return Failure(failureOf("change the mode of", path, errno));
        }
        return {};
    }

    const Plan& m_plan;
    const URL& m_folder;
    const CancelToken& m_cancel;
};

Result<void, SampleHomeError> buildIn(const Plan& plan,
                                      const URL& folder,
                                      const CancelToken& cancel) {
    try {
        return Builder(plan, folder, cancel).build();
    } catch (const fs::filesystem_error& error) {
        return Failure(failureOf("make or read", error.path1().native(), error.code().value()));
    }
}

/// The folder in which the home is made, without links on the way to it.
struct Place {
    URL folder;
    bool isThere = false;
};

Result<Place, SampleHomeError> placeFor(const URL& folder) {
    std::error_code error;
    const bool isThere = fs::exists(folder.path(), error);
    const URL existing = isThere ? folder : folder.deletingLastPathComponent();
    const fs::path real = fs::canonical(existing.path(), error);
    if (error)
        return Failure(failureOf("use the folder", existing.path(), error.value()));
    if (!fs::is_directory(real))
        return Failure(failure(fmt::format("{} is not a folder.", existing.path())));
    if (isInMemory(real.native()))
        return Failure(
            failure(fmt::format("{} is kept in memory: name a folder on a disk.", folder.path())));
    if (!isThere)
        return Place{URL(real.native()).appending(folder.lastPathComponent()), false};
    const bool isEmpty = fs::is_empty(real, error);
    if (error)
        return Failure(failureOf("look into", folder.path(), error.value()));
    if (!isEmpty)
        return Failure(failure(
            fmt::format("{} is not empty: name a folder that is not there yet.", folder.path())));
    return Place{URL(real.native()), true};
}

Result<void, SampleHomeError> checkRoom(const URL& folder, Int64 bytes) {
    const auto capacity = volumeCapacity(folder);
    if (!capacity)
        return Failure(failure(capacity.error().sentence()));
    const Int64 available = diskSpace(*capacity).availableBytes;
    if (available >= bytes)
        return {};
    return Failure(failure(
        fmt::format("There is too little room in {}: the sample home needs {}, and {} are free.",
                    folder.path(), formattedBytes(bytes), formattedBytes(available))));
}

/// Only ever called with a folder that held nothing before the build.
void removeBuilt(const Place& place) {
    std::error_code ignored;
    if (!place.isThere) {
        fs::remove_all(place.folder.path(), ignored);
        return;
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(place.folder.path(), ignored))
        fs::remove_all(entry.path(), ignored);
}

} // namespace

Int64 SampleHome::bytes() const { return Plan(*this, folder).bytes(); }

Result<void, SampleHomeError> SampleHome::build(const CancelToken& cancel) const {
    const auto place = placeFor(folder);
    if (!place)
        return Failure(place.error());
    const Plan plan(*this, place->folder);
    const URL volume = place->isThere ? place->folder : place->folder.deletingLastPathComponent();
    if (auto room = checkRoom(volume, plan.bytes()); !room)
        return room;
    if (!place->isThere && mkdir(place->folder.path().c_str(), 0755) != 0)
        return Failure(failureOf("make the folder", folder.path(), errno));
    auto built = buildIn(plan, place->folder, cancel);
    if (!built)
        removeBuilt(*place);
    return built;
}

} // namespace tidewright
