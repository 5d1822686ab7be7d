#include "Views/Update/SampleFeed.h"

#include <utility>

namespace brimvale {

namespace {

constexpr const char *feed =
    R"({"version": "9.0", "build": 900000, "url": "https://updates.brimvale.example/sample.zip",)"
    R"( "notes": "This update belongs to the sample: it shows what an update looks like."})";

} // namespace

void SampleFeed::start(const QUrl & /*url*/, const TransferLimits & /*limits*/, TransferReceiver receiver,
                       QObject *context) {
    QMetaObject::invokeMethod(
        context, [receiver = std::move(receiver)] { receiver.finished(receiver.take(feed)); },
        Qt::QueuedConnection);
}

} // namespace brimvale
