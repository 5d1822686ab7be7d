#include "Support/LoopbackServer.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <map>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace brimvale::testing {

namespace {

std::string bytesOf(const HttpAnswer &answer) {
    std::string bytes = "HTTP/1.1 " + answer.status + "\r\nConnection: close\r\n" + answer.headers;
    if (!answer.isChunked)
        bytes += "Content-Length: " + std::to_string(answer.body.size()) + "\r\n";
    return bytes + "\r\n" + answer.body.substr(0, answer.body.size() - answer.held);
}

void drip(QTcpSocket &socket, const HttpAnswer &answer) {
    auto *timer = new QTimer(&socket);
    const auto left = std::make_shared<std::size_t>(answer.held);
    QObject::connect(timer, &QTimer::timeout, &socket, [&socket, timer, body = answer.body, left] {
        socket.write(&body[body.size() - *left], 1);
        if (--*left == 0)
            timer->stop();
    });
    timer->start(answer.drip);
}

} // namespace

struct LoopbackServer::Shared {
    std::mutex lock;
    std::map<std::string, HttpAnswer> answers;
    std::map<std::string, int> requests;
    std::map<std::string, QByteArray> heads;
};

LoopbackServer::LoopbackServer() : shared_(std::make_unique<Shared>()), server_(new QTcpServer) {
    if (!server_->listen(QHostAddress::LocalHost))
        throw std::runtime_error(server_->errorString().toStdString());
    port_ = server_->serverPort();
    server_->moveToThread(&thread_);
    QObject::connect(server_, &QTcpServer::newConnection, server_, [this] { accept(); });
    QObject::connect(&thread_, &QThread::finished, server_, &QObject::deleteLater);
    thread_.start();
}

LoopbackServer::~LoopbackServer() {
    thread_.quit();
    thread_.wait();
}

QUrl LoopbackServer::url(const std::string &path) const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port_) + QString::fromStdString(path));
}

void LoopbackServer::put(const std::string &path, HttpAnswer answer) {
    const std::lock_guard guard(shared_->lock);
    shared_->answers[path] = std::move(answer);
}

int LoopbackServer::requestsFor(const std::string &path) const {
    const std::lock_guard guard(shared_->lock);
    return shared_->requests[path];
}

QByteArray LoopbackServer::lastHead(const std::string &path) const {
    const std::lock_guard guard(shared_->lock);
    return shared_->heads[path];
}

void LoopbackServer::accept() {
    QTcpSocket *socket = server_->nextPendingConnection();
    auto head = std::make_shared<QByteArray>();
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, head] {
        head->append(socket->readAll());
        if (!head->endsWith("\r\n\r\n"))
            return;
        const HttpAnswer answer = take(*head);
        const std::string bytes = bytesOf(answer);
        socket->write(bytes.data(), static_cast<qint64>(bytes.size()));
        if (answer.drip.count() > 0)
            drip(*socket, answer);
        else if (answer.hangsUp)
            socket->disconnectFromHost();
    });
}

HttpAnswer LoopbackServer::take(const QByteArray &head) {
    const std::string path = head.split(' ').value(1).toStdString();
    const std::lock_guard guard(shared_->lock);
    ++shared_->requests[path];
    shared_->heads[path] = head;
    const auto answer = shared_->answers.find(path);
    return answer == shared_->answers.end() ? HttpAnswer{.status = "404 Not Found", .body = "nothing here"}
                                            : answer->second;
}

} // namespace brimvale::testing
