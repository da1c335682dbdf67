#include "app/state/SettingsModel.h"

#include "app/state/AppUsageListModel.h"
#include "core/platform/FileContents.h"
#include "core/platform/FileInfo.h"
#include "tests/support/Unprivileged.h"
#include "tests/support/app/PropertyWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tidewright {
namespace {

using test::PropertyWatch;
using test::TestState;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SettingsModelTest : public testing::Test {
protected:
    bool m_opensAtLogin = false;
    std::optional<std::string> m_loginFailure;
    bool m_hasAccess = false;
    int m_asked = 0; ///< for notifications
    std::vector<std::string> m_opened;
    DiskSpace m_disk{.totalBytes = 1000 * gigabyte, .availableBytes = 27 * gigabyte};
    TestState m_state{[this](AppEnvironment& environment) {
        environment.opensAtLogin = [this] { return m_opensAtLogin; };
        environment.setOpensAtLogin = [this](bool on) -> Result<void, std::string> {
            if (m_loginFailure)
                return Failure(*m_loginFailure);
            m_opensAtLogin = on;
            return {};
        };
        environment.hasFullDiskAccess = [this] { return m_hasAccess; };
        environment.askToPostNotifications = [this] { ++m_asked; };
        environment.openLocation = [this](const std::string& what) { m_opened.push_back(what); };
        environment.monitorSystem.readDisk = [this] { return m_disk; };
    }};
    SettingsModel m_model{*m_state.model};
    PropertyWatch m_watch{m_model};

    SettingsStore& store() { return m_state.model->settings(); }
    URL logs() { return m_state.model->environment().auditLogDirectory; }

    void TearDown() override { EXPECT_EQ(m_watch.complaint(), ""); }
};

TEST_F(SettingsModelTest, OpeningAtLoginStartsAsTheSystemSays) {
    EXPECT_FALSE(m_model.launchAtLogin());
    m_opensAtLogin = true;
    EXPECT_TRUE(SettingsModel(*m_state.model).launchAtLogin());
}

TEST_F(SettingsModelTest, OpeningAtLoginIsToldToTheSystem) {
    m_model.setLaunchAtLogin(true);
    EXPECT_TRUE(m_opensAtLogin);
    EXPECT_TRUE(m_model.launchAtLogin());
    m_model.setLaunchAtLogin(false);
    EXPECT_FALSE(m_opensAtLogin);
    EXPECT_FALSE(m_model.launchAtLogin());
    EXPECT_EQ(m_model.loginError(), QString());
}

TEST_F(SettingsModelTest, AFailedChangeIsSaidAndLeavesTheSwitchTrueToTheSystem) {
    m_loginFailure = "It could not be turned on.";
    m_model.setLaunchAtLogin(true);
    EXPECT_FALSE(m_model.launchAtLogin());
    EXPECT_EQ(m_model.loginError(), QStringLiteral("It could not be turned on."));
    m_opensAtLogin = true; // by someone else
    m_model.setLaunchAtLogin(false);
    EXPECT_TRUE(m_model.launchAtLogin());
    m_loginFailure.reset();
    m_model.setLaunchAtLogin(false);
    EXPECT_FALSE(m_model.launchAtLogin());
    EXPECT_EQ(m_model.loginError(), QString());
}

TEST_F(SettingsModelTest, TogglesAreThoseOfTheStore) {
    m_model.setShowFreeSpaceInMenuBar(true);
    EXPECT_TRUE(store().showFreeSpaceInMenuBar());
    store().setShowFreeSpaceInMenuBar(false);
    EXPECT_FALSE(m_model.showFreeSpaceInMenuBar());
    m_model.setNotificationsEnabled(false);
    EXPECT_FALSE(store().notificationsEnabled());
    store().setNotificationsEnabled(true);
    EXPECT_TRUE(m_model.notificationsEnabled());
}

TEST_F(SettingsModelTest, AsksForNotificationsWhenTheyAreTurnedOn) {
    m_model.setNotificationsEnabled(true); // they are on
    m_model.setNotificationsEnabled(false);
    EXPECT_EQ(m_asked, 0);
    m_model.setNotificationsEnabled(true);
    EXPECT_EQ(m_asked, 1);
}

TEST(SettingsModelPermissionsTest, AreShownWhereTheSystemHasThem) {
    for (const bool protects : {false, true}) {
        const TestState state(
            [&](AppEnvironment& environment) { environment.protectsUserFiles = protects; });
        EXPECT_EQ(SettingsModel(*state.model).showsPermissions(), protects);
    }
}

TEST_F(SettingsModelTest, OpensTheSystemsOwnSettings) {
    m_model.openAppManagementSettings();
    EXPECT_THAT(
        m_opened,
        ElementsAre("x-apple.systempreferences:com.apple.preference.security?Privacy_AppBundles"));
}

TEST_F(SettingsModelTest, FindsOutWhatWasChangedElsewhere) {
    m_opensAtLogin = true;
    m_hasAccess = true;
    m_model.checkSystem();
    EXPECT_TRUE(m_model.launchAtLogin());
    EXPECT_TRUE(m_state.model->hasFullDiskAccess());
}

TEST_F(SettingsModelTest, TheFolderOfAuditLogsIsMadeAndOpened) {
    ASSERT_FALSE(fileExists(logs()));
    m_model.showAuditLogs();
    EXPECT_THAT(m_opened, ElementsAre(logs().path()));
    namespace fs = std::filesystem;
    EXPECT_EQ(fs::status(logs().path()).permissions(), fs::perms::owner_all);
    m_state.home.file("logs/clean.jsonl", "kept");
    m_model.showAuditLogs();
    EXPECT_EQ(readFile(logs().appending("clean.jsonl"), 100).value_or(""), "kept");
    EXPECT_EQ(m_opened.size(), 2U);
    EXPECT_EQ(m_model.logsError(), QString());
}

TEST_F(SettingsModelTest, AFolderThatCannotBeMadeIsSaidAndNotOpened) {
    m_state.home.file("logs");
    m_model.showAuditLogs();
    EXPECT_THAT(m_opened, IsEmpty());
    EXPECT_EQ(m_model.logsError().toStdString(),
              "The folder of the audit logs, " + logs().path() +
                  ", could not be made (Not a directory). See that you may write in the folders "
                  "above it, then try again.");
    std::filesystem::remove(logs().path());
    m_model.showAuditLogs();
    EXPECT_THAT(m_opened, ElementsAre(logs().path()));
    EXPECT_EQ(m_model.logsError(), QString());
}

TEST_F(SettingsModelTest, AFolderThatMayNotBeMadeIsSaid) {
    m_state.home.setMode("", 0755);
    const std::string sentence = test::asOrdinaryUser([this] {
        m_model.showAuditLogs();
        return m_model.logsError().toStdString();
    });
    EXPECT_THAT(sentence, HasSubstr("could not be made (Permission denied)"));
    EXPECT_FALSE(fileExists(logs()));
}

TEST_F(SettingsModelTest, AChangeCountsAtOnceWhereverItMatters) {
    bool isMeasured = false;
    m_state.model->monitor().refresh([&] { isMeasured = true; });
    EXPECT_EQ(m_state.model->monitor().health(), DiskSpace::Health::good);
    int told = 0;
    QObject::connect(&m_state.model->monitor(), &DiskMonitor::healthChanged, [&] { ++told; });
    m_model.diskThresholds()->increase(0); // 30
    EXPECT_EQ(m_state.model->monitor().health(), DiskSpace::Health::low);
    m_model.diskThresholds()->setValue(1, 28);
    EXPECT_EQ(m_state.model->monitor().health(), DiskSpace::Health::critical);
    EXPECT_EQ(told, 2);

    AppUsageListModel apps(*m_state.model);
    m_state.scanned({});
    EXPECT_EQ(apps.empty().message, QStringLiteral("Every app was opened in the last 90 days."));
    m_model.ageThresholds()->decrease(1);
    EXPECT_EQ(apps.empty().message, QStringLiteral("Every app was opened in the last 75 days."));

    m_model.exclusions()->add({URL("/kept")});
    m_model.projectRoots()->add({URL("/code")});
    EXPECT_EQ(store().scanSettings().exclusions, std::vector{URL("/kept")});
    EXPECT_EQ(store().scanSettings().projectRoots, std::vector{URL("/code")});
    const URL kept = m_state.home.path("kept/a");
    EXPECT_TRUE(m_state.model->policy({}).isAllowed(kept, false));
    m_model.exclusions()->add({m_state.home.path("kept")});
    EXPECT_FALSE(m_state.model->policy({}).isAllowed(kept, false));
}

TEST_F(SettingsModelTest, OutlivesTheModel) {
    m_model.setLaunchAtLogin(true);
    m_state.model.reset();
    m_model.setLaunchAtLogin(false);
    m_model.setNotificationsEnabled(true);
    m_model.setShowFreeSpaceInMenuBar(true);
    m_model.openAppManagementSettings();
    m_model.showAuditLogs();
    m_model.checkSystem();
    EXPECT_TRUE(m_model.launchAtLogin());
    EXPECT_TRUE(m_opensAtLogin);
    EXPECT_THAT(m_opened, IsEmpty());
}

} // namespace
} // namespace tidewright
