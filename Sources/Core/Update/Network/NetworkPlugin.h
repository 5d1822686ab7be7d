#pragma once

#include "Core/Update/UpdateNetwork.h"

namespace brimvale {

/// What the library for the network contains.
class NetworkPlugin : public QObject, public UpdateNetwork {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID BrimvaleUpdateNetwork_iid)
    Q_INTERFACES(brimvale::UpdateNetwork)

public:
    void start(const QUrl &url, const TransferLimits &limits, TransferReceiver receiver,
               QObject *context) override;
};

} // namespace brimvale
