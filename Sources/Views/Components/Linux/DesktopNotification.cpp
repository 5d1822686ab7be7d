#include "Views/Components/DesktopNotification.h"

#include "Views/Components/Linux/SessionBus.h"

#include <QGuiApplication>
#include <QStringList>
#include <QVariantMap>

namespace brimvale {

// https://specifications.freedesktop.org/notification-spec/
void notifyDesktop(const QString &title, const QString &words) {
    const std::optional<QDBusConnection> bus = SessionBus::connection();
    if (!bus)
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    const uint replacesNone = 0;
    const int usualTime = -1;
    const QVariantMap hints = {{QStringLiteral("desktop-entry"), QGuiApplication::desktopFileName()}};
    call << QGuiApplication::applicationName() << replacesNone << QStringLiteral("brimvale") << title
         << words.toHtmlEscaped() // it may have markup
         << QStringList() << hints << usualTime;
    bus->send(call);
}

} // namespace brimvale
