#include "Core/Export/JsonListing.h"

#include "Core/Export/TreeJson.h"
#include "Core/Export/TreeLimits.h"
#include "Core/Text/JsonWriter.h"

#include <optional>
#include <string>

namespace brimvale {

void writeJsonListing(TextSink &sink, const FSNode &root, const ScanOrigin &origin) {
    JsonWriter json(sink);
    json.beginObject();
    json.member("program", origin.program);
    json.member("host", origin.host);
    json.member("date", origin.date ? std::optional(iso8601(*origin.date)) : std::nullopt);
    json.key("root");
    writeTree(json, root, TreeLimits());
    json.member("files", root.fileCount);
    json.member("bytes", root.size);
    json.member("unreadable", origin.unreadable);
    json.end();
}

} // namespace brimvale
