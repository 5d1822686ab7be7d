#include "CommandLine/EntryTable.h"

#include "CommandLine/TerminalText.h"
#include "CommandLine/TextTable.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Storage/CleanupRiskTexts.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <string>

namespace brimvale::commandLine {

namespace {

/// What the catalog knows about an entry besides its place.
std::string noteOn(const CleanupEntry &entry) {
    if (!entry.notes)
        return "";
    std::string note = terminalText(entry.notes->name);
    const auto add = [&](const std::string &more) { note += (note.empty() ? "" : "; ") + more; };
    if (entry.isInUse() && entry.keptBecause().empty())
        add(terminalText(entry.notes->program->name) + " is running");
    if (std::string reason = terminalText(entry.keptBecause()); !reason.empty()) {
        if (reason.ends_with('.'))
            reason.pop_back();
        add("kept: " + reason);
    }
    if (!entry.notes->command.empty())
        add("run " + terminalText(entry.notes->command));
    if (entry.freesLess())
        add("may free less");
    return note;
}

} // namespace

void writeEntryTable(Output &output, const std::vector<CleanupEntry> &entries) {
    if (entries.empty())
        return;
    const bool hasNotes = std::any_of(entries.begin(), entries.end(),
                                      [](const CleanupEntry &entry) { return !noteOn(entry).empty(); });
    std::vector<TextTable::Column> columns = {
        TextTable::sizeColumn("SIZE"), TextTable::ageColumn("MODIFIED"), {"PATH"}};
    if (hasNotes)
        columns.push_back({"NOTE"});
    TextTable table(columns);
    for (const CleanupEntry &entry : entries) {
        std::vector<std::string> cells = {Fmt::byteFormatter(entry.size), Fmt::recentDate(entry.modified),
                                          terminalText(entry.url.path())};
        if (hasNotes)
            cells.push_back(noteOn(entry));
        table.add(cells);
    }
    table.write(output);
}

void writeTargetTable(Output &output, const std::vector<CleanupTarget> &targets) {
    TextTable table({TextTable::sizeColumn("SIZE"), {"RISK"}, {"ID"}, {"TARGET"}});
    for (const CleanupTarget &target : targets)
        table.add({Fmt::byteFormatter(CleanupEntries::totalSize(target.entries)),
                   std::string(label(target.risk)), target.id, target.title});
    table.write(output);
}

} // namespace brimvale::commandLine
