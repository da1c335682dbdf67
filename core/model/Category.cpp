#include "core/model/Category.h"

namespace tidewright {

namespace {

struct Words {
    std::string_view title;
    std::string_view symbolName;
    std::string_view summary;
};

// In the order of the enumeration.
constexpr std::array words{
    Words{"Android", "cpu", "SDK packages, emulators, Gradle and Android Studio leftovers."},
    Words{"Xcode & iOS", "hammer", "DerivedData, simulators, runtimes and CocoaPods."},
    Words{"JavaScript", "curlybraces",
          "Package manager caches, bundler caches and old Node versions."},
    Words{"System", "macwindow", "Logs, app caches, Homebrew, Trash and old downloads."},
    Words{"Projects", "folder",
          "Build outputs inside your projects. Never cleaned unless you pick them."},
};

const Words& wordsOf(Category category) { return words.at(static_cast<std::size_t>(category)); }

} // namespace

std::string_view title(Category category) { return wordsOf(category).title; }
std::string_view symbolName(Category category) { return wordsOf(category).symbolName; }
std::string_view summary(Category category) { return wordsOf(category).summary; }

} // namespace tidewright
