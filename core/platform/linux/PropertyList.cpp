#include "core/platform/linux/PropertyList.h"

#include "core/platform/linux/BinaryPropertyList.h"

#include <plist/plist.h>

#include <memory>

namespace tidewright {

namespace {

// The library frees what it read by recursion, a level per nested container. There are never more
// levels than containers, and a large application has a few hundred of these.
constexpr std::size_t maximumContainers = 4000;

std::size_t occurrences(std::string_view part, std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size()))
        ++count;
    return count;
}

std::optional<std::string> xmlPropertyListString(std::string_view bytes, const std::string& key) {
    if (occurrences("<dict", bytes) + occurrences("<array", bytes) > maximumContainers)
        return std::nullopt;
    plist_t parsed = nullptr;
    plist_from_xml(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
    const std::unique_ptr<void, decltype(&plist_free)> root(parsed, &plist_free);
    if (!root || plist_get_node_type(root.get()) != PLIST_DICT)
        return std::nullopt;
    plist_t value = plist_dict_get_item(root.get(), key.c_str());
    if (value == nullptr || plist_get_node_type(value) != PLIST_STRING)
        return std::nullopt;
    std::uint64_t length = 0;
    const char* const text = plist_get_string_ptr(value, &length);
    return text == nullptr ? std::nullopt : std::optional(std::string(text, length));
}

} // namespace

std::optional<std::string> propertyListString(std::string_view bytes, std::string_view key) {
    if (bytes.empty() || bytes.size() > maximumPropertyListBytes)
        return std::nullopt;
    if (isBinaryPropertyList(bytes))
        return binaryPropertyListString(bytes, key);
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(byteOrderMark))
        bytes.remove_prefix(byteOrderMark.size());
    return xmlPropertyListString(bytes, std::string(key));
}

} // namespace tidewright
