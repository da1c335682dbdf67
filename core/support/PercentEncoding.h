// Bytes in the text of a URI, as RFC 3986 writes them.
#pragma once

#include <string>
#include <string_view>

namespace tidewright {

/// Each byte as "%XX", but for the unreserved characters and those in `kept`.
std::string percentEncoded(std::string_view bytes, std::string_view kept);

/// The bytes of such a text; a "%" without two digits behind it stands for itself.
std::string percentDecoded(std::string_view text);

} // namespace tidewright
