#pragma once

#include "Base/ByteSource.h"
#include "Base/Result.h"
#include "Core/Export/ScanOrigin.h"
#include "Core/Scan/FSNode.h"

#include <memory>
#include <string>

namespace brimvale {

/// A tree that was read from a file. It shows what was on some disk once.
struct ImportedTree {
    std::unique_ptr<FSNode> root; ///< sorted; `isImported`
    ScanOrigin origin;
};

/// Why a file could not be read as a tree, as a sentence.
struct ImportFault {
    std::string sentence;
};

/// Reads a list that `writeListing` wrote as JSON or for ncdu, or that ncdu or another program wrote in that
/// format. Such a file may be damaged or hostile: anything else than a list gets a sentence.
[[nodiscard]] Result<ImportedTree, ImportFault> readListing(ByteSource &source);

/// The same for the file at an absolute path, which may also be a saved scan.
[[nodiscard]] Result<ImportedTree, ImportFault> readTreeAt(const std::string &path);

} // namespace brimvale
