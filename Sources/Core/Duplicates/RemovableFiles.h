#pragma once

#include "Core/Duplicates/DuplicateGroup.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Storage/CategoryPolicies.h"

#include <mutex>

namespace brimvale {

/// Finds out which files of a group can be removed, and pins these. Knows what is protected when it is made.
/// Thread-safe.
class RemovableFiles {
public:
    /// Sets the pins and the reasons to keep files of a group, and puts the file that stays first. Files
    /// whose removal would free nothing are kept: those with several names, those that share their space with
    /// another one of the group, and those that are another one on a second mount. False where all files of
    /// the group are stored in one place, so that none is a duplicate.
    [[nodiscard]] bool complete(DuplicateGroup &group);

private:
    void admit(DuplicateFile &file);

    std::mutex lock_;
    RemovalGate gate_;
    CategoryPolicies policies_;
};

} // namespace brimvale
