#include "core/projects/RequirementParser.h"

#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <iterator>

namespace tidewright {
namespace {

using namespace RequirementParser;
using namespace std::chrono_literals;
using test::TempHome;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Kind = RequirementKind;
using Requirement = Project::Requirement;
using Texts = std::vector<std::string>;
using Found = std::optional<std::string>;

constexpr const char* wrapper = "android/gradle/wrapper/gradle-wrapper.properties";
constexpr const char* catalogue = "node_modules/react-native/gradle/libs.versions.toml";
constexpr std::size_t tenMegabytes = 10'000'000;
constexpr auto quickly = 20s; // a second or less, on an idle machine and without sanitizers

std::string fixture(const std::string& name) {
    std::ifstream stream(std::string(TIDEWRIGHT_FIXTURES) + "/projects/" + name, std::ios::binary);
    EXPECT_TRUE(stream.good()) << name;
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string repeated(std::string_view part, std::size_t bytes) {
    std::string text;
    text.reserve(bytes + part.size());
    while (text.size() < bytes)
        text += part;
    return text;
}

/// A build file of CMake's that names a version.
std::string ninja(std::string_view version) {
    return fmt::format("  COMMAND = /opt/sdk/cmake/{}/bin/cmake -E echo\n", version);
}

Requirements androidOf(const TempHome& home) {
    return androidRequirements(home.path("android"), home.url());
}

std::set<std::string> lastBuildOf(const TempHome& home) {
    return cmakeVersionsFromLastBuild(home.url(), home.path("android"));
}

// The patterns

struct PatternCase {
    const char* text;
    Found expected;
};

TEST(RequirementParserTest, GradleVersionIsThatOfTheDistribution) {
    const PatternCase cases[] = {
        {"gradle-8.10.2-bin.zip", "8.10.2"},
        {"gradle-8.10.2-all.zip", "8.10.2"},
        {"gradle-8-bin.zip", "8"},
        {"gradle-1.2.3.4.5-all.zip", "1.2.3.4.5"},
        {"https\\://example.com/distributions/gradle-7.5.1-all.zip", "7.5.1"},
        {"gradle-6.9-bin.zip\ngradle-7.0-bin.zip", "6.9"},
        {"gradle-8.11-rc-1-bin.zip\ngradle-7.0-bin.zip", "7.0"},
        {"gradle-8.11-rc-1-bin.zip", std::nullopt},
        {"gradle-8.10.2-src.zip", std::nullopt},
        {"gradle-8.10.2-bin.tar", std::nullopt},
        {"gradle-8.10.2-binXzip", std::nullopt},
        {"gradle-8.10.-bin.zip", std::nullopt},
        {"gradle-bin.zip", std::nullopt},
        {"Gradle-8.10.2-bin.zip", std::nullopt},
        {"gradle 8.10.2-bin.zip", std::nullopt},
        {"", std::nullopt},
    };
    for (const PatternCase& each : cases)
        EXPECT_EQ(gradleVersion(each.text), each.expected) << each.text;
    EXPECT_EQ(gradleVersion(fixture("gradle-wrapper.properties")), "8.10.2");
    EXPECT_EQ(gradleVersion(fixture("gradle-wrapper-crlf.properties")), "8.7");
    EXPECT_EQ(gradleVersion(fixture("gradle-wrapper-snapshot.properties")), std::nullopt);
}

TEST(RequirementParserTest, NdkVersionIsAQuotedNumber) {
    const PatternCase cases[] = {
        {R"(ndkVersion = "26.1.10909125")", "26.1.10909125"},
        {R"(ndkVersion "26.1.10909125")", "26.1.10909125"},
        {"ndkVersion '21'", "21"},
        {"ndkVersion=\"25.1\"", "25.1"},
        {"ndkVersion\"25.1\"", "25.1"},
        {"ndkVersion\t=\r\n  '25.1'", "25.1"},
        {R"(ndkVersion = "25.1')", "25.1"}, // the quotes need not be the same
        {"ndkVersion = '25.1'\nndkVersion = '26.1'", "25.1"},
        {"ndkVersion = other\nndkVersion = '26.1'", "26.1"},
        {"// ndkVersion = '25.1'", "25.1"},
        {"ndkVersion = rootProject.ext.ndkVersion", std::nullopt},
        {"ndkVersion = 25", std::nullopt},
        {R"(ndkVersion = "r25")", std::nullopt},
        {R"(ndkVersion = "25.1-beta1")", std::nullopt},
        {R"(ndkVersion == "25.1")", std::nullopt},
        {R"(ndkVersion: "25.1")", std::nullopt},
        {R"(ndkversion = "25.1")", std::nullopt},
        {R"(ndkVersion = "")", std::nullopt},
    };
    for (const PatternCase& each : cases)
        EXPECT_EQ(ndkVersion(each.text), each.expected) << each.text;
    EXPECT_EQ(ndkVersion(fixture("root.build.gradle")), "26.1.10909125");
    EXPECT_EQ(ndkVersion(fixture("app.build.gradle")), std::nullopt);
    EXPECT_EQ(ndkVersion(fixture("app-crlf.build.gradle")), "25.1.8937393");
    EXPECT_EQ(ndkVersion(fixture("app.build.gradle.kts")), "27.0.12077973");
}

TEST(RequirementParserTest, CompileSdkIsANumberQuotedOrNot) {
    const PatternCase cases[] = {
        {"compileSdkVersion 34", "34"},
        {"compileSdk = 34", "34"},
        {R"(compileSdk "34")", "34"},
        {"compileSdk 34.1", "34.1"},
        {"compileSdk 34.1.2", "34.1"},
        {"compileSdk 34.", "34"},
        {"compileSdkVersion=33", "33"},
        {"compileSdkVersion '33'", "33"},
        {"compileSdk\n=\n35", "35"},
        {"compileSdk34", "34"},
        {"compileSdk rootProject.ext.compileSdkVersion\ncompileSdkVersion = 31", "31"},
        {"compileSdk = libs.versions.compileSdk.get().toInt()", std::nullopt},
        {"compileSdkVersion rootProject.ext.compileSdkVersion", std::nullopt},
        {"compileSdkVersion(34)", std::nullopt},
        {"compileSdkPreview = \"35\"", std::nullopt},
        {R"(compileSdkVersion "android-34")", std::nullopt},
        {"compilesdk 34", std::nullopt},
        {"targetSdk 34", std::nullopt},
    };
    for (const PatternCase& each : cases)
        EXPECT_EQ(compileSdk(each.text), each.expected) << each.text;
    EXPECT_EQ(compileSdk(fixture("root.build.gradle")), "35");
    EXPECT_EQ(compileSdk(fixture("app.build.gradle")), std::nullopt);
    EXPECT_EQ(compileSdk(fixture("app-crlf.build.gradle")), std::nullopt);
    EXPECT_EQ(compileSdk(fixture("app.build.gradle.kts")), "34");
}

TEST(RequirementParserTest, BuildToolsVersionKeepsTheSuffixOfACandidate) {
    const PatternCase cases[] = {
        {R"(buildToolsVersion "34.0.0")", "34.0.0"},
        {R"(buildToolsVersion "34.0.0-rc3")", "34.0.0-rc3"},
        {"buildToolsVersion = '30'", "30"},
        {R"(buildToolsVersion = "34.0.0-rc")", std::nullopt},
        {R"(buildToolsVersion = "34.0.0-beta1")", std::nullopt},
        {R"(buildToolsVersion "34.0.0 rc3")", std::nullopt},
        {"buildToolsVersion 34", std::nullopt},
        {"buildToolsVersion rootProject.ext.buildToolsVersion", std::nullopt},
        {R"(buildTools = "34.0.0")", std::nullopt},
    };
    for (const PatternCase& each : cases)
        EXPECT_EQ(buildToolsVersion(each.text), each.expected) << each.text;
    EXPECT_EQ(buildToolsVersion(fixture("root.build.gradle")), "35.0.0");
    EXPECT_EQ(buildToolsVersion(fixture("app.build.gradle.kts")), "34.0.0-rc3");
}

TEST(RequirementParserTest, CmakeVersionStandsInItsBlock) {
    const PatternCase cases[] = {
        {R"(cmake { version "3.22.1" })", "3.22.1"},
        {"cmake {\n    path 'CMakeLists.txt'\n\n    version '3.22.1'\n}\n", "3.22.1"},
        {"cmake\n{\r\n    path = file(\"x\")\r\n    version = \"3.30.3\"\r\n}\r\n", "3.30.3"},
        {R"(cmake{version="3.22.1"})", "3.22.1"},
        {"cmake { cppFlags '' }\ncmake { version '3.22.1' }", "3.22.1"},
        {"cmake { version '3.22.1'; version '3.10.2' }", "3.22.1"},
        {R"(cmake { minversion "3.22.1" })", "3.22.1"},
        {R"(cmake { path "x" } version "3.22.1")", std::nullopt},
        {R"(cmake { arguments "${x}"; version "3.22.1" })", std::nullopt},
        {R"(cmake { version "3.22" })", std::nullopt},
        {R"(cmake { version "3.22.1.4" })", std::nullopt},
        {R"(cmake { version "3.22.1+" })", std::nullopt},
        {R"(cmake { version "3.22.1-rc1" })", std::nullopt},
        {R"(cmake { version 3.22.1 })", std::nullopt},
        {R"(cmake ( version "3.22.1" ))", std::nullopt},
        {R"(CMake { version "3.22.1" })", std::nullopt},
        {R"(version "3.22.1")", std::nullopt},
    };
    for (const PatternCase& each : cases)
        EXPECT_EQ(cmakeVersion(each.text), each.expected) << each.text;
    EXPECT_EQ(cmakeVersion(fixture("app.build.gradle")), "3.22.1");
    EXPECT_EQ(cmakeVersion(fixture("app-crlf.build.gradle")), "3.22.1");
    EXPECT_EQ(cmakeVersion(fixture("app.build.gradle.kts")), "3.30.3");
    EXPECT_EQ(cmakeVersion(fixture("root.build.gradle")), std::nullopt);
}

TEST(RequirementParserTest, CmakeOfABuildIsTheOneOfTheSdk) {
    const PatternCase cases[] = {
        {"/opt/sdk/cmake/3.22.1/bin/cmake", "3.22.1"},
        {"/Users/dev/Library/Android/sdk/cmake/3.10.2/bin", "3.10.2"},
        {"sdk/cmake/3.22.1/ sdk/cmake/3.6.0/", "3.22.1"},
        {"sdk/cmake/3.22/ sdk/cmake/3.6.0/", "3.6.0"},
        {"/opt/Sdk/cmake/3.22.1/bin", std::nullopt},
        {"/opt/cmake/3.22.1/bin", std::nullopt},
        {"sdk/cmake/3.22.1", std::nullopt},
        {"sdk/cmake/3.22.1.2/", std::nullopt},
        {"sdk/cmake/3.22.1-rc1/", std::nullopt},
    };
    for (const PatternCase& each : cases)
        EXPECT_EQ(cmakeOfBuild(each.text), each.expected) << each.text;
    EXPECT_EQ(cmakeOfBuild(fixture("build.ninja")), "3.22.1");
    EXPECT_EQ(cmakeOfBuild(fixture("build-invalid-utf8.ninja")), "3.18.1");
    EXPECT_EQ(cmakeOfBuild(fixture("build-host.ninja")), std::nullopt);
}

TEST(RequirementParserTest, SimulatorNamesAreQuotedOnesThenBareOnes) {
    struct Case {
        const char* script;
        Texts expected;
    };
    const Case cases[] = {
        {R"(run-ios --simulator="iPhone 15")", {"iPhone 15"}},
        {R"(run-ios --simulator "iPhone 15 Pro" --mode x)", {"iPhone 15 Pro"}},
        {"run-ios --simulator='iPhone SE (3rd generation)'", {"iPhone SE (3rd generation)"}},
        {"run-ios --simulator iPhone-15", {"iPhone-15"}},
        {"run-ios --simulator=iPhone-15 x", {"iPhone-15"}},
        {"run-ios --simulator   iPhone-15", {"iPhone-15"}},
        {R"(--simulator a --simulator="b c" --simulator d)", {"b c", "a", "d"}},
        {R"(--simulator="Dev's iPhone")", {"Dev's iPhone"}},
        {R"(--simulator='a" b')", {"a\" b"}},
        {R"(--simulator="a"b")", {"a"}},
        {"--simulator=\"a\nb\"", {}},
        {R"(--simulator="")", {}},
        {R"(--simulator="open)", {}},
        {"--simulator\tiPhone-15", {}},
        {"--simulator", {}},
        {"--simulator ", {}},
        {"--simulators iPhone", {}},
        {"-simulator iPhone", {}},
        {"--udid=12345", {}},
        {"", {}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(simulatorNames(each.script), each.expected) << each.script;
}

TEST(RequirementParserTest, TomlValueIsThatOfTheFirstLineWithTheKey) {
    struct Case {
        const char* key;
        const char* text;
        Found expected;
    };
    const Case cases[] = {
        {"ndkVersion", "ndkVersion = \"26.1\"", "26.1"},
        {"ndkVersion", "ndkVersion='26.1'", "26.1"},
        {"ndkVersion", "\t ndkVersion\t= \t\"26.1\" \t", "26.1"},
        {"ndkVersion", "\n\n[versions]\r\nndkVersion = \"26.1\"\r\n", "26.1"},
        {"ndkVersion", "ndkVersion = 26", "26"},
        {"ndkVersion", "ndkVersion = \"'26.1'\"", "26.1"},
        {"ndkVersion", "ndkVersion = \" 26.1 \"", "26.1"},
        {"ndkVersion", "ndkVersion = \"26.1\" # the newest", "26.1\" # the newest"},
        {"ndkVersion", "ndkVersion = 1\nndkVersion = 2", "1"},
        {"ndkVersion", "[other]\nndkVersion = 1\n[versions]\nndkVersion = 2", "1"},
        {"ndkVersion", "ndkVersion=\nndkVersion = 2", "2"},
        {"ndkVersion", "ndkVersion", std::nullopt},
        {"ndkVersion", "ndkVersion=", std::nullopt},
        {"ndkVersion", "=ndkVersion", std::nullopt},
        {"ndkVersion", "=", std::nullopt},
        {"ndkVersion", "ndkVersion = \"\"", ""},
        {"ndkVersion", "ndkVersion = ", ""},
        {"ndkVersion", "# ndkVersion = 1", std::nullopt},
        {"ndkVersion", "\"ndkVersion\" = 1", std::nullopt},
        {"ndkVersion", "ndkversion = 1", std::nullopt},
        {"ndk", "ndkVersion = 1", std::nullopt},
        {"ndkVersion", "", std::nullopt},
        {"key", "key = a = b", "a = b"},
        {"key", "a = key = b", std::nullopt},
    };
    for (const Case& each : cases)
        EXPECT_EQ(tomlValue(each.key, each.text), each.expected) << each.text;
    const std::string text = fixture("libs.versions.toml");
    EXPECT_EQ(tomlValue("ndkVersion", text), "26.1.10909125");
    EXPECT_EQ(tomlValue("compileSdk", text), "35");
    EXPECT_EQ(tomlValue("buildTools", text), "35.0.0");
    EXPECT_EQ(tomlValue("missing", text), std::nullopt);
    const std::string crlf = fixture("libs.versions-crlf.toml");
    EXPECT_EQ(tomlValue("ndkVersion", crlf), "25.1.8937393");
    EXPECT_EQ(tomlValue("compileSdk", crlf), "34");
    EXPECT_EQ(tomlValue("buildTools", crlf), "34.0.0");
}

// Texts that are made to be slow

TEST(RequirementParserTest, TextsMadeToBeSlowEndQuicklyWithoutAMatch) {
    struct Case {
        const char* name;
        Found (*function)(std::string_view);
        const char* start; ///< what stands before the repetition
        const char* part;
    };
    const Case cases[] = {
        {"gradle, digits", gradleVersion, "gradle-", "1"},
        {"gradle, numbers", gradleVersion, "gradle-1", ".1"},
        {"gradle, starts", gradleVersion, "", "gradle-1.1-"},
        {"gradle, almost", gradleVersion, "", "gradle-1.1-bin.zi"},
        {"NDK, blanks", ndkVersion, "ndkVersion", " "},
        {"NDK, blanks in between", ndkVersion, "", "ndkVersion                             "},
        {"NDK, digits", ndkVersion, "ndkVersion = \"", "1."},
        {"NDK, starts", ndkVersion, "", "ndkVersion=\"1"},
        {"compile SDK, blanks", compileSdk, "compileSdkVersion", "\n"},
        {"compile SDK, starts", compileSdk, "", "compileSdkVersion = \""},
        {"build tools, blanks", buildToolsVersion, "buildToolsVersion", "\t"},
        {"build tools, digits", buildToolsVersion, "buildToolsVersion '", "1."},
        {"build tools, starts", buildToolsVersion, "", "buildToolsVersion \"1-rc1"},
        {"CMake, starts", cmakeVersion, "", "cmake {"},
        {"CMake, blanks", cmakeVersion, "cmake", " "},
        {"CMake, versions", cmakeVersion, "cmake {", " version \"1.1.1"},
        {"CMake, versions and starts", cmakeVersion, "", "cmake { version=\""},
        {"CMake, blanks after version", cmakeVersion, "cmake { version", " "},
        {"CMake, numbers", cmakeVersion, "cmake { version \"", "1"},
        {"build, digits", cmakeOfBuild, "sdk/cmake/", "1"},
        {"build, starts", cmakeOfBuild, "", "sdk/cmake/1.1.1"},
    };
    for (const Case& each : cases) {
        const std::string text = each.start + repeated(each.part, tenMegabytes);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(each.function(text), std::nullopt) << each.name;
        EXPECT_LT(std::chrono::steady_clock::now() - start, quickly) << each.name;
    }
}

TEST(RequirementParserTest, ScriptsMadeToBeSlowEndQuickly) {
    struct Case {
        const char* name;
        const char* start;
        const char* part;
    };
    const Case cases[] = {
        {"open quotes", "", "--simulator \""},
        {"one open quote", "--simulator='", "x"},
        {"quotes of two kinds", "", "--simulator=\"a' "},
        {"blanks", "--simulator", " "},
        {"blanks and equals signs before a quote", "", "--simulator= = = = =\""},
        {"starts", "", "--simulator"},
    };
    for (const Case& each : cases) {
        const std::string text = each.start + repeated(each.part, tenMegabytes);
        const auto start = std::chrono::steady_clock::now();
        simulatorNames(text);
        EXPECT_LT(std::chrono::steady_clock::now() - start, quickly) << each.name;
    }
}

TEST(RequirementParserTest, LongTextOfAnOrdinaryKindIsSearchedToItsEnd) {
    const std::string code = repeated("    implementation(\"com.example:library:1.0\") // {}\n"
                                      "    cmake { cppFlags \"-O2\" }\n    compileSdk other\n",
                                      2'000'000);
    EXPECT_EQ(ndkVersion(code + "ndkVersion '21.4'"), "21.4");
    EXPECT_EQ(compileSdk(code + "compileSdk 34"), "34");
    EXPECT_EQ(buildToolsVersion(code + "buildToolsVersion '34.0.0'"), "34.0.0");
    EXPECT_EQ(cmakeVersion(code + "cmake { version '3.22.1' }"), "3.22.1");
    EXPECT_EQ(gradleVersion(code + "gradle-8.7-bin.zip"), "8.7");
    EXPECT_EQ(cmakeOfBuild(code + "sdk/cmake/3.22.1/"), "3.22.1");
    EXPECT_EQ(simulatorNames(code + "--simulator 'a b' --simulator c"), (Texts{"a b", "c"}));
    EXPECT_EQ(tomlValue("ndkVersion", code + "ndkVersion = 2"), "2");
}

/// By how many times `text` the greatest memory of a process grows while it reads it.
double growthOf(const std::string& text, const std::function<void()>& read) {
    const auto greatest = [] {
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        return static_cast<double>(usage.ru_maxrss) * 1024; // in KiB here, in bytes on macOS
    };
    const std::string answer = test::asOrdinaryUser([&] {
        const double before = greatest();
        read();
        return std::to_string((greatest() - before) / static_cast<double>(text.size()));
    });
    return answer.empty() ? 1e9 : std::stod(answer);
}

TEST(RequirementParserTest, CatalogueOfShortLinesTakesNoMemoryForEach) {
    const std::string text = repeated("a\n", 20'000'000) + "key = 1";
    EXPECT_EQ(tomlValue("key", text), "1");
    EXPECT_LT(growthOf(text, [&] { tomlValue("key", text); }), 3);
}

// Android

TEST(RequirementParserTest, AndroidRequirementsOfAnApplicationStandInTheirOrder) {
    const TempHome home;
    home.file(wrapper, fixture("gradle-wrapper.properties"));
    home.file("android/build.gradle", fixture("root.build.gradle"));
    home.file("android/app/build.gradle", fixture("app.build.gradle"));
    home.file(catalogue, fixture("libs.versions-crlf.toml"));
    home.file("android/app/.cxx/Debug/5q1v4f2k/arm64-v8a/build.ninja", ninja("3.10.2"));
    EXPECT_THAT(androidOf(home),
                ElementsAre(Requirement{Kind::gradle, "8.10.2", "gradle-wrapper.properties"},
                            Requirement{Kind::ndk, "26.1.10909125", "build.gradle"},
                            Requirement{Kind::compileSdk, "35", "build.gradle"},
                            Requirement{Kind::buildTools, "35.0.0", "build.gradle"},
                            Requirement{Kind::cmake, "3.22.1", "build.gradle"},
                            Requirement{Kind::cmake, "3.10.2", "last native build"}));
}

TEST(RequirementParserTest, AndroidRequirementsOfAKotlinBuild) {
    const TempHome home;
    home.file("android/app/build.gradle.kts", fixture("app.build.gradle.kts"));
    EXPECT_THAT(androidOf(home),
                ElementsAre(Requirement{Kind::ndk, "27.0.12077973", "build.gradle"},
                            Requirement{Kind::compileSdk, "34", "build.gradle"},
                            Requirement{Kind::buildTools, "34.0.0-rc3", "build.gradle"},
                            Requirement{Kind::cmake, "3.30.3", "build.gradle"}));
}

TEST(RequirementParserTest, CatalogueOfReactNativeFillsInWhatIsLeftOpen) {
    const TempHome home;
    home.file(catalogue, fixture("libs.versions-crlf.toml"));
    EXPECT_THAT(androidOf(home),
                ElementsAre(Requirement{Kind::ndk, "25.1.8937393", "react-native default"},
                            Requirement{Kind::compileSdk, "34", "react-native default"},
                            Requirement{Kind::buildTools, "34.0.0", "react-native default"}));

    home.file("android/app/build.gradle", "ndkVersion = rootProject.ext.ndkVersion\n"
                                          "compileSdk rootProject.ext.compileSdkVersion\n"
                                          "buildToolsVersion '33.0.0'");
    EXPECT_THAT(androidOf(home),
                ElementsAre(Requirement{Kind::ndk, "25.1.8937393", "react-native default"},
                            Requirement{Kind::compileSdk, "34", "react-native default"},
                            Requirement{Kind::buildTools, "33.0.0", "build.gradle"}));
}

TEST(RequirementParserTest, CatalogueOfReactNativeLiesBelowTheProjectAndHasNoCmake) {
    const TempHome home;
    home.file(std::string("android/") + catalogue, fixture("libs.versions.toml"));
    EXPECT_THAT(androidOf(home), IsEmpty());
    home.file(catalogue, "cmake = \"3.22.1\"\ncmakeVersion = \"3.22.1\"\ngradle = \"8.0\"\n");
    EXPECT_THAT(androidOf(home), IsEmpty());
}

TEST(RequirementParserTest, BuildFilesCountInTheirOrder) {
    const char* files[] = {"build.gradle", "build.gradle.kts", "app/build.gradle",
                           "app/build.gradle.kts", "gradle/libs.versions.toml"};
    const TempHome home;
    for (int i = 0; i < 5; ++i)
        home.file(std::string("android/") + files[i], fmt::format("ndkVersion = \"{}.0\"", i + 1));
    for (int i = 0; i < 5; ++i) {
        EXPECT_THAT(androidOf(home),
                    ElementsAre(Requirement{Kind::ndk, fmt::format("{}.0", i + 1), "build.gradle"}))
            << files[i];
        home.file(std::string("android/") + files[i]);
    }
    EXPECT_THAT(androidOf(home), IsEmpty());
}

TEST(RequirementParserTest, BuildFileThatCannotBeReadIsPassedOver) {
    const TempHome home;
    home.file("android/build.gradle", fixture("invalid-utf8.build.gradle"));
    home.folder("android/build.gradle.kts");
    home.link("android/gradle/libs.versions.toml", "missing");
    home.file("android/app/build.gradle", "\xEF\xBB\xBF"
                                          "ndkVersion '25.1'");
    EXPECT_THAT(androidOf(home), ElementsAre(Requirement{Kind::ndk, "25.1", "build.gradle"}));
}

TEST(RequirementParserTest, BuildFilesAreJoinedByALineEnd) {
    const TempHome home;
    home.file("android/build.gradle", "ndkVersion = \"25");
    home.file("android/app/build.gradle", ".1\"\ncompileSdk");
    home.file("android/app/build.gradle.kts", "34");
    // A line end is white space, so what is cut in two there is still one declaration.
    EXPECT_THAT(androidOf(home), ElementsAre(Requirement{Kind::compileSdk, "34", "build.gradle"}));
}

TEST(RequirementParserTest, WrapperThatIsNotUTF8IsNotRead) {
    const TempHome home;
    home.file(wrapper, "#\xFF\ndistributionUrl=gradle-8.7-bin.zip\n");
    EXPECT_THAT(androidOf(home), IsEmpty());
}

TEST(RequirementParserTest, EmptyFilesAndFoldersRequireNothing) {
    const TempHome home;
    EXPECT_THAT(androidOf(home), IsEmpty());
    for (const char* path : {wrapper, "android/build.gradle", "android/app/build.gradle", catalogue,
                             "package.json", ".nvmrc", ".node-version"})
        home.file(path);
    home.folder("android/app/.cxx");
    EXPECT_THAT(androidOf(home), IsEmpty());
    EXPECT_THAT(simulatorRequirements(home.url()), IsEmpty());
    EXPECT_THAT(nodeRequirements(home.url()), IsEmpty());
}

// CMake of earlier builds

TEST(RequirementParserTest, EarlierBuildsOfTheAppAndOfEachModuleCount) {
    struct Case {
        const char* path;
        bool expected;
    };
    const Case cases[] = {
        {"android/app/.cxx/build.ninja", true},
        {"android/app/.cxx/Debug/5q1v/arm64-v8a/build.ninja", true},
        {"android/app/.cxx/.hidden/build.ninja", true},
        {"node_modules/pkg/android/.cxx/a/b/build.ninja", true},
        {"node_modules/.hidden/android/.cxx/build.ninja", true},
        {"node_modules/@scope/pkg/android/.cxx/Debug/build.ninja", true},
        {"node_modules/@scope/@inner/android/.cxx/build.ninja", true},
        {"android/.cxx/build.ninja", false},
        {"android/app/cxx/build.ninja", false},
        {"android/lib/.cxx/build.ninja", false},
        {"app/.cxx/build.ninja", false},
        {"node_modules/pkg/.cxx/build.ninja", false},
        {"node_modules/pkg/sub/android/.cxx/build.ninja", false},
        {"node_modules/pkg/node_modules/inner/android/.cxx/build.ninja", false},
        {"node_modules/@scope/android/.cxx/build.ninja", false},
        {"node_modules/@scope/@inner/pkg/android/.cxx/build.ninja", false},
        {"node_modules/android/.cxx/build.ninja", false},
        {"android/app/.cxx/Debug/build.ninja.txt", false},
        {"android/app/.cxx/Debug/rules.ninja", false},
        {"android/app/.cxx/Debug/Build.ninja", false},
    };
    for (const Case& each : cases) {
        const TempHome home;
        home.file(each.path, ninja("3.22.1"));
        const std::set<std::string> expected =
            each.expected ? std::set<std::string>{"3.22.1"} : std::set<std::string>{};
        EXPECT_EQ(lastBuildOf(home), expected) << each.path;
    }
}

TEST(RequirementParserTest, EachBuildFolderGivesAtMostOneVersion) {
    const TempHome home;
    for (const char* version : {"3.6.0", "3.10.2", "3.22.1"})
        home.file(fmt::format("android/app/.cxx/{}/build.ninja", version), ninja(version));
    EXPECT_EQ(lastBuildOf(home).size(), 1U);
    home.file("node_modules/a/android/.cxx/build.ninja", ninja("3.30.0"));
    home.file("node_modules/b/android/.cxx/build.ninja", ninja("3.30.1"));
    home.file("node_modules/@c/d/android/.cxx/build.ninja", ninja("3.30.1"));
    const auto versions = lastBuildOf(home);
    EXPECT_EQ(versions.size(), 3U);
    EXPECT_TRUE(versions.contains("3.30.0"));
    EXPECT_TRUE(versions.contains("3.30.1"));
}

TEST(RequirementParserTest, SearchGoesOnUntilABuildFileTellsAVersion) {
    const TempHome home;
    for (int i = 0; i < 20; ++i)
        home.file(fmt::format("android/app/.cxx/Debug{}/build.ninja", i),
                  fixture("build-host.ninja"));
    home.folder("android/app/.cxx/build.ninja");
    home.file("android/app/.cxx/build.ninja/x/build.ninja", fixture("build-invalid-utf8.ninja"));
    EXPECT_EQ(lastBuildOf(home), (std::set<std::string>{"3.18.1"}));
}

TEST(RequirementParserTest, OnlyTheStartOfABuildFileIsRead) {
    constexpr std::size_t limit = 262'144;
    const std::string text = "sdk/cmake/3.22.1/";
    struct Case {
        const char* name;
        std::size_t before;
        bool expected;
    };
    const Case cases[] = {
        {"at the start", 0, true},
        {"just inside", limit - text.size(), true},
        {"one byte too far", limit - text.size() + 1, false},
        {"after it", limit, false},
    };
    for (const Case& each : cases) {
        const TempHome home;
        home.file("android/app/.cxx/build.ninja", std::string(each.before, '#') + text + "bin");
        EXPECT_EQ(lastBuildOf(home).size(), each.expected ? 1U : 0U) << each.name;
    }
}

TEST(RequirementParserTest, ModulesThatAreLinksCountAndLinksInsideBuildFoldersAreNotFollowed) {
    const TempHome home;
    const TempHome outside;
    outside.file("module/android/.cxx/build.ninja", ninja("3.22.1"));
    outside.file("build/build.ninja", ninja("3.6.0"));
    home.link("node_modules/module", outside.path("module").path());
    home.link("android/app/.cxx/Debug", outside.path("build").path());
    home.link("android/app/.cxx/loop", "..");
    EXPECT_EQ(lastBuildOf(home), (std::set<std::string>{"3.22.1"}));
}

TEST(RequirementParserTest, UnreadableBuildFilesAndScopesArePassedOver) {
    const TempHome home;
    home.file("node_modules/@file", "no folder");
    home.link("node_modules/@gone", "missing");
    home.file("node_modules/file");
    home.folder("android/app/.cxx");
    ASSERT_EQ(mkfifo(home.path("android/app/.cxx/build.ninja").path().c_str(), 0600), 0);
    home.file("node_modules/z/android/.cxx/build.ninja", ninja("3.22.1"));
    EXPECT_EQ(lastBuildOf(home), (std::set<std::string>{"3.22.1"}));

    home.setMode("", 0755);
    home.file("node_modules/@closed/a/android/.cxx/build.ninja", ninja("3.6.0"));
    home.setMode("node_modules/@closed", 0);
    home.file("node_modules/b/android/.cxx/x/build.ninja", ninja("3.6.1"));
    home.setMode("node_modules/b/android/.cxx/x/build.ninja", 0);
    EXPECT_EQ(test::asOrdinaryUser([&] {
                  std::string text;
                  for (const std::string& version : lastBuildOf(home))
                      text += version + " ";
                  return text;
              }),
              "3.22.1 ");
}

TEST(RequirementParserTest, DeepBuildFoldersAreSearchedToTheirEnd) {
    const TempHome home(TempHome::Place::memory);
    std::string path = "android/app/.cxx";
    for (int i = 0; i < 100; ++i)
        path += "/d";
    home.file(path + "/build.ninja", ninja("3.22.1"));
    EXPECT_EQ(lastBuildOf(home), (std::set<std::string>{"3.22.1"}));
}

// Simulators

TEST(RequirementParserTest, SimulatorsOfTheScripts) {
    struct Case {
        const char* name;
        std::string manifest;
        Texts expected;
    };
    const Case cases[] = {
        {"of an application",
         fixture("react-native.package.json"),
         {"iPhone 15 Pro", "iPhone SE (3rd generation)", "iPhone-15"}},
        {"no scripts", R"({"name": "x"})", {}},
        {"a number among the scripts",
         R"({"scripts": {"a": "x --simulator one", "b": 1, "c": "x --simulator two"}})",
         {}},
        {"null among the scripts", R"({"scripts": {"a": "x --simulator one", "b": null}})", {}},
        {"scripts that are a text", R"({"scripts": "--simulator one"})", {}},
        {"scripts that are a list", R"({"scripts": ["--simulator one"]})", {}},
        {"elsewhere", R"({"config": {"ios": "--simulator one"}, "x": "--simulator two"})", {}},
        {"a list", R"([{"scripts": {"a": "--simulator one"}}])", {}},
        {"no JSON", "--simulator one", {}},
        {"escapes", R"({"scripts": {"a": "--simulator=\"iPad \u00e9\""}})", {"iPad é"}},
    };
    for (const Case& each : cases) {
        const TempHome home;
        home.file("package.json", each.manifest);
        Texts names;
        for (const Requirement& requirement : simulatorRequirements(home.url())) {
            EXPECT_EQ(requirement.kind, Kind::simulator) << each.name;
            EXPECT_EQ(requirement.source, "package.json scripts") << each.name;
            names.push_back(requirement.version);
        }
        EXPECT_THAT(names, testing::UnorderedElementsAreArray(each.expected)) << each.name;
    }
    const TempHome home;
    EXPECT_THAT(simulatorRequirements(home.url()), IsEmpty());
}

// Node

TEST(RequirementParserTest, AllSourcesOfNodeCount) {
    const TempHome home;
    home.file(".nvmrc", fixture("nvmrc"));
    home.file(".node-version", fixture("node-version"));
    home.file("package.json", fixture("node-crlf.package.json"));
    EXPECT_THAT(nodeRequirements(home.url()),
                ElementsAre(Requirement{Kind::node, "lts/iron", ".nvmrc"},
                            Requirement{Kind::node, "20.11.1", ".node-version"},
                            Requirement{Kind::node, "^20.11.0 || >=22", "package.json engines"}));
}

TEST(RequirementParserTest, NodeVersionFileStaysAsItStandsButForItsEnds) {
    struct Case {
        std::string contents;
        Found expected;
    };
    const Case cases[] = {
        {"20", "20"},
        {"v18.17.0\n", "v18.17.0"},
        {" \t 18 \r\n\r\n", "18"},
        {fixture("nvmrc-crlf"), "v20.11.1"},
        {fixture("nvmrc"), "lts/iron"},
        {"18\n20\n", "18\n20"},
        {"18 # old", "18 # old"},
        {fixture("empty"), std::nullopt},
        {fixture("nvmrc-blank"), std::nullopt},
        {"\xEF\xBB\xBF", std::nullopt},
        {fixture("nvmrc-invalid-utf8"), std::nullopt},
    };
    for (const char* file : {".nvmrc", ".node-version"})
        for (const Case& each : cases) {
            const TempHome home;
            home.file(file, each.contents);
            const Requirements found = nodeRequirements(home.url());
            if (each.expected)
                EXPECT_THAT(found, ElementsAre(Requirement{Kind::node, *each.expected, file}))
                    << each.contents;
            else
                EXPECT_THAT(found, IsEmpty()) << each.contents;
        }
}

TEST(RequirementParserTest, EnginesThatAreOfAnotherFormRequireNothing) {
    for (const char* manifest :
         {"{}", R"({"engines": {}})", R"({"engines": {"node": 18}})", R"({"engines": "node"})",
          R"({"engines": ["node"]})", R"({"engines": {"npm": "9"}})", R"({"node": "18"})",
          R"({"engines": {"node": {"node": "18"}}})", R"({"engines": {"Node": "18"}})"}) {
        const TempHome home;
        home.file("package.json", manifest);
        EXPECT_THAT(nodeRequirements(home.url()), IsEmpty()) << manifest;
    }
}

// All of a project's

Project projectAt(const TempHome& home, bool android) {
    Project project;
    project.url = home.url();
    if (android)
        project.androidDirectory = home.path("android");
    return project;
}

TEST(RequirementParserTest, RequirementsOfAProjectAreAndroidThenSimulatorsThenNode) {
    const TempHome home;
    home.file(wrapper, fixture("gradle-wrapper-crlf.properties"));
    home.file("package.json",
              R"({"scripts": {"ios": "--simulator x"}, "engines": {"node": "20"}})");
    home.file(".nvmrc", "22");
    EXPECT_THAT(requirements(projectAt(home, true)),
                ElementsAre(Requirement{Kind::gradle, "8.7", "gradle-wrapper.properties"},
                            Requirement{Kind::simulator, "x", "package.json scripts"},
                            Requirement{Kind::node, "22", ".nvmrc"},
                            Requirement{Kind::node, "20", "package.json engines"}));
}

TEST(RequirementParserTest, ProjectWithoutAnAndroidFolderHasNoAndroidRequirements) {
    const TempHome home;
    home.file(wrapper, fixture("gradle-wrapper.properties"));
    home.file("android/app/.cxx/build.ninja", ninja("3.22.1"));
    home.file(catalogue, fixture("libs.versions.toml"));
    home.file(".nvmrc", "22");
    EXPECT_THAT(requirements(projectAt(home, false)),
                ElementsAre(Requirement{Kind::node, "22", ".nvmrc"}));
}

TEST(RequirementParserTest, EachKindAndVersionStandsOnceWithItsFirstSource) {
    const TempHome home;
    home.file("android/build.gradle", "cmake { version '3.22.1' }\nndkVersion '34'\ncompileSdk 34");
    home.file("android/app/.cxx/build.ninja", ninja("3.22.1"));
    home.file("node_modules/a/android/.cxx/build.ninja", ninja("3.10.2"));
    home.file(".nvmrc", "20");
    home.file(".node-version", "20\n");
    home.file("package.json",
              R"({"scripts": {"a": "--simulator x --simulator 'x'"}, "engines": {"node": "20"}})");
    EXPECT_THAT(requirements(projectAt(home, true)),
                ElementsAre(Requirement{Kind::ndk, "34", "build.gradle"},
                            Requirement{Kind::compileSdk, "34", "build.gradle"},
                            Requirement{Kind::cmake, "3.22.1", "build.gradle"},
                            Requirement{Kind::cmake, "3.10.2", "last native build"},
                            Requirement{Kind::simulator, "x", "package.json scripts"},
                            Requirement{Kind::node, "20", ".nvmrc"}));
}

TEST(RequirementParserTest, ProjectThatIsItsOwnAndroidFolder) {
    const TempHome home;
    home.file("gradle/wrapper/gradle-wrapper.properties", fixture("gradle-wrapper.properties"));
    home.file("app/build.gradle.kts", "compileSdk = 34");
    home.file("app/.cxx/build.ninja", ninja("3.22.1"));
    Project project = projectAt(home, false);
    project.androidDirectory = home.url();
    EXPECT_THAT(requirements(project),
                ElementsAre(Requirement{Kind::gradle, "8.10.2", "gradle-wrapper.properties"},
                            Requirement{Kind::compileSdk, "34", "build.gradle"},
                            Requirement{Kind::cmake, "3.22.1", "last native build"}));
}

} // namespace
} // namespace tidewright
