#pragma once

#include <string_view>

namespace brimvale::commandLine {

/// How far a work is, as one line on standard error that every call of `show` draws anew, and that is wiped
/// with the object. Does nothing where standard error is no terminal.
class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    /// Shows `text`, which is to be harmless on a terminal already (`terminalText`), or its end where it is
    /// too wide.
    void show(std::string_view text) const;

private:
    bool isShown_;
};

} // namespace brimvale::commandLine
