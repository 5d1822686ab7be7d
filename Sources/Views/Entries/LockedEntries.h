#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalRefusals.h"

#include <QObject>
#include <QString>
#include <unordered_set>
#include <vector>

namespace brimvale {

/// The entries of a page that the guards refuse to remove. Finds them in the background, because that reads
/// the disk; until then no entry is locked, and a removal asks the guards again anyway.
class LockedEntries : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~LockedEntries() override;

    /// Finds out about the entries in these lists that are new since the last call, and forgets the others.
    void ask(const std::vector<const std::vector<CleanupEntry> *> &lists);
    /// The next `ask` is about all entries, because the disk may have changed. What is known stays until
    /// then.
    void askAgain() { known_.clear(); }

    [[nodiscard]] bool contains(const FileURL &url) const { return refusals_.contains(url); }
    /// The guards' sentence and a hint, for people; empty if the entry is not locked.
    [[nodiscard]] QString reason(const FileURL &url) const;

signals:
    void changed();

private:
    void askNext();
    void take(const std::vector<FileURL> &asked, RemovalRefusals found);

    RemovalRefusals refusals_;
    std::unordered_set<FileURL> known_; ///< what has been asked, or will be
    std::vector<FileURL> waiting_;
    StopFlag cancelled_;
    bool isAsking_ = false;
};

} // namespace brimvale
