// `tidewright settings`: reads and writes the settings that the window has too.
#pragma once

#include "app/state/SettingsStore.h"
#include "core/support/Json.h"

#include <span>

namespace tidewright {

enum class SettingKind { gigabytes, days, folders, truth };

struct Setting {
    const char* key; ///< of a number or a truth value: the name of the property
    SettingKind kind;
    const char* meaning; ///< in a few words, for people
};

/// All of them, in the order in which they are shown.
std::span<const Setting> allSettings();

/// What is asked for: all settings, one of them, or a change of one.
struct SettingsRequest {
    std::optional<std::string> key;
    std::optional<std::string> value;
    std::vector<std::string> added;   ///< folders to add to a list
    std::vector<std::string> removed; ///< and to take out of it
    bool json = false;
};

/// Carries out what a request changes; the error is a sentence for the user, and then nothing was
/// changed.
Result<void, std::string> applyRequest(const SettingsRequest& request, SettingsStore& settings);

/// Returns the exit status.
int runSettings(const SettingsRequest& request);

} // namespace tidewright
