// What the screens say of a finished cleanup.
#pragma once

#include "core/model/CleanSummary.h"

#include <QMetaType>
#include <QVariantList>

namespace tidewright {

/// One look at the toolchains.
struct ShownCheck {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString detail MEMBER detail)
    Q_PROPERTY(bool passed MEMBER passed)
    Q_PROPERTY(QString symbolName MEMBER symbolName)

public:
    QString name;
    QString detail;
    bool passed = false;
    QString symbolName;

    bool operator==(const ShownCheck&) const = default;
};

/// Empty where nothing is finished.
struct CleanResults {
    Q_GADGET
    Q_PROPERTY(bool isComplete MEMBER isComplete)
    Q_PROPERTY(QString symbolName MEMBER symbolName)
    Q_PROPERTY(QString headline MEMBER headline)
    Q_PROPERTY(QString subtitle MEMBER subtitle)
    Q_PROPERTY(bool hasLog MEMBER hasLog)
    Q_PROPERTY(QVariantList checks READ shownChecks)

public:
    bool isComplete = false; ///< nothing was skipped or failed
    QString symbolName;
    QString headline;
    QString subtitle;
    bool hasLog = false;
    QList<ShownCheck> checks;

    QVariantList shownChecks() const;
    bool operator==(const CleanResults&) const = default;

    static CleanResults of(const CleanSummary& summary);
};

} // namespace tidewright
