#include "core/support/Date.h"

#include <fmt/format.h>

#include <algorithm>

namespace tidewright {

namespace {

using namespace std::chrono;

// std::chrono's civil calendar ends at the year 32767.
constexpr Date earliest = sys_days{year{-32767} / January / 1};
constexpr Date latest = sys_days{year{32767} / December / 31} + days(1) - microseconds(1);

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Reads a text against a form in which '0' stands for a digit and all else for itself.
class FormReader {
public:
    explicit FormReader(std::string_view text) : m_rest(text) {}

    bool literal(char c) {
        if (m_rest.empty() || m_rest.front() != c)
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

    /// Exactly `count` digits, with a value of at most `largest`.
    std::optional<int> number(std::size_t count, int largest) {
        if (m_rest.size() < count ||
            !std::all_of(m_rest.begin(), m_rest.begin() + static_cast<std::ptrdiff_t>(count),
                         isDigit))
            return std::nullopt;
        int value = 0;
        for (std::size_t i = 0; i < count; ++i)
            value = value * 10 + (m_rest[i] - '0');
        m_rest.remove_prefix(count);
        return value <= largest ? std::optional(value) : std::nullopt;
    }

    bool atEnd() const { return m_rest.empty(); }

private:
    std::string_view m_rest;
};

/// "Z", "+01:00", "-0130".
std::optional<minutes> readOffset(FormReader& reader) {
    if (reader.literal('Z'))
        return minutes(0);
    const bool west = reader.literal('-');
    if (!west && !reader.literal('+'))
        return std::nullopt;
    const auto hour = reader.number(2, 23);
    reader.literal(':');
    const auto minute = reader.number(2, 59);
    if (!hour || !minute)
        return std::nullopt;
    const minutes offset = hours(*hour) + minutes(*minute);
    return west ? -offset : offset;
}

} // namespace

Date currentDate() { return floor<microseconds>(system_clock::now()); }

std::string iso8601Text(Date date) {
    const Date shown = std::clamp(date, earliest, latest);
    const sys_days day = floor<days>(shown);
    const year_month_day civil{day};
    const hh_mm_ss time{floor<seconds>(shown - day)};
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(civil.year()),
                       static_cast<unsigned>(civil.month()), static_cast<unsigned>(civil.day()),
                       time.hours().count(), time.minutes().count(), time.seconds().count());
}

std::optional<Date> parseISO8601(std::string_view text) {
    FormReader reader(text);
    const auto y = reader.number(4, 9999);
    if (!y || !reader.literal('-'))
        return std::nullopt;
    const auto mo = reader.number(2, 12);
    if (!mo || !reader.literal('-'))
        return std::nullopt;
    const auto d = reader.number(2, 31);
    if (!d || !reader.literal('T'))
        return std::nullopt;
    const auto h = reader.number(2, 23);
    if (!h || !reader.literal(':'))
        return std::nullopt;
    const auto mi = reader.number(2, 59);
    if (!mi || !reader.literal(':'))
        return std::nullopt;
    const auto s = reader.number(2, 60); // 60: a leap second
    if (!s)
        return std::nullopt;
    const auto offset = readOffset(reader);
    const year_month_day civil =
        year(*y) / month(static_cast<unsigned>(*mo)) / day(static_cast<unsigned>(*d));
    if (!offset || !reader.atEnd() || !civil.ok())
        return std::nullopt;
    return sys_days(civil) + hours(*h) + minutes(*mi) + seconds(*s) - *offset;
}

} // namespace tidewright
