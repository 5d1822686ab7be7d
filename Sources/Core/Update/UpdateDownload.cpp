#include "Core/Update/UpdateDownload.h"

#include "Core/Update/UpdateAddress.h"

#include <QUuid>
#include <utility>

namespace brimvale {

namespace {

std::string archiveName() {
    return "Corvel-update-" + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString() +
           ".zip";
}

UpdateResult<UpdateManifest> manifestIn(const QByteArray &body) {
    auto decoded = UpdateManifest::decode(body);
    const auto *manifest = std::get_if<UpdateManifest>(&decoded);
    if (manifest != nullptr && !isSafeUpdateURL(manifest->url))
        return UpdateError::badResponse;
    return decoded;
}

} // namespace

DownloadedArchive::DownloadedArchive(const FileURL &folder)
    : url_(folder.appending(archiveName())), file_(QFile::decodeName(url_.path().c_str())) {}

DownloadedArchive::~DownloadedArchive() {
    remove();
}

std::optional<UpdateFailure> DownloadedArchive::append(const QByteArray &piece) {
    constexpr auto mode = QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered;
    const bool isOpen = file_.isOpen() || file_.open(mode, QFile::ReadOwner | QFile::WriteOwner);
    if (!isOpen || file_.write(piece) != piece.size())
        return UpdateFailure(file_.errorString().toStdString());
    return std::nullopt;
}

// A file that was never opened is not ours.
void DownloadedArchive::remove() {
    if (file_.isOpen())
        file_.remove();
}

void fetchManifest(UpdateNetwork &network, const QUrl &url, const TransferLimits &limits, QObject *context,
                   std::function<void(const UpdateResult<UpdateManifest> &)> done) {
    const auto body = std::make_shared<QByteArray>();
    network.start(url, limits,
                  {.take =
                       [body](const QByteArray &piece) {
                           body->append(piece);
                           return std::nullopt;
                       },
                   .finished =
                       [body, done = std::move(done)](const std::optional<UpdateFailure> &failure) {
                           if (failure)
                               done(*failure);
                           else
                               done(manifestIn(*body));
                       }},
                  context);
}

void downloadArchive(UpdateNetwork &network, const QUrl &url, const TransferLimits &limits,
                     const FileURL &folder, QObject *context, std::function<void(double)> progressed,
                     std::function<void(const UpdateResult<std::shared_ptr<DownloadedArchive>> &)> done) {
    const auto archive = std::make_shared<DownloadedArchive>(folder);
    network.start(url, limits,
                  {.take = [archive](const QByteArray &piece) { return archive->append(piece); },
                   .progressed = std::move(progressed),
                   .finished =
                       [archive, done = std::move(done)](const std::optional<UpdateFailure> &failure) {
                           if (!failure)
                               return done(archive);
                           archive->remove();
                           done(*failure);
                       }},
                  context);
}

} // namespace brimvale
