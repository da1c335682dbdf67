#include "app/state/Folding.h"

#include "app/state/RowModel.h"
#include "core/support/Text.h"

#include <algorithm>

namespace tidewright {

std::string Folding::operator()(std::string_view text) const {
    const auto isASCII = [](char character) {
        return static_cast<unsigned char>(character) < 0x80;
    };
    if (m_isPlainForASCII && std::ranges::all_of(text, isASCII))
        return lowercasedASCII(text);
    return caseFolded(m_locale.toLower(shownText(text)).toStdString());
}

} // namespace tidewright
