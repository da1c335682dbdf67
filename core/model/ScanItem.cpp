#include "core/model/ScanItem.h"

namespace tidewright {

namespace {

const std::string& identityKey(const ScanItem::Parts& parts) {
    if (parts.idSuffix)
        return *parts.idSuffix;
    return parts.urls.empty() ? parts.title : parts.urls.front().path();
}

} // namespace

ScanItem ScanItem::make(Parts parts) {
    ScanItem item;
    item.id = parts.ruleID + ":" + identityKey(parts);
    item.ruleID = std::move(parts.ruleID);
    item.group = std::move(parts.group);
    item.title = std::move(parts.title);
    item.version = std::move(parts.version);
    item.urls = std::move(parts.urls);
    item.sizeSource = parts.sizeSource;
    item.sizeBytes = parts.sizeSource.initialBytes();
    item.category = parts.category;
    item.risk = parts.risk;
    item.decision = parts.decision;
    item.reason = std::move(parts.reason);
    item.whatItIs = std::move(parts.whatItIs);
    item.afterEffect = std::move(parts.afterEffect);
    item.method = std::move(parts.method);
    item.owner = std::move(parts.owner);
    item.lastUsed = parts.lastUsed;
    item.isProjectItem = parts.isProjectItem;
    return item;
}

std::optional<URL> ScanItem::primaryURL() const {
    if (urls.empty())
        return std::nullopt;
    return urls.front();
}

void ScanItem::keep(std::string because, std::optional<std::string> inUseByName) {
    decision = Decision::keep;
    reason = std::move(because);
    if (inUseByName)
        inUseBy = std::move(inUseByName);
}

} // namespace tidewright
