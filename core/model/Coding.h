// The one coded form of every record, written and read.
//
// A record is an object with its field names as keys, absent optionals left out; an enumeration is
// its text; a tagged choice is an object with one key, its case, whose value holds the payload.
// How locations and dates look depends on who writes: see CodingStyle.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Fields.h"
#include "core/support/Json.h"

namespace tidewright {

struct CodingStyle {
    enum class Locations { plainPath, fileURL };
    enum class Dates { iso8601, secondsSince2001 };
    Locations locations = Locations::plainPath;
    Dates dates = Dates::iso8601;
};

/// What people and scripts read: plain absolute paths and ISO 8601 UTC text.
inline constexpr CodingStyle commandLineStyle{};

namespace coding {

Json encodeLocation(const URL& url, CodingStyle style);
Json encodeDate(Date date, CodingStyle style);
std::optional<URL> decodeLocation(const ParsedJson& json, CodingStyle style);
std::optional<Date> decodeDate(const ParsedJson& json, CodingStyle style);
std::optional<Int64> decodeInteger(const ParsedJson& json);

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;
template <class T>
inline constexpr bool isList = false;
template <class T>
inline constexpr bool isList<std::vector<T>> = true;
template <class T>
inline constexpr bool isList<std::set<T>> = true;
template <class T>
inline constexpr bool isMap = false;
template <class K, class V>
inline constexpr bool isMap<std::map<K, V>> = true;

template <class Key>
std::string keyText(const Key& key) {
    if constexpr (Enumerated<Key>)
        return std::string(rawValue(key));
    else
        return key;
}

} // namespace coding

/// The coded form of a record, or of a list, map or value of records.
template <class T>
Json encode(const T& value, CodingStyle style) {
    if constexpr (Record<T>) {
        Json object = Json::object();
        forEachField(value, [&](std::string_view name, const auto& each) {
            if (name.empty())
                return;
            if constexpr (coding::isOptional<std::decay_t<decltype(each)>>) {
                if (each)
                    object[std::string(name)] = encode(*each, style);
            } else {
                object[std::string(name)] = encode(each, style);
            }
        });
        return object;
    } else if constexpr (TaggedChoice<T>) {
        Json object = Json::object();
        std::visit(
            [&](const auto& payload) {
                object[std::string(T::cases.at(value.choice.index()))] = encode(payload, style);
            },
            value.choice);
        return object;
    } else if constexpr (Enumerated<T>) {
        return std::string(rawValue(value));
    } else if constexpr (coding::isList<T>) {
        Json array = Json::array();
        for (const auto& each : value)
            array.push_back(encode(each, style));
        return array;
    } else if constexpr (coding::isMap<T>) {
        Json object = Json::object();
        for (const auto& [key, each] : value)
            object[coding::keyText(key)] = encode(each, style);
        return object;
    } else if constexpr (std::same_as<T, URL>) {
        return coding::encodeLocation(value, style);
    } else if constexpr (std::same_as<T, Date>) {
        return coding::encodeDate(value, style);
    } else if constexpr (std::same_as<T, Duration>) {
        return std::chrono::duration<double>(value).count();
    } else {
        return Json(value);
    }
}

/// Reads a coded form. Absent when a mandatory key is missing or anything has another type; keys
/// that are not known are passed over.
template <class T>
std::optional<T> decode(const ParsedJson& json, CodingStyle style) {
    if constexpr (Record<T>) {
        if (!json.is_object())
            return std::nullopt;
        T record;
        bool complete = true;
        const auto read = [&](const auto& each) {
            using Value = std::decay_t<decltype(record.*each.member)>;
            if (each.name.empty())
                return;
            const auto found = json.find(std::string(each.name));
            const bool present = found != json.end() && !found->is_null();
            if constexpr (coding::isOptional<Value>) {
                if (!present)
                    return;
                record.*each.member = decode<typename Value::value_type>(*found, style);
                complete = complete && (record.*each.member).has_value();
            } else {
                auto value = present ? decode<Value>(*found, style) : std::nullopt;
                complete = complete && value.has_value();
                if (value)
                    record.*each.member = std::move(*value);
            }
        };
        std::apply([&](const auto&... each) { (read(each), ...); }, T::fields());
        return complete ? std::optional(std::move(record)) : std::nullopt;
    } else if constexpr (TaggedChoice<T>) {
        if (!json.is_object() || json.size() != 1)
            return std::nullopt;
        std::optional<T> result;
        const auto tryCase = [&]<std::size_t index>() {
            if (json.begin().key() != T::cases[index])
                return;
            using Payload = std::variant_alternative_t<index, decltype(T::choice)>;
            if (auto payload = decode<Payload>(json.begin().value(), style))
                result.emplace().choice = std::move(*payload);
        };
        [&]<std::size_t... indices>(std::index_sequence<indices...>) {
            (tryCase.template operator()<indices>(), ...);
        }
        (std::make_index_sequence<T::cases.size()>());
        return result;
    } else if constexpr (Enumerated<T>) {
        return json.is_string() ? fromRawValue<T>(json.get_ref<const std::string&>())
                                : std::nullopt;
    } else if constexpr (coding::isList<T>) {
        if (!json.is_array())
            return std::nullopt;
        T list;
        for (const ParsedJson& each : json) {
            auto value = decode<typename T::value_type>(each, style);
            if (!value)
                return std::nullopt;
            list.insert(list.end(), std::move(*value));
        }
        return list;
    } else if constexpr (std::same_as<T, URL>) {
        return coding::decodeLocation(json, style);
    } else if constexpr (std::same_as<T, Date>) {
        return coding::decodeDate(json, style);
    } else if constexpr (std::same_as<T, std::string>) {
        return json.is_string() ? std::optional(json.get<std::string>()) : std::nullopt;
    } else if constexpr (std::same_as<T, bool>) {
        return json.is_boolean() ? std::optional(json.get<bool>()) : std::nullopt;
    } else if constexpr (std::integral<T>) {
        const std::optional<Int64> number = coding::decodeInteger(json);
        if (!number || !std::in_range<T>(*number))
            return std::nullopt;
        return static_cast<T>(*number);
    } else {
        static_assert(std::same_as<T, double>, "a type without a coded form");
        return json.is_number() ? std::optional(json.get<double>()) : std::nullopt;
    }
}

} // namespace tidewright
