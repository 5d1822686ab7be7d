#pragma once

#include "Base/Date.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace brimvale {

/// A regular file that is read from its beginning. A link in the last component of its path is not followed,
/// and nothing that could wait (a pipe, a device) is read. One descriptor, closed with the object.
class FileReader {
public:
    /// Where the bytes come from: from memory where the system still has them there, or, as far as the system
    /// lets go of them, from the disk.
    enum class Source { cache, disk };

    /// Opens the file at an absolute path of any length. Not open (with errno set) on failure.
    explicit FileReader(const std::string &path, Source source = Source::cache);
    ~FileReader();
    FileReader(const FileReader &) = delete;
    FileReader &operator=(const FileReader &) = delete;

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    /// Bytes as they were when it was opened.
    [[nodiscard]] std::int64_t length() const { return length_; }
    /// When its content was last changed.
    [[nodiscard]] Date modified() const { return modified_; }

    /// Fills `buffer` as far as there is anything left, and answers that part of it: empty at the end.
    /// Nothing when reading fails.
    [[nodiscard]] std::optional<std::string_view> read(std::span<char> buffer);

private:
    int descriptor_ = -1;
    std::int64_t position_ = 0;
    std::int64_t length_ = 0;
    Date modified_{};
};

/// Where the symbolic link at an absolute path of any length leads, as it is stored; nothing for what is no
/// link.
[[nodiscard]] std::optional<std::string> linkTarget(const std::string &path);

} // namespace brimvale
