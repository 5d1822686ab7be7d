#pragma once

#include "Base/TextSink.h"
#include "Core/Export/ScanOrigin.h"
#include "Core/Scan/FSNode.h"

#include <optional>
#include <string_view>

namespace brimvale {

/// A form in which a tree is written for other programs.
enum class ListingFormat {
    csv,  ///< a line for each node (RFC 4180); its names are bytes
    json, ///< the document of "brimvalectl scan --json", with its origin
    ncdu  ///< the JSON export of ncdu, version 1.2
};

/// The format of this name ("csv", "json", "ncdu"); nothing where there is none.
[[nodiscard]] std::optional<ListingFormat> listingFormatNamed(std::string_view name);

/// Writes the whole tree piece by piece. An aggregate is one row in each of them.
void writeListing(TextSink &sink, const FSNode &root, const ScanOrigin &origin, ListingFormat format);

} // namespace brimvale
