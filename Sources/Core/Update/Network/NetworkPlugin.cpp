#include "Core/Update/Network/NetworkPlugin.h"

#include "Core/Update/Network/UpdateTransfer.h"

#include <utility>

namespace brimvale {

void NetworkPlugin::start(const QUrl &url, const TransferLimits &limits, TransferReceiver receiver,
                          QObject *context) {
    new UpdateTransfer(url, limits, std::move(receiver), context);
}

} // namespace brimvale
