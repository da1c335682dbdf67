#include "cli/SettingsCommand.h"

#include "cli/CommandState.h"
#include "cli/ExitStatus.h"
#include "cli/Layout.h"
#include "cli/Paths.h"
#include "cli/Terminal.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>

namespace tidewright {

namespace {

using Kind = SettingKind;

constexpr Setting all[] = {
    {"lowSpaceGB", Kind::gigabytes, "Free space below which it is low"},
    {"criticalSpaceGB", Kind::gigabytes, "Free space below which it is critical"},
    {"largeTrashGB", Kind::gigabytes, "Size from which the Trash is large"},
    {"dormantProjectDays", Kind::days, "Days without changes until a project is dormant"},
    {"unusedAppDays", Kind::days, "Days until an application counts as unused"},
    {"oldDownloadDays", Kind::days, "Days until a download is old"},
    {"projectRoots", Kind::folders, "Where projects are looked for"},
    {"exclusions", Kind::folders, "Locations that are left alone"},
    {"showFreeSpaceInMenuBar", Kind::truth, "Show free space in the menu bar"},
    {"notificationsEnabled", Kind::truth, "Notify when space is low or the Trash is large"},
};

const Setting* settingNamed(std::string_view key) {
    const auto* const found =
        std::ranges::find_if(all, [&](const Setting& each) { return key == each.key; });
    return found == std::end(all) ? nullptr : found;
}

bool isRoots(const Setting& setting) { return setting.key == std::string_view("projectRoots"); }

const std::vector<URL>& foldersOf(const SettingsStore& settings, const Setting& setting) {
    return isRoots(setting) ? settings.projectRoots() : settings.exclusions();
}

Json jsonOf(const SettingsStore& settings, const Setting& setting) {
    if (setting.kind == Kind::folders) {
        Json list = Json::array();
        for (const URL& folder : foldersOf(settings, setting))
            list.push_back(folder.path());
        return list;
    }
    const QVariant value = settings.property(setting.key);
    return setting.kind == Kind::truth ? Json(value.toBool()) : Json(value.toLongLong());
}

std::optional<Int64> wholeNumber(std::string_view text) {
    Int64 number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(number) : std::nullopt;
}

std::optional<bool> truth(std::string_view text) {
    const std::string word = lowercasedASCII(text);
    if (word == "yes" || word == "true" || word == "on" || word == "1")
        return true;
    if (word == "no" || word == "false" || word == "off" || word == "0")
        return false;
    return std::nullopt;
}

Result<void, std::string> setNumber(const Setting& setting,
                                    const std::string& text,
                                    SettingsStore& settings) {
    const auto number = wholeNumber(text);
    if (!number)
        return Failure(
            fmt::format("{} takes a whole number, and \"{}\" is none.", setting.key, text));
    constexpr Int64 mostGigabytes = std::numeric_limits<Int64>::max() / gigabyte;
    if (setting.kind == Kind::gigabytes && (*number > mostGigabytes || *number < -mostGigabytes))
        return Failure(fmt::format("{} takes at most {} GB.", setting.key, mostGigabytes));
    settings.setProperty(setting.key, static_cast<qlonglong>(*number));
    return {};
}

Result<void, std::string> setTruth(const Setting& setting,
                                   const std::string& text,
                                   SettingsStore& settings) {
    const auto value = truth(text);
    if (!value)
        return Failure(fmt::format("{} takes yes or no, not \"{}\".", setting.key, text));
    settings.setProperty(setting.key, *value);
    return {};
}

/// The folder as it would stand in the list. A project root must be there.
Result<URL, std::string> listedFolder(const Setting& setting, const std::string& given) {
    if (given.empty())
        return Failure(std::string("an empty path names nothing."));
    return isRoots(setting) ? existingFolder(given) : Result<URL, std::string>(absolute(given));
}

Result<void, std::string> changeFolders(const Setting& setting,
                                        const SettingsRequest& request,
                                        SettingsStore& settings) {
    std::vector<URL> folders = foldersOf(settings, setting);
    for (const std::string& given : request.removed) {
        const URL unwanted = absolute(given);
        const auto gone = std::erase_if(
            folders, [&](const URL& each) { return each.standardized() == unwanted; });
        if (gone == 0)
            return Failure(fmt::format("{} is not in {}.", unwanted.path(), setting.key));
    }
    for (const std::string& given : request.added) {
        auto folder = listedFolder(setting, given);
        if (!folder)
            return Failure(folder.error());
        if (std::ranges::find(folders, *folder) == folders.end())
            folders.push_back(std::move(*folder));
    }
    if (isRoots(setting))
        settings.setProjectRoots(std::move(folders));
    else
        settings.setExclusions(std::move(folders));
    return {};
}

bool changesFolders(const SettingsRequest& request) {
    return !request.added.empty() || !request.removed.empty();
}

std::string valueText(const SettingsStore& settings, const Setting& setting) {
    const Json value = jsonOf(settings, setting);
    return setting.kind == Kind::truth ? (value.get<bool>() ? "yes" : "no") : value.dump();
}

/// The keys in one column and what they stand for in the next; of a list a line for each folder.
std::string settingsText(const SettingsStore& settings) {
    std::size_t keyColumns = 0;
    for (const Setting& each : all)
        keyColumns = std::max(keyColumns, std::string_view(each.key).size());
    std::string text;
    const auto line = [&](std::string_view key, std::string_view value) {
        text += fmt::format("{:{}}  {}\n", key, keyColumns, printable(value));
    };
    for (const Setting& each : all) {
        if (each.kind != Kind::folders) {
            line(each.key, valueText(settings, each));
            continue;
        }
        const std::vector<URL>& folders = foldersOf(settings, each);
        if (folders.empty())
            line(each.key, isRoots(each) ? "the whole home folder" : "none");
        for (const URL& folder : folders)
            line(&folder == &folders.front() ? each.key : "", folder.path());
    }
    return text;
}

/// The value alone, so that a script can read it.
std::string settingText(const SettingsStore& settings, const Setting& setting) {
    if (setting.kind != Kind::folders)
        return valueText(settings, setting) + "\n";
    std::string text;
    for (const URL& folder : foldersOf(settings, setting))
        text += folder.path() + "\n";
    return text;
}

int print(const SettingsRequest& request, const SettingsStore& settings) {
    const Setting* const asked = request.key ? settingNamed(*request.key) : nullptr;
    if (!request.json)
        return printResult(asked != nullptr ? settingText(settings, *asked)
                                            : settingsText(settings));
    Json document = Json::object();
    for (const Setting& each : all)
        if (asked == nullptr || asked == &each)
            document[each.key] = jsonOf(settings, each);
    return printJson(document);
}

} // namespace

std::span<const Setting> allSettings() { return all; }

Result<void, std::string> applyRequest(const SettingsRequest& request, SettingsStore& settings) {
    if (!request.key)
        return changesFolders(request)
                   ? Failure(std::string("name the list: exclusions or projectRoots."))
                   : Result<void, std::string>();
    const Setting* const setting = settingNamed(*request.key);
    if (setting == nullptr)
        return Failure(fmt::format("there is no setting \"{}\"; tidewright settings shows all.",
                                   *request.key));
    if (setting->kind == Kind::folders && request.value)
        return Failure(
            fmt::format("{} is a list of folders: use --add DIR and --remove DIR.", setting->key));
    if (setting->kind == Kind::folders)
        return changesFolders(request) ? changeFolders(*setting, request, settings)
                                       : Result<void, std::string>();
    if (changesFolders(request))
        return Failure(fmt::format("{} is no list: give its value behind its name.", setting->key));
    if (!request.value)
        return {};
    return setting->kind == Kind::truth ? setTruth(*setting, *request.value, settings)
                                        : setNumber(*setting, *request.value, settings);
}

int runSettings(const SettingsRequest& request) {
    const auto state = CommandState::make();
    if (!state)
        return usageError(state.error());
    SettingsStore& settings = (*state)->model().settings();
    if (const auto applied = applyRequest(request, settings); !applied)
        return usageError(applied.error());
    const bool isChange = request.value || changesFolders(request);
    if (!isChange)
        return print(request, settings);
    if (const auto saved = (*state)->defaults().save(); !saved) {
        writeAll(stderr, fmt::format("tidewright: {}\n", saved.error()));
        return failedStatus;
    }
    return request.json ? print(request, settings) : doneStatus;
}

} // namespace tidewright
