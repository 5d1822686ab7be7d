#include "Core/Export/NcduListing.h"

#include "Base/Version.h"
#include "Core/Export/NcduNames.h"
#include "Core/Export/OwnFigures.h"
#include "Core/Export/TreeVisit.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace brimvale {

namespace {

/// A text as ncdu writes it: controls, quotes and backslashes escaped, all other bytes as they are.
void appendText(std::string &line, std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    line += '"';
    for (const char one : bytes) {
        const auto byte = static_cast<unsigned char>(one);
        if (byte == '"' || byte == '\\')
            line.append({'\\', one});
        else if (byte < 0x20 || byte == 0x7F)
            line.append({'\\', 'u', '0', '0', digits[byte >> 4], digits[byte & 0xF]});
        else
            line += one;
    }
    line += '"';
}

void appendNumber(std::string &line, std::string_view key, std::int64_t number) {
    if (number != 0)
        line.append(",\"").append(key).append("\":").append(std::to_string(number));
}

/// Whether the scan did not enter a folder because it is on another volume.
bool isOnOtherVolume(const FSNode &folder) {
    const FSNode *parent = folder.parent();
    return folder.isDirectory && parent != nullptr && folder.children().empty() && !folder.unreadable &&
           folder.identity() && parent->identity() && folder.identity()->device != parent->identity()->device;
}

/// Why the scan has nothing of this folder, in ncdu's words; empty for all others.
std::string_view exclusionOf(const FSNode &node) {
    constexpr std::string_view leftOut = "pattern"; // for its name
    constexpr std::string_view otherVolume = "otherfs";
    if (node.isNotDescended)
        return node.skipReason == SkipReason::managed || node.skipReason == SkipReason::leftOut ? leftOut
                                                                                                : otherVolume;
    return isOnOtherVolume(node) ? otherVolume : "";
}

std::string infoOf(const FSNode &node, std::string_view exclusion) {
    const bool isRoot = node.parent() == nullptr;
    std::string info = "{\"name\":";
    appendText(info, isRoot ? node.path() : node.name);
    const OwnFigures own = OwnFigures::of(node);
    appendNumber(info, "asize", own.length);
    appendNumber(info, "dsize", own.size);
    if (node.isDirectory && node.identity() &&
        (isRoot || !node.parent()->identity() ||
         node.parent()->identity()->device != node.identity()->device))
        appendNumber(info, "dev", static_cast<std::int64_t>(node.identity()->device));
    if (!node.isDirectory)
        appendNumber(info, "mtime", node.modified);
    if (node.isAggregate)
        appendNumber(info, NcduNames::filesInAggregate, node.fileCount);
    if (node.unreadable)
        info += ",\"read_error\":true";
    if (!exclusion.empty())
        info.append(",\"excluded\":\"").append(exclusion).append("\"");
    return info += "}";
}

} // namespace

void writeNcduListing(TextSink &sink, const FSNode &root, const ScanOrigin &origin) {
    std::string head = "[1,2,{\"progname\":\"brimvale\",\"progver\":\"";
    head.append(version).append("\"");
    appendNumber(head, "timestamp", secondsOf(origin.date.value_or(Date())));
    head += ",\"hostname\":";
    appendText(head, origin.host);
    sink.write(head += "}");
    // A folder is an array with its own information first; one that was left out is an object.
    visitTree(
        root,
        [&](const FSNode &node) {
            const std::string_view exclusion = exclusionOf(node);
            sink.write(node.isDirectory && exclusion.empty() ? ",\n[" : ",\n");
            sink.write(infoOf(node, exclusion));
        },
        [&](const FSNode &folder) {
            if (exclusionOf(folder).empty())
                sink.write("]");
        });
    sink.write("]\n");
}

} // namespace brimvale
