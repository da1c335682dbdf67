// What hears that one of the desktop's settings has changed.
#pragma once

#include <QDBusVariant>
#include <QObject>

#include <functional>

namespace tidewright {

/// Lives as long as its context.
class AppearanceListener : public QObject {
    Q_OBJECT

public:
    using Function =
        std::function<void(const QString& group, const QString& key, const QVariant& value)>;

    AppearanceListener(QObject* context, Function function)
        : QObject(context),
          m_function(std::move(function)) {}

public Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
        m_function(group, key, value.variant());
    }

private:
    Function m_function;
};

} // namespace tidewright
