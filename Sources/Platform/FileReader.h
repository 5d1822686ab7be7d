#pragma once

#include "Base/Date.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace brimvale {

/// A regular file, read from its beginning. A link in the last component of its path is not followed; pipes
/// and devices are refused. One descriptor, closed with the object.
class FileReader {
public:
    /// `cache` takes bytes from memory where the system has them there. `disk` reads from the disk where the
    /// system allows it.
    enum class Source { cache, disk };

    /// Opens the file at an absolute path of any length. Not open (with errno set) on failure.
    explicit FileReader(const std::string &path, Source source = Source::cache);
    ~FileReader();
    FileReader(const FileReader &) = delete;
    FileReader &operator=(const FileReader &) = delete;

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    /// Its length in bytes when it was opened.
    [[nodiscard]] std::int64_t length() const { return length_; }
    /// When its content was last changed.
    [[nodiscard]] Date modified() const { return modified_; }

    /// Fills `buffer` with the next bytes and returns the filled part: empty at the end, nothing when reading
    /// fails.
    [[nodiscard]] std::optional<std::string_view> read(std::span<char> buffer);

private:
    int descriptor_ = -1;
    Source source_;
    std::int64_t position_ = 0;
    std::int64_t fromDisk_ = 0; ///< bytes before this one are read from the disk
    std::int64_t length_ = 0;
    Date modified_{};
};

/// The stored target of the symbolic link at an absolute path of any length; nothing where it is no link.
[[nodiscard]] std::optional<std::string> linkTarget(const std::string &path);

} // namespace brimvale
