#include "core/probes/AndroidEnvironment.h"

#include "core/model/Coding.h"
#include "core/platform/FileContents.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace tidewright::test {

namespace {

using Variables = std::map<std::string, std::string>;
using Names = std::set<std::string>;

std::string fixture(std::string_view name) {
    return readFile(URL(fmt::format("{}/android/{}", TIDEWRIGHT_FIXTURES, name)), 1'000'000)
        .value();
}

AndroidEnvironment discover(const TempHome& home, const Variables& variables = {}) {
    return AndroidEnvironment::discover(home.url(), variables);
}

/// With the applications of all users, which a test can't choose.
Names withThisMachines(Names names) {
    const TempHome empty;
    names.merge(AndroidEnvironment::installedStudioDataDirectories(empty.url()));
    return names;
}

void expectStudios(const TempHome& home, const Names& names) {
    EXPECT_EQ(AndroidEnvironment::installedStudioDataDirectories(home.url()),
              withThisMachines(names));
}

void installStudio(const TempHome& home, std::string_view name, std::string_view productInfo) {
    home.file(fmt::format("Applications/{}/Contents/Resources/product-info.json", name),
              productInfo);
}

/// An emulator in the usual folder.
AndroidEnvironment::AVD avd(const TempHome& home,
                            const std::string& name,
                            std::optional<std::string> image) {
    return {name, home.path(".android/avd/" + name + ".avd"),
            home.path(".android/avd/" + name + ".ini"), std::move(image)};
}

void expectAVDs(const AndroidEnvironment& found,
                const std::vector<AndroidEnvironment::AVD>& expected) {
    EXPECT_EQ(jsonText(encode(found.avds, commandLineStyle), JsonLayout::indented),
              jsonText(encode(expected, commandLineStyle), JsonLayout::indented));
    EXPECT_TRUE(found.avds == expected);
}

TEST(AndroidEnvironment, AMachineWithoutAndroidToolsHasNone) {
    const TempHome home;
    AndroidEnvironment expected;
    expected.avdHome = home.path(".android/avd");
    expected.studioDataDirectories = withThisMachines({});
    EXPECT_EQ(discover(home), expected);
}

TEST(AndroidEnvironment, EverythingIsFoundTogether) {
    const TempHome home;
    home.folder("Library/Android/sdk");
    home.file(".android/avd/Pixel_8.avd/config.ini", fixture("config.ini"));
    installStudio(home, "Android Studio.app", fixture("product-info.json"));
    AndroidEnvironment expected;
    expected.sdk = home.path("Library/Android/sdk");
    expected.avdHome = home.path(".android/avd");
    expected.avds = {avd(home, "Pixel_8", "android-34/google_apis")};
    expected.studioDataDirectories = withThisMachines({"AndroidStudio2024.1"});
    EXPECT_EQ(discover(home), expected);
}

// The SDK

struct SDKCase {
    std::string name;
    std::vector<std::string> folders;
    Variables variables; ///< a value that begins with "~" is below the home folder
    std::optional<std::string> sdk;
};

void PrintTo(const SDKCase& each, std::ostream* stream) { *stream << each.name; }

class AndroidSDK : public testing::TestWithParam<SDKCase> {};

TEST_P(AndroidSDK, IsTheFirstCandidateThatExists) {
    const TempHome home;
    for (const std::string& folder : GetParam().folders)
        home.folder(folder);
    Variables variables = GetParam().variables;
    for (auto& [name, value] : variables)
        if (value.starts_with('~'))
            value = home.path(value.substr(1)).path();
    const auto expected = GetParam().sdk;
    EXPECT_EQ(discover(home, variables).sdk,
              expected ? std::optional(home.path(*expected)) : std::nullopt);
}

const std::string usualSDK = "Library/Android/sdk";
const SDKCase sdkCases[] = {
    {"UsualPlace", {usualSDK}, {}, usualSDK},
    {"HomeVariableComesFirst",
     {"a", "b", usualSDK},
     {{"ANDROID_SDK_ROOT", "~b"}, {"ANDROID_HOME", "~a"}},
     "a"},
    {"RootVariableComesSecond", {"b", usualSDK}, {{"ANDROID_SDK_ROOT", "~b"}}, "b"},
    {"HomeVariablePointsNowhere",
     {"b", usualSDK},
     {{"ANDROID_HOME", "~a"}, {"ANDROID_SDK_ROOT", "~b"}},
     "b"},
    {"BothPointNowhere",
     {usualSDK},
     {{"ANDROID_HOME", "~a"}, {"ANDROID_SDK_ROOT", "~b"}},
     usualSDK},
    {"NothingExists", {}, {{"ANDROID_HOME", "~a"}, {"ANDROID_SDK_ROOT", "~b"}}, std::nullopt},
    {"EmptyVariables", {usualSDK}, {{"ANDROID_HOME", ""}, {"ANDROID_SDK_ROOT", ""}}, usualSDK},
    {"RelativeVariables",
     {usualSDK},
     {{"ANDROID_HOME", "."}, {"ANDROID_SDK_ROOT", ".."}},
     usualSDK},
    {"OtherVariables",
     {"a"},
     {{"ANDROID_SDK_HOME", "~a"}, {"ANDROID_NDK_HOME", "~a"}, {"android_home", "~a"}},
     std::nullopt},
    {"OtherPlaces", {"Android/Sdk", "Library/Android", "Library/Android/SDK2"}, {}, std::nullopt},
};

INSTANTIATE_TEST_SUITE_P(All, AndroidSDK, testing::ValuesIn(sdkCases), [](const auto& each) {
    return each.param.name;
});

TEST(AndroidEnvironment, ALinkToAnSDKCountsAndOneThatLeadsNowhereDoesNot) {
    const TempHome home;
    home.folder("disk/sdk");
    home.link("nowhere", "gone");
    home.link("Library/Android/sdk", "../../disk/sdk");
    EXPECT_EQ(discover(home, {{"ANDROID_HOME", home.path("nowhere").path()}}).sdk,
              home.path("Library/Android/sdk"));
}

// Emulators

TEST(AndroidEnvironment, EmulatorsAreSortedByTheBytesOfTheirNames) {
    const TempHome home;
    for (const char* name : {"b", "Z", "a", "Pixel_10", "Pixel_9", "\xff", "ä"})
        home.folder(fmt::format(".android/avd/{}.avd", name));
    std::vector<std::string> names;
    for (const auto& each : discover(home).avds)
        names.push_back(each.name);
    EXPECT_EQ(names, (std::vector<std::string>{"Pixel_10", "Pixel_9", "Z", "a", "b", "ä", "\xff"}));
}

TEST(AndroidEnvironment, OnlyTheExtensionMakesAnEmulator) {
    const TempHome home;
    home.folder("elsewhere");
    for (const char* name : {"Pixel.avd", "two.dots.avd", "with blank.avd", ".hidden.avd",
                             "big.AVD", "Pixel.avd2", "Pixel.avd.bak", "Pixel", ".avd", "avd"})
        home.folder(fmt::format(".android/avd/{}", name));
    home.file(".android/avd/Pixel.ini", "path=elsewhere");
    home.file(".android/avd/x.avd", "a file");
    home.link(".android/avd/linked.avd", "../../elsewhere");
    home.link(".android/avd/dangling.avd", "gone");
    home.folder(".android/avd/folder/inner.avd");
    expectAVDs(discover(home),
               {avd(home, ".hidden", std::nullopt), avd(home, "Pixel", std::nullopt),
                avd(home, "dangling", std::nullopt), avd(home, "linked", std::nullopt),
                avd(home, "two.dots", std::nullopt), avd(home, "with blank", std::nullopt),
                avd(home, "x", std::nullopt)});
}

TEST(AndroidEnvironment, TheFolderOfEmulatorsCanBeElsewhere) {
    const TempHome home;
    home.folder(".android/avd/usual.avd");
    home.file("emulators/moved.avd/config.ini", fixture("config-emulator.ini"));
    const AndroidEnvironment found =
        discover(home, {{"ANDROID_AVD_HOME", home.path("emulators").path()}});
    EXPECT_EQ(found.avdHome, home.path("emulators"));
    expectAVDs(found, {{"moved", home.path("emulators/moved.avd"), home.path("emulators/moved.ini"),
                        "android-35/google_apis_playstore"}});
}

TEST(AndroidEnvironment, AMissingFolderOfEmulatorsIsTakenAllTheSame) {
    const TempHome home;
    home.folder(".android/avd/usual.avd");
    const AndroidEnvironment found =
        discover(home, {{"ANDROID_AVD_HOME", home.path("gone").path()}});
    EXPECT_EQ(found.avdHome, home.path("gone"));
    expectAVDs(found, {});
}

TEST(AndroidEnvironment, AVariableWithoutAPathDoesNotHideTheEmulators) {
    const TempHome home;
    home.folder(".android/avd/usual.avd");
    for (const char* value : {"", "emulators"}) {
        const AndroidEnvironment found = discover(home, {{"ANDROID_AVD_HOME", value}});
        EXPECT_EQ(found.avdHome, home.path(".android/avd")) << value;
        expectAVDs(found, {avd(home, "usual", std::nullopt)});
    }
}

TEST(AndroidEnvironment, ConfigurationsThatCantBeReadNameNoImage) {
    const TempHome home;
    const std::string good = fixture("config.ini");
    home.file(".android/avd/bytes.avd/config.ini", "name=\xff\xfe\n" + good);
    home.folder(".android/avd/folder.avd/config.ini");
    home.file(".android/avd/good.avd/config.ini", good);
    home.file(".android/avd/other.avd/Config.ini.bak", good);
    home.folder(".android/avd/pipe.avd");
    EXPECT_EQ(mkfifo(home.path(".android/avd/pipe.avd/config.ini").path().c_str(), 0600), 0);
    home.link(".android/avd/loop.avd/config.ini", "config.ini");
    expectAVDs(discover(home),
               {avd(home, "bytes", std::nullopt), avd(home, "folder", std::nullopt),
                avd(home, "good", "android-34/google_apis"), avd(home, "loop", std::nullopt),
                avd(home, "other", std::nullopt), avd(home, "pipe", std::nullopt)});
}

TEST(AndroidEnvironment, WhatMayNotBeReadMeansLess) {
    const TempHome home;
    home.setMode("", 0755);
    home.file(".android/avd/Pixel.avd/config.ini", fixture("config.ini"));
    installStudio(home, "Android Studio.app", fixture("product-info.json"));
    const auto found = [&] {
        const AndroidEnvironment each = discover(home);
        return fmt::format("{} {} {}", each.avds.size(),
                           each.avds.empty() ? "" : each.avds[0].systemImage.value_or("none"),
                           each.studioDataDirectories.contains("AndroidStudio2024.1"));
    };
    EXPECT_EQ(asOrdinaryUser(found), "1 android-34/google_apis true");
    home.setMode(".android/avd/Pixel.avd/config.ini", 0);
    EXPECT_EQ(asOrdinaryUser(found), "1 none true");
    home.setMode(".android/avd", 0);
    home.setMode("Applications", 0);
    EXPECT_EQ(asOrdinaryUser(found), "0  false");
}

// The image of a configuration

struct ImageCase {
    std::string config;
    std::optional<std::string> image;
};

const ImageCase imageCases[] = {
    {"image.sysdir.1=system-images/android-34/google_apis/arm64-v8a/", "android-34/google_apis"},
    {"image.sysdir.1 = system-images/android-34/google_apis/arm64-v8a/", "android-34/google_apis"},
    {"image.sysdir.1\t=\t system-images/android-34/google_apis \t", "android-34/google_apis"},
    {"image.sysdir.1 = /abs/sdk/system-images/android-33/default/x86_64/", "android-33/default"},
    {"image.sysdir.1=//system-images//android-33///default//", "android-33/default"},
    {"image.sysdir.1=a b/system-images/android 33/täg\xff", "android 33/täg\xff"},
    {"image.sysdir.1=system-images/system-images/a/b", "system-images/a"},
    {"image.sysdir.1=my-system-images/x/system-images/a/b/system-images/c/d", "a/b"},
    {"image.sysdir.1=system-images-old/x/y/system-images/a/b", "a/b"},
    {"image.sysdir.1=a=b/system-images/c=d/e=f", "c=d/e=f"},
    {"image.sysdir.1==system-images/a/b", std::nullopt},
    {"image.sysdir.1==/system-images/a/b", "a/b"},
    {"image.sysdir.1/system-images/a/b", "a/b"},
    {"image.sysdir.10=system-images/a/b", "a/b"},
    {"\n\n\r\nabi.type=x86\nimage.sysdir.1=system-images/a/b\n", "a/b"},
    {"abi.type=x86\r\nimage.sysdir.1=system-images/a/b\r\nx=y\r\n", "a/b"},
    {"abi.type=x86\rimage.sysdir.1=system-images/a/b\rx=y\r", "a/b"},
    {"x\vy\fimage.sysdir.1=system-images/a/b\fz", "a/b"},
    {"image.sysdir.1=system-images/a/b\nimage.sysdir.1=system-images/c/d", "a/b"},

    {"", std::nullopt},
    {"\n\r\n", std::nullopt},
    {"image.sysdir.1", std::nullopt},
    {"image.sysdir.1=", std::nullopt},
    {"image.sysdir.1= \t", std::nullopt},
    {"image.sysdir.1=system-images/android-34", std::nullopt},
    {"image.sysdir.1=system-images/android-34/", std::nullopt},
    {"image.sysdir.1=system-images", std::nullopt},
    {"image.sysdir.1=System-Images/a/b", std::nullopt},
    {"image.sysdir.1=xsystem-images/a/b", std::nullopt},
    {"image.sysdir.1=system-imagesx/a/b", std::nullopt},
    {"image.sysdir.1=system-images\\a\\b", std::nullopt},
    {"image.sysdir.1=\"system-images/a/b\"", std::nullopt},
    {"image.sysdir.1=elsewhere\nimage.sysdir.1=system-images/a/b", std::nullopt},
    {"image.sysdir.10=elsewhere\nimage.sysdir.1=system-images/a/b", std::nullopt},
    {"image.sysdir.2=system-images/a/b", std::nullopt},
    {" image.sysdir.1=system-images/a/b", std::nullopt},
    {"# image.sysdir.1=system-images/a/b", std::nullopt},
    {"#image.sysdir.1=system-images/a/b", std::nullopt},
    {"Image.sysdir.1=system-images/a/b", std::nullopt},
    {"imageXsysdirX1=system-images/a/b", std::nullopt},
};

TEST(AndroidEnvironment, TheImageIsTwoComponentsOfTheFirstLineOfItsKey) {
    for (const ImageCase& each : imageCases)
        EXPECT_EQ(AndroidEnvironment::systemImage(each.config), each.image) << each.config;
}

TEST(AndroidEnvironment, ImagesOfRealConfigurations) {
    const TempHome home;
    for (const char* name : {"config", "config-emulator", "config-windows"})
        home.file(fmt::format(".android/avd/{}.avd/config.ini", name),
                  fixture(fmt::format("{}.ini", name)));
    expectAVDs(discover(home), {avd(home, "config", "android-34/google_apis"),
                                avd(home, "config-emulator", "android-35/google_apis_playstore"),
                                avd(home, "config-windows", "android-33/default")});
}

TEST(AndroidEnvironment, AVeryLongConfigurationIsReadToItsEnd) {
    std::string config;
    for (int line = 0; line < 300'000; ++line)
        config += "image.sysdir\n";
    EXPECT_EQ(AndroidEnvironment::systemImage(config), std::nullopt);
    EXPECT_EQ(AndroidEnvironment::systemImage(config + "image.sysdir.1=system-images/a/b"), "a/b");
}

// Android Studio

TEST(AndroidEnvironment, StudiosNameTheirDataFolders) {
    const TempHome home;
    expectStudios(home, {});
    installStudio(home, "Android Studio.app", fixture("product-info.json"));
    expectStudios(home, {"AndroidStudio2024.1"});
    installStudio(home, "Android Studio Preview.app", fixture("product-info-preview.json"));
    expectStudios(home, {"AndroidStudio2024.1", "AndroidStudioPreview2024.3"});
    installStudio(home, "Android Studio copy.app", fixture("product-info.json"));
    installStudio(home, "Android Studio4.1.app",
                  "\xef\xbb\xbf{\r\n\"dataDirectoryName\":\"\\u00c4\"}");
    expectStudios(home, {"AndroidStudio2024.1", "AndroidStudioPreview2024.3", "Ä"});
}

TEST(AndroidEnvironment, ALinkedStudioCounts) {
    const TempHome home;
    home.file("disk/Studio/Contents/Resources/product-info.json", fixture("product-info.json"));
    home.link("Applications/Android Studio.app", "../disk/Studio");
    expectStudios(home, {"AndroidStudio2024.1"});
}

TEST(AndroidEnvironment, OtherApplicationsAreNotAsked) {
    const TempHome home;
    for (const char* name :
         {"AndroidStudio.app", "android studio.app", "My Android Studio.app", "Android Studi.app",
          "Android Studio", "Android Studio.APP", "Android Studio.app.bak", "Android Studio.zip",
          "Editor.app", "JetBrains/Android Studio.app", ".Android Studio.app"})
        installStudio(home, name, fixture("product-info.json"));
    home.file("Applications/Android Studio 2.app", "a file");
    home.file("Applications/Android Studio 3.app/product-info.json", fixture("product-info.json"));
    home.folder("Applications/Android Studio 4.app/Contents/Resources/product-info.json");
    home.link("Applications/Android Studio 5.app", "gone");
    home.file("Library/Android Studio.app/Contents/Resources/product-info.json",
              fixture("product-info.json"));
    expectStudios(home, {});
}

TEST(AndroidEnvironment, ProductInformationWithoutANameAddsNothing) {
    for (const char* info : {"",
                             " ",
                             "{}",
                             "{",
                             "[]",
                             "null",
                             "\"dataDirectoryName\"",
                             "[\"dataDirectoryName\",\"a\"]",
                             "{\"name\":\"Android Studio\",\"productCode\":\"AI\"}",
                             "{\"dataDirectoryName\":null}",
                             "{\"dataDirectoryName\":7}",
                             "{\"dataDirectoryName\":[\"a\"]}",
                             "{\"dataDirectoryName\":{\"dataDirectoryName\":\"a\"}}",
                             "{\"DataDirectoryName\":\"a\"}",
                             "{\"launch\":{\"dataDirectoryName\":\"a\"}}",
                             "[{\"dataDirectoryName\":\"a\"}]",
                             "{\"dataDirectoryName\":\"a\"",
                             "{\"dataDirectoryName\":\"a\"}}",
                             "{\"dataDirectoryName\":\"a\xff\"}",
                             "{'dataDirectoryName':'a'}",
                             "dataDirectoryName=a"}) {
        const TempHome home;
        installStudio(home, "Android Studio.app", info);
        SCOPED_TRACE(info);
        expectStudios(home, {});
    }
}

TEST(AndroidEnvironment, ABrokenStudioDoesNotHideAnother) {
    const TempHome home;
    installStudio(home, "Android Studio 1.app", "{");
    installStudio(home, "Android Studio 2.app", fixture("product-info.json"));
    installStudio(home, "Android Studio 3.app", "[]");
    expectStudios(home, {"AndroidStudio2024.1"});
}

TEST(AndroidEnvironment, ProductInformationIsReadUpToASize) {
    const auto info = [](std::size_t bytes) {
        const std::string start = R"({"dataDirectoryName":"a","layout":")";
        return start + std::string(bytes - start.size() - 2, 'x') + "\"}";
    };
    const TempHome home;
    installStudio(home, "Android Studio.app", info(2'000'000));
    expectStudios(home, {"a"});
    installStudio(home, "Android Studio.app", info(2'000'001));
    expectStudios(home, {});
}

TEST(AndroidEnvironment, ProductInformationOfAnyDepthIsSurvived) {
    const std::string brackets(100'000, '[');
    const std::string closed = brackets + std::string(brackets.size(), ']');
    const TempHome home;
    for (const std::string& info : {brackets, closed, R"({"dataDirectoryName":)" + closed + "}"}) {
        installStudio(home, "Android Studio.app", info);
        expectStudios(home, {});
    }
    installStudio(home, "Android Studio.app",
                  R"({"launch":)" + closed + R"(,"dataDirectoryName":"a"})");
    expectStudios(home, {"a"});
}

} // namespace

} // namespace tidewright::test
