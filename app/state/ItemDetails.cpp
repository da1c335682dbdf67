#include "app/state/ItemDetails.h"

#include "app/state/AppModel.h"
#include "app/state/ItemTexts.h"
#include "app/state/RowModel.h"
#include "core/support/RelativeDate.h"

#include <QCoreApplication>

namespace tidewright {

namespace {

/// The context of the texts for translators.
struct Headings {
    Q_DECLARE_TR_FUNCTIONS(tidewright::ItemDetails)
};

DetailSection section(const QString& title, QLatin1StringView symbolName, const QString& text) {
    return {title, symbolName, text, {}};
}

QString cleaningText(const CleanMethod& method) {
    const QString instructions = manualInstructions(method);
    const QString way = howItIsCleaned(method);
    return instructions.isEmpty() ? way : way + QLatin1Char('\n') + instructions;
}

QList<DetailSection> sectionsOf(const ScanItem& item, Date now) {
    QList<DetailSection> sections{
        section(Headings::tr("Why"), QLatin1StringView("lightbulb"), shownText(item.reason)),
        section(Headings::tr("What it is"), QLatin1StringView("questionmark.circle"),
                shownText(item.whatItIs)),
        section(Headings::tr("After cleaning"), QLatin1StringView("arrow.triangle.2.circlepath"),
                shownText(item.afterEffect)),
        section(Headings::tr("How it's cleaned"), QLatin1StringView("wrench.and.screwdriver"),
                cleaningText(item.method)),
    };
    if (item.lastUsed)
        sections.append(section(Headings::tr("Last used"), QLatin1StringView("clock"),
                                shownText(relativeDateText(*item.lastUsed, now))));
    DetailSection locations = section(locationsTitle(item), QLatin1StringView("folder"), {});
    locations.lines = firstLocations(item);
    if (const QString more = moreLocations(item); !more.isEmpty())
        locations.lines.append(more);
    sections.append(locations);
    return sections;
}

} // namespace

QVariantList ItemDetails::shownSections() const {
    QVariantList shown;
    for (const DetailSection& each : sections)
        shown.append(QVariant::fromValue(each));
    return shown;
}

ItemDetails ItemDetails::of(const ScanItem& item, bool isSelected, Date now) {
    return {.isPresent = true,
            .title = shownText(item.title),
            .version = shownText(item.version.value_or("")),
            .sizeText = tidewright::sizeText(item.sizeBytes),
            .decision = shownText(rawValue(item.decision)),
            .decisionTitle = tidewright::decisionTitle(item.decision),
            .decisionSymbol = tidewright::decisionSymbol(item.decision),
            .riskTitle = shownText(tidewright::title(item.risk)),
            .inUse = inUseText(item),
            .selectable = AppModel::maySelect(item),
            .selected = isSelected,
            .sections = sectionsOf(item, now)};
}

} // namespace tidewright
