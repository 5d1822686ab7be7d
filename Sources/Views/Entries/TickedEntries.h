#pragma once

#include "Catalogs/CleanupEntry.h"

#include <QObject>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// The entries selected on a page. An item in several lists is selected once.
class TickedEntries : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] bool contains(const FileURL &url) const { return sizes_.contains(url); }
    /// The number of items to remove, without those inside another selected folder.
    [[nodiscard]] std::int64_t count() const { return count_; }
    [[nodiscard]] bool isEmpty() const { return sizes_.empty(); }
    /// The allocated bytes of all of them in total.
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }

    /// Whether all of these entries are selected (and there are some), or some, or none.
    [[nodiscard]] Qt::CheckState stateOf(const std::vector<CleanupEntry> &entries) const;

    void setTicked(const std::vector<CleanupEntry> &entries, bool isTicked);
    /// Deselects entries that are in none of the lists any more, and updates the sizes of the others.
    void retain(const std::vector<const std::vector<CleanupEntry> *> &lists);
    void clear();

signals:
    void changed();

private:
    void sumUp();

    std::unordered_map<FileURL, std::int64_t> sizes_;
    std::int64_t count_ = 0;
    std::int64_t bytes_ = 0;
};

} // namespace brimvale
