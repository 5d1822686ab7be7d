#include "Core/Update/UpdateFeed.h"

#include <memory>
#include <utility>

namespace brimvale {

namespace {

UpdateResult<UpdateManifest> manifestIn(const QByteArray &body) {
    auto decoded = UpdateManifest::decode(body);
    const auto *manifest = std::get_if<UpdateManifest>(&decoded);
    if (manifest != nullptr && !isSafeUpdateURL(manifest->url))
        return UpdateError::badResponse;
    return decoded;
}

} // namespace

void fetchManifest(QNetworkAccessManager &network, const QUrl &url, const TransferLimits &limits,
                   QObject *context, std::function<void(const UpdateResult<UpdateManifest> &)> done) {
    const auto body = std::make_shared<QByteArray>();
    auto *transfer = new UpdateTransfer(
        network, url, limits,
        [body](const QByteArray &piece) {
            body->append(piece);
            return std::nullopt;
        },
        context);
    QObject::connect(transfer, &UpdateTransfer::finished, context,
                     [body, done = std::move(done)](const std::optional<UpdateFailure> &failure) {
                         if (failure)
                             done(*failure);
                         else
                             done(manifestIn(*body));
                     });
}

} // namespace brimvale
