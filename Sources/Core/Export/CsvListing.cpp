#include "Core/Export/CsvListing.h"

#include "Base/Date.h"
#include "Core/Export/TreeVisit.h"

#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

namespace {

/// In quotes where a comma, a quote or the end of a line would be misunderstood.
std::string field(std::string_view bytes) {
    if (bytes.find_first_of(",\"\r\n") == std::string_view::npos)
        return std::string(bytes);
    std::string quoted = "\"";
    for (const char byte : bytes) {
        if (byte == '"')
            quoted += '"';
        quoted += byte;
    }
    return quoted += '"';
}

std::string_view kindOf(const FSNode &node) {
    if (node.isAggregate)
        return "smaller files";
    return node.isDirectory ? "folder" : "file";
}

std::string_view remarkOn(const FSNode &node) {
    if (node.isNotDescended)
        return "skipped";
    return node.unreadable ? "unreadable" : "";
}

} // namespace

void writeCsvListing(TextSink &sink, const FSNode &root) {
    sink.write("path,kind,size,length,files,folders,modified,remark\r\n");
    const auto write = [&](const FSNode &node) {
        std::string line = field(node.path());
        line.append(",").append(kindOf(node));
        for (const std::int64_t figure :
             {node.size, node.logicalSizeLeft(), node.fileCount, node.dirCountLeft()})
            line.append(",").append(std::to_string(figure));
        const std::optional<Date> modified = FSNode::dateOf(node.modified);
        line.append(",").append(modified ? iso8601(*modified) : "");
        sink.write(line.append(",").append(remarkOn(node)).append("\r\n"));
    };
    visitTree(root, write, [](const FSNode &) {});
}

} // namespace brimvale
