#include "app/platform/StandardDefaults.h"

#include "tests/support/ScopedVariable.h"
#include "tests/support/TempHome.h"

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

} // namespace
} // namespace tidewright
