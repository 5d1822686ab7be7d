#pragma once

#include <optional>
#include <string_view>

namespace brimvale {

/// Bytes that arrive piece by piece, such as those of a file.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    /// The next bytes, valid until the next call: empty at the end, nothing when reading fails.
    [[nodiscard]] virtual std::optional<std::string_view> next() = 0;
};

} // namespace brimvale
