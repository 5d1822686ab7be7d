#pragma once

#include "Core/Update/UpdateManifest.h"
#include "Core/Update/UpdateTransfer.h"

#include <functional>

namespace brimvale {

/// Fetches the manifest at `url` and calls `done` with it, once and from the event loop; not if `context`,
/// which lives on the main thread, has gone by then. A manifest whose archive does not lie at a safe address
/// is a bad response.
void fetchManifest(QNetworkAccessManager &network, const QUrl &url, const TransferLimits &limits,
                   QObject *context, std::function<void(const UpdateResult<UpdateManifest> &)> done);

} // namespace brimvale
