#include "cli/ScanCommand.h"

#include "cli/ExitStatus.h"
#include "cli/ReportText.h"
#include "cli/Scanning.h"
#include "core/model/Coding.h"

namespace tidewright {

int runScan(const ScanOptions& options, bool json) {
    const auto report = scanForCommand(options);
    if (!report)
        return report.error();
    if (json)
        return printJson(encode(**report, commandLineStyle));
    return printResult(reportText(**report, terminalOf(stdout)));
}

} // namespace tidewright
