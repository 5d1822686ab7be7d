#include "Views/Components/Linux/ChooserPortal.h"

#include "Views/Components/Linux/SessionBus.h"
#include "Views/Components/LocalFile.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QList>
#include <QVariantMap>
#include <QWidget>
#include <utility>

namespace brimvale {

namespace {

constexpr int longestWaitForVersion = 1000; // milliseconds
constexpr uint firstVersion = 1;
constexpr uint firstVersionWithFolders = 3;

constexpr QLatin1String chooserInterface("org.freedesktop.portal.FileChooser");

// The files that a dialog offers, as they are sent: each pattern as "(us)", and all of one title as
// "(sa(us))".
struct SentPattern {
    uint type = 0; ///< 0: a pattern with "*"; 1: a MIME type
    QString text;
};
struct SentKind {
    QString title;
    QList<SentPattern> patterns;
};

QDBusArgument &operator<<(QDBusArgument &argument, const SentPattern &pattern) {
    argument.beginStructure();
    argument << pattern.type << pattern.text;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const SentKind &kind) {
    argument.beginStructure();
    argument << kind.title << kind.patterns;
    argument.endStructure();
    return argument;
}

// Qt wants to know how they would be read, too.
const QDBusArgument &operator>>(const QDBusArgument &argument, SentPattern &pattern) {
    argument.beginStructure();
    argument >> pattern.type >> pattern.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, SentKind &kind) {
    argument.beginStructure();
    argument >> kind.title >> kind.patterns;
    argument.endStructure();
    return argument;
}

QVariant sentKinds(const std::vector<OfferedFiles> &files) {
    qDBusRegisterMetaType<SentPattern>();
    qDBusRegisterMetaType<QList<SentPattern>>();
    qDBusRegisterMetaType<SentKind>();
    qDBusRegisterMetaType<QList<SentKind>>();
    QList<SentKind> sent;
    for (const OfferedFiles &kind : files) {
        sent.append({kind.title, {}});
        for (const QString &pattern : kind.patterns)
            sent.back().patterns.append({0, pattern});
    }
    return QVariant::fromValue(sent);
}

/// What the dialog is asked for, besides its title.
QVariantMap optionsOf(const DesktopDialog &dialog, const QString &token) {
    QByteArray start = QByteArray::fromStdString(dialog.start);
    start.append('\0'); // the portal's paths end with it
    QVariantMap options{{QStringLiteral("handle_token"), token},
                        {QStringLiteral("modal"), true},
                        {QStringLiteral("current_folder"), start}};
    if (dialog.kind == DesktopDialog::Kind::chooseFolder)
        options.insert(QStringLiteral("directory"), true);
    if (!dialog.name.isEmpty())
        options.insert(QStringLiteral("current_name"), dialog.name);
    if (!dialog.files.empty())
        options.insert(QStringLiteral("filters"), sentKinds(dialog.files));
    return options;
}

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
    const uint least =
        dialog_.kind == DesktopDialog::Kind::chooseFolder ? firstVersionWithFolders : firstVersion;
    if (!isKnown || qvariant_cast<QDBusVariant>(value).variant().toUInt() < least)
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
    const bool isSaving = dialog_.kind == DesktopDialog::Kind::saveFile;
    QDBusMessage call = SessionBus::portalCall(chooserInterface, isSaving ? "SaveFile" : "OpenFile");
    call << window_ << dialog_.title << optionsOf(dialog_, token);
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
