// What shells need to complete a command line: one script for each, made of the grammar.
#pragma once

#include "cli/Grammar.h"

namespace tidewright {

/// For bash from 3.2 on.
std::string bashCompletion(const CommandDescription& program);
std::string zshCompletion(const CommandDescription& program);
std::string fishCompletion(const CommandDescription& program);

} // namespace tidewright
