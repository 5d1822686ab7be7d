#include "Views/Components/Linux/AppearancePortal.h"

#include "Views/Components/Linux/SessionBus.h"
#include "Views/Components/Linux/SettingsPortal.h"

#include <QDBusArgument>
#include <QDBusServiceWatcher>
#include <QVariantMap>
#include <algorithm>
#include <array>

namespace brimvale {

namespace {

constexpr QLatin1String appearanceGroup("org.freedesktop.appearance");

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
    std::optional<QDBusConnection> bus = SessionBus::connection();
    if (!bus)
        return;
    bus->connect(SessionBus::portalService, SessionBus::portalPath, SettingsPortal::interface,
                 QStringLiteral("SettingChanged"), {appearanceGroup}, QString(), this, SLOT(ask()));
    // It may start later than this program, or again.
    auto *starts = new QDBusServiceWatcher(SessionBus::portalService, *bus,
                                           QDBusServiceWatcher::WatchForRegistration, this);
    connect(starts, &QDBusServiceWatcher::serviceRegistered, this, &AppearancePortal::ask);
    ask();
}

void AppearancePortal::ask() {
    SessionBus::send(
        SettingsPortal::question(appearanceGroup), this, [this](const QDBusMessage &answer) { read(answer); },
        SettingsPortal::longestWait);
}

void AppearancePortal::read(const QDBusMessage &answer) {
    const auto known = SettingsPortal::settingsIn(answer, appearanceGroup);
    if (!known)
        return;
    const QVariantMap &settings = *known;
    emit answered({.isDark = darknessIn(settings.value(QStringLiteral("color-scheme"))),
                   .accent = accentIn(settings.value(QStringLiteral("accent-color"))),
                   .hasHighContrast = settings.value(QStringLiteral("contrast")).toUInt() == 1});
}

} // namespace brimvale
