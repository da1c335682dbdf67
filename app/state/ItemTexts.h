// What the screens say of one item of a report, a text at a time.
#pragma once

#include "core/model/ScanItem.h"

#include <QStringList>

namespace tidewright {

QString decisionTitle(Decision decision);
QString decisionSymbol(Decision decision);

/// The command, or the label of any other method.
QString howItIsCleaned(const CleanMethod& method);
/// Empty unless the user must clean it.
QString manualInstructions(const CleanMethod& method);

/// A sentence; empty where nobody holds the item.
QString inUseText(const ScanItem& item);

/// A heading that counts them.
QString locationsTitle(const ScanItem& item);
/// The first few paths.
QStringList firstLocations(const ScanItem& item);
/// How many more there are, in words; empty where there are none.
QString moreLocations(const ScanItem& item);

} // namespace tidewright
