#pragma once

#include <memory>
#include <string>

namespace brimvale {

/// A failure of the file layer, as a value.
struct FileError {
    /// The numbering of the code: errno, or the error codes of Cocoa's file functions.
    enum class Domain { posix, cocoa };

    Domain domain = Domain::posix;
    int code = 0;
    std::string localizedDescription; ///< a readable sentence
    std::shared_ptr<const FileError> underlying;
    std::string entry = {}; ///< the path of the item or the entry inside it that failed, where it is known

    /// The error of a system call, with the system's description.
    [[nodiscard]] static FileError posix(int errorNumber);
};

} // namespace brimvale
