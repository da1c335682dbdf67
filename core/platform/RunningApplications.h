// The graphical applications that run now.
#pragma once

#include <set>
#include <string>

namespace tidewright {

/// Their bundle identifiers (on Linux those that AppMatcher knows, or the desktop entry's); an
/// application without one is left out. Call it through runOnMainThread: systems answer this only
/// there.
std::set<std::string> runningBundleIdentifiers();

} // namespace tidewright
