#pragma once

#include "Base/FileURL.h"
#include "Base/StopFlag.h"
#include "Core/Removal/RemovalRefusals.h"
#include "Core/Storage/CategoryPolicy.h"

#include <QObject>
#include <QTimer>
#include <optional>
#include <variant>
#include <vector>

namespace brimvale {

class FSNode;

/// Finds out in the background, as soon as items are selected, whether they can be removed on this page: the
/// guards may refuse one, or a storage category may protect it.
class SelectionCheck : public QObject {
    Q_OBJECT

public:
    using Objection = std::variant<RemovalRefusal, CategoryPolicy>;

    explicit SelectionCheck(QObject *parent = nullptr);
    ~SelectionCheck() override;

    /// Asks about these nodes; an earlier question is dropped. Reads their paths in short slices, so they
    /// must stay as they are until `forget` or another question.
    void check(std::vector<const FSNode *> nodes);

    /// Lets go of nodes whose paths are not read yet. The question then stays pending, until the next one.
    void forget();

    /// Whether the answer is not there yet.
    [[nodiscard]] bool isPending() const { return isPending_; }
    /// What stands against the removal of the first item that has something; nothing also while it is
    /// pending.
    [[nodiscard]] const std::optional<Objection> &objection() const { return objection_; }

    /// The paths of the nodes that were asked about; empty while it is pending.
    [[nodiscard]] const std::vector<FileURL> &items() const { return answeredItems_; }

signals:
    void answered();

private:
    void readPaths();
    void askNext();

    std::optional<Objection> objection_;
    bool isPending_ = false;
    bool isAsking_ = false;             ///< a question is with the worker, perhaps an earlier one
    std::vector<const FSNode *> nodes_; ///< of the question, until all their paths are read
    std::vector<FileURL> items_;        ///< the paths read
    std::vector<FileURL> answeredItems_;
    QTimer nextSlice_;
    StopFlag outdated_;
};

} // namespace brimvale
