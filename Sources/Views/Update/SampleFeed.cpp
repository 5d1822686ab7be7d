#include "Views/Update/SampleFeed.h"

#include <QByteArray>
#include <QHostAddress>
#include <QTcpSocket>

namespace brimvale {

namespace {

constexpr const char *feed =
    R"({"version": "9.0", "build": 900000, "url": "https://updates.brimvale.example/sample.zip",)"
    R"( "notes": "This update belongs to the sample: it shows what an update looks like."})";

} // namespace

SampleFeed::SampleFeed(QObject *parent) : QTcpServer(parent) {
    connect(this, &QTcpServer::newConnection, this, &SampleFeed::answer);
    listen(QHostAddress::LocalHost);
}

QUrl SampleFeed::url() const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1/appcast.json").arg(serverPort()));
}

/// Every request gets the feed.
void SampleFeed::answer() {
    while (QTcpSocket *socket = nextPendingConnection()) {
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, socket, [socket] {
            const QByteArray body(feed);
            socket->write("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
                          QByteArray::number(body.size()) + "\r\n\r\n" + body);
            socket->disconnectFromHost();
        });
    }
}

} // namespace brimvale
