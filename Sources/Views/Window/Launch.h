#pragma once

#include "Base/FileURL.h"
#include "Platform/Host.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace brimvale {

/// How the window is to be opened.
struct Launch {
    std::optional<System> system;  ///< whose catalogs to look with; nothing: those of this system
    std::optional<FileURL> folder; ///< to be scanned at once

    /// What the program says instead of opening a window, before it ends. Harmless on a terminal.
    struct Refusal {
        int exitStatus = 0; ///< 0: it was asked for; 1: no such folder; 2: wrong usage
        std::string text;   ///< whole lines
    };

    /// Reads the words behind the program's name. A relative folder lies in the working directory; one that
    /// exists but cannot be read is the page's to tell about.
    [[nodiscard]] static std::variant<Launch, Refusal> read(std::span<const char *const> words,
                                                            std::string_view programVersion);
};

} // namespace brimvale
