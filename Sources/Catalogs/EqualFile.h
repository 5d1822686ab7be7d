#pragma once

#include "Base/FileURL.h"
#include "Platform/EntryRecord.h"

namespace brimvale {

/// Why a file may go: another one with equal contents stays. Both must still be as they were compared when
/// the file is removed.
struct EqualFile {
    EntryRecord compared; ///< the file that goes
    FileURL staying;
    EntryRecord stayingCompared;
};

} // namespace brimvale
