#pragma once

#include "Base/FileURL.h"
#include "Core/Removal/RemovalMode.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brimvale {

/// The outcome of one removal: every item is in exactly one list.
struct RemovalResult {
    struct Failure {
        FileURL url;
        std::string reason; ///< a readable sentence
        friend bool operator==(const Failure &, const Failure &) = default;
    };

    std::vector<FileURL> succeeded = {};
    std::vector<Failure> failed = {};
    std::int64_t bytesFreed = 0;
    std::vector<FileURL> needsAdmin = {}; ///< can be retried as administrator
    bool isOfBackup = false;              ///< nothing was to be removed yet: the backup before it failed

    friend bool operator==(const RemovalResult &, const RemovalResult &) = default;
};

} // namespace brimvale
