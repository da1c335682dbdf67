// What other starts of the program call: the interface org.freedesktop.Application of the Desktop
// Entry Specification.
#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace tidewright {

/// Lives as long as its context.
class SingleInstanceListener : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    using Function = std::function<void(const QVariantMap& platformData)>;

    SingleInstanceListener(QObject* context, Function function)
        : QObject(context),
          m_function(std::move(function)) {}

public Q_SLOTS:
    // The names are those of the interface.
    // NOLINTBEGIN(readability-identifier-naming)
    void Activate(const QVariantMap& platformData) { m_function(platformData); }
    void Open(const QStringList&, const QVariantMap& platformData) { m_function(platformData); }
    void ActivateAction(const QString&, const QVariantList&, const QVariantMap& platformData) {
        m_function(platformData);
    }
    // NOLINTEND(readability-identifier-naming)

private:
    Function m_function;
};

} // namespace tidewright
