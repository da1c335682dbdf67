#include "core/rules/ItemKind.h"

namespace tidewright {

ScanItem::Parts partsOf(const ItemKind& kind, const std::string& ruleID, std::vector<URL> urls) {
    return {.ruleID = ruleID,
            .group = std::string(kind.group),
            .title = std::string(kind.title),
            .urls = std::move(urls),
            .category = kind.category,
            .risk = kind.risk,
            .decision = kind.decision,
            .reason = std::string(kind.reason),
            .whatItIs = std::string(kind.whatItIs),
            .afterEffect = std::string(kind.afterEffect),
            .method = CleanMethod::remove()};
}

} // namespace tidewright
