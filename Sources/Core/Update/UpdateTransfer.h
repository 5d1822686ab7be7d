#pragma once

#include "Core/Update/UpdateState.h"

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <chrono>
#include <functional>
#include <optional>

namespace brimvale {

/// How much an update server may send, and how long it may be silent.
struct TransferLimits {
    qint64 bytes = 0;
    std::chrono::milliseconds silence{};
};

/// Whether an update may be fetched from there: over https or, for trying it out, over http from this
/// machine.
[[nodiscard]] bool isSafeUpdateURL(const QUrl &url);

/// Fetches what lies at an address of an update server and hands it over piece by piece. Never takes it from
/// a cache, never goes to an address that is not safe (nor from https to http), takes no answer but one with
/// status 200, no byte beyond its limits, and no body shorter than announced. Lives on the main thread;
/// deleting it stops the transfer.
class UpdateTransfer : public QObject {
    Q_OBJECT

public:
    /// Takes a piece of the body; answers why it cannot.
    using Sink = std::function<std::optional<UpdateFailure>(const QByteArray &piece)>;

    /// Starts at once. `network` may go first.
    UpdateTransfer(QNetworkAccessManager &network, const QUrl &url, const TransferLimits &limits, Sink sink,
                   QObject *parent);
    ~UpdateTransfer() override;

signals:
    /// How much of the body has come, 0 to 1; not announced where the server does not tell its size.
    void progressed(double fraction);

    /// All has come, or why not. The last signal, and never before the event loop runs; the object deletes
    /// itself.
    void finished(const std::optional<UpdateFailure> &failure);

private:
    void request();
    bool follow();
    void receive();
    void conclude();
    [[nodiscard]] std::optional<UpdateFailure> faultOfHead() const;
    [[nodiscard]] std::optional<UpdateFailure> faultOfEnd() const;
    void finish(const std::optional<UpdateFailure> &failure);
    void letGo();

    QPointer<QNetworkAccessManager> network_;
    QUrl url_;
    int redirects_ = 0;
    TransferLimits limits_;
    Sink sink_;
    qint64 received_ = 0;
    QPointer<QNetworkReply> reply_;
};

} // namespace brimvale
