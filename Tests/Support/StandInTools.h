#pragma once

#include "Platform/Tools.h"
#include "Support/TemporaryFolder.h"

#include <optional>
#include <string>
#include <string_view>

namespace brimvale::testing {

/// An application for an update to handle. The stand-ins take its signature for valid when it is whole.
struct SampleApp {
    std::string content = "new"; ///< what tells it from others
    std::string team = "QK4M7ZP2TX";
    std::string executable = "Brimvale";
    std::string identifier = "example.brimvale.Brimvale";
    std::string build = "42";
    bool isWhole = true;
    std::optional<std::string> tool = {}; ///< the body of its brimvalectl, a shell script
};

/// Makes one at `inside`, which ends in ".app" as a rule, and answers its path.
std::string makeApp(const TemporaryFolder &folder, std::string_view inside, const SampleApp &app = {});

/// The content of the application at `path`; nothing when it would not work.
[[nodiscard]] std::optional<std::string> workingContent(const std::string &path);

/// An archive as the stand-in for ditto unpacks it, with everything in `folder`.
[[nodiscard]] std::string archiveOf(const std::string &folder);

/// The SHA-256 of bytes, in lower case digits.
[[nodiscard]] std::string sha256Of(const std::string &bytes);

/// Makes the file `name` in the folder of stand-ins, a shell script with this body, and answers its path.
std::string makeTool(const TemporaryFolder &folder, std::string_view name, std::string_view body);

/// Tools in the folder "tools" that behave as those of macOS are documented to: shasum, ditto, codesign, and,
/// for the install script, xattr and open. What was opened stands in the file "opened".
[[nodiscard]] Tools makeUpdateTools(const TemporaryFolder &folder);

} // namespace brimvale::testing
