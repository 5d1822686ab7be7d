#pragma once

#include "Base/TextSink.h"
#include "Core/Scan/FSNode.h"

namespace brimvale {

/// Writes a head and then a line for each node, a folder before what it contains: its path, its kind
/// ("folder", "file", "smaller files"), allocated bytes, length, files, folders, the date of the last change
/// (ISO 8601; empty where it is not known), and what is special about it ("skipped", "unreadable"). Paths are
/// the bytes of the disk; an aggregate has the path of its folder.
void writeCsvListing(TextSink &sink, const FSNode &root);

} // namespace brimvale
