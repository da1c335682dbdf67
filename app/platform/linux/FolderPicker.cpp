// By the interfaces org.freedesktop.portal.FileChooser and Request of the XDG desktop portals.
#include "app/platform/FolderPicker.h"

#include "app/platform/linux/Bus.h"
#include "app/platform/linux/PortalRequest.h"
#include "core/support/PercentEncoding.h"

#include <QCoreApplication>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QPointer>
#include <fmt/format.h>

namespace tidewright {

namespace {

/// As long as the portal and its dialogs take to start.
constexpr std::chrono::seconds patience{25};

constexpr QLatin1String service("org.freedesktop.portal.Desktop");
constexpr QLatin1String object("/org/freedesktop/portal/desktop");
constexpr QLatin1String fileChooser("org.freedesktop.portal.FileChooser");

/// Before it, portals know no folders, and would ask for files.
constexpr uint versionWithFolders = 3;

/// Where the portal will put the request of this name.
QString requestPath(const QDBusConnection& bus, const QString& token) {
    QString sender = bus.baseService().mid(1); // without the colon
    sender.replace(u'.', u'_');
    return QStringLiteral("%1/request/%2/%3").arg(object, sender, token);
}

void listen(QDBusConnection bus, const QString& path, PortalRequest* request) {
    bus.connect(service, path, QStringLiteral("org.freedesktop.portal.Request"),
                QStringLiteral("Response"), request, SLOT(responded(uint, QVariantMap)));
}

std::optional<URL> folderAt(const QString& address) {
    constexpr std::string_view scheme = "file://";
    const std::string text = address.toStdString();
    if (!text.starts_with(scheme))
        return std::nullopt;
    const std::size_t path = text.find('/', scheme.size()); // behind the name of a host
    if (path == std::string::npos)
        return std::nullopt;
    const std::string bytes = percentDecoded(text.substr(path));
    if (bytes.find('\0') != std::string::npos)
        return std::nullopt;
    return URL(bytes).standardized();
}

std::vector<URL> foldersIn(const QVariantMap& results) {
    std::vector<URL> folders;
    for (const QString& address : results.value(QStringLiteral("uris")).toStringList())
        if (const auto folder = folderAt(address))
            folders.push_back(*folder);
    return folders;
}

QDBusMessage openFileCall(const FolderQuestion& question, const QString& token) {
    const std::string& start = question.start.path();
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, object, fileChooser, QStringLiteral("OpenFile"));
    call << (question.x11Window == 0
                 ? QString()
                 : QString::fromStdString(fmt::format("x11:{:x}", question.x11Window)))
         << QString::fromStdString(question.title)
         << QVariantMap{
                {QStringLiteral("handle_token"), token},
                {QStringLiteral("directory"), true},
                {QStringLiteral("multiple"), true},
                {QStringLiteral("modal"), true},
                {QStringLiteral("current_folder"), // a text of C, with the zero at its end
                 QByteArray(start.c_str(), static_cast<qsizetype>(start.size()) + 1)},
            };
    return call;
}

void ask(const QDBusConnection& bus, const FolderQuestion& question, PortalRequest* request) {
    static int last = 0;
    const QString token = QStringLiteral("tidewright%1").arg(++last);
    const QString expected = requestPath(bus, token);
    listen(bus, expected, request); // before the call, so that no answer is missed
    const auto hear = [bus, expected, request = QPointer(request)](const QDBusMessage& answer) {
        if (!request)
            return;
        if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != QLatin1String("o"))
            return request->end(std::nullopt);
        const QString path = answer.arguments().first().value<QDBusObjectPath>().path();
        if (path != expected) // portals of before 2018 choose it by themselves
            listen(bus, path, request);
    };
    Bus::call(bus, openFileCall(question, token), patience, hear);
}

bool knowsFolders(const QDBusMessage& answer) {
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != QLatin1String("v"))
        return false;
    const QVariant version = answer.arguments().first().value<QDBusVariant>().variant();
    return version.typeId() == QMetaType::UInt && version.toUInt() >= versionWithFolders;
}

} // namespace

void pickFolders(const FolderQuestion& question, FolderAnswer answer) {
    const QDBusConnection bus = Bus::session();
    auto* const request =
        new PortalRequest(QCoreApplication::instance(),
                          [answer = std::move(answer)](const std::optional<QVariantMap>& results) {
                              answer(results ? std::optional(foldersIn(*results)) : std::nullopt);
                          });
    QDBusMessage version = QDBusMessage::createMethodCall(
        service, object, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    version << QString(fileChooser) << QStringLiteral("version");
    Bus::call(bus, version, patience,
              [bus, question, request = QPointer(request)](const QDBusMessage& known) {
                  if (!request)
                      return;
                  if (!knowsFolders(known))
                      return request->end(std::nullopt);
                  // A portal that ends takes its dialogs with it.
                  auto* const watcher = new QDBusServiceWatcher(
                      service, bus, QDBusServiceWatcher::WatchForUnregistration, request);
                  QObject::connect(watcher, &QDBusServiceWatcher::serviceUnregistered, request,
                                   [request] { request->end(std::nullopt); });
                  ask(bus, question, request);
              });
}

} // namespace tidewright
