#include "app/state/AppEnvironment.h"

#include "app/platform/FileManager.h"
#include "app/platform/LoginItem.h"
#include "core/platform/FileProtection.h"
#include "core/platform/StandardFolders.h"
#include "core/probes/SystemAccess.h"
#include "core/probes/Tools.h"
#include "core/scan/RuleCatalog.h"

#include <QCoreApplication>
#include <QFile>

namespace tidewright {

namespace {

URL ownProgram() {
    return URL(QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString());
}

} // namespace

AppEnvironment AppEnvironment::current() {
    const URL home = homeDirectory();
    return {.home = home,
            .temporaryDirectory = tidewright::temporaryDirectory(),
            .historyDirectory = userDataDirectory(home).appending("Tidewright"),
            .auditLogDirectory = tidewright::auditLogDirectory(home),
            .rules = RuleCatalog::all(),
            .runner = runnerFor(home, processEnvironment()),
            .hasFullDiskAccess = [home] { return SystemAccess::hasFullDiskAccess(home); },
            .protectsUserFiles = tidewright::protectsUserFiles(),
            .monitorSystem = DiskMonitorSystem::current(),
            .reveal = showInFileManager,
            .openLocation = tidewright::openLocation,
            .opensAtLogin = LoginItem::isEnabled,
            .setOpensAtLogin = [](bool on) { return LoginItem::setEnabled(on, ownProgram()); },
            .askToPostNotifications = tidewright::askToPostNotifications,
            .pickFolders = tidewright::pickFolders,
            .scan =
                [](const DiskScanner& scanner, const DiskScanner::Progress& progress,
                   const CancelToken& cancel) {
                    return scanner.scan(progress, cancel).map_error([](ScanCancelled) {
                        return ScanFailure{};
                    });
                }};
}

} // namespace tidewright
