#include "Core/Backup/ArchiveProgress.h"

#include "Core/Text/Formatting.h"

namespace brimvale {

std::string stepText(const ArchiveProgress &progress, const std::string &item, std::int64_t total) {
    using Phase = ArchiveProgress::Phase;
    const std::string name = "“" + item + "”";
    switch (progress.phase) {
    case Phase::copying:
        return name + ", " + Fmt::byteFormatter(progress.bytes) + " of " + Fmt::byteFormatter(total);
    case Phase::writingOut:
        return "Writing " + name + " to the disk";
    case Phase::measuring:
        return "Measuring " + name;
    case Phase::comparing:
        return "Comparing " + name + " with its original";
    case Phase::readingMessages:
        return "Reading the messages";
    case Phase::finishing:
        return "Writing the manifest";
    }
    return name;
}

} // namespace brimvale
