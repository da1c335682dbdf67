#include "core/platform/linux/KeyFile.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

struct Case {
    std::string name;
    std::string text;
    std::optional<std::string> expected; ///< of the key "Name" in the group "Desktop Entry"
};

TEST(KeyFile, FindsAKeyInItsGroup) {
    const std::vector<Case> cases = {
        {"plain", "[Desktop Entry]\nName=Files\n", "Files"},
        {"without a last line end", "[Desktop Entry]\nName=Files", "Files"},
        {"lines of another system", "[Desktop Entry]\r\nName=Files\r\n", "Files"},
        {"blanks around the equals sign", "[Desktop Entry]\nName \t= Files \n", "Files"},
        {"comments and empty lines", "# first\n\n[Desktop Entry]\n# Name=No\n\nName=Files\n",
         "Files"},
        {"a second group behind", "[Desktop Entry]\nName=Files\n[Desktop Action new]\nName=New\n",
         "Files"},
        {"the group comes last", "[Desktop Action new]\nName=New\n[Desktop Entry]\nName=Files\n",
         "Files"},
        {"a group in two parts", "[Desktop Entry]\nIcon=a\n[Other]\n[Desktop Entry]\nName=Files\n",
         "Files"},
        {"the first of two", "[Desktop Entry]\nName=Files\nName=Others\n", "Files"},
        {"an equals sign in the value", "[Desktop Entry]\nName=a=b\n", "a=b"},
        {"escapes", R"([Desktop Entry]
Name=a\sb\tc\nd\\e)",
         "a b\tc\nd\\e"},
        {"what is no escape", R"([Desktop Entry]
Name=\a\)",
         "\\a\\"},
        {"other languages", "[Desktop Entry]\nName[de]=Dateien\nName=Files\n", "Files"},
        {"no UTF-8", "[Desktop Entry]\nName=\xFF\xFE\n", "\xFF\xFE"},
        {"an empty value", "[Desktop Entry]\nName=\n", ""},

        {"empty", "", std::nullopt},
        {"no group", "Name=Files\n", std::nullopt},
        {"another group", "[Desktop Entries]\nName=Files\n", std::nullopt},
        {"another case of the group", "[desktop entry]\nName=Files\n", std::nullopt},
        {"another case of the key", "[Desktop Entry]\nname=Files\n", std::nullopt},
        {"a longer key", "[Desktop Entry]\nNames=Files\nGenericName=Files\n", std::nullopt},
        {"another language alone", "[Desktop Entry]\nName[de]=Dateien\n", std::nullopt},
        {"a key without a value", "[Desktop Entry]\nName\n", std::nullopt},
        {"only as a value", "[Desktop Entry]\nComment=Name=Files\n", std::nullopt},
        {"only in a comment", "[Desktop Entry]\n#Name=Files\n", std::nullopt},
        {"a group that is never closed", "[Desktop Entry\nName=Files\n", std::nullopt},
        {"a lone bracket", "[\n]\nName=Files\n", std::nullopt},
    };
    for (const Case& each : cases)
        EXPECT_EQ(keyFileValue(each.text, "Desktop Entry", "Name"), each.expected) << each.name;
}

} // namespace
} // namespace tidewright
