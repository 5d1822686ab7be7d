#include "Views/Components/KeepAwake.h"

#include "Views/Components/Linux/SessionBus.h"

#include <QCoreApplication>
#include <QDBusObjectPath>
#include <QVariantMap>

namespace brimvale {

namespace {

constexpr uint logout = 1;
constexpr uint suspend = 4;

/// What has become of a request to the portal. It ends by itself when this program leaves the bus.
struct AwakeRequest {
    QString path; ///< empty until the portal has answered
    bool isOver = false;
};

/// The portal can answer when the work has ended. Then the request is withdrawn at once.
void noteAnswer(AwakeRequest &request, const QDBusMessage &answer) {
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != QStringLiteral("o"))
        return;
    request.path = qvariant_cast<QDBusObjectPath>(answer.arguments().constFirst()).path();
    if (request.isOver)
        SessionBus::closeRequest(request.path);
}

} // namespace

std::unique_ptr<QObject> keepAwake(const QString &reason) {
    auto request = std::make_shared<AwakeRequest>();
    QDBusMessage call = SessionBus::portalCall(QLatin1String("org.freedesktop.portal.Inhibit"), "Inhibit");
    call << QString() << (logout | suspend) << QVariantMap{{QStringLiteral("reason"), reason}};
    SessionBus::send(call, QCoreApplication::instance(),
                     [request](const QDBusMessage &answer) { noteAnswer(*request, answer); });
    auto held = std::make_unique<QObject>();
    QObject::connect(held.get(), &QObject::destroyed, [request] {
        request->isOver = true;
        SessionBus::closeRequest(request->path);
    });
    return held;
}

} // namespace brimvale
