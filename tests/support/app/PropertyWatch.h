// Watching an object's properties as bindings do: by their signals alone.
#pragma once

#include <QObject>
#include <QVariant>

#include <optional>
#include <string>
#include <vector>

namespace tidewright::test {

class PropertyWatch : public QObject {
    Q_OBJECT

public:
    /// The object must outlive this.
    explicit PropertyWatch(QObject& object);

    /// The signals since the last call, in order.
    std::vector<std::string> told();

    /// What is wrong since the last call, empty where nothing is: properties that changed without a
    /// signal, and signals of properties of which none has changed.
    std::string complaint();

private Q_SLOTS:
    void hear();

private:
    /// The names of those that differ from what was last read, all or those told of by one signal.
    std::vector<std::string> changedProperties(std::optional<int> signal = std::nullopt);

    QObject& m_object;
    std::vector<QVariant> m_properties; ///< as last read, in the order of the class's properties
    std::vector<std::string> m_told;
    std::string m_complaint;
};

} // namespace tidewright::test
