#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace brimvale {

/// What a file is, as far as its name tells.
enum class FileType : std::uint8_t {
    video,
    picture,
    audio,
    document,
    archive,
    diskImage,
    program,
    sourceCode,
    database,
    mail,
    log,
    font,
    model,
    other
};

constexpr std::size_t fileTypeCount = 14;

/// The words for a type.
struct FileTypeWords {
    std::string_view key;   ///< for filters and scripts
    std::string_view title; ///< for people
};

[[nodiscard]] const FileTypeWords &wordsOf(FileType type);

/// The type with this key, ignoring case and an "s" at its end; nothing if there is none.
[[nodiscard]] std::optional<FileType> fileTypeWithKey(std::string_view key);

/// The type of the file with this name, by its extension. The numbers of versions and parts after an
/// extension are passed over, as in "libz.so.1.3" and "disk.iso.001". Allocates no memory.
[[nodiscard]] FileType fileTypeOf(std::string_view name) noexcept;

} // namespace brimvale
