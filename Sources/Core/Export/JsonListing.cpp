#include "Core/Export/JsonListing.h"

#include "Core/Export/TreeJson.h"

#include <optional>

namespace brimvale {

void writeJsonListing(TextSink &sink, const FSNode &root, const ScanOrigin &origin) {
    JsonWriter json(sink);
    json.beginObject();
    writeOrigin(json, origin);
    writeTreeAndTotals(json, root, TreeLimits(), origin.unreadable);
    json.end();
}

void writeOrigin(JsonWriter &json, const ScanOrigin &origin) {
    json.member("program", origin.program);
    json.member("host", origin.host);
    json.member("date", origin.date ? std::optional(iso8601(*origin.date)) : std::nullopt);
}

void writeTreeAndTotals(JsonWriter &json, const FSNode &root, const TreeLimits &limits,
                        std::int64_t unreadable) {
    json.key("root");
    writeTree(json, root, limits);
    json.member("files", root.fileCount);
    json.member("bytes", root.size);
    json.member("unreadable", unreadable);
}

} // namespace brimvale
