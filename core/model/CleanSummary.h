// What became of a cleanup: of each item, of the disk, and of the toolchains.
#pragma once

#include "core/model/DiskSpace.h"

namespace tidewright {

/// What was looked at afterwards to see that nothing needed has gone.
struct VerificationCheck {
    std::string name;
    bool passed = false;
    std::string detail; ///< for the user

    bool operator==(const VerificationCheck&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("name", &VerificationCheck::name),
                          field("passed", &VerificationCheck::passed),
                          field("detail", &VerificationCheck::detail)};
    }
};

struct CleanOutcome {
    struct Status {
        /// Nothing was tried; the reason is for the user.
        struct Skipped {
            std::string reason;
            bool operator==(const Skipped&) const = default;
            static constexpr auto fields() { return std::tuple{field("_0", &Skipped::reason)}; }
        };
        /// It was tried and did not work, or not wholly; the reason is for the user.
        struct Failed {
            std::string reason;
            bool operator==(const Failed&) const = default;
            static constexpr auto fields() { return std::tuple{field("_0", &Failed::reason)}; }
        };
        struct Cleaned {
            bool operator==(const Cleaned&) const = default;
            static constexpr auto fields() { return std::tuple{}; }
        };
        struct MovedToTrash {
            bool operator==(const MovedToTrash&) const = default;
            static constexpr auto fields() { return std::tuple{}; }
        };

        static constexpr std::array<std::string_view, 4> cases{"skipped", "failed", "cleaned",
                                                               "movedToTrash"};
        std::variant<Skipped, Failed, Cleaned, MovedToTrash> choice;

        static Status skipped(std::string reason) { return {Skipped{std::move(reason)}}; }
        static Status failed(std::string reason) { return {Failed{std::move(reason)}}; }
        static Status cleaned() { return {Cleaned{}}; }
        static Status movedToTrash() { return {MovedToTrash{}}; }

        bool isSuccess() const;
        /// "skipped", "failed", "cleaned" or "trashed".
        std::string_view word() const;
        /// Why it was skipped or failed; absent for a success.
        std::optional<std::string> reason() const;

        bool operator==(const Status&) const = default;
    };

    std::string itemID;
    std::string title;
    Status status;
    Int64 bytes = 0; ///< the item's size as the scan measured it, whatever the status

    bool operator==(const CleanOutcome&) const = default;
    static constexpr auto fields() {
        return std::tuple{
            field("itemID", &CleanOutcome::itemID), field("title", &CleanOutcome::title),
            field("status", &CleanOutcome::status), field("bytes", &CleanOutcome::bytes)};
    }
};

struct CleanSummary {
    std::vector<CleanOutcome> outcomes; ///< in order of completion
    DiskSpace diskBefore;
    DiskSpace diskAfter;
    std::vector<VerificationCheck> verification;
    std::optional<URL> logFile; ///< the audit log; absent where none could be made
    Date date;                  ///< of the end

    Int64 measuredGain() const;   ///< in available bytes; negative when space was lost meanwhile
    Int64 estimatedFreed() const; ///< of what was cleaned, as the scan measured it
    Int64 movedToTrash() const;   ///< the same of what was moved to the Trash

    /// "Freed 12 GB": what was gained, as measured, nothing where space was lost.
    std::string headline() const;
    /// The sentences below it: what is available now, and why it may be less than was cleaned.
    std::string explanation() const;

    bool operator==(const CleanSummary&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("outcomes", &CleanSummary::outcomes),
                          field("diskBefore", &CleanSummary::diskBefore),
                          field("diskAfter", &CleanSummary::diskAfter),
                          field("verification", &CleanSummary::verification),
                          field("logFile", &CleanSummary::logFile),
                          field("date", &CleanSummary::date)};
    }
};

} // namespace tidewright
