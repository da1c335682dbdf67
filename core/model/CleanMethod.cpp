#include "core/model/CleanMethod.h"

namespace tidewright {

std::string ShellCommand::displayString() const {
    std::string line = tool;
    for (const std::string& argument : arguments) {
        const bool quoted = argument.find(' ') != std::string::npos;
        line += quoted ? " '" + argument + "'" : " " + argument;
    }
    return line;
}

std::string_view CleanMethod::label() const {
    static constexpr std::array<std::string_view, cases.size()> labels{
        "Delete permanently", "Move to Trash", "Run clean command", "Manual"};
    return labels.at(choice.index());
}

Int64 SizeSource::initialBytes() const {
    const auto* known = std::get_if<Known>(&choice);
    return known != nullptr ? known->bytes : 0;
}

} // namespace tidewright
