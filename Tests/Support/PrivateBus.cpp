#include "Support/PrivateBus.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>

namespace brimvale::testing {

namespace {

/// The address of the bus; empty where there is none.
QString addressOfBus() {
    static const QString address = [] {
        if (QStandardPaths::findExecutable("dbus-daemon").isEmpty())
            return QString();
        auto *daemon = new QProcess(QCoreApplication::instance());
        QObject::connect(daemon, &QObject::destroyed, [] { qunsetenv("DBUS_SESSION_BUS_ADDRESS"); });
        QObject::connect(QCoreApplication::instance(), &QObject::destroyed, daemon, [daemon] {
            daemon->terminate(); // a killed one leaves its socket behind
            daemon->waitForFinished();
        });
        daemon->start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
        daemon->waitForReadyRead();
        const QByteArray line = daemon->readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", line);
        return QString::fromLatin1(line);
    }();
    return address;
}

} // namespace

QDBusConnection onPrivateBus(const QString &name) {
    return addressOfBus().isEmpty() ? QDBusConnection(name)
                                    : QDBusConnection::connectToBus(addressOfBus(), name);
}

FakeService::FakeService(const QString &service, const QString &path)
    : connection_(onPrivateBus(service)), service_(service),
      isConnected_(connection_.isConnected() &&
                   connection_.registerVirtualObject(path, this, QDBusConnection::SubPath) &&
                   connection_.registerService(service)) {}

FakeService::~FakeService() {
    QDBusConnection::disconnectFromBus(service_);
}

bool FakeService::handleMessage(const QDBusMessage &message, const QDBusConnection &connection) {
    calls.push_back(message);
    if (const Answer answer = answers.value(message.member()))
        connection.send(message.createReply(answer(message)));
    return true;
}

} // namespace brimvale::testing
