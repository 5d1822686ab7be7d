#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <span>
#include <sys/mount.h>

namespace brimvale {

/// The mounted file systems with the figures that the kernel had last. Asks no file system anything, so a
/// dead server cannot block it.
class MountTable {
public:
    MountTable() {
        struct statfs *entries = nullptr;
        const int count = getmntinfo_r_np(&entries, MNT_NOWAIT);
        memory_.reset(entries);
        if (count > 0)
            entries_ = {entries, static_cast<std::size_t>(count)};
    }
    [[nodiscard]] std::span<const struct statfs> entries() const { return entries_; }

private:
    struct Free {
        void operator()(struct statfs *memory) const { std::free(memory); }
    };
    std::unique_ptr<struct statfs, Free> memory_;
    std::span<const struct statfs> entries_;
};

} // namespace brimvale
