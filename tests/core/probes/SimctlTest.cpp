#include "core/probes/Simctl.h"

#include "core/platform/FileContents.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>

namespace tidewright {

namespace {

using namespace std::chrono;
using test::TempHome;
using testing::IsEmpty;
using testing::SizeIs;

std::string fixture(const std::string& name) {
    const auto contents = readFile(URL(TIDEWRIGHT_FIXTURES "/simctl/" + name), 1'000'000);
    EXPECT_TRUE(contents.has_value()) << name;
    return contents.value_or("");
}

/// The list with one device of these fields, JSON text each.
std::string deviceList(const std::string& fields) {
    return R"({"devices":{"runtime":[{)" + fields + "}]}}";
}

std::string runtimeList(const std::string& fields) { return R"({"key":{)" + fields + "}}"; }

constexpr const char* deviceFields =
    R"("udid":"U","name":"N","state":"Shutdown","isAvailable":true)";
constexpr const char* runtimeFields = R"("identifier":"I","version":"17.5")";

std::string replacing(std::string text, const std::string& part, const std::string& with) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += with.size())
        text.replace(at, part.size(), with);
    return text;
}

template <class T>
T named(const std::vector<T>& list, auto member, std::string_view value) {
    const auto found = std::ranges::find(list, value, member);
    EXPECT_NE(found, list.end()) << value;
    return found == list.end() ? T() : *found;
}

ShellRunner runnerOf(const TempHome& home) { return {ToolLocator(home.url(), {})}; }

/// A home whose xcrun has this body. Where the system has a real one, ours comes before it.
void makeXcrun(const TempHome& home, std::string_view body) { home.tool(".volta/bin/xcrun", body); }

std::string printing(const TempHome& home, std::string_view answer) {
    return "cat '" + home.file("answer", answer).path() + "'";
}

TEST(SimctlTest, DevicesAreReadWithTheRuntimeUnderWhichTheyStand) {
    const std::vector<Simctl::Device> devices = Simctl::parseDevices(fixture("devices.json"));
    ASSERT_THAT(devices, SizeIs(4));
    const auto device = [&](std::string_view name) {
        return named(devices, &Simctl::Device::name, name);
    };
    const std::string folder = "/Users/mia/Library/Developer/CoreSimulator/Devices/";
    EXPECT_EQ(device("iPhone 15 Pro"),
              (Simctl::Device{.udid = "5B0B4A0C-7C0E-4B43-9B6E-3F6B4C6C9D11",
                              .name = "iPhone 15 Pro",
                              .state = "Booted",
                              .isAvailable = true,
                              .dataPath = folder + "5B0B4A0C-7C0E-4B43-9B6E-3F6B4C6C9D11/data",
                              .dataPathSize = 2'113'568'768,
                              .lastBootedAt = sys_days(2024y / 6 / 30) + 9h + 14min + 27s,
                              .runtimeIdentifier = "com.apple.CoreSimulator.SimRuntime.iOS-17-5"}));
    EXPECT_EQ(device("iPad (10th generation)").lastBootedAt, std::nullopt);
    EXPECT_EQ(device("iPad (10th generation)").runtimeIdentifier,
              "com.apple.CoreSimulator.SimRuntime.iOS-17-5");
    EXPECT_FALSE(device("Mia’s “old” iPhone 14").isAvailable);
    EXPECT_EQ(device("Mia’s “old” iPhone 14").lastBootedAt,
              sys_days(2023y / 9 / 2) + 16h + 40min + 5s);
    EXPECT_EQ(device("Apple Vision Pro"),
              (Simctl::Device{.udid = "E3B7C6A1-9E41-4D29-8C1F-7B0A5D2F4E43",
                              .name = "Apple Vision Pro",
                              .state = "Creating",
                              .isAvailable = true,
                              .dataPath = std::nullopt,
                              .dataPathSize = std::nullopt,
                              .lastBootedAt = std::nullopt,
                              .runtimeIdentifier = "com.apple.CoreSimulator.SimRuntime.xrOS-1-2"}));
}

TEST(SimctlTest, RuntimesAreReadWithoutTheirKeys) {
    const std::vector<Simctl::Runtime> runtimes = Simctl::parseRuntimes(fixture("runtimes.json"));
    ASSERT_THAT(runtimes, SizeIs(5));
    const auto runtime = [&](std::string_view identifier) {
        return named(runtimes, &Simctl::Runtime::identifier, identifier);
    };
    EXPECT_EQ(runtime("0D2B8A6E-3C1F-4E58-9A57-1B9E64D0A101"),
              (Simctl::Runtime{.identifier = "0D2B8A6E-3C1F-4E58-9A57-1B9E64D0A101",
                               .version = "17.5",
                               .build = "21F79",
                               .runtimeIdentifier = "com.apple.CoreSimulator.SimRuntime.iOS-17-5",
                               .platformIdentifier = "com.apple.platform.iphonesimulator",
                               .sizeBytes = 7'421'826'048,
                               .deletable = true,
                               .lastUsedAt = sys_days(2024y / 6 / 30) + 9h + 14min + 20s,
                               .state = "Ready"}));
    EXPECT_EQ(runtime("1E3C9B7F-4D20-4F69-8B68-2CAF75E1B202").lastUsedAt,
              sys_days(2024y / 5 / 15) + 6h + 2min + 11s);
    EXPECT_EQ(runtime("2F4DAC80-5E31-4A7A-9C79-3DB086F2C303").deletable, false);
    EXPECT_EQ(runtime("416FCEA2-7053-4C9C-9E9B-5FD2A814E505"),
              (Simctl::Runtime{.identifier = "416FCEA2-7053-4C9C-9E9B-5FD2A814E505",
                               .version = "18.0",
                               .build = std::nullopt,
                               .runtimeIdentifier = std::nullopt,
                               .platformIdentifier = std::nullopt,
                               .sizeBytes = std::nullopt,
                               .deletable = std::nullopt,
                               .lastUsedAt = std::nullopt,
                               .state = "Unusable"}));
}

TEST(SimctlTest, PlatformsHaveTheNamesThatPeopleKnow) {
    const std::vector<std::pair<const char*, const char*>> cases{
        {"com.apple.platform.iphonesimulator", "iOS"},
        {"com.apple.platform.watchsimulator", "watchOS"},
        {"com.apple.platform.appletvsimulator", "tvOS"},
        {"com.apple.platform.xrsimulator", "visionOS"},
        {"com.apple.platform.iPhoneSimulator", "Simulator"},
        {"com.apple.platform.carsimulator", "Simulator"},
        {"", "Simulator"},
    };
    for (const auto& [platform, name] : cases) {
        const auto runtimes = Simctl::parseRuntimes(
            runtimeList(fmt::format(R"({},"platformIdentifier":"{}")", runtimeFields, platform)));
        ASSERT_THAT(runtimes, SizeIs(1));
        EXPECT_EQ(runtimes[0].platformName(), name) << platform;
    }
    const auto runtimes = Simctl::parseRuntimes(runtimeList(runtimeFields));
    ASSERT_THAT(runtimes, SizeIs(1));
    EXPECT_EQ(runtimes[0].platformName(), "Simulator");
}

TEST(SimctlTest, BootedIsExactlyOneState) {
    for (const auto& [state, isBooted] :
         std::vector<std::pair<std::string, bool>>{{"Booted", true},
                                                   {"booted", false},
                                                   {"BOOTED", false},
                                                   {"Booted ", false},
                                                   {"Booting", false},
                                                   {"Shutdown", false},
                                                   {"", false}}) {
        const auto devices =
            Simctl::parseDevices(replacing(deviceList(deviceFields), "Shutdown", state));
        ASSERT_THAT(devices, SizeIs(1));
        EXPECT_EQ(devices[0].isBooted(), isBooted) << state;
    }
}

TEST(SimctlTest, EmptyAnswerIsValid) {
    EXPECT_THAT(Simctl::parseDevices(fixture("devices-none.json")), IsEmpty());
    EXPECT_THAT(Simctl::parseDevices(R"({"devices":{}})"), IsEmpty());
    EXPECT_THAT(Simctl::parseDevices(R"({"devices":{"runtime":[],"other":[]}})"), IsEmpty());
    EXPECT_THAT(Simctl::parseRuntimes(fixture("runtimes-none.json")), IsEmpty());
    EXPECT_THAT(Simctl::parseRuntimes("{}"), IsEmpty());
}

TEST(SimctlTest, RequiredFieldThatIsMissingEmptiesTheWholeList) {
    const std::string devices = fixture("devices.json");
    for (const char* field : {"udid", "name", "state", "isAvailable"}) {
        // In the last device alone: one is enough.
        const std::size_t last = devices.rfind("{");
        const std::string broken =
            devices.substr(0, last) +
            replacing(devices.substr(last), fmt::format("\"{}\"", field), "\"another\"");
        EXPECT_THAT(Simctl::parseDevices(broken), IsEmpty()) << field;
    }
    const std::string runtimes = fixture("runtimes.json");
    for (const char* field : {"identifier", "version"}) {
        const std::size_t last = runtimes.rfind(": {");
        const std::string broken =
            runtimes.substr(0, last) +
            replacing(runtimes.substr(last), fmt::format("\"{}\"", field), "\"another\"");
        EXPECT_THAT(Simctl::parseRuntimes(broken), IsEmpty()) << field;
    }
}

TEST(SimctlTest, FieldOfAnotherTypeEmptiesTheWholeList) {
    for (const char* field : {R"("udid":7)", R"("name":null)", R"("state":true)",
                              R"("isAvailable":"YES")", R"("isAvailable":1)", R"("dataPath":[])",
                              R"("dataPathSize":"12")", R"("dataPathSize":1.5)",
                              R"("dataPathSize":18446744073709551615)", R"("lastBootedAt":0)"}) {
        const std::string name = std::string(field).substr(0, std::string(field).find(':'));
        std::string fields = deviceFields;
        if (fields.find(name) != std::string::npos)
            fields = replacing(fields, name, "\"another\"");
        EXPECT_THAT(Simctl::parseDevices(deviceList(fields + "," + field)), IsEmpty()) << field;
    }
    for (const char* field : {R"("sizeBytes":"12")", R"("deletable":"yes")", R"("build":21)",
                              R"("lastUsedAt":{})", R"("state":1)"})
        EXPECT_THAT(Simctl::parseRuntimes(runtimeList(std::string(runtimeFields) + "," + field)),
                    IsEmpty())
            << field;
}

TEST(SimctlTest, OptionalFieldsMayBeMissingOrNull) {
    const auto devices = Simctl::parseDevices(deviceList(
        std::string(deviceFields) + R"(,"dataPath":null,"dataPathSize":null,"lastBootedAt":null)"));
    ASSERT_THAT(devices, SizeIs(1));
    EXPECT_EQ(devices[0].dataPath, std::nullopt);
    EXPECT_EQ(devices, Simctl::parseDevices(deviceList(deviceFields)));
}

TEST(SimctlTest, DatesAreInTheInternetFormWithoutFractions) {
    const Date expected = sys_days(2024y / 6 / 30) + 9h + 14min + 27s;
    for (const char* date : {"2024-06-30T09:14:27Z", "2024-06-30T11:14:27+02:00",
                             "2024-06-30T11:14:27+0200", "2024-06-29T23:44:27-09:30"}) {
        const std::string field = fmt::format(R"(,"lastBootedAt":"{}")", date);
        const auto devices = Simctl::parseDevices(deviceList(deviceFields + field));
        ASSERT_THAT(devices, SizeIs(1)) << date;
        EXPECT_EQ(devices[0].lastBootedAt, expected) << date;
    }
    for (const char* date : {"2024-06-30T09:14:27.000Z", "2024-06-30T09:14:27.123+02:00",
                             "2024-06-30T09:14:27", "2024-06-30 09:14:27 +0000", "2024-06-30",
                             "Sun Jun 30 09:14:27 2024", "2024-02-30T09:14:27Z", "yesterday", ""}) {
        const std::string field = fmt::format(R"("lastBootedAt":"{}")", date);
        const std::string last = R"({"devices":{"a":[{)" + std::string(deviceFields) +
                                 R"(}],"b":[{)" + deviceFields + "," + field + "}]}}";
        EXPECT_THAT(Simctl::parseDevices(last), IsEmpty()) << date;
        EXPECT_THAT(Simctl::parseRuntimes(runtimeList(std::string(runtimeFields) +
                                                      fmt::format(R"(,"lastUsedAt":"{}")", date))),
                    IsEmpty())
            << date;
    }
}

TEST(SimctlTest, LineEndsAndAMarkOfByteOrderAreOnlyAForm) {
    const std::string devices = fixture("devices.json");
    const std::vector<Simctl::Device> expected = Simctl::parseDevices(devices);
    ASSERT_THAT(expected, SizeIs(4));
    EXPECT_EQ(Simctl::parseDevices(replacing(devices, "\n", "\r\n")), expected);
    EXPECT_EQ(Simctl::parseDevices(replacing(devices, "\n", "")), expected);
    EXPECT_EQ(Simctl::parseDevices("\xef\xbb\xbf" + devices), expected);
    EXPECT_EQ(Simctl::parseDevices("\n\t " + devices + "\n\n"), expected);
}

TEST(SimctlTest, WhatIsNoSuchAnswerIsEmpty) {
    for (const char* text :
         {"", " ", "null", "7", "\"devices\"", "[]", "{", "{}}", "{\"devices\":{}",
          "== Devices ==\n-- iOS 17.5 --\n", "xcrun: error: unable to find utility \"simctl\"",
          "{\"devices\":null}", "{\"devices\":[]}", "{\"devices\":{\"runtime\":null}}",
          "{\"devices\":{\"runtime\":{}}}", "{\"devices\":{\"runtime\":[null]}}",
          "{\"devices\":{\"runtime\":[[]]}}", "{\"runtimes\":[]}"}) {
        EXPECT_THAT(Simctl::parseDevices(text), IsEmpty()) << text;
        EXPECT_THAT(Simctl::parseRuntimes(text), IsEmpty()) << text;
    }
    EXPECT_THAT(Simctl::parseDevices("first a warning\n" + fixture("devices.json")), IsEmpty());
    EXPECT_THAT(Simctl::parseDevices(fixture("devices.json") + "and more"), IsEmpty());
}

TEST(SimctlTest, AnswerThatIsCutAnywhereIsEmpty) {
    const std::string devices = deviceList(deviceFields);
    ASSERT_THAT(Simctl::parseDevices(devices), SizeIs(1));
    const std::string runtimes = runtimeList(runtimeFields);
    ASSERT_THAT(Simctl::parseRuntimes(runtimes), SizeIs(1));
    for (std::size_t length = 0; length < devices.size(); ++length)
        EXPECT_THAT(Simctl::parseDevices(devices.substr(0, length)), IsEmpty()) << length;
    for (std::size_t length = 0; length < runtimes.size(); ++length)
        EXPECT_THAT(Simctl::parseRuntimes(runtimes.substr(0, length)), IsEmpty()) << length;
}

TEST(SimctlTest, BytesThatAreNotTextAreEmpty) {
    EXPECT_THAT(Simctl::parseDevices(replacing(deviceList(deviceFields), "N", "\xff")), IsEmpty());
    EXPECT_THAT(Simctl::parseDevices(std::string(1000, '\0')), IsEmpty());
    const std::string withZero = replacing(deviceList(deviceFields), "N", std::string(1, '\0'));
    EXPECT_THAT(Simctl::parseDevices(withZero), IsEmpty());
    EXPECT_THAT(Simctl::parseDevices(replacing(deviceList(deviceFields), "\"N\"", "\"\\u0000\"")),
                SizeIs(1));
}

TEST(SimctlTest, DeepNestingIsSurvived) {
    for (const std::string open : {"[", "{\"devices\":["}) {
        std::string text;
        for (int i = 0; i < 50'000; ++i)
            text += open;
        EXPECT_THAT(Simctl::parseDevices(text), IsEmpty());
        EXPECT_THAT(Simctl::parseRuntimes(text), IsEmpty());
    }
    const std::string deep = std::string(50'000, '[') + std::string(50'000, ']');
    EXPECT_THAT(Simctl::parseDevices(deep), IsEmpty());
    EXPECT_THAT(Simctl::parseDevices(deviceList(deviceFields + (",\"more\":" + deep))), SizeIs(1));
}

TEST(SimctlTest, LongListIsReadWhole) {
    std::string list;
    for (int i = 0; i < 5000; ++i)
        list +=
            (i > 0 ? ",{" : "{") + replacing(deviceFields, "\"U\"", fmt::format("\"{}\"", i)) + "}";
    const auto devices = Simctl::parseDevices(R"({"devices":{"runtime":[)" + list + "]}}");
    ASSERT_THAT(devices, SizeIs(5000));
    EXPECT_EQ(devices.back().udid, "4999");
}

TEST(SimctlTest, KeysThatAreNotKnownArePassedOver) {
    EXPECT_THAT(Simctl::parseDevices(deviceList(std::string(deviceFields) + R"(,"new":{"a":[1]})")),
                SizeIs(1));
    EXPECT_THAT(Simctl::parseDevices(R"({"version":2,)" + deviceList(deviceFields).substr(1)),
                SizeIs(1));
}

TEST(SimctlTest, XcrunIsAskedForBothLists) {
    const TempHome home;
    const std::string devices = printing(home, fixture("devices.json"));
    const URL runtimes = home.file("runtimes", fixture("runtimes.json"));
    makeXcrun(home, "case \"$*\" in\n'simctl list devices -j') " + devices +
                        ";;\n'simctl runtime list -j') cat '" + runtimes.path() +
                        "';;\n*) exit 64;;\nesac\necho a warning >&2");
    EXPECT_EQ(Simctl::devices(runnerOf(home), CancelToken()),
              Simctl::parseDevices(fixture("devices.json")));
    EXPECT_THAT(Simctl::devices(runnerOf(home), CancelToken()), SizeIs(4));
    EXPECT_THAT(Simctl::runtimes(runnerOf(home), CancelToken()), SizeIs(5));
}

TEST(SimctlTest, XcrunThatFailsMeansNone) {
    const TempHome home;
    const std::string print = printing(home, deviceList(deviceFields));
    makeXcrun(home, print);
    ASSERT_THAT(Simctl::devices(runnerOf(home), CancelToken()), SizeIs(1));
    for (const std::string end : {"; exit 1", "; exit 72", "; kill -9 $$", "; echo garbage"}) {
        makeXcrun(home, print + end);
        EXPECT_THAT(Simctl::devices(runnerOf(home), CancelToken()), IsEmpty()) << end;
        EXPECT_THAT(Simctl::runtimes(runnerOf(home), CancelToken()), IsEmpty()) << end;
    }
    makeXcrun(home, print + " >&2"); // to the other pipe
    EXPECT_THAT(Simctl::devices(runnerOf(home), CancelToken()), IsEmpty());
}

TEST(SimctlTest, MachineWithoutXcrunHasNone) {
    const TempHome home;
    ShellRunner runner;
    runner.locator.searchPath = {home.url().path()};
    EXPECT_FALSE(runner.isAvailable("xcrun"));
    EXPECT_THAT(Simctl::devices(runner, CancelToken()), IsEmpty());
    EXPECT_THAT(Simctl::runtimes(runner, CancelToken()), IsEmpty());
}

TEST(SimctlTest, CancelledQuestionHasNoAnswer) {
    const TempHome home;
    makeXcrun(home, "sleep 60; " + printing(home, deviceList(deviceFields)));
    CancelSource source;
    source.cancel();
    EXPECT_THAT(Simctl::devices(runnerOf(home), source.token()), IsEmpty());
    EXPECT_THAT(Simctl::runtimes(runnerOf(home), source.token()), IsEmpty());
}

std::string filled(std::string_view start, std::string_view part, std::string_view end) {
    std::string text(start);
    while (text.size() < 20'000'000)
        text += part;
    return text.append(end);
}

constexpr std::string_view someDevice =
    R"({"udid":"A","name":"iPhone","state":"Booted","isAvailable":true})";

TEST(SimctlParsers, AnswersOf20MBAreReadForTheirRecordsAlone) {
    const std::string device(someDevice);
    EXPECT_THAT(Simctl::parseDevices(filled(R"({"pairs":[)", "{},", R"(1],"devices":{"r":[)") +
                                     device + "]}}"),
                SizeIs(1));
    EXPECT_THAT(Simctl::parseDevices(filled(R"({"devices":{"r":[)", "{},", "{}]}}")), IsEmpty());
    EXPECT_THAT(Simctl::parseDevices(R"({"devices":{"r":[)" + filled(R"({"x":[)", "{},", "1],") +
                                     device.substr(1) + "]}}"),
                SizeIs(1));
    EXPECT_THAT(Simctl::parseRuntimes(filled(R"({"k":{"x":{"a":[)", "0,", "1]},") +
                                      R"("identifier":"A","version":"18.2"}})"),
                SizeIs(1));
}

TEST(SimctlParsers, WhatStandsInAnotherPlaceIsNoRecord) {
    const std::string device(someDevice);
    EXPECT_THAT(Simctl::parseDevices(R"({"devices":{"r":[)" + device + "]}}"), SizeIs(1));
    for (const std::string& answer :
         {R"({"devices":[)" + device + "]}", R"({"devices":{"r":)" + device + "}}",
          R"({"devices":{"r":[[)" + device + "]]}}", R"({"devices":{"r":[)" + device + ",5]}}",
          R"({"others":{"r":[)" + device + "]}}", R"({"devices":{"r":[)" + device + "]}} x",
          R"({"devices":{"r":[)" + device + R"(]},"devices":{}})"})
        EXPECT_THAT(Simctl::parseDevices(answer), IsEmpty()) << answer;
    EXPECT_THAT(Simctl::parseRuntimes(R"([{"identifier":"A","version":"18.2"}])"), IsEmpty());
    EXPECT_THAT(Simctl::parseRuntimes(R"({"k":[{"identifier":"A","version":"18.2"}]})"), IsEmpty());
}

} // namespace

} // namespace tidewright
