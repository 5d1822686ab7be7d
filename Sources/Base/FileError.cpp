#include "Base/FileError.h"

#include <system_error>

namespace brimvale {

FileError FileError::posix(int errorNumber) {
    return {Domain::posix, errorNumber, std::generic_category().message(errorNumber), nullptr};
}

} // namespace brimvale
