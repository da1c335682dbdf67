#include "core/model/AppMatcher.h"

namespace tidewright {

const AppMatcher AppMatcher::androidStudio{"Android Studio", {"com.google.android.studio"}, {}};
const AppMatcher AppMatcher::xcode{"Xcode", {"com.apple.dt.Xcode"}, {}};
const AppMatcher AppMatcher::simulator{"Simulator", {"com.apple.iphonesimulator"}, {}};
const AppMatcher AppMatcher::vsCode{"Visual Studio Code", {"com.microsoft.VSCode"}, {}};
const AppMatcher AppMatcher::chrome{"Google Chrome", {"com.google.Chrome"}, {}};
const AppMatcher AppMatcher::brave{"Brave", {"com.brave.Browser"}, {}};
const AppMatcher AppMatcher::firefox{"Firefox", {"org.mozilla.firefox"}, {}};
const AppMatcher AppMatcher::gradle{"Gradle daemon", {}, {"GradleDaemon", "gradle-launcher"}};
const AppMatcher AppMatcher::metro{
    "Metro bundler",
    {},
    {"react-native start", "@react-native/community-cli-plugin", "metro/src", "expo start"}};
const AppMatcher AppMatcher::emulator{"Android emulator", {}, {"qemu-system"}};

} // namespace tidewright
