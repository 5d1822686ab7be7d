#pragma once

#include "Platform/SharedBlocks.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace brimvale {

/// The blocks of one storage that several files share, as far as the files of a selection have them. Tells
/// how much of them is also elsewhere. Not thread-safe.
class SharedSpans {
public:
    /// Adds the shared blocks of one file of the selection. Where the system calls blocks shared as soon as a
    /// block near them is, `reach` tells how many bytes away that may be; otherwise it is 0.
    void add(const std::vector<BlockPlace> &places, std::int64_t reach = 0);

    /// Adds blocks that a snapshot has. `snapshot` is a number of the caller.
    void addKept(const std::vector<BlockPlace> &places, std::size_t snapshot);

    /// The bytes of the selection's shared blocks, each counted once and in one of these.
    struct Sums {
        std::int64_t elsewhere = 0; ///< only one file of the selection has them, so another one outside does
        std::int64_t within = 0;    ///< several of its files have them, or blocks near them; others may, too
        std::map<std::size_t, std::int64_t> kept = {}; ///< by snapshot
    };
    [[nodiscard]] Sums sums() const;

private:
    /// A file of the selection or a snapshot begins or ends to have blocks here.
    struct Edge {
        std::uint64_t place;
        int files;            ///< one more or less
        int copies;           ///< in snapshots
        std::size_t snapshot; ///< where `copies` is not 0
        int neighbours = 0;   ///< files that have blocks here, and share others near them with the selection
    };
    /// Blocks of one file, or what several files have.
    struct Span {
        std::uint64_t start;
        std::uint64_t end;
    };
    /// Blocks of one file that are called shared because of others near them.
    struct Rough {
        Span span;
        std::uint64_t reach;
    };
    /// Compressed blocks are shared as a whole.
    struct Packed {
        int files = 0;
        std::int64_t bytes = 0; ///< the most that one file has
        bool isKept = false;
        std::size_t snapshot = 0;
    };

    void addEdges(const BlockPlace &place, int files, int copies, std::size_t snapshot);
    [[nodiscard]] std::vector<Span> commonSpans() const;
    [[nodiscard]] std::vector<Edge> edgesOfNeighbours() const;
    static void count(Sums &sums, int files, const std::size_t *snapshot, std::int64_t bytes);

    std::vector<Edge> edges_;
    std::vector<Rough> rough_;
    std::map<std::uint64_t, Packed> packed_;
};

/// Whether `others` have all these blocks.
[[nodiscard]] bool areCovered(const std::vector<BlockPlace> &places, const std::vector<BlockPlace> &others);

} // namespace brimvale
