#include "core/support/Lists.h"

#include "core/support/Require.h"

#include <unicode/listformatter.h>

#include <memory>

namespace tidewright {

std::string joinedWithAnd(const std::vector<std::string>& texts) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::ListFormatter> formatter(icu::ListFormatter::createInstance(status));
    require(U_SUCCESS(status), "ICU has list forms");
    std::vector<icu::UnicodeString> items;
    for (const std::string& text : texts)
        items.push_back(icu::UnicodeString::fromUTF8(text));
    icu::UnicodeString joined;
    formatter->format(items.data(), static_cast<std::int32_t>(items.size()), joined, status);
    std::string result;
    return joined.toUTF8String(result);
}

} // namespace tidewright
