#pragma once

#include "Base/FileError.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale::commandLine {

/// What a command prints, on its way to a stream through a buffer of fixed size, so that a document of any
/// length takes no memory. The first failure is kept, and everything after it is dropped.
class Output {
public:
    explicit Output(std::FILE *stream);
    ~Output() = default;
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    /// Whether a reader gets it on a terminal that shows styles, and wants them (the variable NO_COLOR
    /// unset).
    [[nodiscard]] bool isStyled() const;

    void write(std::string_view text);

    /// Passes on what waits in the buffer: for lines that a reader should see before the next one is ready.
    void flush();

    /// Passes on what waits and closes the stream; nothing can be written afterwards. The first failure that
    /// there was, from the first byte to the closing.
    [[nodiscard]] std::optional<FileError> finish();

private:
    void pass(std::string_view text);
    void check(bool isDone);

    std::FILE *stream_;
    std::string buffer_;
    std::optional<FileError> failure_;
};

} // namespace brimvale::commandLine
