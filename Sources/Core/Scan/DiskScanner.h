#pragma once

#include "Base/StopFlag.h"
#include "Core/Scan/FSNode.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/ScanStats.h"
#include "Core/Scan/WalkPool.h"

#include <cstdint>
#include <memory>
#include <string>

namespace brimvale {

/// Measures folders. Never follows a symbolic link below the given path, never enters another volume unless
/// told to, never enters a skipped folder, and counts a file with several names once per scan. Anything
/// unreadable sets a flag or a count, and is never an error. So do a length or allocation above
/// `mostBelievedBytes` (64 PiB), and large files that claim more than that together (`SumLimit`). A sum of
/// our own above 64 bits ends the program.
namespace DiskScanner {

/// The tree with sizes of the folder at `root` (absolute; a link to a folder is followed). Blocks; call it
/// off the main thread. Always returns a node: without children if nothing exists there or it cannot be
/// listed, with the file's figures if `root` is a file. The children are not sorted yet.
///
/// After `stats.cancel()` it returns the figures counted so far: entries of the root not yet listed and
/// folders not yet entered are missing, and unfinished ones have no aggregate and do not add their logical
/// size to their parent.
[[nodiscard]] std::unique_ptr<FSNode> scan(const std::string &root, const ScanOptions &options,
                                           ScanStats &stats, WalkPool &pool = WalkPool::shared());

/// The allocated bytes at and under `path` (absolute), which may be a file; a link counts itself. Files with
/// several names count once per name. Always stays on the path's own device. 0 if it cannot be read or is
/// skipped. Once `cancelled` is set, the bytes counted so far.
[[nodiscard]] std::int64_t quickSize(const std::string &path, const ScanOptions &options,
                                     const StopFlag &cancelled = {}, WalkPool &pool = WalkPool::shared());

/// What `quickFigures` counts.
struct QuickFigures {
    std::int64_t bytes = 0; ///< like `quickSize`
    /// Of these, the bytes that deleting the item frees: of a file with several names only if all are inside
    /// the item, and then once.
    std::int64_t freedBytes = 0;
    std::int64_t entries = 0;    ///< files, links and folders, the item included
    std::int64_t unreadable = 0; ///< folders and entries that could not be read, in full or in part
};

/// Measures like `quickSize`, and counts more. All zero if nothing exists at `path`.
[[nodiscard]] QuickFigures quickFigures(const std::string &path, const ScanOptions &options,
                                        const StopFlag &cancelled = {}, WalkPool &pool = WalkPool::shared());

/// The folder at `path` (absolute, standardised) as a scan of a folder above it would show it, as a node
/// without a parent, not sorted. Null if there is no folder; a link is not followed.
[[nodiscard]] std::unique_ptr<FSNode> scanInside(const std::string &path, const ScanOptions &options,
                                                 ScanStats &stats, WalkPool &pool = WalkPool::shared());

/// The system's name for "/" ("Macintosh HD"), otherwise the path's last component.
[[nodiscard]] std::string displayName(const std::string &path);

} // namespace DiskScanner

} // namespace brimvale
