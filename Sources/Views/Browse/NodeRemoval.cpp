#include "Views/Browse/NodeRemoval.h"

#include "Core/Model/CorvelModel.h"
#include "Core/Scan/OutermostNodes.h"
#include "Views/Removing/RemovalSheet.h"

namespace brimvale {

NodeRemoval::NodeRemoval(CorvelModel &model, QWidget &page) : QObject(&page), model_(model), page_(page) {}

std::vector<FSNode *> NodeRemoval::removable(std::vector<FSNode *> nodes) {
    std::erase_if(nodes, [](const FSNode *node) { return node->isAggregate; });
    return outermostNodes(nodes);
}

void NodeRemoval::ask(const std::vector<FSNode *> &nodes) {
    if (nodes.empty() || model_.isRemoving())
        return;
    RemovalRequest request;
    for (const FSNode *node : nodes)
        request.items.push_back({.url = FileURL(node->path()), .size = node->size});
    auto *sheet = new RemovalSheet(request, &page_);
    connect(sheet, &RemovalSheet::confirmed, this, [this, nodes, tree = *model_.tree](RemovalMode mode) {
        if (*model_.tree != tree)
            return;
        emit confirmed();
        model_.removeNodes(nodes, mode);
    });
    // What the sheet asks about may be another tree's by then.
    connect(&model_, &CorvelModel::treeChanged, sheet, &QDialog::reject);
    sheet->open();
}

} // namespace brimvale
