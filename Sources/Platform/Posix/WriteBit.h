#pragma once

#include "Platform/Folder.h"

#include <optional>
#include <sys/types.h>

namespace brimvale {

/// Some programs, such as Go for its modules, make their folders read-only for their own user. What is in
/// such a folder can only be removed when the user may write in it again.
class WriteBit {
public:
    /// Lets the user write in an open folder and reach its entries. False, with errno as it was, where the
    /// folder belongs to somebody else, permits both already, or cannot be changed. Flags of the folder are
    /// not touched.
    [[nodiscard]] bool add(const Folder &folder);

    /// Gives the folder the permissions that it had before, as far as possible.
    void takeBack(const Folder &folder);

private:
    std::optional<mode_t> before_; ///< the permissions before they were changed
};

} // namespace brimvale
