#include "core/probes/AndroidEnvironment.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/platform/StandardFolders.h"
#include "core/support/Json.h"
#include "core/support/Pattern.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace tidewright {

namespace {

using std::string_view;
using Environment = std::map<std::string, std::string>;

constexpr std::array sdkVariables{"ANDROID_HOME", "ANDROID_SDK_ROOT"}; // in order of preference
constexpr string_view usualSDK = "Library/Android/sdk";

constexpr const char* avdHomeVariable = "ANDROID_AVD_HOME";
constexpr string_view usualAVDHome = ".android/avd";
constexpr string_view avdExtension = "avd";
constexpr string_view configName = "config.ini";
constexpr string_view imageKey = "image.sysdir.1";
constexpr string_view lineEnds = "\n\v\f\r";
constexpr string_view blanks = " \t";
// A component "system-images" and the two behind it.
constexpr string_view imageExpression = R"((?:^|/)system-images/+([^/]+)/+([^/]+))";

constexpr string_view studioPrefix = "Android Studio";
constexpr string_view applicationExtension = "app";
constexpr string_view productInfoPath = "Contents/Resources/product-info.json";
constexpr const char* dataDirectoryKey = "dataDirectoryName";
// Several times what the longest of them take, which list every part of the product.
constexpr Int64 maximumProductInfoBytes = 2'000'000;

/// A variable that holds no absolute path counts as not set.
std::optional<URL> folderIn(const Environment& environment, const char* variable) {
    const auto found = environment.find(variable);
    if (found == environment.end() || !found->second.starts_with('/'))
        return std::nullopt;
    return URL(found->second);
}

std::optional<URL> findSDK(const URL& home, const Environment& environment) {
    for (const char* variable : sdkVariables)
        if (auto folder = folderIn(environment, variable); folder && fileExists(*folder))
            return folder;
    if (URL folder = home.appending(usualSDK); fileExists(folder))
        return folder;
    return std::nullopt;
}

std::vector<AndroidEnvironment::AVD> findAVDs(const URL& avdHome) {
    std::vector<AndroidEnvironment::AVD> avds;
    for (const DirectoryEntry& entry :
         readDirectory(avdHome).value_or(std::vector<DirectoryEntry>{})) {
        const URL directory = avdHome.appending(entry.name);
        if (directory.pathExtension() != avdExtension)
            continue;
        const std::string name = entry.name.substr(0, entry.name.size() - avdExtension.size() - 1);
        const auto config = readText(directory.appending(configName));
        avds.push_back(
            {.name = name,
             .directory = directory,
             .iniFile = avdHome.appending(name + ".ini"),
             .systemImage = config ? AndroidEnvironment::systemImage(*config) : std::nullopt});
    }
    std::ranges::sort(avds, {}, &AndroidEnvironment::AVD::name);
    return avds;
}

/// The first line that begins with `prefix`, empty when there is none.
string_view lineBeginningWith(string_view prefix, string_view text) {
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find_first_of(lineEnds, start), text.size());
        const string_view line = text.substr(start, end - start);
        if (line.starts_with(prefix))
            return line;
        start = end + 1;
    }
    return {};
}

bool isStudio(const URL& application) {
    return application.lastPathComponent().starts_with(studioPrefix) &&
           application.pathExtension() == applicationExtension;
}

std::optional<std::string> studioDataDirectory(const URL& application) {
    const auto text = readFile(application.appending(productInfoPath), maximumProductInfoBytes);
    return text ? jsonTextAt(*text, dataDirectoryKey) : std::nullopt;
}

} // namespace

AndroidEnvironment AndroidEnvironment::discover(const URL& home, const Environment& environment) {
    AndroidEnvironment found;
    found.sdk = findSDK(home, environment);
    found.avdHome = folderIn(environment, avdHomeVariable).value_or(home.appending(usualAVDHome));
    found.avds = findAVDs(found.avdHome);
    found.studioDataDirectories = installedStudioDataDirectories(home);
    return found;
}

std::optional<std::string> AndroidEnvironment::systemImage(string_view config) {
    static const Pattern image(imageExpression);
    const string_view line = lineBeginningWith(imageKey, config);
    const string_view value = line.substr(line.find('=') + 1); // all of it where there is no "="
    const auto components = image.firstMatch(trimmed(value, blanks));
    if (!components)
        return std::nullopt;
    return fmt::format("{}/{}", components->at(1), components->at(2));
}

std::set<std::string> AndroidEnvironment::installedStudioDataDirectories(const URL& home) {
    std::set<std::string> names;
    for (const URL& folder : applicationFolders(home)) {
        for (const DirectoryEntry& entry :
             readDirectory(folder).value_or(std::vector<DirectoryEntry>{})) {
            const URL application = folder.appending(entry.name);
            if (!isStudio(application))
                continue;
            if (auto name = studioDataDirectory(application))
                names.insert(std::move(*name));
        }
    }
    return names;
}

} // namespace tidewright
