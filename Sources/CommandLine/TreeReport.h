#pragma once

#include "CommandLine/Command.h"
#include "Core/Export/ListingReader.h"
#include "Core/Export/ScanOrigin.h"
#include "Core/Scan/FSNode.h"

#include <optional>
#include <string>
#include <string_view>

namespace brimvale::commandLine {

/// The options of a command that shows a tree.
inline constexpr Option depthOption{"--depth", Option::Value::number, "N",
                                    "Show N levels of folders (2; with --json all)."};
inline constexpr Option topOption{"--top", Option::Value::number, "N",
                                  "Show the N largest of each folder (10; with --json all)."};
inline constexpr Option exportOption{"--export", Option::Value::text, "FORMAT",
                                     "List the whole tree as csv, json or ncdu (what ncdu -f reads)."};
inline constexpr Option outputOption{"--output", Option::Value::text, "FILE", "Export into FILE."};
inline constexpr Option saveOption{"--save", Option::Value::text, "FILE",
                                   "Save the whole scan into FILE, for \"compare\" and \"open\"."};
inline constexpr Option forceOption{.name = "--force", .help = "Replace FILE if it exists."};

/// A tree, sorted, to show.
struct ReportedTree {
    const FSNode &root;
    ScanOrigin origin;
    std::optional<double> elapsed = {}; ///< seconds of its scan
};

/// The fault in how these options are used, if any.
[[nodiscard]] std::optional<std::string> faultOfReport(const Arguments &arguments);

/// Whether no file is in the way of the one to write. If one is, reports that on standard error. Looks before
/// a long scan; the writing looks again.
[[nodiscard]] bool canWriteReport(const Arguments &arguments);

/// Shows a tree as the options ask: a table, JSON, or a list for another program. Reports a failure on
/// standard error.
[[nodiscard]] ExitStatus reportTree(const ReportedTree &tree, const Arguments &arguments, Output &output);

/// Saves a tree into a file as the options ask ("--save"). Reports a failure on standard error.
[[nodiscard]] ExitStatus saveTree(const ReportedTree &tree, const Arguments &arguments);

/// The tree in a file ("-" is a list on standard input). Reports on standard error why it cannot be read, and
/// returns nothing.
[[nodiscard]] std::optional<ImportedTree> treeInFile(std::string_view typed);

/// Shows the tree in a file ("-" is a list on standard input), as `reportTree` does.
[[nodiscard]] ExitStatus reportFile(std::string_view typed, const Arguments &arguments, Output &output);

} // namespace brimvale::commandLine
