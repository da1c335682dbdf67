// By the freedesktop.org File Manager D-Bus Interface, and xdg-open of xdg-utils.
#include "app/platform/FileManager.h"

#include "app/platform/linux/Bus.h"
#include "core/support/PercentEncoding.h"

#include <QProcess>

#include <algorithm>

namespace tidewright {

namespace {

/// As long as a program takes to start: after it another window would open.
constexpr std::chrono::seconds patience{25};

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// By RFC 3986; it begins with a letter, so that no program takes it for an option.
bool hasScheme(std::string_view text) {
    if (text.empty() || !isLetter(text.front()))
        return false;
    const auto end = std::ranges::find_if_not(text, [](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
    });
    return end != text.end() && *end == ':';
}

QString fileAddress(const std::string& path) {
    return QString::fromStdString("file://" + percentEncoded(path, "/"));
}

void openFolders(const std::vector<URL>& locations) {
    std::vector<URL> opened;
    for (const URL& location : locations) {
        const URL folder = location.deletingLastPathComponent();
        if (std::ranges::find(opened, folder) != opened.end())
            continue;
        opened.push_back(folder);
        (void)openLocation(folder.path()); // nothing is reported
    }
}

} // namespace

void showInFileManager(const std::vector<URL>& locations) {
    if (locations.empty())
        return;
    QStringList addresses;
    for (const URL& location : locations)
        addresses.append(fileAddress(location.path()));
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << addresses << QString(); // no id of a start to tell the desktop about
    Bus::call(Bus::session(), call, patience, [locations](const QDBusMessage& answer) {
        if (answer.type() != QDBusMessage::ReplyMessage)
            openFolders(locations);
    });
}

bool openLocation(const std::string& pathOrAddress) {
    const bool isPath = pathOrAddress.starts_with('/');
    if (!isPath && !hasScheme(pathOrAddress))
        return false;
    QProcess process;
    process.setProgram(QStringLiteral("xdg-open"));
    // An address of a file can hold any bytes of its path, an argument of Qt's only text.
    process.setArguments(
        {isPath ? fileAddress(pathOrAddress) : QString::fromStdString(pathOrAddress)});
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached();
}

} // namespace tidewright
