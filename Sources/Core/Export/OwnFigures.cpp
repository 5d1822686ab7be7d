#include "Core/Export/OwnFigures.h"

#include <algorithm>
#include <memory>

namespace brimvale {

OwnFigures OwnFigures::of(const FSNode &node) {
    OwnFigures own{node.size, node.logicalSizeLeft(), node.fileCount};
    for (const std::unique_ptr<FSNode> &child : node.children()) {
        own.size -= child->size;
        own.length -= child->logicalSizeLeft();
        own.files -= child->fileCount;
    }
    for (std::int64_t *figure : {&own.size, &own.length, &own.files})
        *figure = std::max<std::int64_t>(*figure, 0);
    return own;
}

} // namespace brimvale
