// The message buses (D-Bus) over which the programs of a desktop talk with each other.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>

#include <chrono>
#include <functional>

namespace tidewright::Bus {

/// The bus of the user's session. Not connected where there is none: no bus is ever started for it.
/// Main thread; waits for the greeting of the bus itself when it is first reached, never for a
/// service on it.
QDBusConnection session();

/// The bus of the whole machine; otherwise the same.
QDBusConnection system();

/// Sends a call without waiting. Later, on the main thread, `done` hears the answer, once: an error
/// where there is no bus, or none came within `patience`. Never called where the program ends
/// earlier.
void call(const QDBusConnection& bus,
          const QDBusMessage& message,
          std::chrono::milliseconds patience,
          std::function<void(const QDBusMessage& answer)> done);

} // namespace tidewright::Bus
