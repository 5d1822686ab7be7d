#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Views/Entries/LockedEntries.h"

#include <QObject>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// The entries selected on a page. An item in several lists is selected once. What can never be removed is
/// locked: it cannot be selected.
class TickedEntries : public QObject {
    Q_OBJECT

public:
    explicit TickedEntries(QObject *parent = nullptr);

    [[nodiscard]] bool contains(const FileURL &url) const { return sizes_.contains(url); }
    /// The number of items to remove, without those inside another selected folder.
    [[nodiscard]] std::int64_t count() const { return count_; }
    [[nodiscard]] bool isEmpty() const { return sizes_.empty(); }
    /// The allocated bytes of all of them in total.
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }

    /// Whether all of these entries that are not locked are selected (and there are some), or some, or none.
    [[nodiscard]] Qt::CheckState stateOf(const std::vector<CleanupEntry> &entries) const;

    /// Why an entry is locked, for people; empty if it is not, or not known to be.
    [[nodiscard]] QString lockReason(const FileURL &url) const { return locked_.reason(url); }
    /// The same, or why the catalog keeps it.
    [[nodiscard]] QString lockReason(const CleanupEntry &entry) const;
    [[nodiscard]] bool canTickAny(const std::vector<CleanupEntry> &entries) const;

    /// Selects or deselects entries; locked ones stay as they are.
    void setTicked(const std::vector<CleanupEntry> &entries, bool isTicked);
    /// The user tried to select a locked entry: announces why that is not possible.
    void explainLock(const FileURL &url) { emit refused(lockReason(url)); }
    void explainLock(const CleanupEntry &entry) { emit refused(lockReason(entry)); }
    /// Deselects entries that are in none of the lists any more, and updates the sizes of the others. Finds
    /// out in the background which ones are locked.
    void retain(const std::vector<const std::vector<CleanupEntry> *> &lists);
    /// With the next `retain`, all entries are asked about again, because the disk may have changed.
    void findLockedAgain() { locked_.askAgain(); }
    void clear();

signals:
    /// The selection, or what is locked.
    void changed();
    void refused(const QString &reason);

private:
    [[nodiscard]] bool isLocked(const CleanupEntry &entry) const;
    void sumUp();
    void deselectLocked();

    LockedEntries locked_;
    std::unordered_map<FileURL, std::int64_t> sizes_;
    std::int64_t count_ = 0;
    std::int64_t bytes_ = 0;
};

} // namespace brimvale
