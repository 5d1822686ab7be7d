#pragma once

#include <string_view>

namespace brimvale {

// From the certificate that signs the program's releases. Packaging/macOS/application.sh reads the team here.

/// The line with the team in the details that codesign prints.
inline constexpr std::string_view teamLine = "TeamIdentifier=QK4M7ZP2TX";

/// Our team's signature as a requirement in codesign's language; an option takes it as it is. A certificate
/// with this team must come from the system's maker, so nobody can make one up.
inline constexpr std::string_view teamRequirement =
    "=anchor apple generic and certificate leaf[subject.OU] = \"QK4M7ZP2TX\"";

} // namespace brimvale
