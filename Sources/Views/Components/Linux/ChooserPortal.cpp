#include "Views/Components/Linux/ChooserPortal.h"

#include "Views/Components/Linux/SessionBus.h"

#include <QDBusArgument>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QUrl>
#include <QVariantMap>
#include <QWidget>
#include <utility>

namespace brimvale {

namespace {

constexpr int longestWaitForVersion = 1000; // milliseconds
constexpr uint firstVersionWithFolders = 3;

constexpr QLatin1String chooserInterface("org.freedesktop.portal.FileChooser");
constexpr QLatin1String requestInterface("org.freedesktop.portal.Request");

/// Wayland gives programs no name of their window that others know.
QString portalNameOf(const QWidget &window) {
    if (QGuiApplication::platformName() != QStringLiteral("xcb"))
        return {};
    return QStringLiteral("x11:") + QString::number(window.winId(), 16);
}

/// The path that a portal gives to the question with this name.
QString pathOfRequest(const QString &token) {
    const QString sender = SessionBus::connection()->baseService().mid(1).replace(u'.', u'_');
    return SessionBus::portalPath + QStringLiteral("/request/") + sender + u'/' + token;
}

/// The path of a local file; empty for others. Decoded here, because a name need not be text.
std::string pathIn(const QVariantMap &results) {
    const QStringList uris = results.value(QStringLiteral("uris")).toStringList();
    const QUrl url(uris.value(0));
    const QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toUtf8());
    return url.isLocalFile() && path.startsWith('/') ? path.toStdString() : std::string();
}

} // namespace

void openInDesktop(QWidget &asking, DesktopDialog dialog) {
    if (!SessionBus::connection())
        return dialog.otherwise();
    if (asking.window()->findChild<ChooserPortal *>() == nullptr)
        new ChooserPortal(asking, std::move(dialog));
}

ChooserPortal::ChooserPortal(QWidget &asking, DesktopDialog dialog)
    : QObject(&asking), dialog_(std::move(dialog)), window_(portalNameOf(*asking.window())) {
    QDBusMessage question = QDBusMessage::createMethodCall(SessionBus::portalService, SessionBus::portalPath,
                                                           QStringLiteral("org.freedesktop.DBus.Properties"),
                                                           QStringLiteral("Get"));
    question << QString(chooserInterface) << QStringLiteral("version");
    SessionBus::send(
        question, this, [this](const QDBusMessage &answer) { begin(answer); }, longestWaitForVersion);
}

ChooserPortal::~ChooserPortal() {
    const auto bus = SessionBus::connection();
    if (bus && !request_.isEmpty())
        bus->send(QDBusMessage::createMethodCall(SessionBus::portalService, request_, requestInterface,
                                                 QStringLiteral("Close")));
}

void ChooserPortal::begin(const QDBusMessage &version) {
    const QVariant value = version.arguments().value(0);
    const bool isKnown = version.type() == QDBusMessage::ReplyMessage && value.canConvert<QDBusVariant>();
    if (!isKnown || qvariant_cast<QDBusVariant>(value).variant().toUInt() < firstVersionWithFolders)
        return giveUp();
    ask();
}

void ChooserPortal::ask() {
    static int count = 0;
    const QString token = QStringLiteral("brimvale%1").arg(++count);
    request_ = pathOfRequest(token);
    QDBusConnection bus = *SessionBus::connection();
    bus.connect(SessionBus::portalService, request_, requestInterface, QStringLiteral("Response"), this,
                SLOT(finish(QDBusMessage)));
    // A portal that ends in between never answers.
    auto *ends = new QDBusServiceWatcher(SessionBus::portalService, bus,
                                         QDBusServiceWatcher::WatchForUnregistration, this);
    connect(ends, &QDBusServiceWatcher::serviceUnregistered, this, &QObject::deleteLater);
    QDBusMessage call = SessionBus::portalCall(chooserInterface, "OpenFile");
    QByteArray start = QByteArray::fromStdString(dialog_.start);
    start.append('\0'); // the portal's paths end with it
    call << window_ << dialog_.title
         << QVariantMap{{QStringLiteral("handle_token"), token},
                        {QStringLiteral("modal"), true},
                        {QStringLiteral("directory"), true},
                        {QStringLiteral("current_folder"), start}};
    SessionBus::send(call, this, [this](const QDBusMessage &answer) {
        if (answer.type() == QDBusMessage::ErrorMessage)
            giveUp();
    });
}

void ChooserPortal::finish(const QDBusMessage &response) {
    request_.clear();
    deleteLater();
    const QList<QVariant> arguments = response.arguments();
    if (response.signature() != QStringLiteral("ua{sv}") || arguments.constFirst().toUInt() != 0)
        return;
    const std::string path = pathIn(qdbus_cast<QVariantMap>(arguments[1]));
    if (!path.empty())
        dialog_.chosen(path);
}

void ChooserPortal::giveUp() {
    deleteLater();
    dialog_.otherwise();
}

} // namespace brimvale
