#pragma once

#include "Core/Update/UpdateState.h"

#include <QByteArray>
#include <QObject>
#include <QUrl>
#include <chrono>
#include <functional>
#include <optional>

namespace brimvale {

/// How much an update server may send, how long it may stay silent, and how long all of it may take.
struct TransferLimits {
    qint64 bytes = 0;
    std::chrono::milliseconds silence{};
    std::optional<std::chrono::milliseconds> whole = {}; ///< redirections included
};

/// What a transfer calls, always on the main thread and from the event loop.
struct TransferReceiver {
    /// Takes a piece of the body; returns the reason for a failure.
    std::function<std::optional<UpdateFailure>(const QByteArray &piece)> take;

    /// Takes the received share of the body, 0 to 1. Not called if the server does not send the size.
    std::function<void(double fraction)> progressed = [](double) {};

    /// The transfer is complete, or failed. The last call.
    std::function<void(const std::optional<UpdateFailure> &failure)> finished;
};

/// Downloads from an update server. Belongs to the main thread.
class UpdateNetwork {
public:
    virtual ~UpdateNetwork() = default;

    /// Starts a download and passes the body on piece by piece. The download ends with `context`, an object
    /// of the main thread. Never uses a cache, nor an unsafe address (including redirections from https to
    /// http). Accepts only status 200, at most the limited number of bytes, and a body as long as announced.
    virtual void start(const QUrl &url, const TransferLimits &limits, TransferReceiver receiver,
                       QObject *context) = 0;
};

/// The network itself. It is in a library of its own, which is loaded by the first call: the libraries that
/// it needs in turn take as long to load as everything else together. Without that library every transfer
/// fails.
[[nodiscard]] UpdateNetwork &updateNetwork();

} // namespace brimvale

// The names by which the library is recognised. A changed interface needs another one.
#define BrimvaleUpdateNetwork_iid "example.brimvale.UpdateNetwork/1"
Q_DECLARE_INTERFACE(brimvale::UpdateNetwork, BrimvaleUpdateNetwork_iid)
