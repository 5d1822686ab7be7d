#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QLatin1String>
#include <QString>
#include <functional>
#include <optional>

class QObject;

namespace brimvale {

/// The desktop's services on the session bus. Only `wait` waits for an answer.
namespace SessionBus {

/// Where the portal is: https://flatpak.github.io/xdg-desktop-portal/docs/
constexpr QLatin1String portalService("org.freedesktop.portal.Desktop");
constexpr QLatin1String portalPath("/org/freedesktop/portal/desktop");
constexpr QLatin1String requestInterface("org.freedesktop.portal.Request");

/// The bus of the user's session; nothing where there is none.
[[nodiscard]] std::optional<QDBusConnection> connection();

/// A call of the portal without arguments.
[[nodiscard]] QDBusMessage portalCall(QLatin1String interface, const char *method);

/// Takes a question to the portal back; `path` is that of the request. Does nothing for an empty path.
void closeRequest(const QString &path);

/// Sends a call, and passes on the answer, or the error, as long as `context` lives. At most `longestWait`
/// milliseconds after the call, or the usual time of the bus for -1.
void send(const QDBusMessage &call, QObject *context, std::function<void(const QDBusMessage &)> answered,
          int longestWait = -1);

/// The answer to a call, or an error if there is none after `longestWait` milliseconds. For what must be
/// known before the window is made.
[[nodiscard]] QDBusMessage wait(const QDBusMessage &call, int longestWait);

} // namespace SessionBus

} // namespace brimvale
