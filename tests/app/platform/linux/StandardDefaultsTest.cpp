#include "app/platform/StandardDefaults.h"

#include "app/state/SettingsModel.h"
#include "tests/support/Program.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TempHome.h"
#include "tests/support/app/StateTesting.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tidewright {
namespace {

using test::ScopedVariable;

TEST(StandardDefaults, AreAFileInTheFolderOfSettings) {
    const test::TempHome home;
    const ScopedVariable user("HOME", home.path("user").path());
    struct Case {
        std::optional<std::string> variable;
        URL file;
    };
    for (const Case& each :
         {Case{std::nullopt, home.path("user/.config/Tidewright/Tidewright.conf")},
          Case{"relative", home.path("user/.config/Tidewright/Tidewright.conf")},
          Case{home.path("s\xC3\xA9ttings").path(),
               home.path("s\xC3\xA9ttings/Tidewright/Tidewright.conf")}}) {
        const ScopedVariable settings("XDG_CONFIG_HOME", each.variable);
        std::filesystem::remove(each.file.path());
        const auto defaults = standardDefaults();
        EXPECT_FALSE(std::filesystem::exists(each.file.path())) << "made without need";
        defaults->setValue(QStringLiteral("lowSpaceGB"), 30);
        defaults->sync();
        EXPECT_EQ(defaults->status(), QSettings::NoError);
        EXPECT_TRUE(std::filesystem::exists(each.file.path())) << each.file.path();
        EXPECT_EQ(standardDefaults()->value(QStringLiteral("lowSpaceGB")).toInt(), 30);
    }
}

/// The window's state as a start of the program makes it.
struct Start {
    explicit Start(const URL& home)
        : model(test::inertEnvironment(home), defaults, workers),
          settings(model) {}

    Workers workers;
    DefaultsStore defaults{standardDefaults()};
    AppModel model;
    SettingsModel settings;
};

TEST(StandardDefaults, AreThoseOfTheWindowAndOfTheCommandLine) {
    const test::TempHome home;
    const ScopedVariable user("HOME", home.url().path());
    const ScopedVariable settings("XDG_CONFIG_HOME", std::nullopt);
    const auto said = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "settings");
        const ProcessOutput run = test::runProgram(home.url(), std::move(arguments));
        EXPECT_EQ(run.exitCode, 0) << run.errorOutput;
        return run.output;
    };
    {
        Start window(home.url());
        window.settings.diskThresholds()->increase(0);
        window.settings.ageThresholds()->decrease(1);
        window.settings.setNotificationsEnabled(false);
        window.settings.exclusions()->add({home.folder("kept, for good")});
        ASSERT_TRUE(window.defaults.save()) << "as the event loop soon does";
        EXPECT_EQ(said({"lowSpaceGB"}), "30\n");
        EXPECT_EQ(said({"unusedAppDays"}), "75\n");
        EXPECT_EQ(said({"notificationsEnabled"}), "no\n");
        EXPECT_EQ(said({"exclusions"}), home.path("kept, for good").path() + "\n");
    }
    said({"criticalSpaceGB", "500"});
    said({"showFreeSpaceInMenuBar", "yes"});
    said({"projectRoots", "--add", home.folder("code").path()});
    Start later(home.url());
    SettingsStore& store = later.model.settings();
    EXPECT_EQ(store.lowSpaceGB(), 30);
    EXPECT_EQ(store.criticalSpaceGB(), 500);
    EXPECT_TRUE(later.settings.showFreeSpaceInMenuBar());
    EXPECT_EQ(store.projectRoots(), std::vector{home.path("code")});
    later.settings.diskThresholds()->decrease(1);
    EXPECT_EQ(store.criticalSpaceGB(), 100);
}

} // namespace
} // namespace tidewright
