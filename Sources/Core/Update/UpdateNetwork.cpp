#include "Core/Update/UpdateNetwork.h"

#include <QCoreApplication>
#include <QPluginLoader>
#include <utility>

namespace brimvale {

namespace {

/// Takes the place of the library where that cannot be loaded.
class NoNetwork : public UpdateNetwork {
public:
    explicit NoNetwork(const QString &reason)
        : failure_("The network could not be loaded: " + reason.toStdString()) {}

    void start(const QUrl & /*url*/, const TransferLimits & /*limits*/, TransferReceiver receiver,
               QObject *context) override {
        QMetaObject::invokeMethod(
            context, [finished = std::move(receiver.finished), failure = failure_] { finished(failure); },
            Qt::QueuedConnection);
    }

private:
    UpdateFailure failure_;
};

/// From beside the program only, so the library is as trusted as the program itself.
UpdateNetwork &loadNetwork() {
    QPluginLoader loader(QCoreApplication::applicationDirPath() +
                         QStringLiteral("/../" BRIMVALE_LIBRARIES "/brimvale-network"));
    if (auto *network = qobject_cast<UpdateNetwork *>(loader.instance()))
        return *network;
    static NoNetwork none(loader.errorString());
    return none;
}

} // namespace

UpdateNetwork &updateNetwork() {
    static UpdateNetwork &network = loadNetwork();
    return network;
}

} // namespace brimvale
