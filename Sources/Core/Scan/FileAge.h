#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace brimvale {

/// How long ago a file was changed.
enum class FileAge : std::uint8_t { month, halfYear, year, older, unknown };

constexpr std::size_t fileAgeCount = 5;

/// The age at `moment` of a file that was changed at `modified`, both in seconds since 1970, as
/// `FSNode::modified` has them. A month has 30 days, half a year 182 and a year 365.
[[nodiscard]] FileAge ageOf(std::uint32_t modified, std::uint32_t moment);

/// The seconds since the last change of all files of this age: more than the first number, and at most the
/// second. Of no unknown age.
[[nodiscard]] std::pair<std::uint32_t, std::uint32_t> rangeOf(FileAge age);

/// The words for an age.
struct FileAgeWords {
    std::string_view key;   ///< for scripts
    std::string_view title; ///< for people
};

[[nodiscard]] const FileAgeWords &wordsOf(FileAge age);

} // namespace brimvale
