// Makes pictures of every screen and state of the window, light and dark, from a sample home with a
// disk of its own: tidewright-screenshots FOLDER. The scale is that of QT_SCALE_FACTOR; at 2 the
// names end in "@2x".
#include "app/controls/StatusPill.h"
#include "app/screens/AppWindows.h"
#include "core/insights/InsightEngine.h"
#include "core/support/Require.h"
#include "samples/SampleHome.h"

#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QQuickItem>
#include <fmt/format.h>

#include <unistd.h>

#include <atomic>
#include <clocale>
#include <cstdio>
#include <filesystem>

namespace tidewright {
namespace {

constexpr Int64 gigabyte = 1'000'000'000;
constexpr Int64 diskSize = 494 * gigabyte;

/// The sample home is small; these are sizes as people have them.
constexpr Int64 realLife = 250;

/// The parts of the machine that a picture must not depend on.
struct Stage {
    Int64 available = 128 * gigabyte;
    std::atomic<bool> holdsScan = false;
    std::optional<std::string> scanFailure;
    bool hasFullDiskAccess = true;
};

constexpr std::chrono::hours day{24};

/// Nothing stands in a sample home's folders for applications, and no file in it is so large.
void addFound(ScanReport& report, const URL& home, Date now) {
    struct Sample {
        const char* name;
        int days; ///< since it was used or changed
        Int64 megabytes;
    };
    for (const auto& [name, days, megabytes] :
         {Sample{"Android Studio", 2, 3'120}, Sample{"Blueprint", 412, 1'480},
          Sample{"Chart Room", 130, 236}, Sample{"Depth Charge", 540, 12'900},
          Sample{"Editor", 0, 640}, Sample{"Firmware Flasher", 205, 88}, Sample{"Kelp", 96, 512},
          Sample{"Lighthouse Simulator", 380, 7'350}, Sample{"Xcode", 1, 14'800}})
        report.apps.push_back({URL(fmt::format("/Applications/{}.app", name)),
                               name,
                               {},
                               now - day * days,
                               {},
                               megabytes * 1'000'000});
    for (const auto& [name, days, megabytes] :
         {Sample{"Movies/regatta-2024-final.mov", 44, 38'200},
          Sample{"Documents/machines/debian-test.qcow2", 210, 24'600},
          Sample{"Movies/harbour-timelapse.mov", 190, 9'700},
          Sample{"Downloads/dataset-tides.tar", 12, 6'400},
          Sample{"Documents/machines/windows-arm.utm.img", 365, 5'100},
          Sample{"Desktop/backup-of-old-laptop.dmg", 730, 3'300},
          Sample{"Music/session-masters.wav", 61, 1'250}})
        report.largeFiles.push_back({.url = home.appending(name),
                                     .sizeBytes = megabytes * 1'000'000,
                                     .modified = now - day * days});
}

ScanReport enlarged(ScanReport report, const ScanSettings& settings, const DiskSpace& disk) {
    for (ScanItem& item : report.items)
        item.sizeBytes *= realLife;
    report.disk = disk;
    report.duration = std::chrono::seconds(9);
    report.insights = InsightEngine{settings}.insights(report.disk, report.items, report.apps,
                                                       report.largeFiles, currentDate());
    return report;
}

class Pictures {
public:
    Pictures(QString folder, const URL& home)
        : m_folder(std::move(folder)),
          m_home(home),
          m_defaults(DefaultsStore::inFile(home.appending("settings.conf"))),
          m_model(environment(), m_defaults, m_workers),
          m_models(m_model),
          m_windows(m_models) {
        m_windows.mainWindow().show();
    }

    void take() {
        measureDisk(128);
        picture("overview-before-a-scan");
        resize(900, 600);
        picture("overview-before-a-scan-small");
        resize(Theme::windowWidth, Theme::windowHeight);
        scanning();
        failed();
        scan();
        overviews();
        categories();
        appsAndFiles();
        settings();
        panels();
        pills();
        reviews();
        history();
    }

private:
    AppEnvironment environment() {
        AppEnvironment environment = AppEnvironment::current();
        environment.protectsUserFiles = true;
        environment.hasFullDiskAccess = [this] { return m_stage.hasFullDiskAccess; };
        environment.monitorSystem.readDisk = [this]() -> Result<DiskSpace, SystemError> {
            return DiskSpace{diskSize, m_stage.available};
        };
        environment.monitorSystem.readTrashSize = [](const CancelToken&) {
            return std::optional<Int64>(6 * gigabyte);
        };
        environment.monitorSystem.post = [](const Notification&,
                                            const std::function<void(bool)>& done) { done(false); };
        environment.reveal = [](const std::vector<URL>&) {};
        environment.scan = [this, scan = environment.scan](
                               const DiskScanner& scanner, const DiskScanner::Progress& progress,
                               const CancelToken& cancel) -> Result<ScanReport, ScanFailure> {
            if (m_stage.scanFailure)
                return Failure(ScanFailure{*m_stage.scanFailure});
            if (m_stage.holdsScan) {
                progress(ScanProgress{.fraction = 0.42, .message = "Measuring 96 locations"});
                while (!cancel.isCancelled())
                    usleep(10'000);
                return Failure(ScanFailure{});
            }
            return scan(scanner, progress, cancel).map([&](ScanReport report) {
                addFound(report, m_home, currentDate());
                return enlarged(std::move(report), scanner.settings, {diskSize, m_stage.available});
            });
        };
        return environment;
    }

    static void runUntil(const std::function<bool()>& holds) {
        while (!holds())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    static void settle() {
        for (int i = 0; i < 20; ++i) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    void resize(int width, int height) {
        m_windows.mainWindow().resize(width, height);
        settle();
    }

    void measureDisk(Int64 availableGigabytes) {
        m_stage.available = availableGigabytes * gigabyte;
        bool isDone = false;
        m_model.monitor().refresh([&] { isDone = true; });
        runUntil([&] { return isDone; });
    }

    void scan() {
        m_model.scan();
        runUntil([this] { return !m_model.isScanning(); });
    }

    /// In both modes, nothing moving.
    void picture(const std::string& name) { picture(name, m_windows.mainWindow()); }
    void picture(const std::string& name, QQuickWindow& window) {
        for (const bool isDark : {false, true}) {
            m_windows.theme().setSystemLook({isDark, {}, true});
            settle();
            save(name, isDark, onDesktop(window.grabWindow(), isDark));
        }
    }
    /// What of a window is clear shows what lies below it.
    static QImage onDesktop(const QImage& window, bool isDark) {
        QImage image(window.size(), QImage::Format_RGB32);
        image.setDevicePixelRatio(window.devicePixelRatio());
        image.fill(isDark ? 0xff2c3038 : 0xffd5d9e2);
        QPainter(&image).drawImage(0, 0, window);
        return image;
    }
    void save(const std::string& name, bool isDark, const QImage& image) {
        const std::string file =
            fmt::format("{}/{}-{}{}.png", m_folder.toStdString(), name, isDark ? "dark" : "light",
                        m_windows.mainWindow().effectiveDevicePixelRatio() > 1 ? "@2x" : "");
        require(image.save(QString::fromStdString(file), "PNG", 0), "A picture can't be written.");
        std::puts(file.c_str());
    }

    QObject* page() { return m_windows.mainWindow().property("page").value<QObject*>(); }

    void scanning() {
        m_stage.holdsScan = true;
        m_model.scan();
        settle();
        usleep(300'000);
        settle();
        picture("overview-scanning");
        m_model.cancelScan();
        runUntil([this] { return m_workers.isIdle(); });
        m_stage.holdsScan = false;
    }

    void failed() {
        m_stage.scanFailure = "The home folder can't be read: Input/output error. Check the disk, "
                              "then scan again.";
        scan();
        picture("overview-scan-failed");
        m_stage.scanFailure.reset();
    }

    void overviews() {
        picture("overview");
        resize(900, 600);
        picture("overview-small");
        resize(1600, 1300);
        picture("overview-large");
        resize(Theme::windowWidth, Theme::windowHeight);
        measureDisk(24);
        scan();
        picture("overview-low");
        measureDisk(6);
        scan();
        picture("overview-critical");
        measureDisk(128);
        scan();
        m_stage.hasFullDiskAccess = false;
        m_model.checkFullDiskAccess();
        picture("overview-full-disk-access");
        m_stage.hasFullDiskAccess = true;
        m_model.checkFullDiskAccess();
        m_model.setDestinationName(QStringLiteral("insights"));
        picture("insights");
    }

    void categories() {
        for (const char* const name : {"android", "xcode", "javascript", "system", "projects"}) {
            m_model.setDestinationName(QString::fromLatin1(name));
            settle();
            picture(std::string(name) + "-no-selection");
            setFocusedRow(2);
            picture(name);
        }
        m_model.setDestinationName(QStringLiteral("android"));
        settle();
        setFocusedRow(1);
        resize(900, 600);
        picture("android-small");
        resize(Theme::windowWidth, Theme::windowHeight);
        items()->setSearch(QStringLiteral("no such thing"));
        picture("android-nothing-matches");
        m_model.setDestinationName(QStringLiteral("overview"));
        settle();
    }

    void appsAndFiles() {
        m_model.setDestinationName(QStringLiteral("apps"));
        settle();
        picture("apps");
        page()->setProperty("tab", 1);
        settle();
        m_models.largeFiles()->setFocusedRow(1);
        picture("files");
        resize(900, 600);
        picture("files-small");
        resize(1600, 1300);
        picture("files-large");
        m_model.setDestinationName(QStringLiteral("android"));
        picture("android-large");
        resize(Theme::windowWidth, Theme::windowHeight);
        m_models.showMap(true);
        settle();
        picture("android-map");
        m_models.showMap(false);
        m_model.setDestinationName(QStringLiteral("history"));
        settle();
        picture("history-empty");
        m_model.setDestinationName(QStringLiteral("overview"));
        settle();
    }

    void settings() {
        SettingsStore& store = m_model.settings();
        store.setExclusions({m_home.appending("code/client"), m_home.appending("Pictures")});
        QQuickWindow& window = m_windows.settings();
        window.show();
        for (const auto& [tab, name] : {std::pair{0, "settings-general"},
                                        {1, "settings-thresholds"},
                                        {2, "settings-locations"}}) {
            window.setProperty("tab", tab);
            settle();
            picture(name, window);
        }
        window.hide();
        store.setExclusions({});
        m_windows.mainWindow().requestActivate();
        settle();
    }

    ItemListModel* items() { return page()->property("items").value<ItemListModel*>(); }
    void setFocusedRow(int row) {
        items()->setFocusedRow(row);
        settle();
    }

    void panel(const std::string& name) {
        QQuickWindow& panel = m_windows.panel();
        panel.show();
        panel.requestActivate();
        runUntil([&] { return panel.isActive(); });
        settle();
        picture(name, panel);
        panel.hide();
        m_windows.mainWindow().requestActivate();
        settle();
    }
    void panels() {
        measureDisk(128); // just now
        panel("panel");
        measureDisk(6);
        scan();
        panel("panel-critical");
        measureDisk(128);
        scan();
    }

    /// What stands in bars and trays, on a bar of each mode.
    void pills() {
        const qreal scale = m_windows.mainWindow().effectiveDevicePixelRatio();
        for (const bool isDark : {false, true}) {
            QImage bar(QSize(500, 32) * scale, QImage::Format_RGB32);
            bar.setDevicePixelRatio(scale);
            bar.fill(isDark ? 0xff202228 : 0xffe8e9ed);
            QPainter painter(&bar);
            int x = 8;
            for (const char* const health : {"good", "low", "critical"})
                for (const char* const text : {"", "128 GB"}) {
                    const auto add = [&](const QImage& image) {
                        const QSizeF size = image.deviceIndependentSize();
                        painter.drawImage(QPointF(x, (32 - size.height()) / 2), image);
                        x += static_cast<int>(size.width()) + 8;
                    };
                    const auto healthName = QString::fromLatin1(health);
                    const auto words = QString::fromLatin1(text);
                    add(StatusPill::image(healthName, words, scale));
                    add(StatusPill::squareImage(healthName, words, 22, scale));
                }
            painter.end();
            save("pill", isDark, bar);
        }
    }

    void reviews() {
        m_model.reviewSelection();
        settle();
        picture("review");
        m_model.startCleaning();
        runUntil([this] { return m_model.session()->completedCount() >= 4; });
        picture("cleaning");
        runUntil([this] { return m_model.session()->phase() == CleaningSession::Phase::finished; });
        picture("results");
        m_model.closeSession();
        settle();
        // What is excluded after the scan is skipped.
        std::vector<std::string> ids;
        std::vector<URL> excluded;
        for (const ScanItem& item : m_model.report()->items) {
            if (!AppModel::maySelect(item) || item.urls.empty())
                continue;
            ids.push_back(item.id);
            if (excluded.size() < 2)
                excluded.push_back(item.urls.front());
            if (ids.size() == 5)
                break;
        }
        m_model.settings().setExclusions(excluded);
        m_model.review(ids);
        m_model.startCleaning();
        runUntil([this] { return m_model.session()->phase() == CleaningSession::Phase::finished; });
        picture("results-with-failures");
        m_model.closeSession();
        settle();
        picture("overview-after-a-cleanup");
    }

    /// Half a year of cleanups.
    void history() {
        struct Sample {
            int daysAgo;
            Int64 gigabytes;
            int items;
            int failures;
        };
        for (const auto& [daysAgo, gigabytes, items, failures] :
             {Sample{171, 62, 118, 2}, Sample{140, 8, 12, 0}, Sample{118, 21, 40, 0},
              Sample{117, 3, 2, 0}, Sample{80, 34, 71, 1}, Sample{52, 12, 25, 0},
              Sample{33, 27, 44, 0}, Sample{12, 6, 9, 0}}) {
            CleanSummary summary;
            summary.date = currentDate() - day * daysAgo;
            summary.diskAfter = {diskSize, 100 * gigabyte + gigabytes * gigabyte};
            summary.diskBefore = {diskSize, 100 * gigabyte};
            CleanOutcome outcome;
            outcome.status = CleanOutcome::Status::cleaned();
            summary.outcomes.assign(static_cast<std::size_t>(items), outcome);
            outcome.status = CleanOutcome::Status::failed("");
            summary.outcomes.resize(static_cast<std::size_t>(items + failures), outcome);
            summary.logFile = m_home.appending("cleanup.jsonl");
            m_model.history().record(summary);
        }
        m_model.setDestinationName(QStringLiteral("history"));
        settle();
        picture("history");
        resize(900, 600);
        picture("history-small");
        resize(Theme::windowWidth, Theme::windowHeight);
    }

    Stage m_stage;
    QString m_folder;
    URL m_home;
    Workers m_workers;
    DefaultsStore m_defaults;
    AppModel m_model;
    ScreenModels m_models;
    AppWindows m_windows;
};

int makePictures(int argumentCount, char** arguments) {
    if (argumentCount != 3) {
        std::fputs("Usage: tidewright-screenshots FOLDER HOME\n", stderr);
        return 2;
    }
    const std::filesystem::path home = arguments[2];
    if (const auto built = SampleHome{.folder = URL(home.string())}.build(); !built) {
        std::fprintf(stderr, "%s\n", built.error().sentence.c_str());
        return 1;
    }
    setenv("HOME", home.c_str(), 1);
    setenv("TMPDIR", (home / SampleHome::temporaryFolder).c_str(), 1);
    for (const char* const name : {"XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CONFIG_HOME"})
        unsetenv(name);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("QT_QUICK_BACKEND", "software", 1);
    QGuiApplication application(argumentCount, arguments);
    std::setlocale(LC_NUMERIC, "C");
    Pictures(QString::fromLocal8Bit(arguments[1]), URL(home.string())).take();
    return 0;
}

} // namespace
} // namespace tidewright

int main(int argumentCount, char** arguments) {
    return tidewright::makePictures(argumentCount, arguments);
}
