#include "core/support/Pattern.h"

#include "core/support/Require.h"

#include <fmt/format.h>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <cstdint>
#include <utility>

namespace tidewright {

namespace {

// What one search may take; reached only by texts made for it. The engine's own limits hold for one
// starting point each, so a text with many of those would still be searched in quadratic time: the
// budget, in steps and bytes passed over, holds for all of them together.
constexpr std::uint64_t leastBudget = 10'000'000;
constexpr std::uint64_t budgetPerByte = 8;
constexpr std::uint32_t matchLimit = 1'000'000;
constexpr std::uint32_t depthLimit = 100'000;
constexpr std::uint32_t heapLimitKiB = 64 * 1024;

struct Freed {
    void operator()(pcre2_code* code) const { pcre2_code_free(code); }
    void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
    void operator()(pcre2_match_context* context) const { pcre2_match_context_free(context); }
};

PCRE2_SPTR bytes(std::string_view text) { return reinterpret_cast<PCRE2_SPTR>(text.data()); }

/// How much of a search's budget is used; called by the engine before each item of the pattern.
struct Budget {
    std::uint64_t left = 0;
    PCRE2_SIZE position = 0;

    static int spend(pcre2_callout_block* callout, void* data) {
        auto* budget = static_cast<Budget*>(data);
        const PCRE2_SIZE from = std::exchange(budget->position, callout->current_position);
        const PCRE2_SIZE to = callout->current_position;
        const std::uint64_t cost = 1 + (to > from ? to - from : from - to);
        if (cost > budget->left)
            return PCRE2_ERROR_MATCHLIMIT;
        budget->left -= cost;
        return 0;
    }
};

/// Matches one text from left to right; one per call, since match data belong to one thread.
class Matcher {
public:
    Matcher(const Matcher&) = delete; // the engine knows where the budget is
    Matcher& operator=(const Matcher&) = delete;

    Matcher(const pcre2_code* code, std::string_view text)
        : m_code(code),
          m_text(text),
          m_data(pcre2_match_data_create_from_pattern(code, nullptr)),
          m_context(pcre2_match_context_create(nullptr)),
          m_budget{leastBudget + budgetPerByte * text.size()} {
        pcre2_set_callout(m_context.get(), Budget::spend, &m_budget);
        pcre2_set_match_limit(m_context.get(), matchLimit);
        pcre2_set_depth_limit(m_context.get(), depthLimit);
        pcre2_set_heap_limit(m_context.get(), heapLimitKiB);
    }

    std::optional<std::vector<std::string>> next() {
        if (m_start > m_text.size())
            return std::nullopt;
        int count = match(0);
        if (count == PCRE2_ERROR_JIT_STACKLIMIT)
            count = match(PCRE2_NO_JIT); // the interpreter is held to the limits alone
        if (count < 1)                   // no match, or a limit was reached
            return std::nullopt;
        const PCRE2_SIZE* ends = pcre2_get_ovector_pointer(m_data.get());
        std::vector<std::string> groups;
        for (std::size_t i = 0; i < pcre2_get_ovector_count(m_data.get()); ++i)
            groups.push_back(
                ends[2 * i] == PCRE2_UNSET
                    ? std::string()
                    : std::string(m_text.substr(ends[2 * i], ends[2 * i + 1] - ends[2 * i])));
        m_start = ends[1] > ends[0] ? ends[1] : ends[1] + 1;
        return groups;
    }

private:
    int match(std::uint32_t options) {
        return pcre2_match(m_code, bytes(m_text), m_text.size(), m_start, options, m_data.get(),
                           m_context.get());
    }

    const pcre2_code* m_code;
    std::string_view m_text;
    std::unique_ptr<pcre2_match_data, Freed> m_data;
    std::unique_ptr<pcre2_match_context, Freed> m_context;
    Budget m_budget;
    PCRE2_SIZE m_start = 0;
};

} // namespace

struct Pattern::Compiled {
    std::unique_ptr<pcre2_code, Freed> code;
};

Pattern::Pattern(std::string_view expression, DotMatches dotMatches) {
    int error = 0;
    PCRE2_SIZE offset = 0;
    const std::uint32_t options =
        PCRE2_AUTO_CALLOUT | (dotMatches == DotMatches::anything ? PCRE2_DOTALL : 0U);
    pcre2_code* code =
        pcre2_compile(bytes(expression), expression.size(), options, &error, &offset, nullptr);
    require(code != nullptr, fmt::format("the pattern {} compiles", expression));
    pcre2_jit_compile(code, PCRE2_JIT_COMPLETE); // without it matching is slower, not different
    m_compiled =
        std::make_shared<const Compiled>(Compiled{std::unique_ptr<pcre2_code, Freed>(code)});
}

std::optional<std::vector<std::string>> Pattern::firstMatch(std::string_view text) const {
    return Matcher(m_compiled->code.get(), text).next();
}

std::vector<std::vector<std::string>> Pattern::allMatches(std::string_view text) const {
    std::vector<std::vector<std::string>> matches;
    Matcher matcher(m_compiled->code.get(), text);
    while (auto groups = matcher.next())
        matches.push_back(std::move(*groups));
    return matches;
}

} // namespace tidewright
