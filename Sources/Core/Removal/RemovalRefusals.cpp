#include "Core/Removal/RemovalRefusals.h"

#include "Core/Removal/RemovalGate.h"
#include "Platform/FileStatus.h"

#include <optional>
#include <utility>

namespace brimvale {

RemovalRefusals removalRefusals(const std::vector<FileURL> &items, const StopFlag &cancelled) {
    const RemovalGate gate;
    RemovalRefusals refusals;
    for (const FileURL &item : items) {
        if (cancelled.isSet())
            break;
        const std::optional<FileStatus> status = fileStatus(item.path());
        if (!status)
            continue;
        if (std::optional<std::string> reason = gate.refusal(item)) {
            const bool isFolder = status->kind == FileKind::directory;
            refusals.emplace(item, RemovalRefusal{*std::move(reason),
                                                  isFolder && RemovalGate::guards().admitsContents(item)});
        }
    }
    return refusals;
}

} // namespace brimvale
