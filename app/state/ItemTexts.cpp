#include "app/state/ItemTexts.h"

#include "app/state/RowModel.h"

#include <QCoreApplication>

#include <algorithm>

namespace tidewright {

namespace {

constexpr std::size_t shownLocations = 6;

/// The context of the texts for translators.
struct ItemTexts {
    Q_DECLARE_TR_FUNCTIONS(tidewright::ItemTexts)
};

struct DecisionWords {
    const char* title;
    const char* symbolName;
};

// In the order of the enumeration.
constexpr std::array<DecisionWords, 4> decisionWords{{
    {QT_TRANSLATE_NOOP("tidewright::ItemTexts", "Recommended"), "checkmark.circle.fill"},
    {QT_TRANSLATE_NOOP("tidewright::ItemTexts", "Optional"), "questionmark.circle.fill"},
    {QT_TRANSLATE_NOOP("tidewright::ItemTexts", "Kept"), "lock.fill"},
    {QT_TRANSLATE_NOOP("tidewright::ItemTexts", "For review"), "info.circle.fill"},
}};

const DecisionWords& wordsOf(Decision decision) {
    return decisionWords.at(static_cast<std::size_t>(decision));
}

} // namespace

QString decisionTitle(Decision decision) { return ItemTexts::tr(wordsOf(decision).title); }

QString decisionSymbol(Decision decision) {
    return QString::fromLatin1(wordsOf(decision).symbolName);
}

QString howItIsCleaned(const CleanMethod& method) {
    if (const auto* command = std::get_if<CleanMethod::Command>(&method.choice))
        return shownText(command->command.displayString());
    return shownText(method.label());
}

QString manualInstructions(const CleanMethod& method) {
    const auto* manual = std::get_if<CleanMethod::Manual>(&method.choice);
    return manual != nullptr ? shownText(manual->text) : QString();
}

QString inUseText(const ScanItem& item) {
    return item.inUseBy ? ItemTexts::tr("In use by %1").arg(shownText(*item.inUseBy)) : QString();
}

QString locationsTitle(const ScanItem& item) {
    return ItemTexts::tr("Locations (%1)").arg(item.urls.size());
}

QStringList firstLocations(const ScanItem& item) {
    QStringList paths;
    for (std::size_t i = 0; i < std::min(item.urls.size(), shownLocations); ++i)
        paths.append(shownText(item.urls[i].path()));
    return paths;
}

QString moreLocations(const ScanItem& item) {
    if (item.urls.size() <= shownLocations)
        return {};
    return ItemTexts::tr("and %1 more").arg(item.urls.size() - shownLocations);
}

} // namespace tidewright
