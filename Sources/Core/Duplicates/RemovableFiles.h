#pragma once

#include "Core/Duplicates/DuplicateGroup.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Storage/CategoryPolicies.h"
#include "Platform/SharedSpace.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

namespace brimvale {

/// Finds out which files of a group can be removed, and pins these. Knows what is protected when it is made.
class RemovableFiles {
public:
    /// Sets the pins and the reasons to keep files of a group, and puts the file that stays first. Files
    /// whose removal would free nothing are kept: those with several names, those that share their space with
    /// another one of the group, and those that are another one on a second mount. False where all files of
    /// the group are stored in one place, so that none is a duplicate.
    [[nodiscard]] bool complete(DuplicateGroup &group);

private:
    void admit(DuplicateFile &file);
    [[nodiscard]] RemovalGate::Answer open(const FileURL &file);
    [[nodiscard]] std::optional<std::string> placeOf(DuplicateFile &file);
    [[nodiscard]] std::size_t keepThoseWithoutSpace(std::vector<DuplicateFile> &files);

    RemovalGate gate_;
    CategoryPolicies policies_;
    StayingRule rule_;
    /// An item of each folder that was looked at last: finding a folder takes longer than a file in it.
    std::unordered_map<std::string, OpenedItem> folders_;
    std::unordered_map<std::uint64_t, bool> sharingDevices_; ///< whether their file systems may share bytes
};

} // namespace brimvale
