// What a record says of itself: its fields by name, and the cases of an enumeration by text. From
// these tables come its hash and its coded form, so that neither can forget a field.
#pragma once

#include "core/support/Date.h"
#include "core/support/URL.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

namespace tidewright {

template <class Owner, class Value>
struct Field {
    std::string_view name; ///< the key of the coded form; empty: hashed, but never coded
    Value Owner::*member;
};

template <class Owner, class Value>
constexpr Field<Owner, Value> field(std::string_view name, Value Owner::*member) {
    return {name, member};
}

template <class Owner, class Value>
constexpr Field<Owner, Value> uncodedField(Value Owner::*member) {
    return {{}, member};
}

/// A plain struct with `static constexpr auto fields()`, a tuple of Field in declaration order.
template <class T>
concept Record = requires {
    T::fields();
};

/// Calls `visit(name, value)` for each field in order.
template <Record T, class Visit>
void forEachField(const T& record, Visit visit) {
    std::apply([&](const auto&... each) { (visit(each.name, record.*each.member), ...); },
               T::fields());
}

/// A choice between records: a variant `choice` and in `cases` the name of each alternative.
template <class T>
concept TaggedChoice = requires(T value) {
    value.choice;
    T::cases;
};

/// The cases of an enumeration in declaration order with their texts: a specialisation has
/// `static constexpr std::array cases{std::pair{E::first, std::string_view("first")}, …}`.
template <class E>
struct EnumCases;

template <class E>
concept Enumerated = requires {
    EnumCases<E>::cases;
};

template <Enumerated E>
constexpr auto allCases() {
    std::array<E, EnumCases<E>::cases.size()> result{};
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = EnumCases<E>::cases[i].first;
    return result;
}

template <Enumerated E>
constexpr std::string_view rawValue(E value) {
    for (const auto& [each, text] : EnumCases<E>::cases)
        if (each == value)
            return text;
    return {};
}

template <Enumerated E>
constexpr std::optional<E> fromRawValue(std::string_view text) {
    for (const auto& [each, raw] : EnumCases<E>::cases)
        if (raw == text)
            return each;
    return std::nullopt;
}

/// Folds values into one hash.
class Hasher {
public:
    template <class T>
    void add(const T& value) {
        if constexpr (Record<T>)
            forEachField(value, [this](std::string_view, const auto& each) { add(each); });
        else if constexpr (TaggedChoice<T>)
            addChoice(value.choice);
        else if constexpr (std::is_enum_v<T>)
            mix(static_cast<std::size_t>(value));
        else
            addValue(value);
    }
    std::size_t value() const { return m_hash; }

private:
    void mix(std::size_t hash) {
        m_hash ^= hash + 0x9e3779b97f4a7c15 + (m_hash << 6) + (m_hash >> 2);
    }

    template <class T>
    void addRange(const T& range) {
        mix(range.size());
        for (const auto& each : range)
            add(each);
    }
    template <class T>
    void addValue(const T& value) {
        mix(std::hash<T>()(value));
    }
    void addValue(const URL& url) { addValue(url.path()); }
    void addValue(Date date) { addValue(date.time_since_epoch().count()); }
    void addValue(Duration duration) { addValue(duration.count()); }
    template <class T>
    void addValue(const std::optional<T>& optional) {
        mix(optional.has_value() ? 1 : 0);
        if (optional)
            add(*optional);
    }
    template <class T>
    void addValue(const std::vector<T>& values) {
        addRange(values);
    }
    template <class T>
    void addValue(const std::set<T>& values) {
        addRange(values);
    }
    template <class K, class V>
    void addValue(const std::map<K, V>& values) {
        addRange(values);
    }
    template <class A, class B>
    void addValue(const std::pair<A, B>& pair) {
        add(pair.first);
        add(pair.second);
    }
    template <class... Ts>
    void addChoice(const std::variant<Ts...>& choice) {
        mix(choice.index());
        std::visit([this](const auto& each) { add(each); }, choice);
    }

    std::size_t m_hash = 0;
};

} // namespace tidewright

/// Every record is hashed by all of its fields, every tagged choice by its case and payload.
template <class T>
requires tidewright::Record<T> || tidewright::TaggedChoice<T>
struct std::hash<T> {
    std::size_t operator()(const T& value) const {
        tidewright::Hasher hasher;
        hasher.add(value);
        return hasher.value();
    }
};
