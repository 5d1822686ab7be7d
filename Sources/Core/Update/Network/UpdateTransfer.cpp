#include "Core/Update/Network/UpdateTransfer.h"

#include "Core/Update/UpdateAddress.h"

#include <QNetworkRequest>
#include <utility>

namespace brimvale {

namespace {

constexpr qint64 pieceSize = 256 * 1024;
constexpr int okStatus = 200;
constexpr int maximumRedirects = 10;

QNetworkRequest requestFor(const QUrl &url, const TransferLimits &limits) {
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    // No compression on the way, so lengths are those of the file on the server.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setTransferTimeout(static_cast<int>(limits.silence.count()));
    return request;
}

UpdateFailure timeOut() {
    return UpdateFailure("The request timed out.");
}

} // namespace

UpdateTransfer::UpdateTransfer(const QUrl &url, const TransferLimits &limits, TransferReceiver receiver,
                               QObject *parent)
    : QObject(parent), url_(url), limits_(limits), receiver_(std::move(receiver)) {
    deadline_.setSingleShot(true);
    connect(&deadline_, &QTimer::timeout, this, [this] { finish(timeOut()); });
    if (limits.whole)
        deadline_.start(*limits.whole);
    if (isSafeUpdateURL(url))
        request();
    else
        QMetaObject::invokeMethod(
            this, [this] { finish(UpdateError::badResponse); }, Qt::QueuedConnection);
}

UpdateTransfer::~UpdateTransfer() {
    letGo();
}

void UpdateTransfer::request() {
    reply_ = network_.get(requestFor(url_, limits_));
    reply_->setReadBufferSize(pieceSize);
    connect(reply_, &QNetworkReply::readyRead, this, &UpdateTransfer::receive);
    connect(reply_, &QNetworkReply::finished, this, &UpdateTransfer::conclude);
    connect(reply_, &QNetworkReply::downloadProgress, this, [this](qint64 received, qint64 total) {
        if (total > 0)
            receiver_.progressed(static_cast<double>(received) / static_cast<double>(total));
    });
}

/// Follows a redirection. False if there is none.
bool UpdateTransfer::follow() {
    const QVariant target = reply_->attribute(QNetworkRequest::RedirectionTargetAttribute);
    if (!target.isValid())
        return false;
    const QUrl next = url_.resolved(target.toUrl());
    const bool isLessSafe = url_.scheme() != next.scheme() && next.scheme() != QLatin1String("https");
    if (isLessSafe || !isSafeUpdateURL(next) || ++redirects_ > maximumRedirects) {
        finish(UpdateError::badResponse);
    } else {
        letGo();
        url_ = next;
        request();
    }
    return true;
}

void UpdateTransfer::receive() {
    if (follow())
        return;
    if (const auto fault = faultOfHead())
        return finish(fault);
    while (reply_ != nullptr && reply_->bytesAvailable() > 0) {
        const QByteArray piece = reply_->read(pieceSize);
        received_ += piece.size();
        if (received_ > limits_.bytes)
            return finish(UpdateError::badResponse);
        if (const auto fault = receiver_.take(piece))
            return finish(fault);
    }
}

void UpdateTransfer::conclude() {
    if (follow())
        return;
    if (const auto fault = faultOfEnd())
        return finish(fault);
    receive();
    if (reply_ != nullptr)
        finish(std::nullopt);
}

/// The fault in the response, as far as its header shows.
std::optional<UpdateFailure> UpdateTransfer::faultOfHead() const {
    const QVariant status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    const QVariant length = reply_->header(QNetworkRequest::ContentLengthHeader);
    if (status.toInt() != okStatus || length.toLongLong() > limits_.bytes)
        return UpdateError::badResponse;
    return std::nullopt;
}

/// The fault in the complete response. A network error is reported only if there is no better reason, because
/// a status other than 200 is a network error too.
std::optional<UpdateFailure> UpdateTransfer::faultOfEnd() const {
    const bool hasAnswered = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
    if (hasAnswered || reply_->error() == QNetworkReply::NoError)
        if (auto fault = faultOfHead())
            return fault;
    // Which error a transfer timeout is depends on the version of Qt.
    if (reply_->error() == QNetworkReply::OperationCanceledError ||
        reply_->error() == QNetworkReply::TimeoutError)
        return timeOut();
    if (reply_->error() != QNetworkReply::NoError)
        return UpdateFailure(reply_->errorString().toStdString());
    const QVariant length = reply_->header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid() && received_ + reply_->bytesAvailable() != length.toLongLong())
        return UpdateFailure("The network connection was lost.");
    return std::nullopt;
}

void UpdateTransfer::finish(const std::optional<UpdateFailure> &failure) {
    letGo();
    deadline_.stop();
    deleteLater();
    const auto finished = std::move(receiver_.finished); // what it calls may delete this object
    finished(failure);
}

void UpdateTransfer::letGo() {
    if (reply_ == nullptr)
        return;
    reply_->disconnect(this);
    reply_->deleteLater(); // which also ends it
    reply_ = nullptr;
}

} // namespace brimvale
