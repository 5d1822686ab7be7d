#include "Views/Browse/Outline/OutlineTree.h"

#include <QTest>

namespace brimvale::testing {

void detach(OutlineModel &model, FSNode &node) {
    FSNode *parent = node.parent();
    model.aboutToRemove(node);
    const std::unique_ptr<FSNode> released = parent->release(node);
    for (FSNode *folder = parent; folder != nullptr; folder = folder->parent()) {
        folder->size -= released->size;
        folder->fileCount -= released->fileCount;
    }
    model.removed();
}

bool waitUntilFiltered(const OutlineModel &model) {
    return QTest::qWaitFor([&] { return !model.isFiltering(); }, 20'000);
}

std::vector<std::string> rowsIn(const QAbstractItemModel &model, const QModelIndex &folder) {
    std::vector<std::string> names;
    for (int row = 0; row < model.rowCount(folder); ++row)
        names.push_back(model.index(row, 0, folder).data().toString().toStdString());
    return names;
}

} // namespace brimvale::testing
