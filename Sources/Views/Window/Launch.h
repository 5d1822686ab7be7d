#pragma once

#include "Base/FileURL.h"
#include "Platform/Host.h"
#include "Sample/Sample.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace brimvale {

/// The options for opening the window.
struct Launch {
    std::optional<System> system;     ///< the system whose catalog is used; nothing: this one
    std::optional<FileURL> folder;    ///< scanned at once
    std::optional<FileURL> file = {}; ///< selected in `folder`
    std::string notice = {};          ///< shown in the window: why there is nothing to scan; empty for none
    std::optional<sample::Wish> sample = {}; ///< what to do with the sample; nothing: this computer is shown

    /// What the program prints if it ends without a window. Harmless on a terminal.
    struct Refusal {
        int exitStatus = 0; ///< 0: as requested; 2: wrong usage
        std::string text;   ///< whole lines
    };

    /// Reads the words after the program's name. A relative path is relative to the working directory. For a
    /// file, its parent folder is scanned. If the folder exists but cannot be read, the page reports that.
    [[nodiscard]] static std::variant<Launch, Refusal> read(std::span<const char *const> words,
                                                            std::string_view programVersion);
};

} // namespace brimvale
