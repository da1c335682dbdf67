// One finding of one rule: what it is, what was decided and why, and how it would be cleaned.
#pragma once

#include "core/model/AppMatcher.h"
#include "core/model/Category.h"
#include "core/model/CleanMethod.h"
#include "core/model/Decision.h"

namespace tidewright {

struct ScanItem {
    /// An item below this size is dropped from the report unless its rule says otherwise.
    static constexpr Int64 usualHideBelowBytes = 1'000'000;

    std::string id; ///< stable between scans: the rule's id, a colon and a key
    std::string ruleID;
    std::string group; ///< the heading in its category; second key of the report's order
    std::string title;
    std::optional<std::string> version;
    std::vector<URL> urls; ///< what the item consists of; may be empty
    SizeSource sizeSource;
    Int64 sizeBytes = 0; ///< 0 until measured
    Category category = Category::android;
    Risk risk = Risk::safe;
    Decision decision = Decision::clean;
    std::string reason;      ///< why the decision is what it is, for the user
    std::string whatItIs;    ///< for the user
    std::string afterEffect; ///< what happens after it is gone, for the user
    CleanMethod method;
    std::optional<std::string> inUseBy; ///< display name of the application that holds it
    std::optional<AppMatcher> owner;    ///< the application that must not be running
    std::optional<Date> lastUsed;
    bool isProjectItem = false; ///< lies inside a project of the user's
    Int64 hideBelowBytes = usualHideBelowBytes;

    /// What a rule says of an item.
    struct Parts {
        std::string ruleID = {};
        std::string group = {};
        std::string title = {};
        std::optional<std::string> version = std::nullopt;
        std::vector<URL> urls = {};
        SizeSource sizeSource = SizeSource::measure();
        Category category = Category::android;
        Risk risk = Risk::safe;
        Decision decision = Decision::keep;
        std::string reason = {};
        std::string whatItIs = {};
        std::string afterEffect = {};
        CleanMethod method = CleanMethod::manual({}); ///< a rule that says nothing removes nothing
        std::optional<AppMatcher> owner = std::nullopt;
        std::optional<Date> lastUsed = std::nullopt;
        bool isProjectItem = false;
        /// The key of the id, instead of the first location's path or the title.
        std::optional<std::string> idSuffix = std::nullopt;
    };

    /// The one way in which rules make items. The key of the id is the first of `idSuffix`, the
    /// path of the first location, and the title.
    static ScanItem make(Parts parts);

    /// The first location, absent when there is none.
    std::optional<URL> primaryURL() const;

    /// Sets the decision to keep with a reason. Without a name an earlier `inUseBy` stays.
    void keep(std::string because, std::optional<std::string> inUseByName = std::nullopt);

    bool operator==(const ScanItem&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("id", &ScanItem::id),
                          field("ruleID", &ScanItem::ruleID),
                          field("group", &ScanItem::group),
                          field("title", &ScanItem::title),
                          field("version", &ScanItem::version),
                          field("urls", &ScanItem::urls),
                          field("sizeSource", &ScanItem::sizeSource),
                          field("sizeBytes", &ScanItem::sizeBytes),
                          field("category", &ScanItem::category),
                          field("risk", &ScanItem::risk),
                          field("decision", &ScanItem::decision),
                          field("reason", &ScanItem::reason),
                          field("whatItIs", &ScanItem::whatItIs),
                          field("afterEffect", &ScanItem::afterEffect),
                          field("method", &ScanItem::method),
                          field("inUseBy", &ScanItem::inUseBy),
                          field("owner", &ScanItem::owner),
                          field("lastUsed", &ScanItem::lastUsed),
                          field("isProjectItem", &ScanItem::isProjectItem),
                          field("hideBelowBytes", &ScanItem::hideBelowBytes)};
    }
};

} // namespace tidewright
