#pragma once

#include "Support/AtPath.h"

#include <optional>
#include <string>

namespace brimvale::testing {

/// The outcome of a removal in a word: "gone", or the two codes of its error.
inline std::string outcomeOf(const std::optional<FileError> &error) {
    if (!error)
        return "gone";
    const bool isCocoa = error->domain == FileError::Domain::cocoa;
    const bool hasPosix = error->underlying && error->underlying->domain == FileError::Domain::posix;
    return isCocoa && hasPosix
               ? std::to_string(error->code) + " over " + std::to_string(error->underlying->code)
               : "not an error of the file functions";
}

/// The outcome of removing the item at the path.
inline std::string outcomeOfRemoving(const std::string &path) {
    return outcomeOf(removeItemAt(FileURL(path)));
}

/// The outcome of an error with these two codes.
inline std::string over(int code, int errorNumber) {
    return std::to_string(code) + " over " + std::to_string(errorNumber);
}

} // namespace brimvale::testing
