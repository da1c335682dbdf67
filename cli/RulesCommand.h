// `tidewright rules`: lists the catalogue.
#pragma once

#include "cli/Terminal.h"

namespace tidewright {

/// The catalogue as a table of id, category and type.
std::string rulesText(const Terminal& terminal);

/// Returns the exit status.
int runRules(bool json);

} // namespace tidewright
