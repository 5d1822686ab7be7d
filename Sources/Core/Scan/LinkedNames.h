#pragma once

#include "Core/Scan/FSNode.h"
#include "Platform/FileStatus.h"

#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// The name under which a file with several names counts.
struct LinkedName {
    FSNode *folder = nullptr;
    std::string name;
    FileStatus status;
};

/// Decides which name of a file counts, for all files with several names in one scan: the first by path, name
/// by name from the root. So every scan of the same files has the same tree, whichever thread comes first.
/// Thread-safe.
class LinkedNames {
public:
    /// Adds a name in `folder`. True for the first one of a file.
    [[nodiscard]] bool add(FSNode &folder, std::string_view name, const FileStatus &status);

    /// Leaves a file out under all of its names.
    void refuse(const FileIdentity &file);

    /// The names that count, those of a folder together and in order. Call it when all walks have ended.
    [[nodiscard]] std::vector<LinkedName> take();

private:
    std::mutex lock_;
    std::unordered_map<FileIdentity, LinkedName> files_; ///< without a folder where it was refused
};

} // namespace brimvale
