// What matters most after a scan, said in a few sentences with one next step.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Fields.h"

namespace tidewright {

struct Insight {
    /// From least to most.
    enum class Severity { tip, notice, warning, critical };
    enum class Destination { android, xcode, javascript, system, projects, apps };

    struct Action {
        /// Select these items and open the review.
        struct Review {
            std::vector<std::string> itemIDs;
            bool operator==(const Review&) const = default;
            static constexpr auto fields() {
                return std::tuple{field("itemIDs", &Review::itemIDs)};
            }
        };
        struct Open {
            Destination destination = Destination::android;
            bool operator==(const Open&) const = default;
            static constexpr auto fields() { return std::tuple{field("_0", &Open::destination)}; }
        };
        struct None {
            bool operator==(const None&) const = default;
            static constexpr auto fields() { return std::tuple{}; }
        };

        static constexpr std::array<std::string_view, 3> cases{"none", "review", "open"};
        std::variant<None, Review, Open> choice;

        static Action review(std::vector<std::string> itemIDs) {
            return {Review{std::move(itemIDs)}};
        }
        static Action open(Destination destination) { return {Open{destination}}; }
        static Action none() { return {None{}}; }

        bool operator==(const Action&) const = default;
    };

    std::string id; ///< stable name of the kind of insight
    Severity severity = Severity::tip;
    std::string symbolName;
    std::string title;
    std::string message;
    Int64 estimatedGain = 0; ///< bytes; 0 where nothing can be said
    std::optional<std::string> actionTitle;
    Action action;

    bool operator==(const Insight&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("id", &Insight::id),
                          field("severity", &Insight::severity),
                          field("symbolName", &Insight::symbolName),
                          field("title", &Insight::title),
                          field("message", &Insight::message),
                          field("estimatedGain", &Insight::estimatedGain),
                          field("actionTitle", &Insight::actionTitle),
                          field("action", &Insight::action)};
    }
};

template <>
struct EnumCases<Insight::Severity> {
    static constexpr std::array cases{
        std::pair{Insight::Severity::tip, std::string_view("tip")},
        std::pair{Insight::Severity::notice, std::string_view("notice")},
        std::pair{Insight::Severity::warning, std::string_view("warning")},
        std::pair{Insight::Severity::critical, std::string_view("critical")},
    };
};

template <>
struct EnumCases<Insight::Destination> {
    static constexpr std::array cases{
        std::pair{Insight::Destination::android, std::string_view("android")},
        std::pair{Insight::Destination::xcode, std::string_view("xcode")},
        std::pair{Insight::Destination::javascript, std::string_view("javascript")},
        std::pair{Insight::Destination::system, std::string_view("system")},
        std::pair{Insight::Destination::projects, std::string_view("projects")},
        std::pair{Insight::Destination::apps, std::string_view("apps")},
    };
};

} // namespace tidewright
