#pragma once

#include "Support/TemporaryFolder.h"

namespace brimvale::testing {

/// Fills a folder with everything that a walk may stumble over, at random but the same for the same seed:
/// names with line feeds, quotes and, where there can be such, bytes that are not UTF-8, links (dangling, to
/// themselves, to their ancestors), pipes, sockets, sparse and empty files, empty and locked folders, wide
/// ones, and a deep chain with siblings. Without `hardLinks` no file has a second name.
void makeHostileTree(const TemporaryFolder &folder, unsigned seed, bool hardLinks);

/// Makes a chain of `depth` folders named `name` inside `path`, each with a file of one byte and an empty
/// folder beside the next, whatever length their paths come to.
void makeChain(const std::string &path, const std::string &name, int depth);

} // namespace brimvale::testing
