#pragma once

#include "Core/Update/UpdateNetwork.h"

namespace brimvale {

/// Offers an update to a window that shows a sample, without any network. It has no archive, so nothing could
/// be installed from it.
class SampleFeed : public UpdateNetwork {
public:
    /// Whatever the address, the answer is the feed.
    void start(const QUrl &url, const TransferLimits &limits, TransferReceiver receiver,
               QObject *context) override;
};

} // namespace brimvale
