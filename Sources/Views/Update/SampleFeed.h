#pragma once

#include <QTcpServer>
#include <QUrl>

namespace brimvale {

/// Offers an update to a window that shows a sample: a feed on a free port of this machine, for this program
/// alone. It has no archive, so nothing could be installed from it.
class SampleFeed : public QTcpServer {
    Q_OBJECT

public:
    explicit SampleFeed(QObject *parent = nullptr);

    /// The address of the feed; nothing answers there if no port was free.
    [[nodiscard]] QUrl url() const;

private:
    void answer();
};

} // namespace brimvale
