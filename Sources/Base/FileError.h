#pragma once

#include <memory>
#include <string>

namespace brimvale {

/// A failure of the file layer, as a value.
struct FileError {
    /// Who numbers the code: errno, or the error table of Cocoa's file functions.
    enum class Domain { posix, cocoa };

    Domain domain = Domain::posix;
    int code = 0;
    std::string localizedDescription; ///< a readable sentence
    std::shared_ptr<const FileError> underlying;

    /// The error of a system call, described in the system's words.
    [[nodiscard]] static FileError posix(int errorNumber);
};

} // namespace brimvale
