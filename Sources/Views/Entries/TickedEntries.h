#pragma once

#include "Catalogs/CleanupEntry.h"

#include <QObject>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// The entries that the user has ticked on a page. An item is ticked once, however many lists show it.
class TickedEntries : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] bool contains(const FileURL &url) const { return sizes_.contains(url); }
    /// How many there are to remove: what lies in a folder that is ticked as well goes with that.
    [[nodiscard]] std::int64_t count() const { return count_; }
    [[nodiscard]] bool isEmpty() const { return sizes_.empty(); }
    /// Allocated bytes of all of them together.
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }

    /// How many of these are ticked: all (and there are some), some or none.
    [[nodiscard]] Qt::CheckState stateOf(const std::vector<CleanupEntry> &entries) const;

    void setTicked(const std::vector<CleanupEntry> &entries, bool isTicked);
    /// Unticks what is in none of the lists any more, and takes over the sizes of the others.
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
