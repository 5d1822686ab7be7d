#pragma once

#include "Base/FileError.h"
#include "Base/TextSink.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale::commandLine {

/// The output of a command. It goes to a stream through a buffer of fixed size, so the memory does not depend
/// on the length of a document. Keeps the first failure, and drops all output after it.
class Output final : public TextSink {
public:
    explicit Output(std::FILE *stream);
    ~Output() override = default;
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    /// Whether the output goes to a terminal that shows styles, and the variable NO_COLOR is not set.
    [[nodiscard]] bool isStyled() const;

    void write(std::string_view text) override;

    /// Writes out the buffer, so that a reader sees these lines before the next one is ready.
    void flush();

    /// Writes out the buffer and closes the stream; call it last. Returns the first failure since the start.
    [[nodiscard]] std::optional<FileError> finish();

private:
    void pass(std::string_view text);
    void check(bool isDone);

    std::FILE *stream_;
    std::string buffer_;
    std::optional<FileError> failure_;
};

} // namespace brimvale::commandLine
