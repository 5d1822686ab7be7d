#pragma once

#include <string>

namespace brimvale::testing {

/// The user of a sample Mac.
inline constexpr const char *sampleHome = "/Users/sample";

/// Fills the folder `root` as if it were the disk of a small Mac: the home folder of `sampleHome` and the
/// system around it, with something in every place that the program measures there, and with what it has to
/// leave alone: entries without size, cloud folders, other volumes, links, the Finder's own files, closed
/// folders, small and large things that no category names. Takes about 60 MB.
void makeSampleMac(const std::string &root);

/// The home folder within `root`.
[[nodiscard]] inline std::string homeIn(const std::string &root) {
    return root + sampleHome;
}

} // namespace brimvale::testing
