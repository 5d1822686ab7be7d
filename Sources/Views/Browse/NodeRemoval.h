#pragma once

#include <QObject>
#include <vector>

class QWidget;

namespace brimvale {

class FSNode;
class Removals;
class ScanSession;

/// The removal of nodes of the scanned tree, and the question before it.
class NodeRemoval : public QObject {
    Q_OBJECT

public:
    /// All must outlive it. The question is asked in a sheet over the page's window.
    NodeRemoval(const ScanSession &scan, Removals &removals, QWidget &page);

    /// Asks about nodes that can be removed, and removes them if the user agrees. Nothing happens without
    /// any, or while a removal runs; the question is withdrawn when the tree is replaced or loses nodes.
    void ask(const std::vector<FSNode *> &nodes);

signals:
    /// The user has agreed; the nodes are all still there.
    void confirmed();

private:
    const ScanSession &scan_;
    Removals &removals_;
    QWidget &page_;
};

} // namespace brimvale
