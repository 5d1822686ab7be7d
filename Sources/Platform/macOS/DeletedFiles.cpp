#include "Platform/DeletedFiles.h"

namespace brimvale {

DeletedFiles deletedFilesOn(const std::string & /*volume*/) {
    return {};
}

} // namespace brimvale
