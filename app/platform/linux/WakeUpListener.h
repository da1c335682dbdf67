// What hears the system's signal before it goes to sleep and after it has woken up.
#pragma once

#include <QObject>

#include <functional>

namespace tidewright {

/// Lives as long as its context.
class WakeUpListener : public QObject {
    Q_OBJECT

public:
    WakeUpListener(QObject* context, std::function<void()> function)
        : QObject(context),
          m_function(std::move(function)) {}

public Q_SLOTS:
    void prepareForSleep(bool isGoingToSleep) {
        if (!isGoingToSleep)
            m_function();
    }

private:
    std::function<void()> m_function;
};

} // namespace tidewright
