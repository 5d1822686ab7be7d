#pragma once

#include "Support/TemporaryFolder.h"

#include <optional>
#include <string>

namespace brimvale::testing {

/// Opens a page in a browser without a window, runs its scripts and those that wait for something, and
/// answers the document as it is then. Nothing where no such browser is installed or it does not start.
[[nodiscard]] std::optional<std::string> documentAfterLoading(const std::string &path,
                                                              const TemporaryFolder &folder);

} // namespace brimvale::testing
