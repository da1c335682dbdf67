#include "app/state/SettingsStore.h"

#include "core/platform/FileContents.h"
#include "tests/support/TempHome.h"

#include <QFile>
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <functional>
#include <limits>

namespace tidewright {
namespace {

using test::TempHome;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Int64 most = 1'000'000;

class SettingsStoreTest : public testing::Test {
protected:
    TempHome home;
    URL file = home.path("Tidewright.conf");
    DefaultsStore defaults{DefaultsStore::inFile(file)};

    std::string contents() {
        EXPECT_TRUE(defaults.save());
        return readFile(file, most).value_or("none");
    }
    /// The defaults as a later start of the program finds them in a file of these lines.
    DefaultsStore defaultsOf(std::string_view lines, const QVariantMap& arguments = {}) const {
        const URL written =
            home.file(fmt::format("written {}", ++m_files), fmt::format("[General]\n{}\n", lines));
        return DefaultsStore(DefaultsStore::inFile(written), arguments);
    }

private:
    mutable int m_files = 0;
};

TEST_F(SettingsStoreTest, WithoutSettingsTheDefaultsHoldAndNothingIsWritten) {
    const SettingsStore settings(defaults);
    EXPECT_EQ(settings.lowSpaceGB(), 25);
    EXPECT_EQ(settings.criticalSpaceGB(), 10);
    EXPECT_EQ(settings.largeTrashGB(), 5);
    EXPECT_EQ(settings.dormantProjectDays(), 60);
    EXPECT_EQ(settings.unusedAppDays(), 90);
    EXPECT_EQ(settings.oldDownloadDays(), 30);
    EXPECT_THAT(settings.projectRoots(), IsEmpty());
    EXPECT_THAT(settings.exclusions(), IsEmpty());
    EXPECT_FALSE(settings.showFreeSpaceInMenuBar());
    EXPECT_TRUE(settings.notificationsEnabled());
    EXPECT_EQ(contents(), "none");
    for (const char* key : {"lowSpaceGB", "criticalSpaceGB", "largeTrashGB", "dormantProjectDays",
                            "unusedAppDays", "oldDownloadDays", "projectRoots", "exclusions",
                            "showFreeSpaceInMenuBar", "notificationsEnabled"})
        EXPECT_FALSE(defaults.isSet(QString::fromLatin1(key))) << key;
}

TEST_F(SettingsStoreTest, EachSettingIsReadFromItsKey) {
    DefaultsStore written =
        defaultsOf("lowSpaceGB=1\ncriticalSpaceGB=2\nlargeTrashGB=3\ndormantProjectDays=4\n"
                   "unusedAppDays=5\noldDownloadDays=6\nprojectRoots=/a, /b\nexclusions=/c\n"
                   "showFreeSpaceInMenuBar=true\nnotificationsEnabled=false");
    const SettingsStore settings(written);
    constexpr Int64 billion = 1'000'000'000;
    const ScanSettings expected{.dormantProjectDays = 4,
                                .unusedAppDays = 5,
                                .oldDownloadDays = 6,
                                .lowSpaceThreshold = 1 * billion,
                                .criticalSpaceThreshold = 2 * billion,
                                .largeTrashThreshold = 3 * billion,
                                .projectRoots = {URL("/a"), URL("/b")},
                                .exclusions = {URL("/c")}};
    EXPECT_EQ(settings.scanSettings(), expected);
    EXPECT_TRUE(settings.showFreeSpaceInMenuBar());
    EXPECT_FALSE(settings.notificationsEnabled());
}

TEST_F(SettingsStoreTest, ThresholdsAreDecimalGigabytes) {
    const SettingsStore settings(defaults);
    EXPECT_EQ(settings.scanSettings().lowSpaceThreshold, 25'000'000'000);
    EXPECT_EQ(settings.scanSettings().criticalSpaceThreshold, 10'000'000'000);
    EXPECT_EQ(settings.scanSettings().largeTrashThreshold, 5'000'000'000);
}

/// A setting's setter, its signal, and a value that is not its default, twice.
struct Setting {
    const char* line; ///< of the file, with the value
    std::function<void(SettingsStore&)> set;
    void (SettingsStore::*changed)();
};

const std::vector<Setting>& settingsToChange() {
    using S = SettingsStore;
    static const std::vector<Setting> all{
        {"lowSpaceGB=7", [](S& s) { s.setLowSpaceGB(7); }, &S::lowSpaceGBChanged},
        {"criticalSpaceGB=7", [](S& s) { s.setCriticalSpaceGB(7); }, &S::criticalSpaceGBChanged},
        {"largeTrashGB=7", [](S& s) { s.setLargeTrashGB(7); }, &S::largeTrashGBChanged},
        {"dormantProjectDays=7", [](S& s) { s.setDormantProjectDays(7); },
         &S::dormantProjectDaysChanged},
        {"unusedAppDays=-7", [](S& s) { s.setUnusedAppDays(-7); }, &S::unusedAppDaysChanged},
        {"oldDownloadDays=9007199254740993",
         [](S& s) { s.setOldDownloadDays(9'007'199'254'740'993); }, &S::oldDownloadDaysChanged},
        {"projectRoots=/a, /b",
         [](S& s) {
             s.setProjectRoots({URL("/a"), URL("/b")});
         },
         &S::projectRootsChanged},
        {"exclusions=/a", [](S& s) { s.setExclusions({URL("/a")}); }, &S::exclusionsChanged},
        {"showFreeSpaceInMenuBar=true", [](S& s) { s.setShowFreeSpaceInMenuBar(true); },
         &S::showFreeSpaceInMenuBarChanged},
        {"notificationsEnabled=false", [](S& s) { s.setNotificationsEnabled(false); },
         &S::notificationsEnabledChanged},
    };
    return all;
}

TEST_F(SettingsStoreTest, EachSettingIsWrittenAndOnlyItsOwnSignalComes) {
    for (const Setting& setting : settingsToChange()) {
        const TempHome place;
        DefaultsStore own(DefaultsStore::inFile(place.path("own")));
        SettingsStore settings(own);
        int others = 0;
        int told = 0;
        for (const Setting& each : settingsToChange())
            QObject::connect(&settings, each.changed,
                             [&] { ++(each.changed == setting.changed ? told : others); });
        setting.set(settings);
        EXPECT_EQ(told, 1) << setting.line;
        EXPECT_EQ(others, 0) << setting.line;
        ASSERT_TRUE(own.save());
        EXPECT_EQ(readFile(place.path("own"), most).value_or("none"),
                  fmt::format("[General]\n{}\n", setting.line));
        DefaultsStore later = defaultsOf(setting.line);
        SettingsStore laterSettings(later);
        EXPECT_EQ(laterSettings.scanSettings(), settings.scanSettings()) << setting.line;
        EXPECT_EQ(laterSettings.showFreeSpaceInMenuBar(), settings.showFreeSpaceInMenuBar());
        EXPECT_EQ(laterSettings.notificationsEnabled(), settings.notificationsEnabled());
    }
}

TEST_F(SettingsStoreTest, TheSameValueIsWrittenAgainButNobodyIsTold) {
    for (const Setting& setting : settingsToChange()) {
        const TempHome place;
        DefaultsStore own = DefaultsStore(
            DefaultsStore::inFile(place.file("own", fmt::format("[General]\n{}\n", setting.line))));
        SettingsStore settings(own);
        own.setInteger(QString::fromLatin1(setting.line).section(u'=', 0, 0), -1);
        int told = 0;
        QObject::connect(&settings, setting.changed, [&] { ++told; });
        setting.set(settings);
        setting.set(settings);
        EXPECT_EQ(told, 0) << setting.line;
        ASSERT_TRUE(own.save());
        EXPECT_EQ(readFile(place.path("own"), most).value_or("none"),
                  fmt::format("[General]\n{}\n", setting.line));
    }
}

TEST_F(SettingsStoreTest, ADefaultThatIsSetIsWrittenButNobodyIsTold) {
    SettingsStore settings(defaults);
    int told = 0;
    QObject::connect(&settings, &SettingsStore::lowSpaceGBChanged, [&] { ++told; });
    settings.setLowSpaceGB(25);
    EXPECT_EQ(told, 0);
    EXPECT_EQ(contents(), "[General]\nlowSpaceGB=25\n");
}

TEST_F(SettingsStoreTest, PropertiesAreThoseOfTheSetters) {
    SettingsStore settings(defaults);
    for (const char* name : {"lowSpaceGB", "criticalSpaceGB", "largeTrashGB", "dormantProjectDays",
                             "unusedAppDays", "oldDownloadDays"}) {
        ASSERT_TRUE(settings.setProperty(name, 77)) << name;
        EXPECT_EQ(settings.property(name).toInt(), 77) << name;
        EXPECT_EQ(defaults.integer(QString::fromLatin1(name)), 77) << name;
    }
    for (const char* name : {"showFreeSpaceInMenuBar", "notificationsEnabled"}) {
        const bool opposite = !settings.property(name).toBool();
        ASSERT_TRUE(settings.setProperty(name, opposite)) << name;
        EXPECT_EQ(defaults.boolean(QString::fromLatin1(name)), opposite) << name;
    }
}

TEST_F(SettingsStoreTest, PathsOfAnyBytesComeBackInOrder) {
    const std::vector<URL> roots{URL("/home/me/a, b"), URL("/home/me/\"c\";d"), URL("/@e%20\\f"),
                                 URL("/line\nbreak"),  URL("/\xff\xfe"),        URL("/"),
                                 URL("/caf\xC3\xA9"),  URL("/gone/long ago"),   URL("/@e%20\\f")};
    for (const std::vector<URL>& list :
         {roots, {roots[4]}, {roots[0]}, std::vector<URL>{}, {roots[3]}}) {
        SettingsStore settings(defaults);
        settings.setProjectRoots(list);
        settings.setExclusions({list.rbegin(), list.rend()});
        EXPECT_EQ(settings.projectRoots(), list);
        contents();
        const URL copy = home.path("copy");
        QFile::remove(QFile::decodeName(copy.path().c_str()));
        QFile::copy(QFile::decodeName(file.path().c_str()), QFile::decodeName(copy.path().c_str()));
        DefaultsStore later(DefaultsStore::inFile(copy));
        const SettingsStore restarted(later);
        EXPECT_EQ(restarted.projectRoots(), list);
        EXPECT_EQ(restarted.exclusions(), std::vector<URL>(list.rbegin(), list.rend()));
    }
}

TEST_F(SettingsStoreTest, ASlashAtTheEndOnlySaysThatAFolderIsMeant) {
    DefaultsStore written = defaultsOf("projectRoots=/a/, /b//, /\nexclusions=/c/");
    SettingsStore settings(written);
    EXPECT_THAT(settings.projectRoots(), ElementsAre(URL("/a"), URL("/b"), URL("/")));
    EXPECT_THAT(settings.exclusions(), ElementsAre(URL("/c")));
    int told = 0;
    QObject::connect(&settings, &SettingsStore::exclusionsChanged, [&] { ++told; });
    settings.setExclusions(settings.exclusions());
    EXPECT_EQ(told, 0);
    EXPECT_THAT(written.texts(QStringLiteral("exclusions")), ElementsAre("/c"));
}

TEST_F(SettingsStoreTest, MistypedValuesReadAsNothing) {
    DefaultsStore written = defaultsOf("lowSpaceGB=abc\ncriticalSpaceGB=12abc\nlargeTrashGB=1, 2\n"
                                       "projectRoots=\nexclusions=@Invalid()\n"
                                       "showFreeSpaceInMenuBar=a, b\nnotificationsEnabled=maybe");
    const SettingsStore settings(written);
    EXPECT_EQ(settings.lowSpaceGB(), 0);
    EXPECT_EQ(settings.criticalSpaceGB(), 12);
    EXPECT_EQ(settings.largeTrashGB(), 0);
    EXPECT_THAT(settings.projectRoots(), IsEmpty());
    EXPECT_THAT(settings.exclusions(), IsEmpty()) << "an empty path would exclude everything";
    EXPECT_FALSE(settings.showFreeSpaceInMenuBar());
    EXPECT_FALSE(settings.notificationsEnabled());
}

TEST_F(SettingsStoreTest, NothingIsClamped) {
    DefaultsStore written = defaultsOf("lowSpaceGB=-5\ncriticalSpaceGB=900000\nunusedAppDays=0");
    const SettingsStore settings(written);
    EXPECT_EQ(settings.scanSettings().lowSpaceThreshold, -5'000'000'000);
    EXPECT_EQ(settings.scanSettings().criticalSpaceThreshold, 900'000'000'000'000);
    EXPECT_EQ(settings.scanSettings().unusedAppDays, 0);
}

TEST_F(SettingsStoreTest, ArgumentsCountForThisRunAndAreNotWritten) {
    DefaultsStore written =
        defaultsOf("lowSpaceGB=30",
                   argumentDefaults({QStringLiteral("-lowSpaceGB"), QStringLiteral("40"),
                                     QStringLiteral("-notificationsEnabled"), QStringLiteral("NO"),
                                     QStringLiteral("-exclusions"), QStringLiteral("/a")}));
    const SettingsStore settings(written);
    EXPECT_EQ(settings.lowSpaceGB(), 40);
    EXPECT_FALSE(settings.notificationsEnabled());
    EXPECT_THAT(settings.exclusions(), ElementsAre(URL("/a")));
    ASSERT_TRUE(written.save());
    EXPECT_EQ(readFile(home.path("written 1"), most).value_or("none"),
              "[General]\nlowSpaceGB=30\n");
}

TEST_F(SettingsStoreTest, WhatOthersChangeIsNotSeenUntilTheNextStart) {
    const SettingsStore settings(defaults);
    defaults.setInteger(QStringLiteral("lowSpaceGB"), 99);
    EXPECT_EQ(settings.lowSpaceGB(), 25);
    EXPECT_EQ(SettingsStore(defaults).lowSpaceGB(), 99);
}

TEST_F(SettingsStoreTest, AThresholdThatBytesCantHoldEndsTheProgram) {
    constexpr Int64 largest = std::numeric_limits<Int64>::max() / 1'000'000'000;
    EXPECT_EQ(bytesOfGigabytes(largest), largest * 1'000'000'000);
    EXPECT_EQ(bytesOfGigabytes(-largest), -largest * 1'000'000'000);
    for (const Setting& setting : settingsToChange()) {
        const std::string name(setting.line, std::string(setting.line).find('='));
        if (!name.ends_with("GB"))
            continue;
        DefaultsStore written = defaultsOf(fmt::format("{}={}", name, largest + 1));
        const SettingsStore settings(written);
        EXPECT_DEATH((void)settings.scanSettings(), "a threshold fits into bytes") << name;
    }
}

} // namespace
} // namespace tidewright
