#include "Views/Components/LocalFile.h"

#include <QByteArray>

namespace brimvale {

/// Not decoded by Qt, because a name need not be text.
std::optional<FileURL> localFileOf(const QUrl &url) {
    const QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toUtf8());
    if (!url.isLocalFile() || !path.startsWith('/'))
        return std::nullopt;
    return FileURL(path.toStdString()).standardized();
}

} // namespace brimvale
