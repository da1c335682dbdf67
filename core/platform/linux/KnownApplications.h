// The applications that go by several names: what their bundle is called on macOS, which is what
// the matchers know, their desktop entries, Flatpaks and snaps, and the programs that they run as.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewright {

/// Whether the text can be an application's identifier. It is then also safe as the name of a file.
bool isApplicationIdentifier(std::string_view text);

/// All identifiers of the application that goes by this one, `identifier` first. Just that one when
/// no others are known. Case counts.
std::vector<std::string> allIdentifiers(std::string_view identifier);

/// The identifier of the application whose program's file has this name.
std::optional<std::string> identifierOfProgram(std::string_view fileName);

/// The identifier of the application that a Java machine runs, by the machine's own arguments.
std::optional<std::string> identifierOfJavaProgram(const std::vector<std::string>& arguments);

} // namespace tidewright
