// How an item would be cleaned, and where its size comes from. Nothing here is carried out.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Fields.h"

namespace tidewright {

/// A command with which a tool cleans up after itself.
struct ShellCommand {
    std::string tool;                    ///< a bare name, or an absolute path
    std::vector<std::string> arguments;  ///< one argv entry each; there is no shell in between
    std::optional<URL> workingDirectory; ///< absent: inherited
    bool fallbackToRemove = false;       ///< without the tool, the item's locations may be removed

    /// The line that a user reads: tool and arguments, joined by blanks; an argument with a blank
    /// stands in single quotes, without any escaping.
    std::string displayString() const;

    bool operator==(const ShellCommand&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("tool", &ShellCommand::tool),
                          field("arguments", &ShellCommand::arguments),
                          field("workingDirectory", &ShellCommand::workingDirectory),
                          field("fallbackToRemove", &ShellCommand::fallbackToRemove)};
    }
};

struct CleanMethod {
    /// The item's locations are deleted outright.
    struct Remove {
        bool operator==(const Remove&) const = default;
        static constexpr auto fields() { return std::tuple{}; }
    };
    /// The item's locations are moved to the Trash.
    struct Trash {
        bool operator==(const Trash&) const = default;
        static constexpr auto fields() { return std::tuple{}; }
    };
    /// The owning tool cleans with its own command.
    struct Command {
        ShellCommand command;
        bool operator==(const Command&) const = default;
        static constexpr auto fields() { return std::tuple{field("_0", &Command::command)}; }
    };
    /// Nothing is run; the text tells the user what to do.
    struct Manual {
        std::string text;
        bool operator==(const Manual&) const = default;
        static constexpr auto fields() { return std::tuple{field("_0", &Manual::text)}; }
    };

    static constexpr std::array<std::string_view, 4> cases{"remove", "trash", "command", "manual"};
    std::variant<Remove, Trash, Command, Manual> choice;

    static CleanMethod remove() { return {Remove{}}; }
    static CleanMethod trash() { return {Trash{}}; }
    static CleanMethod command(ShellCommand command) { return {Command{std::move(command)}}; }
    static CleanMethod manual(std::string text) { return {Manual{std::move(text)}}; }

    bool isTrash() const { return std::holds_alternative<Trash>(choice); }
    bool isExecutable() const { return !std::holds_alternative<Manual>(choice); }

    /// "Move to Trash" and the like: the heading under which such items are reviewed.
    std::string_view label() const;

    bool operator==(const CleanMethod&) const = default;
};

struct SizeSource {
    /// The folders must be walked.
    struct Measure {
        bool operator==(const Measure&) const = default;
        static constexpr auto fields() { return std::tuple{}; }
    };
    /// The rule knows the number of bytes; nobody walks anything.
    struct Known {
        Int64 bytes = 0;
        bool operator==(const Known&) const = default;
        static constexpr auto fields() { return std::tuple{field("_0", &Known::bytes)}; }
    };

    static constexpr std::array<std::string_view, 2> cases{"measure", "known"};
    std::variant<Measure, Known> choice;

    static SizeSource measure() { return {Measure{}}; }
    static SizeSource known(Int64 bytes) { return {Known{bytes}}; }

    bool isMeasured() const { return std::holds_alternative<Measure>(choice); }
    /// The known number of bytes, 0 for what is still to be measured.
    Int64 initialBytes() const;

    bool operator==(const SizeSource&) const = default;
};

} // namespace tidewright
