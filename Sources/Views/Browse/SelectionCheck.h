#pragma once

#include "Base/StopFlag.h"
#include "Core/Removal/RemovalRefusals.h"
#include "Core/Storage/CategoryPolicy.h"

#include <QObject>
#include <optional>
#include <variant>
#include <vector>

namespace brimvale {

/// Finds out in the background, as soon as items are selected, whether they can be removed on this page: the
/// guards may refuse one, or a storage category may protect it.
class SelectionCheck : public QObject {
    Q_OBJECT

public:
    using Objection = std::variant<RemovalRefusal, CategoryPolicy>;

    using QObject::QObject;
    ~SelectionCheck() override;

    /// Asks about these items; an earlier question is dropped.
    void check(std::vector<FileURL> items);

    /// Whether the answer is not there yet.
    [[nodiscard]] bool isPending() const { return isPending_; }
    /// What stands against the removal of the first item that has something; nothing also while it is
    /// pending.
    [[nodiscard]] const std::optional<Objection> &objection() const { return objection_; }

signals:
    void answered();

private:
    void askNext();

    std::optional<Objection> objection_;
    bool isPending_ = false;
    bool isAsking_ = false; ///< a question is with the worker, perhaps an earlier one
    std::vector<FileURL> items_;
    StopFlag outdated_;
};

} // namespace brimvale
