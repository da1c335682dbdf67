// The manual page, made of the grammar.
#pragma once

#include "cli/Grammar.h"

namespace tidewright {

/// For section 1, in the macros of man(7).
std::string manPage(const CommandDescription& program, std::string_view version);

} // namespace tidewright
