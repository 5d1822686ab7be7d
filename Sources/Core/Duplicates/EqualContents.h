#pragma once

#include "Core/Duplicates/ContentsReader.h"

#include <cstddef>
#include <vector>

namespace brimvale {

/// Files of one length.
using FileSet = std::vector<const ReadFile *>;

/// This many files of a set are compared with one another directly. More get a digest each.
constexpr std::size_t mostInStep = 24;

/// The parts of a set whose files have equal contents, each of at least two files: read in step, byte by
/// byte. At most `mostInStep` files. Files that changed or can't be read are left out. After a stop, none.
[[nodiscard]] std::vector<FileSet> splitInStep(const FileSet &set, ContentsReader &reader);

/// The SHA-256 digest of a file's contents; empty if it changed, can't be read, or after a stop.
[[nodiscard]] std::string digestOfContents(const ReadFile &file, ContentsReader &reader);

} // namespace brimvale
