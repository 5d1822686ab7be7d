#pragma once

#include "Core/Update/UpdateNetwork.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <optional>

namespace brimvale {

/// One download as `UpdateNetwork` promises it. Deleting it stops the download; when that is finished, it
/// deletes itself.
class UpdateTransfer : public QObject {
    Q_OBJECT

public:
    /// Starts at once.
    UpdateTransfer(const QUrl &url, const TransferLimits &limits, TransferReceiver receiver, QObject *parent);
    ~UpdateTransfer() override;

private:
    void request();
    bool follow();
    void receive();
    void conclude();
    [[nodiscard]] std::optional<UpdateFailure> faultOfHead() const;
    [[nodiscard]] std::optional<UpdateFailure> faultOfEnd() const;
    void finish(const std::optional<UpdateFailure> &failure);
    void letGo();

    QNetworkAccessManager network_;
    QUrl url_;
    int redirects_ = 0;
    TransferLimits limits_;
    TransferReceiver receiver_;
    qint64 received_ = 0;
    QPointer<QNetworkReply> reply_;
    QTimer deadline_;
};

} // namespace brimvale
