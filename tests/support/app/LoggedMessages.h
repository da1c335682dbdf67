// What Qt and those who speak through it say during a test.
#pragma once

#include <QString>

#include <mutex>
#include <string>
#include <utility>

namespace tidewright::test {

/// Collects Qt's messages of all threads while it lives; one at a time.
class LoggedMessages {
public:
    LoggedMessages() : m_before(qInstallMessageHandler(collect)) { (void)takeText(); }
    ~LoggedMessages() { qInstallMessageHandler(m_before); }
    LoggedMessages(const LoggedMessages&) = delete;
    LoggedMessages& operator=(const LoggedMessages&) = delete;

    /// One message a line.
    std::string text() const {
        const std::lock_guard lock(mutex());
        return collected();
    }

private:
    static std::mutex& mutex() {
        static std::mutex mutex;
        return mutex;
    }
    static std::string& collected() {
        static std::string text;
        return text;
    }
    static std::string takeText() {
        const std::lock_guard lock(mutex());
        return std::exchange(collected(), {});
    }
    static void collect(QtMsgType, const QMessageLogContext&, const QString& message) {
        const std::lock_guard lock(mutex());
        collected() += message.toStdString() + "\n";
    }

    QtMessageHandler m_before;
};

} // namespace tidewright::test
