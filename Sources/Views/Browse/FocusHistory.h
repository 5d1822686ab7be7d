#pragma once

#include "Base/FileURL.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace brimvale {

/// The folders that were focused one after the other, to go back and forward. Keeps paths, because nodes may
/// leave the tree.
class FocusHistory {
public:
    static constexpr std::size_t most = 200;

    /// The user has focused this folder. Folders that could have been gone forward to are forgotten.
    void visit(const FileURL &folder);
    void clear() { visited_.clear(); }

    /// Moves to the earlier or the later folder; nothing if there is none.
    [[nodiscard]] std::optional<FileURL> back();
    [[nodiscard]] std::optional<FileURL> forward();

private:
    std::vector<FileURL> visited_;
    std::size_t current_ = 0;
};

} // namespace brimvale
