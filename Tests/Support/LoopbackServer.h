#pragma once

#include <QByteArray>
#include <QThread>
#include <QUrl>
#include <chrono>
#include <memory>
#include <string>

class QTcpServer;

namespace brimvale::testing {

/// An answer of a web server, byte for byte.
struct HttpAnswer {
    std::string status = "200 OK";
    std::string headers = {}; ///< whole lines, each ended by CR LF; the length of the body comes by itself
    std::string body = {};
    bool isChunked = false;           ///< told without a length
    std::size_t held = 0;             ///< how many bytes of the body are never sent
    std::chrono::milliseconds drip{}; ///< above 0: the held bytes are sent one by one, so far apart
    bool hangsUp = true;              ///< else the connection stays open, and silent
};

/// A web server on a free port of this machine, with a thread of its own, so that it answers a program that
/// is waited for. Anything that it has no answer for is not found.
class LoopbackServer {
public:
    LoopbackServer();
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer &) = delete;
    LoopbackServer &operator=(const LoopbackServer &) = delete;

    /// Where a path ("/feed") lies.
    [[nodiscard]] QUrl url(const std::string &path) const;

    /// Answers at `path` with this from now on.
    void put(const std::string &path, HttpAnswer answer);

    /// How often `path` was asked for.
    [[nodiscard]] int requestsFor(const std::string &path) const;

    /// The head of the last request for `path`.
    [[nodiscard]] QByteArray lastHead(const std::string &path) const;

private:
    void accept();
    [[nodiscard]] HttpAnswer take(const QByteArray &head);

    struct Shared;
    std::unique_ptr<Shared> shared_;
    QThread thread_;
    QTcpServer *server_; ///< lives on the thread
    int port_ = 0;
};

} // namespace brimvale::testing
