// How the user wants programs to look, as the system tells it.
#pragma once

#include <QObject>

#include <functional>
#include <optional>

namespace tidewright {

/// Red, green and blue in sRGB, each from 0 to 1.
struct AccentColor {
    double red = 0;
    double green = 0;
    double blue = 0;

    bool operator==(const AccentColor&) const = default;
};

/// Each is absent where the system does not tell.
struct Appearance {
    std::optional<bool> prefersDark;
    std::optional<AccentColor> accent;
    std::optional<bool> reducesMotion;

    bool operator==(const Appearance&) const = default;
};

/// Calls `function` on the main thread with what the system tells, soon after this has returned and
/// each time it changes, for as long as `context` exists. Never called where the system tells
/// nothing. Main thread; does not wait for an answer.
void followAppearance(QObject* context, std::function<void(const Appearance&)> function);

} // namespace tidewright
