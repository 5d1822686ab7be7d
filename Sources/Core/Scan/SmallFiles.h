#pragma once

#include "Core/Scan/FSNode.h"
#include "Platform/FileStatus.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace brimvale {

/// Adds up the files of one folder that get no node of their own.
class SmallFiles {
public:
    /// `moment` is that of the scan, from which ages count, in seconds since 1970.
    explicit SmallFiles(std::uint32_t moment) : moment_(moment) {}

    void add(std::string_view name, const FileStatus &status, std::uint32_t modified);

    /// Adds all files of an aggregate.
    void add(const FSNode &aggregate);

    /// The aggregate of `folder` for all files added since the last call; null for none.
    [[nodiscard]] std::unique_ptr<FSNode> takeAggregate(FSNode &folder);
    /// Drops what was added.
    void clear();

private:
    void addToPlace(FileType type, FileAge age, std::int64_t count, std::int64_t bytes);

    struct Figures {
        std::int64_t count = 0;
        std::int64_t bytes = 0;
    };
    static constexpr std::size_t places = fileTypeCount * fileAgeCount;

    std::uint32_t moment_;
    std::int64_t count_ = 0;
    std::int64_t bytes_ = 0;
    std::int64_t length_ = 0;
    std::uint32_t newest_ = 0;
    std::array<Figures, places> figures_{}; ///< by type and age
    std::vector<std::size_t> used_;         ///< the places that are not empty
    std::vector<FileTallyEntry> entries_;   ///< kept for its memory
};

} // namespace brimvale
