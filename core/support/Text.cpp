#include "core/support/Text.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/stringoptions.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <utility>

namespace tidewright {

namespace {

constexpr UChar32 replacement = 0xFFFD;

icu::UnicodeString fromUTF8(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::size_t columnsOf(UChar32 c) {
    switch (u_charType(c)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_FORMAT_CHAR:
        return 0;
    default:
        break;
    }
    // The vowel and the end of a Korean syllable in parts stand in the columns of its beginning.
    const int syllablePart = u_getIntPropertyValue(c, UCHAR_HANGUL_SYLLABLE_TYPE);
    if (syllablePart == U_HST_VOWEL_JAMO || syllablePart == U_HST_TRAILING_JAMO)
        return 0;
    const int width = u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_FULLWIDTH || width == U_EA_WIDE ? 2 : 1;
}

bool isUnsafeOnTerminal(UChar32 c) {
    if (u_hasBinaryProperty(c, UCHAR_BIDI_CONTROL))
        return true;
    const auto type = u_charType(c);
    return type == U_CONTROL_CHAR || type == U_LINE_SEPARATOR || type == U_PARAGRAPH_SEPARATOR;
}

std::size_t columnsOf(const icu::UnicodeString& text) {
    std::size_t columns = 0;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1))
        columns += columnsOf(text.char32At(i));
    return columns;
}

/// How many code units from the start, or from the end, fill at most `columns`.
std::int32_t unitsFromStart(const icu::UnicodeString& text, std::size_t columns) {
    std::int32_t i = 0;
    for (std::size_t used = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        used += columnsOf(text.char32At(i));
        if (used > columns)
            break;
    }
    return i;
}

std::int32_t unitsFromEnd(const icu::UnicodeString& text, std::size_t columns) {
    std::int32_t i = text.length();
    for (std::size_t used = 0; i > 0;) {
        const std::int32_t before = text.moveIndex32(i, -1);
        used += columnsOf(text.char32At(before));
        if (used > columns)
            break;
        i = before;
    }
    return text.length() - i;
}

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

} // namespace

std::string repairedUTF8(std::string_view bytes) { return utf8(fromUTF8(bytes)); }

bool isUTF8(std::string_view bytes) {
    // Only the length is asked for, so nothing is written.
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strFromUTF8(nullptr, 0, &length, bytes.data(), static_cast<std::int32_t>(bytes.size()),
                  &status);
    return status != U_INVALID_CHAR_FOUND;
}

std::string trimmed(std::string_view text) { return trimmed(text, " \t\n\v\f\r"); }

std::string trimmed(std::string_view text, std::string_view set) {
    const std::size_t first = text.find_first_not_of(set);
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(set) - first + 1));
}

std::vector<std::string> splitDroppingEmpty(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(separator, start), text.size());
        if (end > start)
            pieces.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
    return pieces;
}

std::vector<std::string> nonEmptyLines(std::string_view text) {
    std::vector<std::string> lines = splitDroppingEmpty(text, '\n');
    for (std::string& line : lines)
        if (line.back() == '\r')
            line.pop_back();
    std::erase(lines, "");
    return lines;
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::string removing(std::string_view part, std::string_view text) {
    std::string result(text);
    if (part.empty())
        return result;
    for (std::size_t at = result.find(part); at != std::string::npos; at = result.find(part, at))
        result.erase(at, part.size());
    return result;
}

std::string lowercased(std::string_view text) {
    std::string result;
    return fromUTF8(text).toLower(icu::Locale::getRoot()).toUTF8String(result);
}

std::string caseFolded(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const form = icu::Normalizer2::getNFKCCasefoldInstance(status);
    std::string result;
    // What only a broken installation lacks is done without.
    if (U_FAILURE(status))
        return lowercased(text);
    return form->normalize(fromUTF8(text), status).toUTF8String(result);
}

std::string capitalized(std::string_view text) {
    icu::BreakIterator* const betweenWords = nullptr; // that is what null stands for
    return utf8(
        fromUTF8(text).toTitle(betweenWords, icu::Locale::getRoot(), U_TITLECASE_ADJUST_TO_CASED));
}

std::string lowercasedASCII(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return result;
}

std::string lastCharacters(std::string_view text, std::size_t count) {
    const icu::UnicodeString all = fromUTF8(text);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
        return std::string(text);
    characters->setText(all);
    std::int32_t start = characters->last();
    for (std::size_t i = 0; i < count && start > 0; ++i)
        start = characters->previous();
    std::string result;
    return all.tempSubString(start).toUTF8String(result);
}

std::optional<int> majorVersion(std::string_view version) {
    const std::vector<std::string> pieces = splitDroppingEmpty(version, '.');
    if (pieces.empty())
        return std::nullopt;
    const std::string& digits = pieces.front();
    int value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return value;
}

std::size_t displayWidth(std::string_view text) { return columnsOf(fromUTF8(text)); }

std::string printable(std::string_view text) {
    icu::UnicodeString result = fromUTF8(text);
    for (std::int32_t i = 0; i < result.length(); i = result.moveIndex32(i, 1)) {
        const UChar32 c = result.char32At(i);
        if (isUnsafeOnTerminal(c))
            result.replace(i, U16_LENGTH(c), replacement);
    }
    return utf8(result);
}

std::string elidedMiddle(std::string_view text, std::size_t columns) {
    const icu::UnicodeString whole = fromUTF8(text);
    if (columnsOf(whole) <= columns)
        return utf8(whole);
    if (columns == 0)
        return {};
    const std::size_t tail = (columns - 1) / 2;
    const std::int32_t head = unitsFromStart(whole, columns - 1 - tail);
    const std::int32_t end = whole.length() - unitsFromEnd(whole, tail);
    return utf8(whole.tempSubString(0, head)) + "…" + utf8(whole.tempSubString(end));
}

std::vector<std::string> wrapped(std::string_view text, std::size_t columns) {
    std::vector<std::string> lines;
    std::string line;
    for (const std::string& word : splitDroppingEmpty(text, ' ')) {
        icu::UnicodeString rest = fromUTF8(word);
        if (!line.empty() && displayWidth(line) + 1 + columnsOf(rest) > columns)
            lines.push_back(std::exchange(line, {}));
        while (columnsOf(rest) > columns) {
            const std::int32_t units =
                std::max(unitsFromStart(rest, columns), rest.moveIndex32(0, 1));
            lines.push_back(utf8(rest.tempSubString(0, units)));
            rest.remove(0, units);
        }
        if (!line.empty())
            line += ' ';
        line += utf8(rest);
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}

} // namespace tidewright
