#pragma once

#include "Base/FileURL.h"
#include "Core/Update/UpdateManifest.h"
#include "Core/Update/UpdateNetwork.h"

#include <QFile>
#include <functional>
#include <memory>

namespace brimvale {

/// The archive of an update on disk, readable only by this user. The destructor deletes it.
class DownloadedArchive {
public:
    /// An archive with a unique name in `folder` ("Corvel-update-….zip"). The file does not exist yet.
    explicit DownloadedArchive(const FileURL &folder);
    ~DownloadedArchive();
    DownloadedArchive(const DownloadedArchive &) = delete;
    DownloadedArchive &operator=(const DownloadedArchive &) = delete;

    [[nodiscard]] const FileURL &url() const { return url_; }

    /// Appends to the file; the first piece creates it. Returns the reason for a failure.
    [[nodiscard]] std::optional<UpdateFailure> append(const QByteArray &piece);

    /// Deletes it early.
    void remove();

private:
    FileURL url_;
    QFile file_;
};

/// Fetches the manifest at `url` and calls `done` with it, once, from the event loop. Dropped if `context`,
/// an object of the main thread, is destroyed first. A manifest whose archive has no safe address is a bad
/// response.
void fetchManifest(UpdateNetwork &network, const QUrl &url, const TransferLimits &limits, QObject *context,
                   std::function<void(const UpdateResult<UpdateManifest> &)> done);

/// Downloads an archive into `folder`, straight to disk. Calls `progressed` with shares from 0 to 1, then
/// `done`, once, from the event loop. Dropped if `context`, an object of the main thread, is destroyed first.
/// Never leaves a partial archive behind.
void downloadArchive(UpdateNetwork &network, const QUrl &url, const TransferLimits &limits,
                     const FileURL &folder, QObject *context, std::function<void(double)> progressed,
                     std::function<void(const UpdateResult<std::shared_ptr<DownloadedArchive>> &)> done);

} // namespace brimvale
