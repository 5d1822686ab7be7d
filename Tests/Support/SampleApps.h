#pragma once

#include "Platform/Bundle.h"
#include "Support/TemporaryFolder.h"

#include <string>

namespace brimvale::testing {

/// Makes a bundle with this dictionary and a program of some bytes, and answers its path.
std::string makeBundle(const TemporaryFolder &folder, const std::string &inside, const BundleInfo &info = {});

/// Puts an Applications folder into `home` (a path inside `folder`, or "" for the folder itself) that has
/// everything in it that a search for applications may stumble over.
void makeSampleApps(const TemporaryFolder &folder, const std::string &home);

} // namespace brimvale::testing
