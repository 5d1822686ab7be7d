#pragma once

#include "Catalogs/CleanupTarget.h"

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
    [[nodiscard]] std::int64_t count() const { return static_cast<std::int64_t>(sizes_.size()); }
    [[nodiscard]] bool isEmpty() const { return sizes_.empty(); }
    /// Allocated bytes of all of them together.
    [[nodiscard]] std::int64_t bytes() const;

    void setTicked(const std::vector<CleanupEntry> &entries, bool isTicked);
    /// Unticks what is in none of the lists any more, and takes over the sizes of the others.
    void retain(const std::vector<const std::vector<CleanupEntry> *> &lists);
    void clear();

signals:
    void changed();

private:
    std::unordered_map<FileURL, std::int64_t> sizes_;
};

} // namespace brimvale
