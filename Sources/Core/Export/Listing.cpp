#include "Core/Export/Listing.h"

#include "Core/Export/CsvListing.h"
#include "Core/Export/JsonListing.h"
#include "Core/Export/NcduListing.h"

namespace brimvale {

std::optional<ListingFormat> listingFormatNamed(std::string_view name) {
    if (name == "csv")
        return ListingFormat::csv;
    if (name == "json")
        return ListingFormat::json;
    return name == "ncdu" ? std::optional(ListingFormat::ncdu) : std::nullopt;
}

void writeListing(TextSink &sink, const FSNode &root, const ScanOrigin &origin, ListingFormat format) {
    switch (format) {
    case ListingFormat::csv:
        return writeCsvListing(sink, root);
    case ListingFormat::json:
        return writeJsonListing(sink, root, origin);
    case ListingFormat::ncdu:
        return writeNcduListing(sink, root, origin);
    }
}

} // namespace brimvale
