#pragma once

#include <QObject>
#include <vector>

class QWidget;

namespace brimvale {

class CorvelModel;
class FSNode;

/// The removal of nodes of the scanned tree: what of a selection can go, and the question before it does.
class NodeRemoval : public QObject {
    Q_OBJECT

public:
    /// Both must outlive it. The question is asked in a sheet over the page's window.
    NodeRemoval(CorvelModel &model, QWidget &page);

    /// What of the nodes can be removed: each by itself, and nothing that stands for many files.
    [[nodiscard]] static std::vector<FSNode *> removable(std::vector<FSNode *> nodes);

    /// Asks about nodes that can be removed, and removes them if the user agrees. Nothing happens without
    /// any, or while a removal runs; the question is withdrawn when the tree is replaced.
    void ask(const std::vector<FSNode *> &nodes);

signals:
    /// The user has agreed; the nodes are all still there.
    void confirmed();

private:
    CorvelModel &model_;
    QWidget &page_;
};

} // namespace brimvale
