#include "cli/SettingsCommand.h"

#include "tests/support/Program.h"
#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::runProgram;
using test::TempHome;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SettingsCommand : public testing::Test {
protected:
    TempHome m_home;

    ProcessOutput run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "settings");
        return runProgram(m_home.url(), std::move(arguments));
    }

    /// What is printed; the command must succeed.
    std::string said(const std::vector<std::string>& arguments) const {
        const ProcessOutput output = run(arguments);
        EXPECT_EQ(output.exitCode, 0) << output.errorOutput;
        EXPECT_EQ(output.errorOutput, "");
        return output.output;
    }

    /// Why it was refused.
    std::string refusal(const std::vector<std::string>& arguments) const {
        const ProcessOutput output = run(arguments);
        EXPECT_EQ(output.exitCode, 2) << output.output;
        EXPECT_EQ(output.output, "");
        return output.errorOutput;
    }

    ParsedJson json(const std::vector<std::string>& arguments) const {
        return parseJson(said(arguments)).value_or(ParsedJson());
    }
};

TEST_F(SettingsCommand, ShowsAllAsTheyAreDelivered) {
    EXPECT_EQ(said({}), "lowSpaceGB              25\n"
                        "criticalSpaceGB         10\n"
                        "largeTrashGB            5\n"
                        "dormantProjectDays      60\n"
                        "unusedAppDays           90\n"
                        "oldDownloadDays         30\n"
                        "projectRoots            the whole home folder\n"
                        "exclusions              none\n"
                        "showFreeSpaceInMenuBar  no\n"
                        "notificationsEnabled    yes\n");
}

TEST_F(SettingsCommand, ShowsThemAsOneObject) {
    EXPECT_EQ(json({"--json"}), ParsedJson({{"lowSpaceGB", 25},
                                            {"criticalSpaceGB", 10},
                                            {"largeTrashGB", 5},
                                            {"dormantProjectDays", 60},
                                            {"unusedAppDays", 90},
                                            {"oldDownloadDays", 30},
                                            {"projectRoots", ParsedJson::array()},
                                            {"exclusions", ParsedJson::array()},
                                            {"showFreeSpaceInMenuBar", false},
                                            {"notificationsEnabled", true}}));
}

TEST_F(SettingsCommand, LookingWritesNothing) {
    const std::string before = m_home.snapshot();
    said({});
    said({"lowSpaceGB", "--json"});
    refusal({"lowSpaceGB", "many"});
    refusal({"nope", "1"});
    EXPECT_EQ(m_home.snapshot(), before);
}

TEST_F(SettingsCommand, ANumberIsTakenAsItStands) {
    for (const char* value : {"30", "7", "0", "-5", "1000000"}) {
        EXPECT_EQ(said({"lowSpaceGB", value}), "");
        EXPECT_EQ(said({"lowSpaceGB"}), std::string(value) + "\n");
        EXPECT_EQ(json({"--json"})["lowSpaceGB"], std::stoi(value));
    }
    EXPECT_EQ(said({"criticalSpaceGB"}), "10\n");
}

TEST_F(SettingsCommand, WhatIsNoWholeNumberIsRefused) {
    for (const char* value : {"many", "1.5", "12 GB", "0x10", "", "99999999999999999999"})
        EXPECT_EQ(refusal({"lowSpaceGB", value}),
                  "tidewright: lowSpaceGB takes a whole number, and \"" + std::string(value) +
                      "\" is none.\n");
    EXPECT_EQ(refusal({"largeTrashGB", "9223372037"}),
              "tidewright: largeTrashGB takes at most 9223372036 GB.\n");
    EXPECT_EQ(said({"largeTrashGB", "9223372036"}), "");
    EXPECT_EQ(said({"unusedAppDays", "9223372037"}), "");
    EXPECT_EQ(said({"lowSpaceGB"}), "25\n");
}

TEST_F(SettingsCommand, ATruthValueHasManyWords) {
    for (const char* word : {"no", "off", "FALSE", "0"}) {
        said({"notificationsEnabled", "yes"});
        EXPECT_EQ(said({"notificationsEnabled"}), "yes\n");
        said({"notificationsEnabled", word});
        EXPECT_EQ(said({"notificationsEnabled"}), "no\n");
    }
    for (const char* word : {"yes", "on", "True", "1"}) {
        said({"showFreeSpaceInMenuBar", "no"});
        said({"showFreeSpaceInMenuBar", word});
        EXPECT_EQ(json({"--json"})["showFreeSpaceInMenuBar"], true);
    }
    EXPECT_EQ(refusal({"notificationsEnabled", "maybe"}),
              "tidewright: notificationsEnabled takes yes or no, not \"maybe\".\n");
}

TEST_F(SettingsCommand, FoldersAreAddedAndRemoved) {
    const std::string odd = m_home.path("with, comma \"and\" quotes").path();
    said({"exclusions", "--add", odd});
    said({"exclusions", "--add", "/b/../c/", "--add", "/d"});
    EXPECT_EQ(said({"exclusions"}), odd + "\n/c\n/d\n");
    said({"exclusions", "--add", "/d", "--remove", "/c/."});
    EXPECT_EQ(json({"exclusions", "--json"}),
              ParsedJson({{"exclusions", ParsedJson::array({odd, "/d"})}}));
    EXPECT_EQ(refusal({"exclusions", "--remove", "/c"}), "tidewright: /c is not in exclusions.\n");
    said({"exclusions", "--remove", odd, "--remove", "/d"});
    EXPECT_EQ(said({"exclusions"}), "");
}

TEST_F(SettingsCommand, AProjectRootMustBeAFolder) {
    const URL file = m_home.file("file");
    const URL folder = m_home.folder("code");
    EXPECT_THAT(refusal({"projectRoots", "--add", m_home.path("gone").path()}),
                HasSubstr("can't be used"));
    EXPECT_THAT(refusal({"projectRoots", "--add", file.path()}), HasSubstr("is not a folder"));
    said({"projectRoots", "--add", folder.path()});
    EXPECT_EQ(said({"projectRoots"}), folder.path() + "\n");
}

TEST_F(SettingsCommand, WrongUsageSaysWhatWouldBeRight) {
    EXPECT_EQ(refusal({"nope"}),
              "tidewright: there is no setting \"nope\"; tidewright settings shows all.\n");
    EXPECT_EQ(refusal({"exclusions", "/a"}),
              "tidewright: exclusions is a list of folders: use --add DIR and --remove DIR.\n");
    EXPECT_EQ(refusal({"lowSpaceGB", "--add", "/a"}),
              "tidewright: lowSpaceGB is no list: give its value behind its name.\n");
    EXPECT_EQ(refusal({"--add", "/a"}), "tidewright: name the list: exclusions or projectRoots.\n");
    EXPECT_EQ(refusal({"exclusions", "--add", ""}), "tidewright: an empty path names nothing.\n");
}

TEST_F(SettingsCommand, WhatCannotBeSavedIsAFailure) {
    m_home.file(".config"); // where a folder is needed
    const ProcessOutput output = run({"lowSpaceGB", "30"});
    EXPECT_EQ(output.exitCode, 1);
    EXPECT_THAT(output.errorOutput, HasSubstr("The settings could not be saved in "));
}

TEST_F(SettingsCommand, ARefusedRequestChangesNoSetting) {
    DefaultsStore defaults(DefaultsStore::inFile(m_home.path("settings.conf")));
    SettingsStore settings(defaults);
    const URL folder = m_home.folder("code");
    SettingsRequest request;
    request.key = "projectRoots";
    request.added = {folder.path(), m_home.path("gone").path()};
    EXPECT_FALSE(applyRequest(request, settings));
    EXPECT_THAT(settings.projectRoots(), IsEmpty());
    request.added.pop_back();
    EXPECT_TRUE(applyRequest(request, settings));
    EXPECT_THAT(settings.projectRoots(), ElementsAre(folder));
}

} // namespace
} // namespace tidewright
