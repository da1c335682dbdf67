// What hears how the user has answered a dialog of the desktop's portal.
#pragma once

#include <QObject>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <utility>

namespace tidewright {

/// Calls its function once, and is gone soon after.
class PortalRequest : public QObject {
    Q_OBJECT

public:
    /// Absent where there was no dialog.
    using Function = std::function<void(const std::optional<QVariantMap>& results)>;

    PortalRequest(QObject* parent, Function function)
        : QObject(parent),
          m_function(std::move(function)) {}

    void end(const std::optional<QVariantMap>& results) {
        if (m_function)
            std::exchange(m_function, nullptr)(results);
        deleteLater();
    }

public Q_SLOTS:
    void responded(uint response, const QVariantMap& results) {
        constexpr uint accepted = 0;
        constexpr uint cancelled = 1; // anything else: the dialog has failed
        if (response == accepted)
            end(results);
        else
            end(response == cancelled ? std::optional(QVariantMap()) : std::nullopt);
    }

private:
    Function m_function;
};

} // namespace tidewright
