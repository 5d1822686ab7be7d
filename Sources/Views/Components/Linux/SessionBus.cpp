#include "Views/Components/Linux/SessionBus.h"

#include <QDBusPendingCallWatcher>
#include <QFile>
#include <utility>

namespace brimvale {

std::optional<QDBusConnection> SessionBus::connection() {
    // Without an address of a bus, the bus library would start one.
    if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") &&
        !QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus")))
        return std::nullopt;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

QDBusMessage SessionBus::portalCall(QLatin1String interface, const char *method) {
    return QDBusMessage::createMethodCall(portalService, portalPath, interface, QLatin1String(method));
}

void SessionBus::closeRequest(const QString &path) {
    if (const auto bus = connection(); bus && !path.isEmpty())
        bus->send(
            QDBusMessage::createMethodCall(portalService, path, requestInterface, QStringLiteral("Close")));
}

void SessionBus::send(const QDBusMessage &call, QObject *context,
                      std::function<void(const QDBusMessage &)> answered, int longestWait) {
    const std::optional<QDBusConnection> bus = connection();
    if (!bus)
        return;
    auto *wait = new QDBusPendingCallWatcher(bus->asyncCall(call, longestWait), context);
    QObject::connect(wait, &QDBusPendingCallWatcher::finished, context,
                     [wait, answered = std::move(answered)] {
                         wait->deleteLater();
                         answered(wait->reply());
                     });
}

QDBusMessage SessionBus::wait(const QDBusMessage &call, int longestWait) {
    const std::optional<QDBusConnection> bus = connection();
    return bus ? bus->call(call, QDBus::Block, longestWait) : QDBusMessage();
}

} // namespace brimvale
