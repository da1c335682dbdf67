// Everything that is said of one item, in the order in which it is read.
#pragma once

#include "core/model/ScanItem.h"

#include <QMetaType>
#include <QStringList>
#include <QVariantList>

namespace tidewright {

struct DetailSection {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString symbolName MEMBER symbolName)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(QStringList lines MEMBER lines)

public:
    QString title;
    QString symbolName;
    QString text;
    QStringList lines; ///< below the text, each as it stands

    bool operator==(const DetailSection&) const = default;
};

/// Empty where there is no item.
struct ItemDetails {
    Q_GADGET
    Q_PROPERTY(bool isPresent MEMBER isPresent)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString version MEMBER version)
    Q_PROPERTY(QString sizeText MEMBER sizeText)
    Q_PROPERTY(QString decision MEMBER decision)
    Q_PROPERTY(QString decisionTitle MEMBER decisionTitle)
    Q_PROPERTY(QString decisionSymbol MEMBER decisionSymbol)
    Q_PROPERTY(QString riskTitle MEMBER riskTitle)
    Q_PROPERTY(QString inUse MEMBER inUse)
    Q_PROPERTY(bool selectable MEMBER selectable)
    Q_PROPERTY(bool selected MEMBER selected)
    Q_PROPERTY(QVariantList sections READ shownSections)

public:
    bool isPresent = false;
    QString title;
    QString version; ///< empty where there is none
    QString sizeText;
    QString decision; ///< "clean", "ask", "keep" or "info"
    QString decisionTitle;
    QString decisionSymbol;
    QString riskTitle;
    QString inUse; ///< a sentence; empty where nobody holds it
    bool selectable = false;
    bool selected = false;
    QList<DetailSection> sections;

    QVariantList shownSections() const;
    bool operator==(const ItemDetails&) const = default;

    /// What is said of the item at this moment.
    static ItemDetails of(const ScanItem& item, bool isSelected, Date now);
};

} // namespace tidewright
