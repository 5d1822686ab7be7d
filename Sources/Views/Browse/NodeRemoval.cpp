#include "Views/Browse/NodeRemoval.h"

#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Removal/NodesToRemove.h"
#include "Views/Removing/RemovalSheet.h"

namespace brimvale {

NodeRemoval::NodeRemoval(const ScanSession &scan, Removals &removals, QWidget &page)
    : QObject(&page), scan_(scan), removals_(removals), page_(page) {}

void NodeRemoval::ask(const std::vector<FSNode *> &nodes, const std::optional<Reclaim> &reclaim) {
    if (nodes.empty() || removals_.isRemoving())
        return;
    auto *sheet = new RemovalSheet({.items = entriesOf(nodes), .reclaim = reclaim}, &page_);
    connect(sheet, &RemovalSheet::confirmed, this,
            [this, nodes, tree = scan_->tree](RemovalMode mode, const std::optional<FreePromise> &promise) {
                if (scan_->tree != tree)
                    return;
                emit confirmed();
                removals_.removeNodes(nodes, mode, promise);
            });
    // The nodes in the question may no longer exist.
    connect(&scan_, &ScanSession::treeChanged, sheet, &QDialog::reject);
    connect(&scan_, &ScanSession::nodeAboutToBeDetached, sheet, &QDialog::reject);
    connect(&scan_, &ScanSession::contentsAboutToBeReplaced, sheet, &QDialog::reject);
    sheet->open();
}

} // namespace brimvale
