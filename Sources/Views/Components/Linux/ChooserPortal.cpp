#include "Views/Components/Linux/ChooserPortal.h"

#include "Views/Components/Linux/SessionBus.h"
#include "Views/Components/LocalFile.h"

#include <QDBusArgument>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QVariantMap>
#include <QWidget>
#include <utility>

namespace brimvale {

namespace {

constexpr int longestWaitForVersion = 1000; // milliseconds
constexpr uint firstVersionWithFolders = 3;

constexpr QLatin1String chooserInterface("org.freedesktop.portal.FileChooser");

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
    SessionBus::closeRequest(request_);
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
    bus.connect(SessionBus::portalService, request_, SessionBus::requestInterface, QStringLiteral("Response"),
                this, SLOT(finish(QDBusMessage)));
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
    const auto results = qdbus_cast<QVariantMap>(arguments[1]);
    if (const auto folder = localFileOf(results.value(QStringLiteral("uris")).toStringList().value(0)))
        dialog_.chosen(folder->path());
}

void ChooserPortal::giveUp() {
    deleteLater();
    dialog_.otherwise();
}

} // namespace brimvale
