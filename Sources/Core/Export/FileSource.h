#pragma once

#include "Base/ByteSource.h"
#include "Base/FileError.h"
#include "Platform/FileReader.h"

#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// The bytes of a regular file, in pieces.
class FileSource final : public ByteSource {
public:
    /// The file at an absolute path; links are followed.
    explicit FileSource(const std::string &path);

    /// Why the file cannot be read; nothing where it can.
    [[nodiscard]] const std::optional<FileError> &failure() const { return failure_; }

    [[nodiscard]] std::optional<std::string_view> next() override;

private:
    FileReader reader_;
    std::vector<char> buffer_;
    std::optional<FileError> failure_;
};

} // namespace brimvale
