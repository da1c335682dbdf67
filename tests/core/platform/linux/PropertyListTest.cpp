#include "core/platform/linux/PropertyList.h"

#include "core/platform/linux/BinaryPropertyList.h"

#include <gtest/gtest.h>

#include <plist/plist.h>

#include <cstdint>
#include <vector>

namespace tidewright {
namespace {

const char* const key = "CFBundleIdentifier";

std::string xml(const std::string& inside) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n" +
           inside + "\n</plist>\n";
}

/// The same list in the binary form.
std::string binary(const std::string& xmlText) {
    plist_t list = nullptr;
    plist_from_xml(xmlText.data(), static_cast<std::uint32_t>(xmlText.size()), &list);
    char* bytes = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(list, &bytes, &length);
    std::string result(bytes, length);
    plist_to_bin_free(bytes);
    plist_free(list);
    return result;
}

std::string bigEndian(std::uint64_t value, int bytes) {
    std::string result;
    for (int i = bytes - 1; i >= 0; --i)
        result += static_cast<char>(value >> (8 * i));
    return result;
}

/// A binary list of objects given as their bytes, the first being the outermost; references take
/// three bytes.
std::string binaryOf(const std::vector<std::string>& objects) {
    std::string bytes = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += bigEndian(bytes.size(), 4);
        bytes += object;
    }
    const std::size_t table = bytes.size();
    return bytes + offsets + std::string(6, '\0') + "\x04\x03" + bigEndian(objects.size(), 8) +
           bigEndian(0, 8) + bigEndian(table, 8);
}

std::string reference(std::uint64_t index) { return bigEndian(index, 3); }

struct Case {
    std::string name;
    std::string inside; ///< of the element plist
    std::optional<std::string> expected;
};

TEST(PropertyList, FindsATextInTheOutermostDictionaryOfEitherForm) {
    const std::string longText(300, 'x'); // its length does not fit into the marker
    const std::vector<Case> cases = {
        {"plain", "<dict><key>CFBundleIdentifier</key><string>org.example.App</string></dict>",
         "org.example.App"},
        {"among others",
         "<dict><key>A</key><true/><key>B</key><integer>7</integer><key>C</key><array><string>x"
         "</string></array><key>CFBundleIdentifier</key><string>org.example.App</string>"
         "<key>D</key><dict><key>CFBundleIdentifier</key><string>inner</string></dict></dict>",
         "org.example.App"},
        {"empty", "<dict><key>CFBundleIdentifier</key><string></string></dict>", ""},
        {"long", "<dict><key>CFBundleIdentifier</key><string>" + longText + "</string></dict>",
         longText},
        {"entities", "<dict><key>CFBundleIdentifier</key><string>a&amp;b&lt;</string></dict>",
         "a&b<"},

        {"no such key", "<dict><key>CFBundleName</key><string>App</string></dict>", std::nullopt},
        {"another case of the key", "<dict><key>cfbundleidentifier</key><string>a</string></dict>",
         std::nullopt},
        {"a longer key", "<dict><key>CFBundleIdentifiers</key><string>a</string></dict>",
         std::nullopt},
        {"the text as a value only", "<dict><key>A</key><string>CFBundleIdentifier</string></dict>",
         std::nullopt},
        {"a number", "<dict><key>CFBundleIdentifier</key><integer>7</integer></dict>",
         std::nullopt},
        {"bytes", "<dict><key>CFBundleIdentifier</key><data>YWJj</data></dict>", std::nullopt},
        {"a list", "<dict><key>CFBundleIdentifier</key><array><string>a</string></array></dict>",
         std::nullopt},
        {"deeper only",
         "<dict><key>A</key><dict><key>CFBundleIdentifier</key><string>a</string></dict></dict>",
         std::nullopt},
        {"an empty dictionary", "<dict></dict>", std::nullopt},
        {"a list outermost", "<array><string>CFBundleIdentifier</string><string>a</string></array>",
         std::nullopt},
        {"a text outermost", "<string>CFBundleIdentifier</string>", std::nullopt},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(propertyListString(xml(each.inside), key), each.expected) << each.name;
        const std::string bytes = binary(xml(each.inside));
        ASSERT_TRUE(isBinaryPropertyList(bytes)) << each.name;
        EXPECT_EQ(propertyListString(bytes, key), each.expected) << each.name << ", binary";
    }
}

TEST(PropertyList, FindsATextInALargeDictionary) {
    std::string inside = "<dict>";
    for (int i = 0; i < 5000; ++i)
        inside +=
            "<key>k" + std::to_string(i) + "</key><string>v" + std::to_string(i) + "</string>";
    inside += "<key>CFBundleIdentifier</key><string>org.example.App</string></dict>";
    EXPECT_EQ(propertyListString(xml(inside), key), "org.example.App");
    EXPECT_EQ(propertyListString(binary(xml(inside)), key), "org.example.App");
}

TEST(PropertyList, ReadsAnXmlListBehindAByteOrderMark) {
    EXPECT_EQ(propertyListString("\xEF\xBB\xBF" + xml("<dict><key>CFBundleIdentifier</key>"
                                                      "<string>org.example.App</string></dict>"),
                                 key),
              "org.example.App");
}

TEST(PropertyList, TextsBeyondAsciiAreAbsentFromABinaryList) {
    const std::string list = xml("<dict><key>CFBundleIdentifier</key><string>caf\xC3\xA9</string>"
                                 "<key>\xC3\xA9</key><string>a</string></dict>");
    EXPECT_EQ(propertyListString(list, key), "caf\xC3\xA9");
    EXPECT_EQ(propertyListString(binary(list), key), std::nullopt);
}

TEST(PropertyList, WhatIsNoneIsAbsent) {
    for (const std::string& bytes : std::vector<std::string>{
             "",
             " ",
             "x",
             "<",
             "<plist",
             "<plist>",
             "<plist></plist>",
             "<plist><dict>",
             "<plist><dict><key>CFBundleIdentifier</key>",
             "{ CFBundleIdentifier = a; }",
             "{\"CFBundleIdentifier\":\"a\"}",
             "<html><body>CFBundleIdentifier</body></html>",
             "<plist><dict><string>CFBundleIdentifier</string><string>a</string></dict></plist>",
             "<!--",
             "<![CDATA[",
             "<!DOCTYPE",
             "<?",
             std::string(64, '\0'),
             std::string(64, '\xFF'),
             "bplist00",
             "bplist00" + std::string(31, '\0'),
             "bplist00" + std::string(32, '\0'),
             "bplist00" + std::string(32, '\xFF'),
             "bplist00" + std::string(500, '\xFF')})
        EXPECT_EQ(propertyListString(bytes, key), std::nullopt) << bytes;
}

TEST(PropertyList, EachBeginningAndEachDamagedByteIsSurvived) {
    const std::string list =
        xml("<dict><key>A</key><array><true/><integer>700</integer></array>"
            "<key>CFBundleIdentifier</key><string>org.example.App</string></dict>");
    for (const std::string& whole : {list, binary(list)}) {
        for (std::size_t length = 0; length < whole.size(); ++length)
            propertyListString(whole.substr(0, length), key);
        for (std::size_t at = 0; at < whole.size(); ++at) {
            for (const int byte : {0x00, 0x0F, 0x3C, 0x5F, 0x7F, 0x80, 0xDF, 0xFF}) {
                std::string damaged = whole;
                damaged[at] = static_cast<char>(byte);
                propertyListString(damaged, key);
            }
        }
    }
}

TEST(PropertyList, DeepNestingIsSurvived) {
    const std::string beginning =
        "<dict><key>CFBundleIdentifier</key><string>a</string><key>b</key>";
    std::string closed = beginning;
    for (int i = 0; i < 50'000; ++i)
        closed += "<array>";
    for (int i = 0; i < 50'000; ++i)
        closed += "</array>";
    std::string open = beginning;
    while (open.size() < 900'000)
        open += "<dict><key>k</key>";
    EXPECT_EQ(propertyListString(xml(closed + "</dict>"), key), std::nullopt);
    EXPECT_EQ(propertyListString(xml(open), key), std::nullopt);

    std::vector<std::string> objects{"\xD1" + reference(1) + reference(2), "\x51k"};
    while (objects.size() < 100'000)
        objects.push_back("\xA1" + reference(objects.size() + 1));
    objects.emplace_back("\x51v");
    EXPECT_EQ(propertyListString(binaryOf(objects), "k"), std::nullopt);
}

TEST(PropertyList, NestingThatRealListsHaveIsRead) {
    std::string list = "<dict><key>CFBundleIdentifier</key><string>a</string><key>b</key>";
    for (int i = 0; i < 1000; ++i)
        list += "<array>";
    for (int i = 0; i < 1000; ++i)
        list += "</array>";
    EXPECT_EQ(propertyListString(xml(list + "</dict>"), key), "a");
}

TEST(PropertyList, ABinaryListThatUnfoldsWithoutEndIsSurvived) {
    // Each list holds the next one twice: 2^60 texts, were they all read.
    std::vector<std::string> objects{"\xD2" + reference(1) + reference(3) + reference(2) +
                                         reference(4),
                                     "\x51k", "\x51v", "\x51m"};
    for (int i = 0; i < 60; ++i)
        objects.push_back("\xA2" + reference(objects.size() + 1) + reference(objects.size() + 1));
    objects.emplace_back("\x51x");
    EXPECT_EQ(propertyListString(binaryOf(objects), "k"), "v");
    EXPECT_EQ(propertyListString(binaryOf(objects), "m"), std::nullopt);
}

TEST(PropertyList, ABinaryListThatHoldsItselfIsSurvived) {
    const std::vector<std::string> objects{"\xD1" + reference(1) + reference(0), "\x51k"};
    EXPECT_EQ(propertyListString(binaryOf(objects), "k"), std::nullopt);
}

TEST(PropertyList, ClaimsOfABinaryListAreNotBelieved) {
    const std::vector<std::pair<std::string, std::vector<std::string>>> cases = {
        {"more keys than bytes", {"\xDF\x13" + bigEndian(~0ULL, 8)}},
        {"twice the count overflows", {"\xDF\x13" + bigEndian(1ULL << 63, 8)}},
        {"a count of 16 bytes", {"\xDF\x14" + std::string(16, '\x01')}},
        {"a count that is a text", {"\xDF\x51" + reference(0)}},
        {"a count that is missing", {"\xDF"}},
        {"references beyond the objects", {"\xD1" + reference(99) + reference(99)}},
        {"a text longer than the bytes",
         {"\xD1" + reference(1) + reference(2), "\x51k", "\x5F\x13" + bigEndian(~0ULL, 8) + "abc"}},
        {"a value that is missing", {"\xD1" + reference(1), "\x51k"}},
    };
    for (const auto& [name, objects] : cases)
        EXPECT_EQ(propertyListString(binaryOf(objects), "k"), std::nullopt) << name;
    EXPECT_EQ(
        propertyListString(binaryOf({"\xD1" + reference(1) + reference(2), "\x51k", "\x51v"}), "k"),
        "v");
}

TEST(PropertyList, ListsBeyondTheLimitAreNotRead) {
    const std::string list =
        xml("<dict><key>CFBundleIdentifier</key><string>org.example.App</string></dict>");
    const auto padded = [&](std::size_t size) {
        return list + std::string(size - list.size(), ' ');
    };
    EXPECT_EQ(propertyListString(padded(maximumPropertyListBytes), key), "org.example.App");
    EXPECT_EQ(propertyListString(padded(maximumPropertyListBytes + 1), key), std::nullopt);
    EXPECT_EQ(propertyListString(padded(20'000'000), key), std::nullopt);
}

} // namespace
} // namespace tidewright
