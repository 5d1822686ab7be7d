#pragma once

#include "Core/Update/UpdateState.h"

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <chrono>
#include <functional>
#include <optional>

namespace brimvale {

/// How much an update server may send, how long it may stay silent, and how long all of it may take.
struct TransferLimits {
    qint64 bytes = 0;
    std::chrono::milliseconds silence{};
    std::optional<std::chrono::milliseconds> whole = {}; ///< redirections included
};

/// Whether an update may be fetched from this address: over https or, for testing, over http from this
/// machine.
[[nodiscard]] bool isSafeUpdateURL(const QUrl &url);

/// Downloads from an update server and passes the body on piece by piece. Never uses a cache, nor an unsafe
/// address (including redirections from https to http). Accepts only status 200, at most the limited number
/// of bytes, and a body as long as announced. Belongs to the main thread; deleting it stops the transfer.
class UpdateTransfer : public QObject {
    Q_OBJECT

public:
    /// Takes a piece of the body; returns the reason for a failure.
    using Sink = std::function<std::optional<UpdateFailure>(const QByteArray &piece)>;

    /// Starts at once. `network` may be destroyed first.
    UpdateTransfer(QNetworkAccessManager &network, const QUrl &url, const TransferLimits &limits, Sink sink,
                   QObject *parent);
    ~UpdateTransfer() override;

signals:
    /// The received share of the body, 0 to 1. Not emitted if the server does not send the size.
    void progressed(double fraction);

    /// The transfer is complete, or failed. The last signal, always emitted from the event loop; the object
    /// then deletes itself.
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
    QTimer deadline_;
};

} // namespace brimvale
