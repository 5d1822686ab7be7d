#pragma once

#include "Core/Reclaim/Reclaim.h"

#include <QObject>
#include <optional>
#include <vector>

class QWidget;

namespace brimvale {

class FSNode;
class Removals;
class ScanSession;

/// Removes nodes of the scanned tree after asking the user.
class NodeRemoval : public QObject {
    Q_OBJECT

public:
    /// All must outlive it. The question is asked in a sheet over the page's window.
    NodeRemoval(const ScanSession &scan, Removals &removals, QWidget &page);

    /// Asks about removable nodes, and removes them if the user agrees. Does nothing without nodes, or during
    /// a removal. The question closes if the tree is replaced or loses nodes.
    /// `reclaim` is what deleting them frees, where that is known.
    void ask(const std::vector<FSNode *> &nodes, const std::optional<Reclaim> &reclaim);

signals:
    /// The user has agreed; all nodes still exist.
    void confirmed();

private:
    const ScanSession &scan_;
    Removals &removals_;
    QWidget &page_;
};

} // namespace brimvale
