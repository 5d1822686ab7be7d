#pragma once

#include "Platform/Host.h"

#include <string>

namespace brimvale::linuxCatalog {

/// The name of the installed system with its version, such as "Debian GNU/Linux 12 (bookworm)"; "The system"
/// where it does not tell.
[[nodiscard]] std::string systemName(const Host &host);

/// The same without its version: "Debian GNU/Linux".
[[nodiscard]] std::string distributionName(const Host &host);

} // namespace brimvale::linuxCatalog
