#include "tests/support/app/StateTesting.h"

#include <QEventLoop>
#include <QTimer>
#include <gtest/gtest.h>

namespace tidewright::test {

namespace {

constexpr int giveUpAfter = 60'000; // milliseconds

} // namespace

DiskMonitorSystem inertMonitorSystem() {
    DiskMonitorSystem system;
    system.readDisk = [] {
        return DiskSpace{.totalBytes = 1000 * gigabyte, .availableBytes = 500 * gigabyte};
    };
    system.readTrashSize = [](const CancelToken&) { return std::nullopt; };
    system.now = currentDate;
    system.post = [](const Notification&, const std::function<void(bool)>& done) { done(false); };
    system.onWakeUp = [](QObject*, const std::function<void()>&) {};
    return system;
}

AppEnvironment inertEnvironment(const URL& home) {
    AppEnvironment environment;
    environment.home = home;
    environment.temporaryDirectory = home.appending("tmp");
    environment.historyDirectory = home.appending("history");
    environment.auditLogDirectory = home.appending("logs");
    environment.runner = ShellRunner{ToolLocator(home, {})};
    environment.hasFullDiskAccess = [] { return true; };
    environment.monitorSystem = inertMonitorSystem();
    environment.reveal = [](const std::vector<URL>&) {};
    environment.openLocation = [](const std::string&) {};
    environment.opensAtLogin = [] { return false; };
    environment.setOpensAtLogin = [](bool) { return Result<void, std::string>(); };
    environment.askToPostNotifications = [] {};
    environment.pickFolders = [](const FolderQuestion&, const FolderAnswer& answer) { answer({}); };
    environment.scan = [](const DiskScanner&, const DiskScanner::Progress&, const CancelToken&) {
        return ScanReport();
    };
    return environment;
}

ScanItem testItem(Category category, const std::string& key, Int64 sizeBytes) {
    ScanItem item = ScanItem::make({.ruleID = "test." + std::string(rawValue(category)),
                                    .group = "Group",
                                    .title = "Item " + key,
                                    .urls = {URL("/home/test/" + key)},
                                    .category = category,
                                    .decision = Decision::clean,
                                    .reason = "Nothing needs it.",
                                    .whatItIs = "A test's item.",
                                    .afterEffect = "It is made again.",
                                    .method = CleanMethod::remove()});
    item.sizeBytes = sizeBytes;
    return item;
}

TestState::TestState(const std::function<void(AppEnvironment&)>& adjust)
    : defaults(DefaultsStore::inFile(home.path("Tidewright.conf"))) {
    AppEnvironment environment = inertEnvironment(home.url());
    // Read on another thread, but written only while no scan runs.
    environment.scan = [this](const DiskScanner&, const DiskScanner::Progress&,
                              const CancelToken&) { return *prepared; };
    if (adjust)
        adjust(environment);
    model = std::make_unique<AppModel>(std::move(environment), defaults, workers);
}

void TestState::scanned(ScanReport report) {
    prepared = std::make_shared<const ScanReport>(std::move(report));
    QEventLoop loop;
    const auto leave = [&] {
        if (!model->isScanning())
            loop.quit();
    };
    const auto connection =
        QObject::connect(model.get(), &AppModel::scanStateChanged, &loop, leave);
    QTimer::singleShot(giveUpAfter, &loop, [&] { loop.quit(); });
    model->scan();
    loop.exec();
    QObject::disconnect(connection);
    ASSERT_TRUE(model->report() && *model->report() == *prepared) << "the scan did not end";
}

} // namespace tidewright::test
