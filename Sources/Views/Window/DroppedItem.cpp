#include "Views/Window/DroppedItem.h"

#include "Views/Components/LocalFile.h"

#include <QMimeData>
#include <QUrl>

namespace brimvale {

std::optional<FileURL> droppedItem(const QMimeData &data) {
    const QList<QUrl> urls = data.urls();
    return urls.size() == 1 ? localFileOf(urls.front()) : std::nullopt;
}

} // namespace brimvale
