#pragma once

#include "Base/FileURL.h"
#include "Core/Update/UpdateManifest.h"
#include "Core/Update/UpdateTransfer.h"

#include <QFile>
#include <functional>
#include <memory>

namespace brimvale {

/// The archive of an update on disk, which only this user can read. It goes with the object.
class DownloadedArchive {
public:
    /// An archive in `folder` under a name of its own ("Corvel-update-….zip"); nothing is there yet.
    explicit DownloadedArchive(const FileURL &folder);
    ~DownloadedArchive();
    DownloadedArchive(const DownloadedArchive &) = delete;
    DownloadedArchive &operator=(const DownloadedArchive &) = delete;

    [[nodiscard]] const FileURL &url() const { return url_; }

    /// Adds to it, and makes it with the first piece. Answers why that cannot be done.
    [[nodiscard]] std::optional<UpdateFailure> append(const QByteArray &piece);

    /// Deletes it early.
    void remove();

private:
    FileURL url_;
    QFile file_;
};

/// Fetches the manifest at `url` and calls `done` with it, once and from the event loop; not if `context`,
/// which lives on the main thread, has gone by then. A manifest whose archive does not lie at a safe address
/// is a bad response.
void fetchManifest(QNetworkAccessManager &network, const QUrl &url, const TransferLimits &limits,
                   QObject *context, std::function<void(const UpdateResult<UpdateManifest> &)> done);

/// Downloads an archive into `folder`, straight to disk, and calls `done` with it, once and from the event
/// loop, after `progressed` with parts from 0 to 1; not if `context`, which lives on the main thread, has
/// gone by then. A part of an archive is never left behind.
void downloadArchive(QNetworkAccessManager &network, const QUrl &url, const TransferLimits &limits,
                     const FileURL &folder, QObject *context, const std::function<void(double)> &progressed,
                     std::function<void(const UpdateResult<std::shared_ptr<DownloadedArchive>> &)> done);

} // namespace brimvale
