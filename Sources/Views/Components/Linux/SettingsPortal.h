#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariantMap>
#include <optional>

namespace brimvale {

/// The settings that the desktop's portal tells every program.
/// https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Settings.html
namespace SettingsPortal {

constexpr QLatin1String interface("org.freedesktop.portal.Settings");
constexpr int longestWait = 1000; ///< for an answer, in milliseconds

/// The call that asks for all settings of a group.
[[nodiscard]] QDBusMessage question(const QString &group);

/// The settings of the group in the portal's answer; nothing if this is an error or something else.
[[nodiscard]] std::optional<QVariantMap> settingsIn(const QDBusMessage &answer, const QString &group);

} // namespace SettingsPortal

} // namespace brimvale
