#pragma once

#include "Core/Scan/FSNode.h"
#include "Core/Scan/ScanStats.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// The growing picture of a scan: what has been counted so far of each entry in its root. After the scan was
/// stopped, it stays. Nothing in it can be removed, because it is not the finished tree.
class ScanGrowth {
public:
    /// The figures of the last finished scan of the same root.
    struct Earlier {
        std::int64_t files = 0;
        std::int64_t bytes = 0;
        std::unordered_map<std::string, std::int64_t> sizes = {}; ///< of the entries in the root, by name
    };

    /// A scan of `rootPath` begins. `tree` is the one shown until now, null for none.
    void begin(const std::string &rootPath, const std::shared_ptr<FSNode> &tree);
    /// Takes the current figures.
    void take(ScanStats &stats);
    /// The scan was stopped with the figures taken last.
    void stop() { isStopped_ = true; }
    /// The scan is finished, or another one takes its place.
    void clear();

    [[nodiscard]] const std::string &rootPath() const { return rootPath_; }
    /// In the order of the disk. A later call returns the same rows and perhaps more.
    [[nodiscard]] const std::vector<GrowingRow> &rows() const { return rows_; }
    [[nodiscard]] std::int64_t files() const { return files_; }
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }
    [[nodiscard]] bool isStopped() const { return isStopped_; }
    [[nodiscard]] const std::optional<Earlier> &earlier() const { return earlier_; }

private:
    std::string rootPath_;
    std::vector<GrowingRow> rows_;
    std::int64_t files_ = 0;
    std::int64_t bytes_ = 0;
    bool isStopped_ = false;
    std::optional<Earlier> earlier_;
};

} // namespace brimvale
