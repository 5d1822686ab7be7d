#include "Views/Components/Linux/SettingsPortal.h"

#include "Views/Components/Linux/SessionBus.h"

#include <QDBusArgument>
#include <QMap>
#include <QStringList>

namespace brimvale {

QDBusMessage SettingsPortal::question(const QString &group) {
    return SessionBus::portalCall(interface, "ReadAll") << QStringList{group};
}

std::optional<QVariantMap> SettingsPortal::settingsIn(const QDBusMessage &answer, const QString &group) {
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != QStringLiteral("a{sa{sv}}"))
        return std::nullopt;
    return qdbus_cast<QMap<QString, QVariantMap>>(answer.arguments().constFirst()).value(group);
}

} // namespace brimvale
