// By the interface org.freedesktop.portal.Settings of the XDG desktop portals.
#include "app/platform/Appearance.h"

#include "app/platform/linux/AppearanceListener.h"
#include "app/platform/linux/Bus.h"

#include <QDBusArgument>
#include <QPointer>

#include <array>

namespace tidewright {

namespace {

constexpr std::chrono::seconds patience{5};

constexpr QLatin1String service("org.freedesktop.portal.Desktop");
constexpr QLatin1String object("/org/freedesktop/portal/desktop");
constexpr QLatin1String interface("org.freedesktop.portal.Settings");

struct Setting {
    QLatin1String group;
    QLatin1String key;
    /// Takes the value over, which is of any type: what makes no sense counts as untold.
    void (*read)(Appearance& appearance, const QVariant& value);
};

void readColorScheme(Appearance& appearance, const QVariant& value) {
    constexpr uint dark = 1;
    constexpr uint light = 2;
    const uint scheme = value.typeId() == QMetaType::UInt ? value.toUInt() : 0;
    appearance.prefersDark =
        scheme == dark || scheme == light ? std::optional(scheme == dark) : std::nullopt;
}

/// Numbers out of range mean that there is no accent.
void readAccent(Appearance& appearance, const QVariant& value) {
    appearance.accent.reset();
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(ddd)"))
        return;
    AccentColor color;
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    const auto isFraction = [](double part) { return part >= 0 && part <= 1; };
    if (isFraction(color.red) && isFraction(color.green) && isFraction(color.blue))
        appearance.accent = color;
}

void readAnimations(Appearance& appearance, const QVariant& value) {
    appearance.reducesMotion =
        value.typeId() == QMetaType::Bool ? std::optional(!value.toBool()) : std::nullopt;
}

constexpr QLatin1String everyDesktop("org.freedesktop.appearance");
constexpr QLatin1String gnome("org.gnome.desktop.interface");

constexpr std::array<Setting, 3> settings{{
    {everyDesktop, QLatin1String("color-scheme"), readColorScheme},
    {everyDesktop, QLatin1String("accent-color"), readAccent},
    {gnome, QLatin1String("enable-animations"), readAnimations},
}};

/// `Read` wraps its answer once more than the signal does.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

bool takeOver(Appearance& appearance,
              const QString& group,
              const QString& key,
              const QVariant& value) {
    const Appearance before = appearance;
    for (const Setting& setting : settings) {
        if (setting.group == group && setting.key == key)
            setting.read(appearance, unwrapped(value));
    }
    return appearance != before;
}

void ask(const QDBusConnection& bus, AppearanceListener* listener, const Setting& setting) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, object, interface, QStringLiteral("Read"));
    call << QString(setting.group) << QString(setting.key);
    const auto hear = [listener = QPointer(listener), setting](const QDBusMessage& answer) {
        const bool isValue =
            answer.type() == QDBusMessage::ReplyMessage && answer.signature() == QLatin1String("v");
        if (listener && isValue)
            listener->settingChanged(setting.group, setting.key,
                                     answer.arguments().first().value<QDBusVariant>());
    };
    Bus::call(bus, call, patience, hear);
}

} // namespace

void followAppearance(QObject* context, std::function<void(const Appearance&)> function) {
    QDBusConnection bus = Bus::session();
    if (!bus.isConnected())
        return;
    const auto hear = [appearance = Appearance(), function = std::move(function)](
                          const QString& group, const QString& key, const QVariant& value) mutable {
        if (takeOver(appearance, group, key, value))
            function(appearance);
    };
    auto* const listener = new AppearanceListener(context, hear);
    qRegisterMetaType<QDBusVariant>(); // else Qt does not know the slot's parameter by its name
    bus.connect(service, object, interface, QStringLiteral("SettingChanged"), listener,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    for (const Setting& setting : settings)
        ask(bus, listener, setting);
}

} // namespace tidewright
