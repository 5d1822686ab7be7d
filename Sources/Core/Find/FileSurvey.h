#pragma once

#include "Core/Find/FileFilter.h"
#include "Core/Find/FileSums.h"
#include "Core/Scan/FSNode.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace brimvale {

/// Goes through all files below a folder of the tree, in slices so that a window stays responsive. Small
/// files without nodes are in the sums, by their folder's tally. The tree must not change until it is done.
class FileSurvey {
public:
    /// Of the files that the filter accepts. Ages count from `moment`, in seconds since 1970, as those of the
    /// tree do.
    FileSurvey(FSNode &folder, FileFilter filter, std::uint32_t moment);

    /// Continues for about this long; returns whether it is done.
    [[nodiscard]] bool advance(std::chrono::microseconds time);

    [[nodiscard]] const FileSums &sums() const { return sums_; }
    /// The files with nodes, in no order.
    [[nodiscard]] const std::vector<FSNode *> &files() const { return files_; }
    /// Small files without nodes that the filter may accept, but only their names or sizes could tell.
    [[nodiscard]] const FileFigures &unsearched() const { return unsearched_; }

    /// The largest of these files, largest first: of one type or age, or of any.
    [[nodiscard]] std::vector<FSNode *> largest(std::size_t most, std::optional<FileType> type = {},
                                                std::optional<FileAge> age = {}) const;

private:
    void visit(FSNode &node);
    void visitAggregate(const FSNode &aggregate);
    [[nodiscard]] FileTallyEntry tallyOf(const FSNode &file) const;

    FileFilter filter_;
    std::uint32_t moment_;
    std::vector<FSNode *> waiting_;
    FileSums sums_;
    std::vector<FSNode *> files_;
    FileFigures unsearched_;
};

} // namespace brimvale
