#include "core/support/Collation.h"

#include "core/support/Require.h"

#include <unicode/coll.h>
#include <unicode/locid.h>

#include <cstring>
#include <memory>

namespace tidewright {

namespace {

/// The user's language. The "C" locale, whose order is that of character codes, counts as none.
icu::Locale collationLocale() {
    const icu::Locale& user = icu::Locale::getDefault();
    if (std::strcmp(user.getVariant(), "POSIX") == 0)
        return icu::Locale::getRoot();
    return user;
}

std::unique_ptr<const icu::Collator> makeCollator() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(collationLocale(), status));
    require(U_SUCCESS(status), "ICU has collation data");
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    collator->setAttribute(UCOL_STRENGTH, UCOL_TERTIARY, status);
    collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
    require(U_SUCCESS(status), "ICU collates numbers");
    return collator;
}

icu::StringPiece piece(std::string_view text) {
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

/// Comparing is const and so may be shared between threads.
const icu::Collator& sharedCollator() {
    static const std::unique_ptr<const icu::Collator> collator = makeCollator();
    return *collator;
}

} // namespace

int standardCompare(std::string_view a, std::string_view b) {
    UErrorCode status = U_ZERO_ERROR;
    return sharedCollator().compareUTF8(piece(a), piece(b), status);
}

std::string sortKey(std::string_view text) {
    constexpr std::int32_t usualLength = 128;
    const icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(piece(text));
    std::basic_string<std::uint8_t> bytes(usualLength, 0);
    const auto write = [&] {
        return sharedCollator().getSortKey(unicode, bytes.data(),
                                           static_cast<std::int32_t>(bytes.size()));
    };
    const auto length = static_cast<std::size_t>(write());
    const bool hasRoom = length <= bytes.size();
    bytes.resize(length);
    if (!hasRoom)
        write();
    return {bytes.begin(), bytes.end()};
}

} // namespace tidewright
