#pragma once

namespace brimvale {

/// From now on, a write past the limit on file sizes (RLIMIT_FSIZE) or of the file system fails with EFBIG.
/// By default a signal would end the program in the middle of its work. Call it first in `main`; the tools
/// that the program starts then report such a failure, too.
void failAtFileSizeLimit();

} // namespace brimvale
