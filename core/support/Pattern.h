// Regular expressions: PCRE2, compiled once, with limits so that no input can stall a scan.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewright {

/// One compiled pattern, shared freely between threads. Matching is on bytes; a text that makes the
/// engine exceed its limits counts as no match.
class Pattern {
public:
    enum class DotMatches { anythingButNewline, anything };

    /// `expression` is the programmer's: one that does not compile stops the program.
    explicit Pattern(std::string_view expression,
                     DotMatches dotMatches = DotMatches::anythingButNewline);

    /// The groups of the first match, the whole match first; a group that took no part is empty.
    std::optional<std::vector<std::string>> firstMatch(std::string_view text) const;

    /// The groups of every match, from left to right.
    std::vector<std::vector<std::string>> allMatches(std::string_view text) const;

private:
    struct Compiled;
    std::shared_ptr<const Compiled> m_compiled;
};

} // namespace tidewright
