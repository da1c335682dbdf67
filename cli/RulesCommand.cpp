#include "cli/RulesCommand.h"

#include "cli/ExitStatus.h"
#include "core/scan/RuleCatalog.h"
#include "core/support/Json.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace tidewright {

namespace {

Json rulesJson() {
    Json list = Json::array();
    for (const CleanupRule& rule : RuleCatalog::all())
        list.push_back(
            {{"id", rule.id}, {"category", rawValue(rule.category)}, {"name", rule.name}});
    return list;
}

} // namespace

std::string rulesText(const Terminal& terminal) {
    std::size_t idColumns = 0;
    std::size_t categoryColumns = 0;
    for (const CleanupRule& rule : RuleCatalog::all()) {
        idColumns = std::max(idColumns, rule.id.size());
        categoryColumns = std::max(categoryColumns, displayWidth(title(rule.category)));
    }
    std::string text;
    for (const CleanupRule& rule : RuleCatalog::all()) {
        const std::string row = fmt::format("{:{}}  {:{}}  {}", rule.id, idColumns,
                                            title(rule.category), categoryColumns, rule.name);
        text += elidedMiddle(row, terminal.columns.value_or(row.size())) + "\n";
    }
    return text;
}

int runRules(bool json) {
    return json ? printJson(rulesJson()) : printResult(rulesText(terminalOf(stdout)));
}

} // namespace tidewright
