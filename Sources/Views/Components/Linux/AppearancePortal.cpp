#include "Views/Components/Linux/AppearancePortal.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QFile>
#include <QMap>
#include <QVariantMap>
#include <algorithm>
#include <array>

namespace brimvale {

namespace {

constexpr int longestWait = 1000; // milliseconds

constexpr QLatin1String portalService("org.freedesktop.portal.Desktop");
constexpr QLatin1String portalPath("/org/freedesktop/portal/desktop");
constexpr QLatin1String settingsInterface("org.freedesktop.portal.Settings");
constexpr QLatin1String appearanceGroup("org.freedesktop.appearance");

/// Without an address of a bus, the bus library would start one.
bool hasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

/// 0: no preference, 1: dark, 2: light.
std::optional<bool> darknessIn(const QVariant &scheme) {
    const uint value = scheme.toUInt();
    return value == 1 || value == 2 ? std::optional(value == 1) : std::nullopt;
}

/// Three shares from 0 to 1. Other values mean that the user has chosen none.
std::optional<QColor> accentIn(const QVariant &value) {
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QStringLiteral("(ddd)"))
        return std::nullopt;
    std::array<double, 3> parts{};
    argument.beginStructure();
    for (double &part : parts)
        argument >> part;
    argument.endStructure();
    // Written so that it is false for what is no number, too.
    if (!std::all_of(parts.begin(), parts.end(), [](double part) { return part >= 0 && part <= 1; }))
        return std::nullopt;
    return QColor::fromRgbF(static_cast<float>(parts[0]), static_cast<float>(parts[1]),
                            static_cast<float>(parts[2]));
}

} // namespace

AppearancePortal::AppearancePortal(QObject *parent) : QObject(parent) {
    if (!hasSessionBus())
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                {appearanceGroup}, QString(), this, SLOT(ask()));
    // It may start later than this program, or again.
    auto *starts =
        new QDBusServiceWatcher(portalService, bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(starts, &QDBusServiceWatcher::serviceRegistered, this, &AppearancePortal::ask);
    ask();
}

void AppearancePortal::ask() {
    QDBusMessage question = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface,
                                                           QStringLiteral("ReadAll"));
    question << QStringList{appearanceGroup};
    auto *wait =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question, longestWait), this);
    connect(wait, &QDBusPendingCallWatcher::finished, this, [this, wait] {
        wait->deleteLater();
        read(wait->reply());
    });
}

void AppearancePortal::read(const QDBusMessage &answer) {
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != QStringLiteral("a{sa{sv}}"))
        return;
    const auto groups = qdbus_cast<QMap<QString, QVariantMap>>(answer.arguments().constFirst());
    const QVariantMap settings = groups.value(appearanceGroup);
    emit answered({.isDark = darknessIn(settings.value(QStringLiteral("color-scheme"))),
                   .accent = accentIn(settings.value(QStringLiteral("accent-color"))),
                   .hasHighContrast = settings.value(QStringLiteral("contrast")).toUInt() == 1});
}

} // namespace brimvale
