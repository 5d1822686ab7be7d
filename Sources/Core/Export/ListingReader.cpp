#include "Core/Export/ListingReader.h"

#include "Core/Export/FileSource.h"
#include "Core/Export/JsonListingReader.h"
#include "Core/Export/NcduListingReader.h"
#include "Core/Export/SavedScan.h"
#include "Platform/FileContents.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace brimvale {

Result<ImportedTree, ImportFault> readListing(ByteSource &source) {
    JsonReader json(source);
    TreeAssembly tree;
    ScanOrigin origin;
    const JsonReader::Token first = json.next();
    if (first == JsonReader::Token::beginArray)
        readNcduListing(json, tree, origin);
    else if (first == JsonReader::Token::beginObject)
        readJsonListing(json, tree, origin);
    else
        json.fail("this is neither a list of ncdu nor one of brimvalectl");
    if (json.fault().empty() && json.next() != JsonReader::Token::end)
        json.fail("something follows the list");
    if (json.fault().empty() && !tree.isComplete())
        json.fail("there is no folder in this list");
    if (!json.fault().empty())
        return ImportFault{json.fault()};
    origin.unreadable = tree.unreadable();
    return ImportedTree{tree.finish(), std::move(origin)};
}

Result<ImportedTree, ImportFault> readTreeAt(const std::string &path) {
    FileSource source(path);
    if (const std::optional<FileError> failure = source.failure())
        return ImportFault{failure->localizedDescription};
    if (!beginsSavedScan(source.next().value_or(std::string_view()))) {
        FileSource fromStart(path);
        return readListing(fromStart);
    }
    constexpr std::size_t longest = std::size_t{1} << 32;
    const std::optional<std::string> bytes = contentsOfFile(path, longest);
    return bytes ? readSavedScan(*bytes) : ImportFault{"The saved scan can’t be read."};
}

} // namespace brimvale
