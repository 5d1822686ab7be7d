#include "Views/Window/DroppedItem.h"

#include <QMimeData>
#include <QUrl>

namespace brimvale {

std::optional<FileURL> droppedItem(const QMimeData &data) {
    const QList<QUrl> urls = data.urls();
    if (urls.size() != 1 || !urls.front().isLocalFile())
        return std::nullopt;
    // Decoded here, because a name need not be text.
    const QByteArray path = QByteArray::fromPercentEncoding(urls.front().path(QUrl::FullyEncoded).toUtf8());
    if (!path.startsWith('/'))
        return std::nullopt;
    return FileURL(path.toStdString()).standardized();
}

} // namespace brimvale
