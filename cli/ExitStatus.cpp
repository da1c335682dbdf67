#include "cli/ExitStatus.h"

#include "cli/Terminal.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <cerrno>
#include <system_error>

namespace tidewright {

int usageError(std::string_view sentence) {
    writeAll(stderr, fmt::format("tidewright: {}\n", printable(sentence)));
    return usageStatus;
}

int printResult(std::string_view text) {
    if (writeAll(stdout, text))
        return doneStatus;
    writeAll(stderr, fmt::format("tidewright: the result could not be written: {}.\n",
                                 std::generic_category().message(errno)));
    return failedStatus;
}

int printJson(const Json& document) {
    return printResult(jsonText(document, JsonLayout::indented) + "\n");
}

} // namespace tidewright
