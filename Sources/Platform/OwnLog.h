#pragma once

#include <string>
#include <string_view>

namespace brimvale {

/// A log in a folder where everybody can make files. It is used only if it is new or an ordinary file of this
/// user with one name: a link would lead the lines into another file, and a pipe would block. Otherwise, and
/// where writing fails, lines are dropped.
class OwnLog {
public:
    /// Opens or makes the file at an absolute path.
    explicit OwnLog(const std::string &path);
    ~OwnLog();
    OwnLog(const OwnLog &) = delete;
    OwnLog &operator=(const OwnLog &) = delete;

    /// Appends a line; `line` is without its end.
    void write(std::string_view line) const;

private:
    int file_; ///< negative where the log is not used
};

} // namespace brimvale
