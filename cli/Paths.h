// Paths as they are given on the command line.
#pragma once

#include "core/support/Result.h"
#include "core/support/URL.h"

#include <string>

namespace tidewright {

/// The location of an argument; a relative one is taken from the current folder. Standardised.
URL absolute(const std::string& argument);

/// A folder that must be there; the error is a sentence for the user.
Result<URL, std::string> existingFolder(const std::string& argument);

} // namespace tidewright
