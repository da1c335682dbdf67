#include "tests/support/app/PropertyWatch.h"

#include <QMetaProperty>

#include <utility>

namespace tidewright::test {

PropertyWatch::PropertyWatch(QObject& object) : m_object(object) {
    const QMetaObject& meta = *object.metaObject();
    const QMetaMethod hears = metaObject()->method(metaObject()->indexOfSlot("hear()"));
    for (int i = 0; i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        m_properties.push_back(property.read(&object));
        if (property.hasNotifySignal())
            connect(&object, property.notifySignal(), this, hears, Qt::UniqueConnection);
    }
}

std::vector<std::string> PropertyWatch::told() { return std::exchange(m_told, {}); }

std::string PropertyWatch::complaint() {
    std::string complaint = std::exchange(m_complaint, {});
    for (const std::string& name : changedProperties())
        complaint += name + " changed without a signal; ";
    return complaint;
}

void PropertyWatch::hear() {
    const int signal = senderSignalIndex();
    m_told.push_back(m_object.metaObject()->method(signal).name().toStdString());
    if (changedProperties(signal).empty())
        m_complaint += m_told.back() + " came without a change; ";
}

std::vector<std::string> PropertyWatch::changedProperties(std::optional<int> signal) {
    const QMetaObject& meta = *m_object.metaObject();
    std::vector<std::string> names;
    for (int i = 0; i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        if (signal && property.notifySignalIndex() != *signal)
            continue;
        const QVariant now = property.read(&m_object);
        if (std::exchange(m_properties[static_cast<std::size_t>(i)], now) != now)
            names.emplace_back(property.name());
    }
    return names;
}

} // namespace tidewright::test
