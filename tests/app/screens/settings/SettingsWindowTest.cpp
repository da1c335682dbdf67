// The real window of the settings, on no screen: by mouse, wheel, keys and reader.
#include "app/screens/AppWindows.h"
#include "core/platform/FileInfo.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/app/StateTesting.h"
#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gmock/gmock.h>

#include <set>

namespace tidewright::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const QUrl settingsFile(
    QStringLiteral("qrc:/qt/qml/Tidewright/Screens/settings/SettingsWindow.qml"));

/// Into the folder that TIDEWRIGHT_GALLERY names, to be looked at; nowhere without it.
void keep(const QImage& picture, const QString& name) {
    const QString folder = qEnvironmentVariable("TIDEWRIGHT_GALLERY");
    if (folder.isEmpty())
        return;
    EXPECT_TRUE(picture.save(folder + u'/' + name + QStringLiteral(".png")));
}

class SettingsWindowTest : public testing::Test {
protected:
    SettingsWindowTest() {
        QAccessible::setActive(true);
        registerStateTypes();
    }

    void show() {
        m_state = std::make_unique<TestState>([this](AppEnvironment& environment) {
            environment.protectsUserFiles = m_protects;
            environment.hasFullDiskAccess = [this] { return m_hasAccess; };
            environment.opensAtLogin = [this] { return m_opensAtLogin; };
            environment.setOpensAtLogin = [this](bool on) -> Result<void, std::string> {
                if (m_loginFailure)
                    return Failure(*m_loginFailure);
                m_opensAtLogin = on;
                return {};
            };
            environment.askToPostNotifications = [this] { ++m_asked; };
            environment.openLocation = [this](const std::string& what) {
                m_opened.push_back(what);
            };
            environment.pickFolders = [this](const FolderQuestion&, FolderAnswer answer) {
                m_answer = std::move(answer);
            };
        });
        m_models = std::make_unique<ScreenModels>(*m_state->model);
        ASSERT_TRUE(m_scene.load(
            settingsFile, {}, {{QStringLiteral("models"), QVariant::fromValue(m_models.get())}}));
    }
    void showTab(const char* name) {
        if (!m_state)
            show();
        m_scene.click(m_scene.named(name));
    }

    SettingsStore& store() { return m_state->model->settings(); }
    bool has(const char* name) { return m_scene.hasNamed(name); }
    bool comes(const char* name) {
        return QmlScene::wait([&] { return m_scene.hasNamed(name); });
    }
    bool goes(const char* name) {
        return QmlScene::wait([&] { return !m_scene.hasNamed(name); });
    }
    bool isChecked(const char* name) {
        return QmlScene::accessible(m_scene.named(name))->state().checked;
    }
    std::string focusedName() {
        QAccessibleInterface* const known =
            QmlScene::accessible(m_scene.window().activeFocusItem());
        return known == nullptr ? "" : known->text(QAccessible::Name).toStdString();
    }
    /// Moves the keyboard there, as far as Tab leads to it.
    void tabTo(const char* name) {
        for (int i = 0; i < 30 && focusedName() != name; ++i)
            m_scene.press(Qt::Key_Tab);
        ASSERT_EQ(focusedName(), name);
    }
    void keepPictures(const char* name) {
        for (const bool isDark : {false, true}) {
            m_scene.theme().setSystemLook({isDark, {}, true});
            QmlScene::settle();
            keep(m_scene.picture(),
                 QStringLiteral("settings-%1-%2")
                     .arg(QLatin1String(name), QLatin1String(isDark ? "dark" : "light")));
        }
    }

    ScopedVariable m_motion{"TIDEWRIGHT_REDUCE_MOTION", "1"};
    bool m_protects = false;
    bool m_hasAccess = false;
    bool m_opensAtLogin = false;
    std::optional<std::string> m_loginFailure;
    int m_asked = 0; ///< for notifications
    std::vector<std::string> m_opened;
    FolderAnswer m_answer; ///< to the question that is open
    std::unique_ptr<TestState> m_state;
    std::unique_ptr<ScreenModels> m_models;
    QmlScene m_scene;
};

constexpr const char* login = "Open at login";
constexpr const char* menuBar = "Show free space next to the menu bar icon";
constexpr const char* notifications = "Notify me when space is low or the Trash is large";

// The window

TEST_F(SettingsWindowTest, HasThreeTabs) {
    show();
    EXPECT_EQ(m_scene.window().title(), QStringLiteral("Settings"));
    EXPECT_TRUE(has(login));
    showTab("Thresholds");
    EXPECT_TRUE(has("Disk space"));
    EXPECT_TRUE(has("Age"));
    EXPECT_FALSE(has(login));
    showTab("Locations");
    EXPECT_TRUE(has("Where to look for projects"));
    EXPECT_TRUE(has("Never touch"));
    showTab("General");
    EXPECT_TRUE(has(login));
}

TEST_F(SettingsWindowTest, TabsAreTurnedByKeysAndByAReader) {
    show();
    EXPECT_EQ(focusedName(), "Settings") << "the keyboard begins at the tabs";
    const auto isShown = [&](const char* tab) {
        return QmlScene::accessible(m_scene.named(tab))->state().selected;
    };
    EXPECT_TRUE(isShown("General"));
    m_scene.press(Qt::Key_Left);
    EXPECT_TRUE(isShown("General"));
    m_scene.press(Qt::Key_Right);
    EXPECT_TRUE(isShown("Thresholds"));
    m_scene.press(Qt::Key_Right);
    m_scene.press(Qt::Key_Right);
    EXPECT_TRUE(isShown("Locations"));
    m_scene.press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_TRUE(isShown("General"));
    m_scene.press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(isShown("Locations"));
    m_scene.pressByReader(m_scene.named("Thresholds"));
    EXPECT_TRUE(isShown("Thresholds"));
    EXPECT_EQ(QmlScene::accessible(m_scene.named("Thresholds"))->role(), QAccessible::PageTab);
    EXPECT_EQ(QmlScene::accessible(m_scene.named("Settings"))->role(), QAccessible::PageTabList);
}

TEST_F(SettingsWindowTest, IsClosedByEscapeAndByControlW) {
    show();
    for (const auto& [key, modifiers] : {std::pair{Qt::Key_Escape, Qt::KeyboardModifiers()},
                                         {Qt::Key_W, Qt::KeyboardModifiers(Qt::ControlModifier)}}) {
        m_scene.window().show();
        m_scene.window().requestActivate();
        ASSERT_TRUE(QmlScene::wait([&] { return m_scene.window().isActive(); }));
        m_scene.press(key, modifiers);
        EXPECT_FALSE(m_scene.window().isVisible());
    }
}

TEST_F(SettingsWindowTest, IsAsHighAsItsFormAndScrollsWhereThatIsTooMuch) {
    show();
    const int general = m_scene.window().height();
    showTab("Thresholds");
    EXPECT_GT(m_scene.window().height(), general);
    showTab("Locations");
    std::vector<URL> many;
    for (int i = 0; i < 30; ++i)
        many.push_back(URL("/folder/" + std::to_string(i)));
    store().setProjectRoots(many);
    QmlScene::settle();
    EXPECT_EQ(m_scene.window().height(), Theme::settingsHeight);
    tabTo("Remove /folder/29");
    QQuickItem* const last = m_scene.named("Remove /folder/29");
    const auto isInView = [&] {
        const QRectF place = last->mapRectToScene(QRectF({}, last->size()));
        return place.top() > 0 && place.bottom() < m_scene.window().height();
    };
    EXPECT_TRUE(QmlScene::wait(isInView));
}

TEST_F(SettingsWindowTest, EveryStateIsShownWithoutAWord) {
    m_protects = true;
    show();
    keepPictures("general");
    m_loginFailure = "Opening at login could not be turned on, since /home/me/.config/autostart "
                     "could not be written (Permission denied). See that you may write there and "
                     "that the disk has room, then try again.";
    m_scene.click(m_scene.named(login));
    m_hasAccess = true;
    m_models->settings()->checkSystem();
    tabTo(login);
    keepPictures("general-error");
    showTab("Thresholds");
    store().setLowSpaceGB(500);
    store().setCriticalSpaceGB(1);
    tabTo("Large Trash above 5 GB");
    keepPictures("thresholds");
    showTab("Locations");
    keepPictures("locations-empty");
    store().setProjectRoots({URL("/home/me/code"), URL("/srv/projects")});
    store().setExclusions(
        {URL("/home/me/a folder with a name/and another one in it/that do not fit/into the row")});
    keepPictures("locations");
    for (const char* name : {"code", "Documents", "Downloads", "Music"})
        m_state->home.folder(name);
    m_models->settings()->exclusions()->pick();
    m_answer(std::nullopt);
    ASSERT_TRUE(comes("Path of the folder"));
    m_scene.press(Qt::Key_Down);
    keepPictures("sheet");
    m_models->settings()->exclusions()->entry()->setText(QStringLiteral("~/gone"));
    keepPictures("sheet-gone");
}

// General

TEST_F(SettingsWindowTest, OpenAtLoginIsSwitched) {
    m_opensAtLogin = true;
    show();
    EXPECT_TRUE(isChecked(login));
    m_scene.click(m_scene.named(login));
    EXPECT_FALSE(m_opensAtLogin);
    EXPECT_FALSE(isChecked(login));
    tabTo(login);
    m_scene.press(Qt::Key_Space);
    EXPECT_TRUE(m_opensAtLogin);
    EXPECT_TRUE(isChecked(login));
}

TEST_F(SettingsWindowTest, WhatWentWrongStandsBelowInRed) {
    show();
    m_loginFailure = "It could not be turned on.";
    m_scene.click(m_scene.named(login));
    ASSERT_TRUE(comes("It could not be turned on."));
    EXPECT_FALSE(isChecked(login)) << "true to the system";
    EXPECT_EQ(m_scene.named("It could not be turned on.")->property("color").value<QColor>(),
              m_scene.theme().red());
    m_loginFailure.reset();
    m_scene.click(m_scene.named(login));
    EXPECT_TRUE(goes("It could not be turned on."));
    EXPECT_TRUE(isChecked(login));
}

TEST_F(SettingsWindowTest, TogglesAreThoseOfTheStore) {
    show();
    EXPECT_FALSE(isChecked(menuBar));
    m_scene.click(m_scene.named(menuBar));
    EXPECT_TRUE(store().showFreeSpaceInMenuBar());
    store().setShowFreeSpaceInMenuBar(false);
    EXPECT_FALSE(isChecked(menuBar));
    EXPECT_TRUE(isChecked(notifications));
    m_scene.pressByReader(m_scene.named(notifications));
    EXPECT_FALSE(store().notificationsEnabled());
    EXPECT_EQ(m_asked, 0);
    m_scene.pressByReader(m_scene.named(notifications));
    EXPECT_TRUE(isChecked(notifications));
    EXPECT_EQ(m_asked, 1);
    EXPECT_TRUE(has("Tidewright checks every 15 minutes and after waking, and notifies at most "
                    "twice a day per issue."));
}

TEST_F(SettingsWindowTest, PermissionsAreNotShownWhereThereAreNone) {
    show();
    for (const char* name :
         {"Full Disk Access", "App Management", "Open System Settings", "Granted"})
        EXPECT_FALSE(has(name)) << name;
    EXPECT_TRUE(has("Audit logs"));
}

TEST_F(SettingsWindowTest, PermissionsLeadToTheSystemsSettings) {
    m_protects = true;
    show();
    EXPECT_TRUE(has("Full Disk Access"));
    EXPECT_FALSE(has("Granted"));
    std::vector<QQuickItem*> buttons;
    for (QQuickItem* item : m_scene.shownItems())
        if (QAccessibleInterface* const known = QmlScene::accessible(item);
            known != nullptr && known->role() == QAccessible::Button &&
            known->text(QAccessible::Name) == QStringLiteral("Open System Settings"))
            buttons.push_back(item);
    ASSERT_EQ(buttons.size(), 2U);
    for (QQuickItem* button : buttons)
        m_scene.click(button);
    EXPECT_THAT(
        m_opened,
        ElementsAre("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles",
                    "x-apple.systempreferences:com.apple.preference.security?Privacy_AppBundles"));
    EXPECT_NE(QmlScene::accessible(buttons[0])->text(QAccessible::Description),
              QmlScene::accessible(buttons[1])->text(QAccessible::Description));
    m_scene.moveTo(m_scene.named("App Management"));
    EXPECT_TRUE(QmlScene::wait([&] {
        return m_scene.hasText("Needed only to clean caches that contain app bundles, such as "
                               "React Native DevTools.");
    }));
}

TEST_F(SettingsWindowTest, AGrantedAccessIsSeenWhenTheUserIsBack) {
    m_protects = true;
    show();
    m_hasAccess = true;
    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QmlScene::wait([&] { return !m_scene.window().isActive(); }));
    m_scene.window().requestActivate();
    EXPECT_TRUE(comes("Granted"));
}

TEST_F(SettingsWindowTest, AuditLogsAreShownAlsoBeforeThereAreAny) {
    show();
    const URL logs = m_state->model->environment().auditLogDirectory;
    m_scene.click(m_scene.named("Show in Finder"));
    EXPECT_TRUE(fileExists(logs));
    EXPECT_THAT(m_opened, ElementsAre(logs.path()));
}

TEST_F(SettingsWindowTest, AFolderOfLogsThatCannotBeMadeIsSaid) {
    show();
    m_state->home.file("logs");
    m_scene.click(m_scene.named("Show in Finder"));
    EXPECT_TRUE(comes(m_models->settings()->logsError().toUtf8().constData()));
    EXPECT_FALSE(m_models->settings()->logsError().isEmpty());
    EXPECT_THAT(m_opened, IsEmpty());
}

// Thresholds

TEST_F(SettingsWindowTest, StepsAreSeenAtOnceEverywhere) {
    showTab("Thresholds");
    m_state->scanned({});
    m_scene.scroll(m_scene.named("Apps are unused after 90 days"), 1);
    EXPECT_EQ(store().unusedAppDays(), 105);
    EXPECT_TRUE(has("Apps are unused after 105 days"));
    EXPECT_EQ(m_models->appUsage()->empty().message,
              QStringLiteral("Every app was opened in the last 105 days."));
    m_scene.act(m_scene.named("Warn below 25 GB free"),
                QAccessibleActionInterface::increaseAction());
    EXPECT_TRUE(has("Warn below 30 GB free"));
    tabTo("Downloads are old after 30 days");
    m_scene.press(Qt::Key_Up);
    EXPECT_EQ(focusedName(), "Downloads are old after 37 days") << "the keyboard stays";
    store().setLargeTrashGB(9);
    EXPECT_TRUE(has("Large Trash above 9 GB"));
}

TEST_F(SettingsWindowTest, StepsEndAtTheBounds) {
    showTab("Thresholds");
    tabTo("Critical below 10 GB free");
    for (int i = 0; i < 12; ++i)
        m_scene.press(Qt::Key_Down);
    EXPECT_EQ(store().criticalSpaceGB(), 1);
    EXPECT_TRUE(has("Critical below 1 GB free"));
    m_scene.scroll(m_scene.named("Critical below 1 GB free"), 150);
    EXPECT_EQ(store().criticalSpaceGB(), 100);
}

TEST_F(SettingsWindowTest, ANumberBeyondTheBoundsStandsUntilItIsStepped) {
    show();
    store().setLowSpaceGB(500);
    showTab("Thresholds");
    ASSERT_TRUE(has("Warn below 500 GB free"));
    EXPECT_EQ(QmlScene::accessible(m_scene.named("Warn below 500 GB free"))
                  ->valueInterface()
                  ->currentValue()
                  .toInt(),
              500);
    m_scene.scroll(m_scene.named("Warn below 500 GB free"), 1);
    EXPECT_EQ(store().lowSpaceGB(), 500);
    m_scene.scroll(m_scene.named("Warn below 500 GB free"), -1);
    EXPECT_EQ(store().lowSpaceGB(), 200);
    constexpr qint64 most = 9'000'000'000; // more than a reader can be told
    store().setLowSpaceGB(most);
    QmlScene::settle();
    EXPECT_EQ(store().lowSpaceGB(), most);
    EXPECT_TRUE(has("Warn below 9000000000 GB free"));
}

TEST_F(SettingsWindowTest, AReaderSetsANumberWithinTheBounds) {
    showTab("Thresholds");
    const auto set = [&](const char* name, int number) {
        QmlScene::accessible(m_scene.named(name))->valueInterface()->setCurrentValue(number);
    };
    set("Warn below 25 GB free", 60);
    EXPECT_EQ(store().lowSpaceGB(), 60);
    set("Warn below 60 GB free", 1000);
    EXPECT_EQ(store().lowSpaceGB(), 200);
    EXPECT_TRUE(has("Warn below 200 GB free"));
}

// Locations

TEST_F(SettingsWindowTest, PickedFoldersAreListed) {
    showTab("Locations");
    EXPECT_TRUE(has("Your whole home folder"));
    EXPECT_TRUE(has("No exclusions"));
    m_scene.click(m_scene.named("Add Folder…"));
    ASSERT_TRUE(m_answer);
    EXPECT_FALSE(m_scene.named("Add Folder…")->isEnabled()) << "while the dialog is open";
    m_answer(std::vector{URL("/code"), URL("/more")});
    EXPECT_THAT(store().projectRoots(), ElementsAre(URL("/code"), URL("/more")));
    EXPECT_TRUE(has("Remove /code"));
    EXPECT_TRUE(has("/more"));
    EXPECT_FALSE(has("Your whole home folder"));
    EXPECT_TRUE(has("No exclusions"));
    EXPECT_TRUE(m_scene.named("Add Folder…")->isEnabled());
}

TEST_F(SettingsWindowTest, TheLastRootIsRemoved) {
    showTab("Locations");
    store().setProjectRoots({URL("/code")});
    QmlScene::settle();
    m_scene.click(m_scene.named("Remove /code"));
    EXPECT_THAT(store().projectRoots(), IsEmpty());
    EXPECT_TRUE(has("Your whole home folder"));
}

TEST_F(SettingsWindowTest, TheKeyboardStaysInAListThatShrinks) {
    showTab("Locations");
    store().setExclusions({URL("/a"), URL("/b"), URL("/c")});
    QmlScene::settle();
    tabTo("Remove /b");
    m_scene.press(Qt::Key_Space);
    EXPECT_EQ(focusedName(), "Remove /c");
    m_scene.press(Qt::Key_Return);
    EXPECT_EQ(focusedName(), "Remove /a");
    m_scene.press(Qt::Key_Space);
    EXPECT_EQ(focusedName(), "Add Folder…");
    EXPECT_THAT(store().exclusions(), IsEmpty());
}

TEST_F(SettingsWindowTest, WithoutADialogAPathIsTypedByTheKeyboard) {
    showTab("Locations");
    const URL apps = m_state->home.folder("code/apps");
    m_state->home.folder("Documents");
    tabTo("Add Folder…");
    m_scene.press(Qt::Key_Space);
    m_answer(std::nullopt);
    ASSERT_TRUE(comes("Path of the folder"));
    ASSERT_TRUE(QmlScene::wait([&] { return focusedName() == "Path of the folder"; }));
    EXPECT_TRUE(has("~/Documents"));
    m_scene.type("co");
    EXPECT_FALSE(has("~/Documents"));
    EXPECT_FALSE(m_scene.named("Add")->isEnabled());
    m_scene.press(Qt::Key_Return); // it is no folder
    EXPECT_TRUE(has("Path of the folder"));
    m_scene.press(Qt::Key_Down);
    m_scene.press(Qt::Key_Return);
    EXPECT_TRUE(has("~/code/apps"));
    m_scene.press(Qt::Key_Down);
    m_scene.press(Qt::Key_Return);
    m_scene.press(Qt::Key_Return);
    EXPECT_TRUE(goes("Path of the folder"));
    EXPECT_THAT(store().projectRoots(), ElementsAre(apps));
    EXPECT_EQ(focusedName(), "Add Folder…");
}

TEST_F(SettingsWindowTest, TheSheetIsClickedAndLeft) {
    showTab("Locations");
    m_state->home.folder("code");
    m_scene.click(m_scene.named("Add Folder…"));
    m_answer(std::nullopt);
    ASSERT_TRUE(comes("~/code"));
    m_scene.press(Qt::Key_Escape);
    ASSERT_TRUE(goes("~/code"));
    EXPECT_TRUE(m_scene.window().isVisible()) << "only the sheet has gone";
    m_scene.click(m_scene.named("Add Folder…"));
    m_answer(std::nullopt);
    ASSERT_TRUE(comes("~/code"));
    m_scene.click(m_scene.named("~/code"));
    EXPECT_TRUE(goes("~/code"));
    m_scene.type("x");
    EXPECT_TRUE(has("There is no folder at this path."));
    m_scene.press(Qt::Key_Backspace);
    m_scene.click(m_scene.named("Add"));
    EXPECT_TRUE(goes("Path of the folder"));
    EXPECT_THAT(store().projectRoots(), ElementsAre(m_state->home.path("code")));
}

TEST_F(SettingsWindowTest, TabGoesThroughEverything) {
    m_protects = true;
    show();
    const auto reached = [&](int presses) {
        std::set<std::string> names;
        for (int i = 0; i < presses; ++i) {
            m_scene.press(Qt::Key_Tab);
            names.insert(focusedName());
        }
        return names;
    };
    EXPECT_EQ(reached(8), (std::set<std::string>{"Settings", login, menuBar, notifications,
                                                 "Open System Settings", "Show in Finder"}));
    showTab("Thresholds");
    EXPECT_EQ(reached(9), (std::set<std::string>{
                              "Settings", "Warn below 25 GB free", "Critical below 10 GB free",
                              "Large Trash above 5 GB", "Projects are dormant after 60 days",
                              "Apps are unused after 90 days", "Downloads are old after 30 days"}));
    store().setProjectRoots({URL("/a")});
    showTab("Locations");
    EXPECT_EQ(reached(9), (std::set<std::string>{"Settings", "Remove /a", "Add Folder…"}));
}

} // namespace
} // namespace tidewright::test
